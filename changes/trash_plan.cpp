#include "changes/trash_plan.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "changes/library_checks.h"

namespace kestrel {
namespace {

/// What a search keeps: which tracks and files must stay, and by which keeper each group does.
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

Keepers::Keepers(std::span<const ResultTrack* const> rows, bool keeperValue,
                 const FileService& files) {
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
      if (keeper.path.empty() || keeper.path == path) keeper.track = item.persistentID;
    }
    paths_.insert(std::move(path));
  }
}

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

/// Why a copy stays for what it sounds like; empty when it sounds as what is kept.
Message reasonOfSound(const Likeness& sound) {
  switch (sound.kind) {
    case Likeness::Kind::sameAudio:
    case Likeness::Kind::same:
      return {};
    case Likeness::Kind::sameInPart:
      return explainPart(sound);
    case Likeness::Kind::different:
      return Message::tr("it sounds different from what is kept: only %1 % alike")
          .arg(sound.percent);
    case Likeness::Kind::unknown:
      break;
  }
  const Message why = reasonOf(sound);
  return why.empty() ? Message::tr("it is not known whether it sounds the same")
                     : Message::tr("it is not known whether it sounds the same: %1").arg(why);
}

Message reasonToStay(const Candidate& candidate, const Keepers& keepers, const FilesInUse& inUse) {
  const auto& [row, path, status] = candidate;
  const Keepers::Keeper* keeper = keepers.ofGroup(row->tGroupID);
  if (row->record->availability() == FileAvailability::cloud)
    return Message::tr("it is in the cloud");
  if (path.empty() && row->record->availability() == FileAvailability::reachable)
    return Message::tr(
        "the folder of the music is not known: write ?music=/FOLDER behind the address");
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

/// What speaks against a track's leaving for all that its own rows say.
class Tracks {
 public:
  Tracks(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
         const FileService& files, const RemovalOptions& options)
      : keepers_(rows, keeperValue, files), shared_(library), audio_(files), options_(options) {
    std::unordered_map<std::uint64_t, std::size_t> known;
    for (const ResultTrack* row : rows) {
      if (row->tCheckbox == keeperValue) continue;
      const MediaItem& item = row->record->item();
      const auto [at, isNew] = known.try_emplace(item.persistentID, tracks.size());
      if (isNew) {
        PlannedTrack& track = tracks.emplace_back();
        track.track = item.persistentID;
        track.name = item.title.view();
        track.group = row->tGroupID;
      }
      PlannedTrack& track = tracks[at->second];
      if (const auto* keeper = keepers_.ofGroup(row->tGroupID); keeper && !track.keeper)
        track.keeper = keeper->track;
      if (track.heldBack.empty()) track.heldBack = reasonToStay(*row);
    }
  }

  std::vector<PlannedTrack> tracks;

 private:
  Message reasonToStay(const ResultTrack& row) {
    const std::uint64_t track = row.record->item().persistentID;
    const Keepers::Keeper* keeper = keepers_.ofGroup(row.tGroupID);
    if (!keeper) return Message::tr("its group has no keeper");
    if (keepers_.hasTrack(track)) return Message::tr("the track is itself a keeper");
    if (!keeper->present) return Message::tr("the file of its group's keeper is missing");
    if (shared_.firstAmong({&track, 1}))
      return Message::tr("another track has the same persistent ID");
    if (options_.guard.onlySameSound)
      if (Message reason = reasonOfSound(row.sound); !reason.empty()) return reason;
    if (!keeper->path.empty()) return audio_.faultOf(keeper->path);
    const bool hasFile = row.record->availability() == FileAvailability::reachable;
    return hasFile && options_.files && !options_.guard.cloudReplaces
               ? Message::tr("the copy that is kept is only in the cloud")
               : Message{};
  }

  const Keepers keepers_;
  const SharedIDs shared_;
  AudioFiles audio_;
  const RemovalOptions& options_;
};

std::unordered_set<std::uint64_t> leavingOf(const Plan& plan) {
  std::unordered_set<std::uint64_t> leaving;
  for (const PlannedTrack& track : plan.tracks)
    if (track.heldBack.empty()) leaving.insert(track.track);
  return leaving;
}

/// Replaces in the playlists only what leaves.
void planPlaylists(Plan& plan, std::span<const Playlist> library,
                   std::span<const ReplaylistChoice> choices, const KeeperReasons& reasons) {
  const auto leaving = leavingOf(plan);
  std::vector<ReplaylistChoice> narrowed;
  for (const ReplaylistChoice& choice : choices) {
    ReplaylistChoice& one = narrowed.emplace_back(choice.playlist, choice.shown);
    for (const auto& [track, keeper] : choice.keepers)
      if (leaving.contains(track)) one.keepers.emplace(track, keeper);
    if (one.keepers.empty()) narrowed.pop_back();
  }
  Plan replaylist = planReplaylist(library, narrowed, reasons);
  plan.playlists = std::move(replaylist.playlists);
  plan.leftOut = std::move(replaylist.leftOut);
}

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
    if (reason.empty() && options.onlySameSound) reason = reasonOfSound(row.sound);
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

Plan planRemoval(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
                 const FileService& files, std::span<const ReplaylistChoice> choices,
                 const KeeperReasons& reasons, const RemovalOptions& options) {
  Plan plan;
  plan.kind = RunKind::remove;
  plan.tracks = Tracks(rows, keeperValue, library, files, options).tracks;
  const auto playlists = library.allPlaylists();
  planPlaylists(plan, *playlists, choices, reasons);
  std::vector<const PlannedPlaylist*> changed;
  for (const PlannedPlaylist& playlist : plan.playlists) changed.push_back(&playlist);
  holdBackListed(plan, *playlists, changed);
  planPlaylists(plan, *playlists, choices, reasons);
  if (options.dropRepeats) {
    std::unordered_map<std::uint64_t, const Playlist*> byID;
    for (const Playlist& playlist : *playlists) byID.try_emplace(playlist.persistentID, &playlist);
    for (PlannedPlaylist& planned : plan.playlists)
      dropRepeats(planned, byID.at(planned.playlist)->items);
  }
  if (!options.files) return plan;
  plan.files = std::move(planTrash(rows, keeperValue, library, files, options.guard).files);
  holdBackFilesInUse(plan, files);
  return plan;
}

void holdBackUnsafe(Plan& plan, MediaLibrary& library, const FileService& files,
                    const GuardOptions& options) {
  struct Known {
    bool isThere = false, isRemote = false;
    std::string path;  ///< of a keeper
  };
  std::unordered_map<std::uint64_t, Known> known;
  for (const PlannedTrack& track : plan.tracks) {
    known.try_emplace(track.track);
    if (track.keeper) known.try_emplace(*track.keeper);
  }
  library.allMediaItems()->forEach([&](const MediaItem& item) {
    if (const auto found = known.find(item.persistentID); found != known.end())
      found->second = {true, item.locationType == LocationType::remote, filePath(item)};
  });
  std::unordered_set<std::uint64_t> withFile;
  for (const PlannedFile& file : plan.files)
    if (file.heldBack.empty()) withFile.insert(file.track);
  const auto leaving = leavingOf(plan);
  const SharedIDs shared(library);
  AudioFiles audio(files);
  const auto reasonToStay = [&](const PlannedTrack& track) -> Message {
    if (!known[track.track].isThere) return Message::tr("it is no longer in the library");
    if (shared.firstAmong({&track.track, 1}))
      return Message::tr("another track has the same persistent ID");
    if (!track.keeper || !known[*track.keeper].isThere || leaving.contains(*track.keeper) ||
        shared.firstAmong({&*track.keeper, 1}))
      return Message::tr("what is kept in its place is not in the library");
    const Known& keeper = known[*track.keeper];
    if (!keeper.isRemote) return audio.faultOf(keeper.path);
    return withFile.contains(track.track) && !options.cloudReplaces
               ? Message::tr("the copy that is kept is only in the cloud")
               : Message{};
  };
  std::unordered_set<std::uint64_t> staying;
  for (PlannedTrack& track : plan.tracks) {
    if (track.heldBack.empty()) track.heldBack = reasonToStay(track);
    if (!track.heldBack.empty()) staying.insert(track.track);
  }
  if (staying.empty()) return;
  const auto playlists = library.allPlaylists();
  std::unordered_map<std::uint64_t, const Playlist*> byID;
  for (const Playlist& playlist : *playlists) byID.try_emplace(playlist.persistentID, &playlist);
  for (PlannedPlaylist& planned : plan.playlists) {
    std::erase_if(planned.replacements,
                  [&](const Replacement& change) { return staying.contains(change.oldTrack); });
    const auto found = byID.find(planned.playlist);
    std::erase_if(planned.deleteIndexes, [&](std::uint64_t position) {
      return found != byID.end() && position <= found->second->items.size() &&
             staying.contains(found->second->items[position - 1]);
    });
  }
}

void holdBackListed(Plan& plan, std::span<const Playlist> library,
                    std::span<const PlannedPlaylist* const> changed) {
  std::unordered_map<std::uint64_t, const PlannedPlaylist*> byID;
  for (const PlannedPlaylist* one : changed) byID.try_emplace(one->playlist, one);
  const auto leaving = leavingOf(plan);
  std::unordered_map<std::uint64_t, const Playlist*> listed;
  const auto look = [&](const Playlist& playlist, std::span<const std::uint64_t> entries) {
    for (const std::uint64_t track : entries)
      if (leaving.contains(track)) listed.try_emplace(track, &playlist);
  };
  for (const Playlist& playlist : library) {
    if (!isUserPlaylist(playlist)) continue;
    const auto found = byID.find(playlist.persistentID);
    if (found == byID.end())
      look(playlist, playlist.items);
    else
      look(playlist, newEntries(*found->second, playlist.items));
  }
  for (PlannedTrack& track : plan.tracks)
    if (const auto found = listed.find(track.track); found != listed.end())
      track.heldBack =
          Message::tr("the playlist %1 still lists it").arg(inQuotes(found->second->name));
}

void holdBackFilesInUse(Plan& plan, const FileService& files) {
  const auto leaving = leavingOf(plan);
  std::set<FileID> inUse;
  const auto stays = [&](std::uint64_t track) { return !leaving.contains(track); };
  for (PlannedFile& file : plan.files) {
    if (!stays(file.track) && std::none_of(file.otherTracks.begin(), file.otherTracks.end(), stays))
      continue;
    if (file.heldBack.empty()) file.heldBack = Message::tr("its track stays in the library");
    if (const auto id = fileID(files.status(file.path))) inUse.insert(*id);
  }
  for (PlannedFile& file : plan.files)
    if (const auto id = fileID(files.status(file.path));
        id && file.heldBack.empty() && inUse.contains(*id))
      file.heldBack = Message::tr("another track of the library has the same file");
}

}  // namespace kestrel
