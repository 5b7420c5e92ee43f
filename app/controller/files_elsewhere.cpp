#include "app/controller/files_elsewhere.h"

#include <filesystem>
#include <string_view>
#include <utility>

#include "musicapp/file_url.h"
#include "musicapp/library_identity.h"
#include "musicapp/music_application.h"
#include "platform/preferences.h"

namespace kestrel {
namespace {

/// A list of lines: "library", then its uri, then "map", the old and the new beginning, or
/// "withoutFiles", as often as there are some.
constexpr std::string_view filesElsewhereSetting = "filesElsewhere";
constexpr std::string_view libraryLine = "library", mapLine = "map", withoutLine = "withoutFiles";

/// By the file itself, whatever the links that lead to it.
std::string uriOf(const std::string& address) {
  const std::string path = addressText(address);
  if (!path.starts_with('/')) return path;
  std::error_code error;
  const auto real = std::filesystem::canonical(path, error);
  return fileUrlOfPath(error ? path : real.string());
}

/// Hands on the lines of `uri`, and returns those of the other libraries.
template <typename Visit>
std::vector<std::string> readLines(const Preferences& preferences, const std::string& uri,
                                   Visit&& visit) {
  std::vector<std::string> others;
  const std::vector<std::string> lines = preferences.textArray(filesElsewhereSetting);
  bool isOther = true;
  for (std::size_t i = 0; i < lines.size();) {
    const std::size_t count = lines[i] == libraryLine ? 2 : lines[i] == mapLine ? 3 : 1;
    if (i + count > lines.size()) break;
    if (lines[i] == libraryLine) isOther = lines[i + 1] != uri;
    if (isOther)
      others.insert(others.end(), &lines[i], &lines[i] + count);
    else
      visit(&lines[i]);
    i += count;
  }
  return others;
}

}  // namespace

FilesElsewhere keptFilesElsewhere(const Preferences& preferences, const std::string& address) {
  FilesElsewhere kept;
  std::vector<PathMaps::Map> maps;
  readLines(preferences, uriOf(address), [&](const std::string* line) {
    if (*line == mapLine) maps.push_back({line[1], line[2]});
    kept.withoutFiles |= *line == withoutLine;
  });
  kept.maps = PathMaps(std::move(maps));
  return kept;
}

void keepFilesElsewhere(Preferences& preferences, const std::string& address,
                        const FilesElsewhere& kept) {
  const std::string uri = uriOf(address);
  std::vector<std::string> lines = readLines(preferences, uri, [](const std::string*) {});
  lines.insert(lines.end(), {std::string(libraryLine), uri});
  for (const auto& [from, to] : kept.maps.list())
    lines.insert(lines.end(), {std::string(mapLine), from, to});
  if (kept.withoutFiles) lines.emplace_back(withoutLine);
  preferences.set(filesElsewhereSetting, std::move(lines));
}

FoundElsewhere findElsewhere(MusicApplication& application, const PathMaps& maps,
                             const std::string& folder, const FileService& files) {
  const std::vector<std::string> lost =
      lostLocations(*application.library().allMediaItems(), maps, files);
  FoundElsewhere result{suggestMaps(lost, folder, files), lost.size(), 0};
  for (const MapSuggestion& suggestion : result.suggestions) result.found += suggestion.finds;
  return result;
}

}  // namespace kestrel
