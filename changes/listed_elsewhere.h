/// Playlists of other libraries of this machine that list files which are about to go.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "musicapp/other_libraries.h"

namespace kestrel {

struct ListedElsewhere {
  std::string address;   ///< of the library
  std::string playlist;  ///< its name
  std::size_t entries = 0;
  friend bool operator==(const ListedElsewhere&, const ListedElsewhere&) = default;
};

/// The playlists, of those whose entries are the user's, that list one of the files, in the order
/// of the libraries and their playlists. Files are the same when their names are and their folders
/// are, links followed. Asks the disk only about folders of files with such names.
std::vector<ListedElsewhere> listedElsewhere(std::span<const OtherLibrary> libraries,
                                             std::span<const std::string> files);

}  // namespace kestrel
