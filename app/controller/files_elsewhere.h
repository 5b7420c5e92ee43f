/// Files that are not where a library says: what is kept of them for each library in the settings,
/// and finding out where they are.
#pragma once

#include <string>
#include <vector>

#include "musicapp/map_suggestions.h"

namespace kestrel {

class FileService;
class MusicApplication;
class Preferences;

struct FilesElsewhere {
  PathMaps maps;
  bool withoutFiles = false;  ///< compared as if its files were there
};

/// Of the library at an address. Nothing is kept of one that is not in the settings, or whose lines
/// there cannot be read.
FilesElsewhere keptFilesElsewhere(const Preferences& preferences, const std::string& address);
void keepFilesElsewhere(Preferences& preferences, const std::string& address,
                        const FilesElsewhere& kept);

/// What a folder would do for a library.
struct FoundElsewhere {
  std::vector<MapSuggestion> suggestions;
  std::size_t missing = 0;  ///< files that are not found so far
  std::size_t found = 0;    ///< of them, by the suggestions
};
/// Searches `folder`. `application`: the library, opened without maps.
FoundElsewhere findElsewhere(MusicApplication& application, const PathMaps& maps,
                             const std::string& folder, const FileService& files);

}  // namespace kestrel
