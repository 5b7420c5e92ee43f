#include "replaylist/trash_guard.h"

#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "platform/files.h"

namespace kestrel {
namespace {

using FileID = std::pair<std::uint64_t, std::uint64_t>;

std::optional<FileID> fileID(const std::optional<FileStatus>& status) {
  return status ? std::optional(FileID(status->device, status->inode)) : std::nullopt;
}

/// What must stay, and by which keeper each group does.
class Keepers {
 public:
  Keepers(std::span<const ResultTrack* const> rows, bool keeperValue, const FileService& files) {
    for (const ResultTrack* row : rows) {
      if (row->tCheckbox != keeperValue) continue;
      const MediaItem& item = row->record->item();
      tracks_.insert(item.persistentID);
      // The file as the library names it, be it reachable or not.
      std::string path = filePath(item);
      if (const auto id = fileID(files.status(path))) files_.insert(*id);
      // A keeper with a file, or in the cloud, is better than one whose file is missing.
      Keeper& keeper = byGroup_[row->tGroupID];
      if (row->record->availability() != FileAvailability::missing) {
        keeper.present = true;
        if (row->record->availability() == FileAvailability::reachable) keeper.path = path;
      }
      paths_.insert(std::move(path));
    }
  }

  struct Keeper {
    bool present = false;
    std::string path;  ///< empty for one in the cloud
  };
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

/// Paths of tracks that the search did not find, as far as they are paths of `candidates`.
std::unordered_set<std::string> usedElsewhere(std::span<const ResultTrack* const> rows,
                                              const std::unordered_set<std::string>& candidates) {
  std::unordered_set<std::string> used;
  if (rows.empty() || !rows.front()->store) return used;
  std::unordered_set<std::uint64_t> found;
  for (const ResultTrack* row : rows) found.insert(row->record->item().persistentID);
  for (const TrackRecord& record : rows.front()->store->records())
    if (!found.contains(record.item().persistentID))
      if (std::string path = filePath(record.item()); candidates.contains(path))
        used.insert(std::move(path));
  return used;
}

Message reasonToStay(const ResultTrack& row, const Keepers& keepers, const std::string& path,
                     const std::optional<FileStatus>& status,
                     const std::unordered_set<std::string>& elsewhere) {
  const Keepers::Keeper* keeper = keepers.ofGroup(row.tGroupID);
  if (row.record->availability() == FileAvailability::cloud)
    return Message::tr("it is in the cloud");
  if (path.empty() || !status) return Message::tr("its file is missing");
  if (status->kind != FileStatus::Kind::file) return Message::tr("it is no regular file");
  if (!keeper) return Message::tr("its group has no keeper");
  if (!keeper->present) return Message::tr("the file of its group's keeper is missing");
  if (keepers.hasTrack(row.record->item().persistentID))
    return Message::tr("the track is itself a keeper");
  if (keepers.hasPath(path)) return Message::tr("a keeper has the same file");
  if (keepers.hasFile({status->device, status->inode}))
    return Message::tr("a keeper has the same file under another path");
  if (elsewhere.contains(path))
    return Message::tr("another track of the library has the same file");
  return {};
}

}  // namespace

Plan planTrash(std::span<const ResultTrack* const> rows, bool keeperValue, FileService& files) {
  Plan plan;
  plan.kind = RunKind::trash;
  const Keepers keepers(rows, keeperValue, files);
  std::unordered_set<std::string> candidates;
  for (const ResultTrack* row : rows)
    if (row->tCheckbox != keeperValue) candidates.insert(filePath(row->record->item()));
  const std::unordered_set<std::string> elsewhere = usedElsewhere(rows, candidates);

  std::unordered_map<std::string, std::size_t> planned;
  for (const ResultTrack* row : rows) {
    if (row->tCheckbox == keeperValue) continue;
    const MediaItem& item = row->record->item();
    PlannedFile file;
    file.path = filePath(item);
    file.track = item.persistentID;
    file.name = item.title.view();
    file.group = row->tGroupID;
    const auto status = files.status(file.path);
    if (status) {
      file.size = status->size;
      file.device = status->device;
      file.inode = status->inode;
    }
    if (const Keepers::Keeper* keeper = keepers.ofGroup(row->tGroupID))
      file.keeperPath = keeper->path;
    file.heldBack = reasonToStay(*row, keepers, file.path, status, elsewhere);
    if (!file.path.empty()) {
      // One row is enough to hold a file back that several rows name.
      const auto [earlier, isNew] = planned.try_emplace(file.path, plan.files.size());
      if (!isNew) {
        Message& heldBack = plan.files[earlier->second].heldBack;
        if (heldBack.empty()) heldBack = file.heldBack;
        continue;
      }
    }
    plan.files.push_back(std::move(file));
  }
  return plan;
}

std::uint64_t bytesToFree(const Plan& plan) {
  std::set<FileID> counted;
  std::uint64_t bytes = 0;
  for (const PlannedFile& file : plan.files)
    if (file.heldBack.empty() && counted.emplace(file.device, file.inode).second)
      bytes += file.size;
  return bytes;
}

}  // namespace kestrel
