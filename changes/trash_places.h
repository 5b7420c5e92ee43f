/// Where the files lie that a library names: among its media, somewhere else, or where none may go.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "musicapp/media_library.h"
#include "platform/descriptor.h"

namespace kestrel {

class FileService;

/// A file on this machine as it runs: device and inode.
using FileID = std::pair<std::uint64_t, std::uint64_t>;
std::optional<FileID> fileID(const std::optional<FileStatus>& status);

/// The media folder is the one that the library names. Where it names none, or one that does not
/// exist here, it is inferred from the tracks that stay: the folder that their files have in
/// common. A folder that holds one of Kestrel's own, as the user's home does, says nothing: below
/// it there is one media folder for each of its folders that hold tracks.
///
/// Folders are told apart by what they are on the disk, so that links and spellings do not matter;
/// each is asked once.
class TrashPlaces {
 public:
  enum class Place : std::uint8_t {
    media,
    elsewhere,
    own,       ///< in a folder of Kestrel's own, other than that of the demo library
    document,  ///< the library's document itself
  };
  /// `leaving`: the tracks from whose files nothing is inferred. `files` must outlive this.
  TrashPlaces(MediaLibrary& library, const std::unordered_set<std::uint64_t>& leaving,
              const FileService& files);
  [[nodiscard]] Place of(const std::string& path, FileID file);

 private:
  [[nodiscard]] Place ofFolder(const std::string& folder) const;

  const FileService& files_;
  std::optional<FileID> document_, demo_;
  std::set<FileID> own_, media_;
  std::unordered_map<std::string, Place> known_;  ///< by folder
};

}  // namespace kestrel
