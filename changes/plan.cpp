#include "changes/plan.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "history/fingerprint.h"

namespace kestrel {
namespace {

/// The library's playlists by persistent ID; of several with one ID the first.
class PlaylistIndex {
 public:
  explicit PlaylistIndex(std::span<const Playlist> library) : repeated_(repeatedIDs(library)) {
    for (const Playlist& playlist : library) byID_.try_emplace(playlist.persistentID, &playlist);
  }
  [[nodiscard]] const Playlist* find(std::uint64_t id) const {
    const auto found = byID_.find(id);
    return found == byID_.end() ? nullptr : found->second;
  }
  [[nodiscard]] bool isRepeated(std::uint64_t id) const {
    return std::binary_search(repeated_.begin(), repeated_.end(), id);
  }
  [[nodiscard]] std::string folderName(const Playlist& playlist) const {
    const Playlist* folder = playlist.parentID ? find(*playlist.parentID) : nullptr;
    return folder ? folder->name : std::string();
  }

 private:
  std::unordered_map<std::uint64_t, const Playlist*> byID_;
  std::vector<std::uint64_t> repeated_;
};

PlannedPlaylist plannedOf(const Playlist& playlist, const PlaylistIndex& index, bool shown) {
  PlannedPlaylist planned;
  planned.playlist = playlist.persistentID;
  planned.name = playlist.name;
  planned.folder = playlist.parentID;
  planned.folderName = index.folderName(playlist);
  planned.shown = shown;
  planned.entryCount = playlist.items.size();
  planned.entries = fingerprintOf(playlist.items);
  return planned;
}

/// What was chosen, in library order; what cannot be changed goes to `leftOut`.
template <typename Choice, typename Visit>
void forEachChosen(std::span<const Playlist> library, const PlaylistIndex& index,
                   std::span<const Choice> choices, std::vector<LeftOut>& leftOut, Visit&& visit) {
  std::unordered_map<std::uint64_t, const Choice*> byID;
  for (const Choice& choice : choices) {
    const Playlist* playlist = index.find(choice.playlist);
    const auto leaveOut = [&](LeftOut::What what, Message reason) {
      leftOut.push_back({what, TextSorter::decToHex(choice.playlist),
                         playlist ? playlist->name : std::string(), std::move(reason)});
    };
    if (!playlist)
      leaveOut(LeftOut::What::playlist, Message::tr("it is no longer in the library"));
    else if (playlist->kind == PlaylistKind::folder)
      leaveOut(LeftOut::What::folder,
               Message::tr("a folder stands for the playlists in it and is never rebuilt itself"));
    else if (!isUserPlaylist(*playlist))
      leaveOut(LeftOut::What::playlist,
               Message::tr("its entries are the music application's to choose"));
    else if (index.isRepeated(choice.playlist))
      leaveOut(LeftOut::What::playlist, Message::tr("another playlist has the same persistent ID"));
    else
      byID.try_emplace(choice.playlist, &choice);
  }
  for (const Playlist& playlist : library)
    if (const auto found = byID.find(playlist.persistentID); found != byID.end()) {
      visit(playlist, *found->second);
      byID.erase(found);
    }
}

/// Tracks that come to stand for more than one of the old list's tracks.
std::vector<CreatedRepeat> createdRepeats(const PlannedPlaylist& planned,
                                          std::span<const std::uint64_t> oldEntries) {
  std::unordered_map<std::uint64_t, std::unordered_set<std::uint64_t>> sources;
  for (const Replacement& change : planned.replacements)
    sources[change.newTrack].insert(change.oldTrack);
  const std::vector<std::uint64_t> entries = newEntries(planned, oldEntries);
  for (std::size_t i = 0; i < entries.size(); ++i)
    if (const auto found = sources.find(entries[i]); found != sources.end())
      found->second.insert(oldEntries[i]);
  std::vector<CreatedRepeat> repeats;
  std::unordered_map<std::uint64_t, std::size_t> numbers;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto found = sources.find(entries[i]);
    if (found == sources.end() || found->second.size() < 2) continue;
    const auto [number, isNew] = numbers.try_emplace(entries[i], repeats.size());
    if (isNew) repeats.push_back({entries[i], {}});
    repeats[number->second].positions.push_back(i + 1);
  }
  return repeats;
}

}  // namespace

bool isUserPlaylist(const Playlist& playlist) noexcept {
  return playlist.kind == PlaylistKind::regular && !playlist.isMaster &&
         playlist.distinguishedKind == 0;
}

std::uint64_t fingerprintOf(std::span<const std::uint64_t> entries) noexcept {
  Fingerprint fingerprint;
  fingerprint.add(entries);
  return fingerprint.value();
}

Message differenceOf(const LibraryIdentity& planned, const LibraryIdentity& now) {
  if (planned.uri != now.uri)
    return Message::tr("it was made from the library %1, and this is %2")
        .arg(addressText(planned.uri))
        .arg(addressText(now.uri));
  if (planned.id != now.id)
    return Message::tr("another library has taken the place of the one it was made from");
  if (planned.version != now.version)
    return Message::tr("the library was changed since it was made");
  return {};
}

void requireSame(const LibraryIdentity& planned, const LibraryIdentity& now) {
  if (const Message difference = differenceOf(planned, now); !difference.empty())
    throw LibraryError(addressText(now.uri), {},
                       Message::tr("the plan cannot be applied: %1").arg(difference),
                       Message::tr("Make the plan again."));
}

Plan planReplaylist(std::span<const Playlist> library, std::span<const ReplaylistChoice> choices,
                    const KeeperReasons& reasons, bool editsInPlace, bool keepsRepeats) {
  Plan plan;
  plan.kind = RunKind::replaylist;
  const PlaylistIndex index(library);
  std::unordered_map<std::string_view, std::size_t> bearers;  // of each name
  if (!editsInPlace)
    for (const Playlist& playlist : library)
      if (isUserPlaylist(playlist)) ++bearers[playlist.name];
  const auto leaveOut = [&](const Playlist& playlist, Message reason) {
    plan.leftOut.push_back({LeftOut::What::playlist, TextSorter::decToHex(playlist.persistentID),
                            playlist.name, std::move(reason)});
  };
  forEachChosen(
      library, index, choices, plan.leftOut,
      [&](const Playlist& playlist, const ReplaylistChoice& choice) {
        PlannedPlaylist planned = plannedOf(playlist, index, choice.shown);
        for (std::size_t i = 0; i < playlist.items.size(); ++i) {
          const auto keeper = choice.keepers.find(playlist.items[i]);
          if (keeper == choice.keepers.end() || keeper->first == keeper->second) continue;
          const auto reason = reasons.find(keeper->first);
          planned.replacements.push_back({i + 1, keeper->first, keeper->second,
                                          reason == reasons.end() ? "" : reason->second});
        }
        if (planned.replacements.empty())
          return leaveOut(playlist, Message::tr("none of its tracks has a keeper to go in"));
        if (!editsInPlace && bearers[playlist.name] > 1)
          return leaveOut(playlist,
                          Message::tr("another playlist has its name, and would be deleted"));
        if (keepsRepeats)
          planned.repeats = createdRepeats(planned, playlist.items);
        else
          dropRepeats(planned, playlist.items);
        plan.playlists.push_back(std::move(planned));
      });
  return plan;
}

Plan planCleanUp(std::span<const Playlist> library, std::span<const CleanUpChoice> choices) {
  Plan plan;
  plan.kind = RunKind::cleanUp;
  const PlaylistIndex index(library);
  forEachChosen(library, index, choices, plan.leftOut,
                [&](const Playlist& playlist, const CleanUpChoice& choice) {
                  PlannedPlaylist planned = plannedOf(playlist, index, choice.shown);
                  if (planned.entries != choice.entries) {
                    plan.leftOut.push_back(
                        {LeftOut::What::playlist, TextSorter::decToHex(choice.playlist),
                         playlist.name, Message::tr("it was changed since it was looked through")});
                    return;
                  }
                  planned.deleteIndexes = choice.deleteIndexes;
                  plan.playlists.push_back(std::move(planned));
                });
  return plan;
}

Plan planAddToPlaylist(std::span<const Playlist> library, std::uint64_t playlist,
                       std::vector<std::uint64_t> tracks, bool keepsRepeats) {
  struct Choice {
    std::uint64_t playlist;
  };
  Plan plan;
  plan.kind = RunKind::addToPlaylist;
  const PlaylistIndex index(library);
  const Choice choice{playlist};
  forEachChosen(
      library, index, std::span(&choice, 1), plan.leftOut,
      [&](const Playlist& found, const Choice&) {
        PlannedPlaylist& planned = plan.playlists.emplace_back(plannedOf(found, index, true));
        planned.additions = std::move(tracks);
        if (keepsRepeats) return;
        std::unordered_set<std::uint64_t> listed(found.items.begin(), found.items.end());
        std::erase_if(planned.additions,
                      [&](std::uint64_t track) { return !listed.insert(track).second; });
        if (!planned.additions.empty()) return;
        plan.leftOut.push_back({LeftOut::What::playlist, TextSorter::decToHex(found.persistentID),
                                found.name, Message::tr("it lists all of them already")});
        plan.playlists.clear();
      });
  return plan;
}

Plan planAddToLibrary(std::span<const std::string> paths) {
  Plan plan;
  plan.kind = RunKind::addToLibrary;
  std::unordered_set<std::string> known;
  for (const std::string& path : paths) {
    PlannedFile file;
    file.path = std::filesystem::absolute(path).lexically_normal().string();
    if (known.insert(file.path).second) plan.files.push_back(std::move(file));
  }
  return plan;
}

std::vector<std::uint64_t> newEntries(const PlannedPlaylist& planned,
                                      std::span<const std::uint64_t> entries) {
  std::vector<std::uint64_t> result(entries.begin(), entries.end());
  for (const Replacement& change : planned.replacements)
    result.at(change.position - 1) = change.newTrack;
  result.insert(result.end(), planned.additions.begin(), planned.additions.end());
  if (planned.deleteIndexes.empty()) return result;
  auto deleted = planned.deleteIndexes.begin();
  std::size_t kept = 0;
  for (std::size_t i = 0; i < result.size(); ++i) {
    if (deleted != planned.deleteIndexes.end() && *deleted == i + 1) {
      ++deleted;
    } else {
      result[kept++] = result[i];
    }
  }
  result.resize(kept);
  return result;
}

void dropRepeats(PlannedPlaylist& planned, std::span<const std::uint64_t> entries) {
  std::unordered_set<std::uint64_t> listed;
  auto replaced = planned.replacements.begin();
  for (std::size_t i = 0; i < entries.size(); ++i)
    if (replaced != planned.replacements.end() && replaced->position == i + 1)
      ++replaced;
    else
      listed.insert(entries[i]);
  std::erase_if(planned.replacements, [&](const Replacement& change) {
    if (listed.insert(change.newTrack).second) return false;
    planned.deleteIndexes.push_back(change.position);
    return true;
  });
  planned.repeats.clear();
}

std::vector<std::uint64_t> repeatedIDs(std::vector<std::uint64_t> ids) {
  std::sort(ids.begin(), ids.end());
  std::vector<std::uint64_t> repeated;
  for (std::size_t i = 1; i < ids.size(); ++i)
    if (ids[i] == ids[i - 1] && (repeated.empty() || repeated.back() != ids[i]))
      repeated.push_back(ids[i]);
  return repeated;
}

std::vector<std::uint64_t> repeatedIDs(std::span<const Playlist> playlists) {
  std::vector<std::uint64_t> ids;
  ids.reserve(playlists.size());
  for (const Playlist& playlist : playlists) ids.push_back(playlist.persistentID);
  return repeatedIDs(std::move(ids));
}

}  // namespace kestrel
