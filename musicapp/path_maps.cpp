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
  if (path.empty()) return "/";
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
    for (std::string& name : files_.list(folder))
      known->second[comparisonKey(name)].push_back(std::move(name));
  } catch (const FileError&) {
  }
  return known->second;
}

std::optional<std::string> MappedFiles::name(const std::string& folder, std::string_view name) {
  path_.assign(folder).append(1, '/').append(name);
  if (files_.reachable(path_.c_str())) return std::string(name);
  const Names& names = namesIn(folder);
  const auto found = names.find(comparisonKey(name));
  if (found == names.end() || found->second.size() > 1) return std::nullopt;
  return found->second.front();
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

/// Goes through all of the disk's spellings of each name, which are few.
const std::vector<std::string>& MappedFiles::othersOf(std::string_view location,
                                                      const Folder& here) {
  if (here.others) return *here.others;
  constexpr std::size_t most = 32;
  std::string_view rest;
  std::vector<std::string> paths;
  if (const PathMaps::Map* map = maps_.of(location, rest)) paths.push_back(map->to);
  while (!rest.empty() && !paths.empty()) {
    const std::size_t end = std::min(rest.find('/', 1), rest.size());
    const std::string key = comparisonKey(rest.substr(1, end - 1));
    rest.remove_prefix(end);
    std::vector<std::string> next;
    for (const std::string& path : paths) {
      const Names& names = namesIn(path);
      if (const auto found = names.find(key); found != names.end())
        for (const std::string& name : found->second)
          if (next.size() < most) next.push_back(path + '/' + name);
    }
    paths = std::move(next);
  }
  std::erase(paths, here.path);
  return here.others.emplace(std::move(paths));
}

std::optional<MappedFiles::File> MappedFiles::file(std::string_view location, const Folder& here) {
  const std::size_t slash = location.rfind('/');
  if (slash == std::string_view::npos || here.path.empty()) return std::nullopt;
  const std::string_view wanted = location.substr(slash + 1);
  if (here.isThere)
    if (auto found = name(here.path, wanted)) return File{&here.path, std::move(*found)};
  std::optional<File> only;
  for (const std::string& other : othersOf(location.substr(0, slash), here))
    if (auto found = name(other, wanted)) {
      if (only) return std::nullopt;
      only = File{&other, std::move(*found)};
    }
  return only;
}

std::optional<std::string> MappedFiles::find(std::string_view location) {
  const std::size_t slash = location.rfind('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const auto found = file(location, folder(location.substr(0, slash)));
  return found ? std::optional(*found->folder + '/' + found->name) : std::nullopt;
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
      const std::string original = filePath(item);
      const auto found = mapped.file(original, *here);
      if (found && found->name != item.locationName.view())
        item.locationName = pool.add(found->name);
      // No map is for it, or the map does not know of it.
      const bool stays =
          !found && ((!here->isThere && here->path.empty()) || files.exists(original));
      if (!stays)
        item.locationFolder =
            found && found->folder != &here->path ? pool.share(*found->folder) : lastHere;
      if (filePath(item) != original) item.originalLocation = pool.add(original);
    }
  });
  pool.doneSharing();
}

}  // namespace kestrel
