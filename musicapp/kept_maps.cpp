#include "musicapp/kept_maps.h"

#include <filesystem>
#include <string_view>
#include <utility>

#include "musicapp/file_url.h"
#include "musicapp/library_identity.h"
#include "platform/preferences.h"

namespace kestrel {
namespace {

/// A list of threes: a library's uri, and the old and the new beginning of a map of it.
constexpr std::string_view pathMapsSetting = "pathMaps";

/// By the file itself, whatever the links that lead to it.
std::string uriOf(const std::string& address) {
  const std::string path = addressText(address);
  if (!path.starts_with('/')) return path;
  std::error_code error;
  const auto real = std::filesystem::canonical(path, error);
  return fileUrlOfPath(error ? path : real.string());
}

}  // namespace

PathMaps keptMaps(const Preferences& preferences, const std::string& address) {
  const std::string uri = uriOf(address);
  const std::vector<std::string> kept = preferences.textArray(pathMapsSetting);
  std::vector<PathMaps::Map> maps;
  for (std::size_t i = 0; i + 2 < kept.size(); i += 3)
    if (kept[i] == uri) maps.push_back({kept[i + 1], kept[i + 2]});
  return PathMaps(std::move(maps));
}

void keepMaps(Preferences& preferences, const std::string& address, const PathMaps& maps) {
  const std::string uri = uriOf(address);
  const std::vector<std::string> before = preferences.textArray(pathMapsSetting);
  std::vector<std::string> kept;
  for (std::size_t i = 0; i + 2 < before.size(); i += 3)
    if (before[i] != uri) kept.insert(kept.end(), &before[i], &before[i] + 3);
  for (const auto& [from, to] : maps.list()) kept.insert(kept.end(), {uri, from, to});
  preferences.set(pathMapsSetting, std::move(kept));
}

}  // namespace kestrel
