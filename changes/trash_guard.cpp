#include "changes/trash_guard.h"

#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/keepers.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// The row of a track that is not kept.
struct Candidate {
  const ResultTrack* row = nullptr;
  std::string path;
  std::optional<FileStatus> status;  ///< of the file, links followed
};

/// Finds out which files of `candidates` something else has too which is no row.
void lookElsewhere(std::span<const ResultTrack* const> rows,
                   const std::vector<Candidate>& candidates, const MediaItems& library,
                   FilesInUse& inUse) {
  for (const auto& [row, path, status] : candidates)
    if (status) {
      const MediaItem& item = row->record->item();
      inUse.want(item.locationName.view(), item.fileSize, *status);
    }
  std::unordered_map<std::uint64_t, const MediaItem*> found;
  for (const ResultTrack* row : rows)
    found.emplace(row->record->item().persistentID, &row->record->item());
  const auto look = [&](const MediaItem& item) {
    inUse.look(item, [&](const std::string& path) {
      // Two tracks can have one persistent ID, and a track may have moved since the search.
      const auto row = found.find(item.persistentID);
      return row != found.end() && filePath(*row->second) == path;
    });
  };
  library.forEach(look);
  // Records of tracks that have left the library stay, and so do their files.
  if (const auto& store = rows.front()->store)
    for (const TrackRecord& record : store->records()) look(record.item());
}

Message reasonToStay(const Candidate& candidate, const Keepers& keepers, const FilesInUse& inUse) {
  const auto& [row, path, status] = candidate;
  const Keepers::Keeper* keeper = keepers.ofGroup(row->tGroupID);
  if (row->record->availability() == FileAvailability::cloud)
    return Message::tr("it is in the cloud");
  if (path.empty() || !status) return Message::tr("its file is missing");
  if (status->kind != FileStatus::Kind::file) return Message::tr("it is no regular file");
  if (!keeper) return Message::tr("its group has no keeper");
  if (!keeper->present) return Message::tr("the file of its group's keeper is missing");
  if (keepers.hasTrack(row->record->item().persistentID))
    return Message::tr("the track is itself a keeper");
  if (keepers.hasPath(path)) return Message::tr("a keeper has the same file");
  if (keepers.hasFile(*fileID(status)))
    return Message::tr("a keeper has the same file under another path");
  if (inUse.has(*fileID(status)))
    return Message::tr("another track of the library has the same file");
  return {};
}

/// The rows that a plan is for: a file goes by its path, so that choosing one of two rows which
/// name it chooses it.
class Chosen {
 public:
  Chosen(std::optional<std::span<const ResultTrack* const>> only, bool keeperValue)
      : isAll_(!only) {
    if (isAll_) return;
    for (const ResultTrack* row : *only) {
      if (row->tCheckbox == keeperValue) continue;
      tracks_.insert(row->record->item().persistentID);
      if (std::string path = filePath(row->record->item()); !path.empty())
        paths_.insert(std::move(path));
    }
  }
  [[nodiscard]] bool has(std::uint64_t track, const std::string& path) const {
    return isAll_ || tracks_.contains(track) || paths_.contains(path);
  }

 private:
  bool isAll_;
  std::unordered_set<std::uint64_t> tracks_;
  std::unordered_set<std::string> paths_;
};

}  // namespace

Plan planTrash(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
               const FileService& files, const GuardOptions& options,
               std::optional<std::span<const ResultTrack* const>> only) {
  Plan plan;
  plan.kind = RunKind::trash;
  const Keepers keepers(rows, keeperValue, files);
  std::vector<Candidate> candidates;
  std::unordered_set<std::uint64_t> leaving;
  for (const ResultTrack* row : rows) {
    if (row->tCheckbox == keeperValue) continue;
    Candidate& candidate = candidates.emplace_back();
    candidate.row = row;
    candidate.path = filePath(row->record->item());
    candidate.status = files.status(candidate.path);
    if (const auto track = row->record->item().persistentID; !keepers.hasTrack(track))
      leaving.insert(track);
  }
  if (candidates.empty()) return plan;
  FilesInUse inUse(files);
  lookElsewhere(rows, candidates, *library.allMediaItems(), inUse);
  TrashPlaces places(library, leaving, files);
  AudioFiles audio(files);
  const Chosen chosen(only, keeperValue);

  std::unordered_map<std::string, std::size_t> planned;
  std::vector<std::optional<FileID>> ids;  // of the plan's files
  std::map<FileID, Message> heldBack;
  for (const Candidate& candidate : candidates) {
    const ResultTrack& row = *candidate.row;
    const std::uint64_t track = row.record->item().persistentID;
    const Keepers::Keeper* keeper = keepers.ofGroup(row.tGroupID);
    const bool isChosen = chosen.has(track, candidate.path);
    const auto id = fileID(candidate.status);
    Message reason = reasonToStay(candidate, keepers, inUse);
    // Opening files takes its time: only of what would go otherwise.
    if (reason.empty() && isChosen)
      reason = reasonOfGuard(candidate.path, *id, keeper->path, places, audio, options);
    // One row is enough to hold a file back that several rows name.
    if (id && !reason.empty()) heldBack.try_emplace(*id, reason);
    if (!isChosen) continue;
    if (!candidate.path.empty()) {
      const auto [at, isNew] = planned.try_emplace(candidate.path, plan.files.size());
      if (!isNew) {
        PlannedFile& same = plan.files[at->second];
        if (same.track != track) same.otherTracks.push_back(track);
        continue;
      }
    }
    PlannedFile& file = plan.files.emplace_back();
    file.path = candidate.path;
    file.track = track;
    file.name = row.record->item().title.view();
    file.group = row.tGroupID;
    // What goes is a link itself, if it is one.
    if (const auto entry = files.entryStatus(file.path)) {
      file.size = entry->size;
      file.device = entry->device;
      file.inode = entry->inode;
    }
    if (keeper) {
      file.keeperPath = keeper->path;
      if (keeper->present) file.keeper = keeper->track;
    }
    file.heldBack = std::move(reason);
    ids.push_back(id);
  }
  for (std::size_t i = 0; i < plan.files.size(); ++i)
    if (const auto held = ids[i] ? heldBack.find(*ids[i]) : heldBack.end();
        held != heldBack.end() && plan.files[i].heldBack.empty())
      plan.files[i].heldBack = held->second;
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
