#include "musicapp/document/document_commands.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/document/document_session.h"
#include "musicapp/document/document_tracks.h"
#include "musicapp/document/playlist_import.h"
#include "musicapp/media_file.h"
#include "musicapp/revealer.h"
#include "platform/clock.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::size_t;
using Result = CommandResult;
using Failure = CommandFailure;

bool belongsToApplication(const Playlist& playlist) {
  return playlist.isMaster || playlist.distinguishedKind != 0;
}

[[noreturn]] void failWithoutPlaylist(std::uint64_t id) {
  throw CommandError(
      Failure::noSuchObject,
      Message::tr("There is no playlist with the persistent ID %1").arg(TextSorter::decToHex(id)));
}
[[noreturn]] void failWithoutTrack(std::uint64_t id) {
  throw CommandError(
      Failure::noSuchObject,
      Message::tr("There is no track with the persistent ID %1").arg(TextSorter::decToHex(id)));
}
[[noreturn]] void refuse(const Playlist& playlist, Message why) {
  throw CommandError(
      Failure::notAllowed,
      Message::tr("The playlist %1 %2").arg(inQuotes(playlist.name)).arg(std::move(why)));
}

/// One operation a command.
class Commands {
 public:
  explicit Commands(DocumentSession& session) : session_(session) {}

  Result operator()(const command::AddFile& command) {
    const FileService& files = session_.services().files;
    const auto status = files.status(command.path);
    if (!status)
      throw CommandError(Failure::fileNotFound,
                         Message::tr("%1: there is no such file").arg(command.path));
    if (status->kind != FileStatus::Kind::file) failToAdd(command.path);
    try {
      if (looksLikeXml(files, command.path))
        addPlaylists(readPlaylistDocument(files, command.path));
      else
        addMediaFile(command.path, *status);
    } catch (const FileError& error) {
      throw CommandError(Failure::failed, error.message);
    } catch (const LibraryError& error) {
      // A document that is none, unlike a library that cannot be changed.
      if (error.file != command.path) throw;
      throw CommandError(Failure::wrongFile, error.message);
    }
    return {};
  }

  Result operator()(const command::TrackCloudStatus& command) {
    switch (track(command.track).cloudStatus) {
      case CloudStatus::matched:
        return {"matched", {}, {}};
      case CloudStatus::purchased:
        return {"purchased", {}, {}};
      case CloudStatus::uploaded:
        return {"uploaded", {}, {}};
      case CloudStatus::subscription:
        return {"subscription", {}, {}};
      case CloudStatus::unknown:
        break;
    }
    return {"unknown", {}, {}};
  }

  Result operator()(const command::TrackLocation& command) {
    const std::string path = filePath(track(command.track));
    return path.empty() ? Result() : Result{path, {}, {}};
  }

  Result operator()(const command::RevealTrack& command) {
    const std::string path = filePath(track(command.track));
    if (command.playlist) {
      const auto lists = session_.allPlaylists();
      const std::vector<std::uint64_t>& items = (*lists)[position(*command.playlist)].items;
      if (std::find(items.begin(), items.end(), command.track) == items.end())
        failWithoutTrack(command.track);
    }
    if (path.empty())
      throw CommandError(Failure::failed, Message::tr("The track has no file that could be shown"));
    reveal([&](Revealer& revealer) { revealer.revealFile(path); });
    return {};
  }
  Result operator()(const command::RevealPlaylist& command) {
    static_cast<void>(position(command.playlist));
    reveal([&](Revealer& revealer) { revealer.revealPlaylist(command.playlist); });
    return {};
  }

  Result operator()(const command::DeleteSameNamedPlaylists& command) {
    const auto sameName = [&](const Playlist& playlist) {
      return command.caseSensitive ? playlist.name == command.name
                                   : sameIgnoringCase(playlist.name, command.name);
    };
    std::vector<bool> removed;
    {
      const auto lists = session_.allPlaylists();
      removed.resize(lists->size());
      std::transform(lists->begin(), lists->end(), removed.begin(), [&](const Playlist& playlist) {
        return playlist.kind == PlaylistKind::regular && !belongsToApplication(playlist) &&
               playlist.persistentID != command.except && sameName(playlist);
      });
    }
    if (std::find(removed.begin(), removed.end(), true) != removed.end()) remove(removed);
    return {};
  }

  Result operator()(const command::DeletePlaylist& command) {
    remove(withContents(command.playlist, *session_.allPlaylists()));
    return {};
  }

  Result operator()(const command::ReplaceEntries& command) {
    const size_t playlist = changeable(command.playlist);
    std::vector<std::uint64_t> tracks;
    for (const auto& entry : command.entries) tracks.push_back(entry.track);
    const std::vector<TrackNumber> numbers = listable(tracks);
    const size_t count = session_.document().playlists().list()[playlist].items.size();
    for (const auto& entry : command.entries)
      if (entry.position == 0 || entry.position > count) failWithoutPosition();
    if (numbers.empty()) return {};
    EditedPlaylists& playlists = session_.change().playlists();
    for (size_t i = 0; i < numbers.size(); ++i)
      playlists.replaceEntry(playlist, command.entries[i].position - 1, numbers[i]);
    return {{}, command.playlist, {}};
  }
  Result operator()(const command::SetEntries& command) {
    const size_t playlist = changeable(command.playlist);
    const std::vector<TrackNumber> tracks = listable(command.tracks);
    session_.change().playlists().setEntries(playlist, tracks);
    return {{}, command.playlist, {}};
  }

  Result operator()(const command::DeleteEntries& command) {
    const size_t playlist = changeable(command.playlist);
    std::vector<std::uint64_t> positions = command.positions;  // from 1
    for (std::uint64_t& position : positions) --position;      // 0 becomes too large
    if (positions.empty()) return {};
    const auto removed = session_.document().playlists().entriesAt(playlist, positions);
    if (!removed) failWithoutPosition();
    session_.change().playlists().removeEntries(playlist, *removed);
    return {};
  }
  Result operator()(const command::DeleteAllEntries& command) {
    const size_t playlist = changeable(command.playlist);
    session_.change().playlists().removeAllEntries(playlist);
    return {};
  }
  Result operator()(const command::DuplicateTracks& command) {
    const size_t playlist = changeable(command.playlist);
    const std::vector<TrackNumber> tracks = listable(command.tracks);
    if (!tracks.empty()) session_.change().playlists().append(playlist, tracks);
    return {};
  }

  Result operator()(const command::DeleteTracks& command) {
    const std::vector<TrackNumber> tracks = numbers(command.tracks);
    if (!tracks.empty()) session_.change().removeTracks(tracks);
    return {};
  }
  Result operator()(const command::RestoreTracks& command) {
    const auto reversal = DocumentReversal::decoded(command.reversal);
    if (!reversal)
      throw CommandError(Failure::failed,
                         Message::tr("What the history has of these tracks cannot be read"));
    session_.change().restoreTracks(*reversal);
    session_.tracksRestored();
    return {};
  }

  Result operator()(const command::MovePlaylist& command) {
    size_t playlist = 0, folder = 0;
    {
      const auto lists = session_.allPlaylists();
      playlist = position(command.playlist);
      folder = position(command.folder);
      if ((*lists)[folder].kind != PlaylistKind::folder)
        refuse((*lists)[folder], Message::tr("is no folder"));
      if (belongsToApplication((*lists)[playlist]))
        refuse((*lists)[playlist], Message::tr("cannot be moved"));
      if ((*lists)[playlist].kind == PlaylistKind::folder &&
          withContents(command.playlist, *lists)[folder])
        refuse((*lists)[playlist], Message::tr("cannot be moved into itself"));
      if ((*lists)[playlist].parentID == command.folder) return {};
    }
    session_.change().playlists().move(playlist, folder);
    return {};
  }

  Result operator()(const command::CreatePlaylist& command) {
    EditedDocument& document = session_.change();
    const std::uint64_t id = document.newPersistentID();
    document.playlists().add(playlistName(command.name), id, document.newID(), {});
    session_.playlistsMoved();
    return {{}, id, {}};
  }

 private:
  [[noreturn]] static void failToAdd(const std::string& path) {
    throw CommandError(
        Failure::wrongFile,
        Message::tr("%1: this is neither an audio file nor a playlist document").arg(path));
  }

  const MediaItem& track(std::uint64_t id) {
    const MediaItem* item = session_.track(id);
    if (!item) failWithoutTrack(id);
    return *item;
  }

  [[noreturn]] static void failWithoutPosition() {
    throw CommandError(Failure::noSuchPosition,
                       Message::tr("The playlist has no entry at a position"));
  }

  size_t position(std::uint64_t id) {
    const auto place = session_.playlist(id);
    if (!place) failWithoutPlaylist(id);
    return *place;
  }

  void remove(const std::vector<bool>& removed) {
    session_.change().playlists().remove(removed);
    session_.playlistsMoved();
  }

  /// The place of a playlist whose entries are the user's to change.
  size_t changeable(std::uint64_t id) {
    const auto lists = session_.allPlaylists();
    const size_t place = position(id);
    const Playlist& playlist = (*lists)[place];
    if (belongsToApplication(playlist) ||
        (playlist.kind != PlaylistKind::regular && playlist.kind != PlaylistKind::genius))
      refuse(playlist, Message::tr("fills itself: its entries cannot be changed"));
    return place;
  }

  /// The playlist and, of a folder, all that it holds at whatever depth.
  std::vector<bool> withContents(std::uint64_t id, const std::vector<Playlist>& lists) {
    std::vector<bool> chosen(lists.size());
    std::vector<size_t> open{position(id)};
    std::unordered_multimap<std::uint64_t, size_t> children;
    if (lists[open.front()].kind == PlaylistKind::folder)
      for (size_t i = 0; i < lists.size(); ++i)
        if (lists[i].parentID) children.emplace(*lists[i].parentID, i);
    while (!open.empty()) {
      const size_t next = open.back();
      open.pop_back();
      if (chosen[next]) continue;  // damaged libraries have folders within each other
      if (belongsToApplication(lists[next])) refuse(lists[next], Message::tr("cannot be deleted"));
      chosen[next] = true;
      if (lists[next].kind != PlaylistKind::folder) continue;
      const auto [first, last] = children.equal_range(lists[next].persistentID);
      for (auto child = first; child != last; ++child) open.push_back(child->second);
    }
    return chosen;
  }

  std::vector<TrackNumber> numbers(const std::vector<std::uint64_t>& ids) {
    std::vector<TrackNumber> found;
    if (ids.empty()) return found;
    found.reserve(ids.size());
    EditedTracks& tracks = session_.document().tracks();
    for (const std::uint64_t id : ids) {
      const auto number = tracks.byPersistentID(id);
      if (!number) failWithoutTrack(id);
      found.push_back(*number);
    }
    return found;
  }

  /// The tracks, all of which can stand in a playlist.
  std::vector<TrackNumber> listable(const std::vector<std::uint64_t>& ids) {
    std::vector<TrackNumber> found = numbers(ids);
    for (size_t i = 0; i < found.size(); ++i)
      if (session_.document().tracks().trackID(found[i]) == noTrackID) failWithoutTrack(ids[i]);
    return found;
  }

  template <typename Show>
  void reveal(Show&& show) {
    Revealer* revealer = session_.services().revealer;
    if (!revealer)
      throw CommandError(Failure::failed, Message::tr("There is nothing here to show it in"));
    try {
      show(*revealer);
    } catch (const FileError& error) {
      throw CommandError(Failure::failed, error.message);
    }
  }

  /// A copy must be found under the name of the playlist that it replaces, whatever that is.
  std::string playlistName(const std::string& name) {
    const auto lists = session_.allPlaylists();
    const bool known = std::any_of(lists->begin(), lists->end(),
                                   [&](const Playlist& playlist) { return playlist.name == name; });
    return known ? name : writableText(name);
  }

  void addPlaylists(const ImportedPlaylists& imported) {
    EditedDocument& document = session_.change();
    EditedTracks& tracks = document.tracks();
    std::unordered_map<std::int64_t, std::optional<TrackNumber>> matches;
    matches.reserve(imported.tracks.size());
    for (const auto& [trackID, track] : imported.tracks) {
      std::optional<TrackNumber> match = tracks.byTrackID(trackID);
      if (!match || tracks.item(*match).persistentID != track.persistentID)
        match = tracks.byPersistentID(track.persistentID);
      if (!match) match = tracks.byLocation(track.location);
      // One without a Track ID cannot stand in any playlist.
      if (match && tracks.trackID(*match) == noTrackID) match.reset();
      matches.emplace(trackID, match);
    }
    std::vector<TrackNumber> numbers;
    for (const ImportedPlaylists::List& list : imported.lists) {
      numbers.clear();
      for (const std::int64_t trackID : list.trackIDs)
        if (const auto match = matches[trackID]) numbers.push_back(*match);
      const std::uint64_t id = document.newPersistentID();
      document.playlists().add(playlistName(list.name), id, document.newID(), numbers);
    }
    session_.playlistsMoved();
  }

  void addMediaFile(const std::string& path, const FileStatus& status) {
    std::optional<MediaFile> media = readMediaFile(path);
    if (!media) failToAdd(path);
    if (session_.document().tracks().byLocation(path)) return;
    EditedDocument& document = session_.change();
    using std::chrono::seconds;
    const auto secondsOf = [](Moment moment) {
      return std::chrono::floor<seconds>(moment).time_since_epoch().count();
    };
    MediaItem& item = media->item;
    item.persistentID = document.newPersistentID();
    item.fileSize = static_cast<std::int64_t>(status.size);
    item.modified = OptionalDate{secondsOf(status.modified)};
    item.added = OptionalDate{secondsOf(session_.services().clock.now())};
    const TrackNumber track = document.tracks().add(item, document.newID());
    const auto& lists = document.playlists().list();
    const auto master = std::find_if(lists.begin(), lists.end(),
                                     [](const Playlist& playlist) { return playlist.isMaster; });
    if (master != lists.end())
      document.playlists().append(static_cast<size_t>(master - lists.begin()), {&track, 1});
  }

  DocumentSession& session_;
};

}  // namespace

CommandResult carryOut(const Command& command, DocumentSession& session) {
  return std::visit(Commands(session), command);
}

}  // namespace kestrel
