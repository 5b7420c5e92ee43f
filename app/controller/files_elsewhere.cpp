#include "app/controller/files_elsewhere.h"

#include "musicapp/music_application.h"

namespace kestrel {
FoundElsewhere findElsewhere(MusicApplication& application, const PathMaps& maps,
                             const std::string& folder, const FileService& files) {
  const std::vector<std::string> lost =
      lostLocations(*application.library().allMediaItems(), maps, files);
  FoundElsewhere result{suggestMaps(lost, folder, files), lost.size(), 0};
  for (const MapSuggestion& suggestion : result.suggestions) result.found += suggestion.finds;
  return result;
}

}  // namespace kestrel
