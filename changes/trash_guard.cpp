#include "changes/trash_guard.h"

#include <map>
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

/// The row of a track that is not kept.
struct Candidate {
  const ResultTrack* row = nullptr;
  std::string path;
  std::optional<FileStatus> status;  ///< of the file, links followed
};

/// Tells quickly which items of a library may have a candidate's file.
class Likeness {
 public:
  void add(const Candidate& candidate) {
    const MediaItem& item = candidate.row->record->item();
    names_.insert(folded(item.locationName.view()));
    // The library's size is often that of the file before its tags were edited.
    sizes_.insert(item.fileSize);
    if (candidate.status) sizes_.insert(static_cast<std::int64_t>(candidate.status->size));
  }
  [[nodiscard]] bool mayBe(const MediaItem& item) {
    return (item.fileSize > 0 && sizes_.contains(item.fileSize)) ||
           names_.contains(folded(item.locationName.view()));
  }

 private:
  /// Many volumes take a name in any case. For letters beyond ASCII the size must do.
  const std::string& folded(std::string_view name) {
    folded_.assign(name);
    for (char& c : folded_)
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    return folded_;
  }

  std::unordered_set<std::string> names_;
  std::unordered_set<std::int64_t> sizes_;
  std::string folded_;
};

/// The files of `candidates` that something else has too which is no row.
std::set<FileID> usedElsewhere(std::span<const ResultTrack* const> rows,
                               const std::vector<Candidate>& candidates, const MediaItems& library,
                               const FileService& files) {
  std::set<FileID> wanted, used;
  Likeness likeness;
  for (const Candidate& candidate : candidates)
    if (const auto id = fileID(candidate.status)) {
      wanted.insert(*id);
      likeness.add(candidate);
    }
  if (wanted.empty()) return used;
  std::unordered_map<std::uint64_t, const MediaItem*> found;
  for (const ResultTrack* row : rows)
    found.emplace(row->record->item().persistentID, &row->record->item());
  std::unordered_set<std::string> paths;  // asked already
  const auto look = [&](const MediaItem& item) {
    if (item.locationFolder.isNull() || !likeness.mayBe(item)) return;
    // Two tracks can have one persistent ID, and a track may have moved since the search.
    const auto row = found.find(item.persistentID);
    std::string path = filePath(item);
    if (row != found.end() && filePath(*row->second) == path) return;
    const auto [asked, isNew] = paths.insert(std::move(path));
    if (!isNew) return;
    if (const auto id = fileID(files.status(*asked)); id && wanted.contains(*id)) used.insert(*id);
  };
  library.forEach(look);
  // Records of tracks that have left the library stay, and so do their files.
  if (const auto& store = rows.front()->store)
    for (const TrackRecord& record : store->records()) look(record.item());
  return used;
}

Message reasonToStay(const Candidate& candidate, const Keepers& keepers,
                     const std::set<FileID>& elsewhere) {
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
  if (elsewhere.contains(*fileID(status)))
    return Message::tr("another track of the library has the same file");
  return {};
}

}  // namespace

Plan planTrash(std::span<const ResultTrack* const> rows, bool keeperValue,
               const MediaItems& library, FileService& files) {
  Plan plan;
  plan.kind = RunKind::trash;
  const Keepers keepers(rows, keeperValue, files);
  std::vector<Candidate> candidates;
  for (const ResultTrack* row : rows) {
    if (row->tCheckbox == keeperValue) continue;
    Candidate& candidate = candidates.emplace_back();
    candidate.row = row;
    candidate.path = filePath(row->record->item());
    candidate.status = files.status(candidate.path);
  }
  const std::set<FileID> elsewhere = usedElsewhere(rows, candidates, library, files);

  std::unordered_set<std::string> planned;
  std::vector<std::optional<FileID>> ids;  // of the plan's files
  std::map<FileID, Message> heldBack;
  for (const Candidate& candidate : candidates) {
    Message reason = reasonToStay(candidate, keepers, elsewhere);
    const auto id = fileID(candidate.status);
    // One row is enough to hold a file back that several rows name.
    if (id && !reason.empty()) heldBack.try_emplace(*id, reason);
    if (!candidate.path.empty() && !planned.insert(candidate.path).second) continue;
    const ResultTrack& row = *candidate.row;
    PlannedFile& file = plan.files.emplace_back();
    file.path = candidate.path;
    file.track = row.record->item().persistentID;
    file.name = row.record->item().title.view();
    file.group = row.tGroupID;
    // What goes is a link itself, if it is one.
    if (const auto entry = files.entryStatus(file.path)) {
      file.size = entry->size;
      file.device = entry->device;
      file.inode = entry->inode;
    }
    if (const Keepers::Keeper* keeper = keepers.ofGroup(row.tGroupID))
      file.keeperPath = keeper->path;
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
