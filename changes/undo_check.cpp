#include <algorithm>
#include <unordered_set>
#include <utility>

#include "changes/library_checks.h"
#include "changes/undo.h"
#include "history/playlist_lineage.h"
#include "musicapp/folder/playlist_file.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// Whether a list is the first entries of one and behind them the last of another, as an
/// application leaves it that changes it entry by entry from the end and is broken off.
bool isPartWay(const std::vector<std::uint64_t>& found, const std::vector<std::uint64_t>& from,
               const std::vector<std::uint64_t>& to) {
  const std::size_t least = std::min(from.size(), to.size()),
                    most = std::max(from.size(), to.size());
  if (found.size() < least || found.size() > most + 1 || found == from || found == to) return false;
  const auto kept = std::mismatch(found.begin(), found.end(), from.begin(), from.end()).first;
  const auto made = std::mismatch(found.rbegin(), found.rend(), to.rbegin(), to.rend()).first;
  return kept >= made.base();
}

/// A playlist file has its ending in its name only while another one differs from it in that alone.
bool isCalled(const Playlist& playlist, const std::string& name) {
  const auto isWithEnding = [](const std::string& longer, const std::string& shorter) {
    return longer.starts_with(shorter) && longer.rfind('.') == shorter.size() &&
           PlaylistFile::isName(longer);
  };
  return playlist.name == name || isWithEnding(playlist.name, name) ||
         isWithEnding(name, playlist.name);
}

/// The library of today, ready to be asked.
class Today {
 public:
  explicit Today(const std::vector<Playlist>& playlists) {
    for (const Playlist& playlist : playlists) byID_.try_emplace(playlist.persistentID, &playlist);
  }
  [[nodiscard]] const Playlist* find(std::optional<std::uint64_t> id) const {
    const auto found = id ? byID_.find(*id) : byID_.end();
    return found == byID_.end() ? nullptr : found->second;
  }
  [[nodiscard]] PlaylistStanding standing(const PlaylistChange& change) const {
    return standingOf(change, byID_);
  }
  /// What a change has made of which the record does not say that it was made: the old playlist
  /// with the new entries, or some of them, or, when that is gone, another one like it.
  [[nodiscard]] const Playlist* findUnrecorded(const PlaylistChange& change) const {
    const auto isIt = [&](const Playlist& playlist) {
      return playlist.kind == PlaylistKind::regular && isCalled(playlist, change.name) &&
             playlist.items == change.newEntries;
    };
    if (const Playlist* old = find(change.oldPlaylist))
      return isIt(*old) || isPartWay(old->items, change.oldEntries, change.newEntries) ? old
                                                                                       : nullptr;
    for (const auto& [id, playlist] : byID_)
      if (isIt(*playlist)) return playlist;
    return nullptr;
  }
  /// How a playlist differs from `entries` under its name in its folder; empty when it does not.
  [[nodiscard]] Message difference(const Playlist& playlist, const PlaylistChange& change,
                                   const std::vector<std::uint64_t>& entries) const {
    if (!isCalled(playlist, change.name))
      return Message::tr("it is now called %1").arg(inQuotes(playlist.name));
    // A folder that the library does not have could not be moved into.
    const bool sameFolder =
        playlist.parentID == change.folder || (!playlist.parentID && !find(change.folder));
    if (!sameFolder) {
      const Playlist* folder = find(playlist.parentID);
      return folder
                 ? Message::tr("it is now in the folder %1").arg(inQuotes(folder->name))
                 : Message::tr("it is no longer in the folder %1").arg(inQuotes(change.folderName));
    }
    const std::vector<std::uint64_t>& items = playlist.items;
    const auto [found, expected] =
        std::mismatch(items.begin(), items.end(), entries.begin(), entries.end());
    if (found == items.end() && expected == entries.end()) return {};
    const auto position = found - items.begin() + 1;
    if (items.size() == entries.size())
      return Message::tr("its entries were changed from position %1 on").arg(position);
    return Message::tr("its entries were changed from position %1 on (%2 instead of %3)")
        .arg(position)
        .arg(items.size())
        .arg(entries.size());
  }

 private:
  PlaylistsByID byID_;
};

/// The undos of which the library knows nothing: what they took back stands there as the run left
/// it, and no later run has done the same again. They died while they wrote, or a backup has come
/// back.
std::unordered_set<std::int64_t> undosWithoutEffect(const RunRecord& run, const Today& today) {
  std::unordered_set<std::int64_t> undos;
  for (const PlaylistChange& change : run.playlists) {
    if (!change.undoneBy || change.lost) continue;
    const PlaylistStanding standing = today.standing(change);
    if (standing.isOfChange && standing.run > 0 && standing.run <= *change.undoneBy &&
        today.difference(*standing.playlist, change, change.newEntries).empty())
      undos.insert(*change.undoneBy);
  }
  return undos;
}

/// `isUndone`: and that is in effect. `brokenOff`: the record may not say all that the run did.
UndoItem inspect(const PlaylistChange& change, const Today& today, bool isUndone, std::int64_t run,
                 bool brokenOff) {
  UndoItem item;
  item.change = change.id;
  item.playlist = change.oldPlaylist;
  item.name = change.name;
  const auto be = [&](UndoState state, const Playlist* playlist = nullptr) {
    item.state = state;
    if (playlist) item.current = playlist->persistentID;
    return item;
  };
  if (isUndone) return be(UndoState::undone);
  const bool done = change.state == ChangeState::done;
  if (!done && !(change.state == ChangeState::planned && brokenOff)) return be(UndoState::notDone);

  PlaylistStanding now = today.standing(change);
  if (!done && !change.lost && change.lineage.back().run < run)
    if (const Playlist* made = today.findUnrecorded(change)) now = {made, run, true};
  if (!now.playlist) return be(UndoState::gone);
  const Playlist& playlist = *now.playlist;
  const auto isStill = [&](const std::vector<std::uint64_t>& entries) {
    return today.difference(playlist, change, entries).empty();
  };
  if (now.isOfChange && isStill(change.newEntries)) return be(UndoState::ready, &playlist);
  // Each entry is as the run left it or as it was before.
  if (now.isOfChange && isStill(playlist.items) &&
      (isPartWay(playlist.items, change.oldEntries, change.newEntries) ||
       isPartWay(playlist.items, change.newEntries, change.oldEntries)))
    return be(UndoState::ready, &playlist);
  if (brokenOff && !done && now.run < run && !isStill(change.oldEntries)) {
    item.difference = today.difference(playlist, change, change.oldEntries);
    return be(UndoState::different, &playlist);
  }
  if (!now.isOfChange || isStill(change.oldEntries))
    return be(done ? UndoState::asBefore : UndoState::notDone, &playlist);
  item.difference = today.difference(playlist, change, change.newEntries);
  return be(UndoState::different, &playlist);
}

/// Goes by size and time: the content is read when a file is put back. Earlier records have no
/// time.
bool mayBe(const FileChange& change, const std::optional<FileStatus>& status) {
  if (!status) return false;
  return change.mark ? mayBe(*change.mark, *status) : status->size == change.size;
}

UndoItem inspect(const FileChange& change, const FileService& files, bool brokenOff) {
  UndoItem item;
  item.change = change.id;
  item.name = change.item.originalPath;
  // A link counts, wherever it leads: in the trash a relative one leads nowhere.
  const auto original = files.entryStatus(change.item.originalPath);
  const auto trashed =
      change.item.trashedPath.empty() ? std::nullopt : files.entryStatus(change.item.trashedPath);
  const bool inTrash = mayBe(change, trashed);
  const bool mayBeMoved =
      change.state == ChangeState::done ||
      (change.state == ChangeState::planned && brokenOff && (inTrash || !original));
  if (change.undoneBy) {
    item.state = UndoState::undone;
  } else if (!mayBeMoved) {
    item.state = UndoState::notDone;
  } else if (inTrash && !original) {
    item.state = UndoState::ready;
  } else if (!inTrash && mayBe(change, original)) {
    item.state = UndoState::asBefore;
  } else {
    item.state = UndoState::different;
    item.difference = original  ? Message::tr("another file has taken its place")
                      : trashed ? Message::tr("another file lies in its place in the trash")
                      : change.item.trashedPath.empty()
                          ? Message::tr("it may be in the trash; the run broke off while moving it")
                          : Message::tr("it is no longer in the trash");
  }
  return item;
}

/// Of an undo, which has brought back what the others had taken away.
void turnRound(UndoItem& item) {
  if (item.state == UndoState::asBefore)
    item.state = UndoState::ready;
  else if (item.state == UndoState::ready)
    item.state = UndoState::asBefore;
}

/// Of a run that put files back, or took the tracks of added ones out again: what it did was the
/// other way round.
UndoItem inspectUndone(const FileChange& change, UndoItem item, const AddedTracks& tracks) {
  const bool wasAdded = change.item.trashedPath.empty();
  if (change.state != ChangeState::done) {
    item.state = UndoState::notDone;
  } else if (wasAdded) {
    item.state = tracks.isThere(change) ? UndoState::asBefore : UndoState::ready;
  } else if (item.state == UndoState::different) {
    item.difference = Message::tr("it is no longer there");
  } else {
    turnRound(item);
  }
  return item;
}

UndoItem inspect(const FileChange& change, const AddedTracks& today) {
  UndoItem item;
  item.change = change.id;
  item.name = change.item.originalPath;
  if (change.undoneBy) {
    item.state = UndoState::undone;
  } else if (change.state != ChangeState::done) {
    // Of a run that broke off, the tracks are written down before the library is.
    item.state = UndoState::notDone;
  } else if (!today.isThere(change)) {
    item.state = UndoState::asBefore;
  } else {
    item.difference = today.difference(change);
    item.state = item.difference.empty() ? UndoState::ready : UndoState::different;
  }
  return item;
}

UndoItem inspect(const ValueChange& change, const std::optional<TrackValues>& now, bool brokenOff) {
  UndoItem item;
  item.change = change.id;
  item.name = change.name;
  const bool done = change.state == ChangeState::done;
  if (change.undoneBy) {
    item.state = UndoState::undone;
  } else if (!done && !(change.state == ChangeState::planned && brokenOff)) {
    item.state = UndoState::notDone;
  } else if (change.leaves) {
    // What the application has of it by itself is not written over.
    const bool isLost = !now || !hasAny(change.which, *now);
    item.state = isLost ? UndoState::ready : done ? UndoState::asBefore : UndoState::notDone;
  } else if (!now) {
    item.state = UndoState::different;
    item.difference = Message::tr("it is no longer in the library");
  } else if (isSame(change.which, change.before, *now)) {
    item.state = done ? UndoState::asBefore : UndoState::notDone;
  } else if (valuesBefore(change, *now)) {
    item.state = UndoState::ready;
  } else {
    item.state = UndoState::different;
    item.difference = Message::tr("its plays, rating, date added or comments were changed since");
  }
  return item;
}

Message stateText(UndoState state) {
  switch (state) {
    case UndoState::ready:
      return Message::tr("as the run left it");
    case UndoState::gone:
      return Message::tr("gone from the library since");
    case UndoState::notDone:
      return Message::tr("not changed by the run");
    case UndoState::undone:
      return Message::tr("undone");
    case UndoState::asBefore:
      return Message::tr("as it was before the run");
    case UndoState::different:
      return Message::tr("changed since");
  }
  return {};
}

}  // namespace

bool UndoCheck::differs() const noexcept {
  const auto isDifferent = [](const UndoItem& item) { return item.state == UndoState::different; };
  const auto all = lists();
  return std::any_of(all.begin(), all.end(), [&](const auto* items) {
    return std::any_of(items->begin(), items->end(), isDifferent);
  });
}

std::vector<Message> UndoCheck::messages() const {
  std::vector<Message> lines;
  for (const auto* items : lists())
    for (const UndoItem& item : *items) {
      Message state = stateText(item.state);
      if (!item.difference.empty())
        state = Message::tr("%1: %2").arg(std::move(state)).arg(item.difference);
      lines.push_back(Message::tr("%1: %2.").arg(inQuotes(item.name)).arg(std::move(state)));
    }
  return lines;
}

std::optional<TrackValues> valuesBefore(const ValueChange& change, const TrackValues& now) {
  if (isSame(change.which, change.after, now)) return change.before;
  TrackValues values = change.before;
  values.stored.clear();
  for (const TrackValue value : change.which.list()) {
    if (isSame(value, now, change.after) || isSame(value, now, change.before)) continue;
    const std::int64_t since = now.plays - change.after.plays;
    if (value != TrackValue::plays || since < 0) return std::nullopt;
    values.plays += since;
    if (!(now.lastPlayed == change.after.lastPlayed)) values.lastPlayed = now.lastPlayed;
  }
  return values;
}

UndoCheck inspectRun(const RunRecord& run, MediaLibrary& library, FileService& files,
                     MusicApplication* application) {
  UndoCheck check;
  check.run = run.summary;
  const bool isUndo = run.summary.kind == RunKind::undo;
  if (!run.values.empty()) {
    std::vector<std::uint64_t> ids;
    for (const ValueChange& change : run.values) ids.push_back(change.track);
    const auto now = application ? application->valuesOf(ids) : valuesIn(library, ids);
    for (std::size_t i = 0; i < ids.size(); ++i) {
      UndoItem& item = check.values.emplace_back(
          inspect(run.values[i], now[i], run.summary.state == RunState::brokenOff));
      if (isUndo && run.values[i].leaves) turnRound(item);  // it has given the values back
    }
  }
  const auto playlists = library.allPlaylists();
  const Today today(*playlists);
  const bool brokenOff = run.summary.state == RunState::brokenOff;
  const auto withoutEffect = undosWithoutEffect(run, today);
  const std::string& uri = run.summary.libraryUri;
  const bool hadOtherLists = uri != plainUri(uri) && uri != library.identity().uri;
  for (const PlaylistChange& change : run.playlists) {
    const bool isUndone = change.undoneBy && !withoutEffect.contains(*change.undoneBy);
    UndoItem& item =
        check.playlists.emplace_back(inspect(change, today, isUndone, run.summary.id, brokenOff));
    if (item.state != UndoState::gone || !hadOtherLists) continue;
    item.state = UndoState::different;
    item.difference = Message::tr("it may be one of those that only %1 has")
                          .arg(addressText(run.summary.libraryUri));
  }
  // Tracks that have left the library cannot be put back, but for those that the run removed.
  std::unordered_set<std::uint64_t> missing;
  for (const PlaylistChange& change : run.playlists)
    missing.insert(change.oldEntries.begin(), change.oldEntries.end());
  for (const TrackChange& change : run.tracks) missing.insert(change.track);
  library.allMediaItems()->forEach(
      [&](const MediaItem& item) { missing.erase(item.persistentID); });
  if (run.summary.kind == RunKind::remove && run.tracks.empty())  // they come back with their files
    for (const FileChange& change : run.files) missing.erase(change.track);
  for (const TrackChange& change : run.tracks) {
    UndoItem& item = check.tracks.emplace_back();
    item.change = change.id;
    item.name = change.name;
    const bool isMissing = missing.erase(change.track) > 0;
    if (change.undoneBy)
      item.state = UndoState::undone;
    else if (change.state == ChangeState::done)
      item.state = isMissing != isUndo ? UndoState::ready : UndoState::asBefore;
  }
  for (std::size_t i = 0; i < run.playlists.size() && !missing.empty(); ++i) {
    UndoItem& item = check.playlists[i];
    if (item.state != UndoState::ready && item.state != UndoState::gone) continue;
    const auto& entries = run.playlists[i].oldEntries;
    const auto lacking = std::count_if(entries.begin(), entries.end(), [&](std::uint64_t track) {
      return missing.contains(track);
    });
    if (lacking == 0) continue;
    item.state = UndoState::different;
    item.difference =
        Message::tr("tracks of %Ln of its old entries are no longer in the library",
                    "tracks of %Ln of its old entries is no longer in the library", lacking);
  }
  if (run.summary.kind == RunKind::addToLibrary) {
    const AddedTracks tracks(run.files, library);
    for (const FileChange& change : run.files) check.files.push_back(inspect(change, tracks));
    return check;
  }
  const AddedTracks tracks(isUndo ? std::span(run.files) : std::span<const FileChange>(), library);
  for (const FileChange& change : run.files) {
    UndoItem item = inspect(change, files, brokenOff);
    check.files.push_back(isUndo ? inspectUndone(change, std::move(item), tracks)
                                 : std::move(item));
  }
  return check;
}

namespace {

/// Corrects what the record says of a change; false where that is right, or not known.
template <typename Change>
bool settle(Change& change, const UndoItem& item) {
  const bool isDone = change.state == ChangeState::done;
  if (change.undoneBy || (!isDone && change.state != ChangeState::planned)) return false;
  if (isDone && (item.state == UndoState::asBefore || item.state == UndoState::notDone))
    change.state = ChangeState::failed;
  else if (!isDone && item.state == UndoState::ready)
    change.state = ChangeState::done;
  else if (!isDone && item.state == UndoState::notDone)
    change.state = ChangeState::skipped;
  else
    return false;
  return true;
}

}  // namespace

void settleBrokenRuns(History& history, MusicApplication& application, FileService& files) {
  try {
    const LibraryIdentity identity = application.library().identity();
    for (const RunSummary& run : history.runs(&identity)) {
      if (run.state != RunState::brokenOff || run.ended || run.kind == RunKind::undo) continue;
      auto record = history.run(run.id);
      if (!record) continue;
      const UndoCheck check = inspectRun(*record, application.library(), files, &application);
      const auto settleAll = [&](auto& changes, const std::vector<UndoItem>& items,
                                 const auto& isMade) {
        std::remove_reference_t<decltype(changes)> settled;
        for (std::size_t i = 0; i < changes.size(); ++i)
          if (settle(changes[i], items[i])) {
            isMade(changes[i], items[i]);
            settled.push_back(changes[i]);
          }
        if (!settled.empty()) history.record(settled);
      };
      const auto nothing = [](const auto&, const auto&) {};
      settleAll(record->playlists, check.playlists, [](PlaylistChange& change, const auto& item) {
        if (change.state == ChangeState::done) change.newPlaylist = item.current;
      });
      settleAll(record->tracks, check.tracks, nothing);
      settleAll(record->values, check.values, nothing);
      if (run.kind != RunKind::addToLibrary) settleAll(record->files, check.files, nothing);
    }
  } catch (const std::exception&) {
    // Whoever goes on to use the history, or the library, is told.
  }
}

}  // namespace kestrel
