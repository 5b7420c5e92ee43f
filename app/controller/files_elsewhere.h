/// Files that are not where a library says: finding out which ones are missing.
#pragma once

#include <string>
#include <vector>

#include "musicapp/kept_maps.h"
#include "musicapp/map_suggestions.h"

namespace kestrel {

class FileService;
class MusicApplication;

/// What a folder would do for a library.
struct FoundElsewhere {
  std::vector<MapSuggestion> suggestions;
  std::size_t missing = 0;  ///< files that are not found so far
  std::size_t found = 0;    ///< of them, by the suggestions
};
/// Searches `folder`. `application`: the library, opened without maps; `maps`: those that it has.
FoundElsewhere findElsewhere(MusicApplication& application, const PathMaps& maps,
                             const std::string& folder, const FileService& files);

}  // namespace kestrel
