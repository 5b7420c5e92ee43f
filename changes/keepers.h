/// What a search keeps: which tracks and files must stay, and by which keeper each group does.
#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "changes/trash_places.h"
#include "library/result_track.h"

namespace kestrel {

class Keepers {
 public:
  /// A row is a keeper when its `tCheckbox` equals `keeperValue`. Asks `files` about each keeper.
  Keepers(std::span<const ResultTrack* const> rows, bool keeperValue, const FileService& files);

  struct Keeper {
    bool present = false;     ///< reachable, or in the cloud
    std::string path;         ///< empty for one in the cloud
    std::uint64_t track = 0;  ///< that has it
  };
  /// nullptr for a group without one.
  [[nodiscard]] const Keeper* ofGroup(std::int32_t group) const {
    const auto found = byGroup_.find(group);
    return found == byGroup_.end() ? nullptr : &found->second;
  }
  [[nodiscard]] bool hasTrack(std::uint64_t track) const { return tracks_.contains(track); }
  [[nodiscard]] bool hasPath(const std::string& path) const { return paths_.contains(path); }
  [[nodiscard]] bool hasFile(FileID id) const { return files_.contains(id); }

 private:
  std::unordered_set<std::uint64_t> tracks_;
  std::unordered_set<std::string> paths_;
  std::set<FileID> files_;
  std::unordered_map<std::int32_t, Keeper> byGroup_;
};

}  // namespace kestrel
