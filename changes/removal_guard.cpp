#include "changes/removal_guard.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "changes/apply_checks.h"
#include "changes/keepers.h"
#include "changes/trash_guard.h"

namespace kestrel {
namespace {

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

void holdBackListed(Plan& plan, std::span<const Playlist> library) {
  std::vector<const PlannedPlaylist*> planned;
  for (const PlannedPlaylist& playlist : plan.playlists) planned.push_back(&playlist);
  const auto listed = stillListed(library, planned, leavingOf(plan));
  for (PlannedTrack& track : plan.tracks)
    if (const auto found = listed.find(track.track); found != listed.end())
      track.heldBack = listedBy(*found->second);
}

/// Replaces in the playlists only what leaves.
void planPlaylists(Plan& plan, std::span<const Playlist> library,
                   std::span<const ReplaylistChoice> choices,
                   const std::unordered_map<std::uint64_t, std::string>& reasons) {
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

Plan planRemoval(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
                 const FileService& files, std::span<const ReplaylistChoice> choices,
                 const std::unordered_map<std::uint64_t, std::string>& reasons,
                 const RemovalOptions& options) {
  Plan plan;
  plan.kind = RunKind::remove;
  plan.tracks = Tracks(rows, keeperValue, library, files, options).tracks;
  const auto playlists = library.allPlaylists();
  planPlaylists(plan, *playlists, choices, reasons);
  holdBackListed(plan, *playlists);
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

std::unordered_map<std::uint64_t, const Playlist*> stillListed(
    std::span<const Playlist> library, std::span<const PlannedPlaylist* const> planned,
    const std::unordered_set<std::uint64_t>& tracks) {
  std::unordered_map<std::uint64_t, const PlannedPlaylist*> byID;
  for (const PlannedPlaylist* one : planned) byID.try_emplace(one->playlist, one);
  std::unordered_map<std::uint64_t, const Playlist*> listed;
  const auto look = [&](const Playlist& playlist, std::span<const std::uint64_t> entries) {
    for (const std::uint64_t track : entries)
      if (tracks.contains(track)) listed.try_emplace(track, &playlist);
  };
  for (const Playlist& playlist : library) {
    if (!isUserPlaylist(playlist)) continue;
    const auto found = byID.find(playlist.persistentID);
    if (found == byID.end())
      look(playlist, playlist.items);
    else
      look(playlist, newEntries(*found->second, playlist.items));
  }
  return listed;
}

Message listedBy(const Playlist& playlist) {
  return Message::tr("the playlist %1 still lists it").arg(inQuotes(playlist.name));
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
