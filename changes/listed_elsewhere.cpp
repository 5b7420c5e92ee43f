#include "changes/listed_elsewhere.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "changes/plan.h"

namespace kestrel {
namespace {

/// Folders with links followed, each asked for once.
class RealFolders {
 public:
  const std::string& of(std::string_view folder) {
    const auto [known, isNew] = real_.try_emplace(std::string(folder));
    if (isNew) {
      std::error_code error;
      known->second = std::filesystem::weakly_canonical(known->first, error).string();
      if (error) known->second = known->first;
    }
    return known->second;
  }

 private:
  std::unordered_map<std::string, std::string> real_;
};

}  // namespace

std::vector<ListedElsewhere> listedElsewhere(std::span<const OtherLibrary> libraries,
                                             std::span<const std::string> files) {
  RealFolders folders;
  std::unordered_set<std::string> names, paths;
  for (const std::string& file : files) {
    const std::size_t slash = file.rfind('/');
    if (slash == std::string::npos) continue;
    std::string name = file.substr(slash);
    paths.insert(folders.of(std::string_view(file).substr(0, slash)) + name);
    names.insert(std::move(name));
  }
  std::vector<ListedElsewhere> listed;
  if (paths.empty()) return listed;
  for (const OtherLibrary& library : libraries) {
    std::unordered_set<std::uint64_t> going;
    std::string name;
    library.items->forEach([&](const MediaItem& item) {
      if (item.locationFolder.isNull()) return;
      name.assign(1, '/').append(item.locationName.view());
      if (names.contains(name) && paths.contains(folders.of(item.locationFolder.view()) + name))
        going.insert(item.persistentID);
    });
    if (going.empty()) continue;
    for (const Playlist& playlist : *library.playlists) {
      if (!isUserPlaylist(playlist)) continue;
      const auto entries =
          std::count_if(playlist.items.begin(), playlist.items.end(),
                        [&](std::uint64_t track) { return going.contains(track); });
      if (entries > 0)
        listed.push_back({library.address, playlist.name, static_cast<std::size_t>(entries)});
    }
  }
  return listed;
}

}  // namespace kestrel
