#include "musicapp/path_maps.h"

#include <algorithm>
#include <utility>

#include "foundation/collation.h"
#include "musicapp/file_url.h"
#include "musicapp/media_library.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

bool isDrive(std::string_view text) noexcept {
  const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return text.size() >= 2 && isLetter(text[0]) && text[1] == ':' &&
         (text.size() == 2 || text[2] == '/' || text[2] == '\\');
}

/// As many of the path's names as `beginning` has.
std::string_view namesLike(std::string_view path, std::string_view beginning) {
  std::size_t end = 0;
  for (auto slashes = std::count(beginning.begin(), beginning.end(), '/'); slashes > 0; --slashes) {
    if (end == path.size()) return {};
    end = std::min(path.find('/', end + 1), path.size());
  }
  return path.substr(0, end);
}

}  // namespace

std::string pathOfLocation(std::string_view text) {
  std::string path;
  if (!pathOfFileUrl(text, path)) {
    path = text;
    if (isDrive(path) || path.starts_with("\\\\")) {
      std::replace(path.begin(), path.end(), '\\', '/');
      if (path.front() != '/') path.insert(path.begin(), '/');
    }
  }
  while (path.ends_with('/')) path.pop_back();
  return path;
}

std::string_view shownLocation(std::string_view path) noexcept {
  return path.starts_with('/') && isDrive(path.substr(1)) ? path.substr(1) : path;
}

PathMaps::PathMaps(std::vector<Map> maps) {
  for (Map& map : maps) {
    map.from = pathOfLocation(map.from);
    while (map.to.ends_with('/')) map.to.pop_back();
    std::erase_if(maps_, [&](const Map& earlier) { return earlier.from == map.from; });
    maps_.push_back(std::move(map));
  }
  std::stable_sort(maps_.begin(), maps_.end(),
                   [](const Map& a, const Map& b) { return a.from.size() > b.from.size(); });
}

const PathMaps::Map* PathMaps::of(std::string_view path, std::string_view& rest) const {
  const auto fitting = [&](auto&& fits) -> const Map* {
    for (const Map& map : maps_) {
      const std::string_view beginning = namesLike(path, map.from);
      if (!fits(beginning, map.from)) continue;
      rest = path.substr(beginning.size());
      return &map;
    }
    return nullptr;
  };
  if (const Map* map = fitting([](auto a, const auto& b) { return a == b; })) return map;
  return fitting([](auto a, const auto& b) { return sameIgnoringCase(a, b); });
}

const MappedFiles::Names& MappedFiles::namesIn(const std::string& folder) {
  const auto [known, isNew] = names_.try_emplace(folder);
  if (!isNew) return known->second;
  try {
    for (std::string& name : files_.list(folder)) {
      const auto [at, isFirst] = known->second.try_emplace(comparisonKey(name));
      at->second = isFirst ? std::move(name) : std::string();
    }
  } catch (const FileError&) {
  }
  return known->second;
}

std::optional<std::string> MappedFiles::name(const std::string& folder, std::string_view name) {
  path_.assign(folder).append(1, '/').append(name);
  if (files_.reachable(path_.c_str())) return std::string(name);
  const Names& names = namesIn(folder);
  const auto found = names.find(comparisonKey(name));
  if (found == names.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

MappedFiles::Folder MappedFiles::resolved(std::string_view location) {
  std::string_view rest;
  const PathMaps::Map* map = maps_.of(location, rest);
  if (!map) return {};
  std::string mapped = map->to + std::string(rest);
  // From the top down, as far as it is not known yet.
  std::string real = map->to;
  for (std::size_t at = map->to.size(); at < mapped.size();) {
    const std::size_t end = std::min(mapped.find('/', at + 1), mapped.size());
    const auto [known, isNew] = real_.try_emplace(mapped.substr(0, end));
    if (isNew)
      if (const auto found = name(real, std::string_view(mapped).substr(at + 1, end - at - 1)))
        known->second = real + '/' + *found;
    real = known->second;
    if (real.empty()) return {std::move(mapped), false};
    at = end;
  }
  if (!files_.exists(real.empty() ? "/" : real)) return {std::move(mapped), false};
  return {std::move(real), true};
}

const MappedFiles::Folder& MappedFiles::folder(std::string_view location) {
  const auto [known, isNew] = folders_.try_emplace(std::string(location));
  if (isNew) known->second = resolved(location);
  return known->second;
}

std::optional<std::string> MappedFiles::find(std::string_view location) {
  const std::size_t slash = location.rfind('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const Folder& here = folder(location.substr(0, slash));
  if (!here.isThere) return std::nullopt;
  const auto found = name(here.path, location.substr(slash + 1));
  return found ? std::optional(here.path + '/' + *found) : std::nullopt;
}

void mapLocations(MediaItems& items, const PathMaps& maps, const FileService& files) {
  if (maps.empty()) return;
  MappedFiles mapped(maps, files);
  TextPool& pool = items.newPool();
  Text last, lastHere;  // neighbours mostly share a folder
  const MappedFiles::Folder* here = nullptr;
  items.editBlocks([&](std::vector<MediaItem>& block) {
    for (MediaItem& item : block) {
      if (item.locationFolder.isNull()) continue;
      if (!here || !item.locationFolder.sameAs(last)) {
        last = item.locationFolder;
        here = &mapped.folder(last.view());
        lastHere = here->path == last.view() ? last : pool.share(here->path);
      }
      const std::string_view name = item.locationName.view();
      const auto found = here->isThere ? mapped.name(here->path, name) : std::nullopt;
      const std::string original = filePath(item);
      if (found && *found != name) item.locationName = pool.add(*found);
      // No map is for it, or the map does not know of it.
      const bool stays =
          !found && ((!here->isThere && here->path.empty()) || files.exists(original));
      if (!stays) item.locationFolder = lastHere;
      if (filePath(item) != original) item.originalLocation = pool.add(original);
    }
  });
  pool.doneSharing();
}

}  // namespace kestrel
