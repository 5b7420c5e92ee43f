/// What is known of files that are not where a library says, and which path maps would find them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/path_maps.h"

namespace kestrel {

/// The longest beginnings that folders of locations have in common: one for each drive, volume,
/// share or home that they are on. Neighbours of the same folder cost next to nothing.
class LocationBeginnings {
 public:
  struct Beginning {
    std::string folder;
    std::size_t count = 0;  ///< of locations below it
  };
  void add(std::string_view folder);
  /// Those with most locations first.
  [[nodiscard]] std::vector<Beginning> list() const;

 private:
  std::vector<Beginning> beginnings_;
  std::string last_;
  std::size_t lastAt_ = 0;
};

/// The locations of songs, as the library has them without maps, whose files are neither there nor
/// where `maps` lead.
std::vector<std::string> lostLocations(const MediaItems& items, const PathMaps& maps,
                                       const FileService& files);

struct MapSuggestion {
  PathMaps::Map map;
  std::size_t finds = 0;  ///< of the locations, those found by earlier ones left out
};
/// Maps of lost locations into `folder`, which is searched once for files of their names; links,
/// hidden and trash folders are left out. Locations and files are matched by the names at their
/// ends. The one that finds most comes first; all of them together find the sum. What rests on
/// a few names alike in places that have nothing else in common is left out.
std::vector<MapSuggestion> suggestMaps(std::span<const std::string> locations,
                                       const std::string& folder, const FileService& files);

}  // namespace kestrel
