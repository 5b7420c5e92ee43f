// Carrying commands out on a library document, in memory.
#include <algorithm>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/audio/audio_facts.h"
#include "musicapp/command_support.h"
#include "musicapp/document/document_index.h"
#include "musicapp/document/document_library.h"
#include "musicapp/document/document_reader.h"
#include "musicapp/document/document_tracks.h"
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

}  // namespace

class DocumentLibrary::Commands {
 public:
  explicit Commands(DocumentLibrary& library) : library_(library) {}

  Result operator()(const command::AddFile& command) {
    const FileService& files = library_.services_.files;
    const auto status = files.status(command.path);
    if (!status)
      throw CommandError(Failure::fileNotFound,
                         Message::tr("%1: there is no such file").arg(command.path));
    if (status->kind != FileStatus::Kind::file) failToAdd(command.path);
    try {
      if (looksLikeXml(files, command.path))
        addPlaylists(command.path);
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
    return cloudStatusOf(track(command.track));
  }
  Result operator()(const command::TrackLocation& command) {
    return filePathOf(track(command.track));
  }
  Result operator()(const command::RevealTrack& command) {
    const MediaItem& item = track(command.track);
    if (command.playlist)
      requireListed(command.track, (*library_.allPlaylists())[position(*command.playlist)]);
    return revealTrack(item, library_.services_.revealer);
  }
  Result operator()(const command::RevealPlaylist& command) {
    static_cast<void>(position(command.playlist));
    return revealPlaylist(command.playlist, library_.services_.revealer);
  }

  Result operator()(const command::DeleteSameNamedPlaylists& command) {
    std::vector<bool> removed;
    {
      const auto lists = library_.allPlaylists();
      removed.resize(lists->size());
      std::transform(lists->begin(), lists->end(), removed.begin(), [&](const Playlist& playlist) {
        return isNamedIn(command, playlist) && !belongsToApplication(playlist);
      });
    }
    if (std::find(removed.begin(), removed.end(), true) != removed.end()) remove(removed);
    return {};
  }

  Result operator()(const command::DeletePlaylist& command) {
    remove(withContents(command.playlist, *library_.allPlaylists()));
    return {};
  }

  Result operator()(const command::ReplaceEntries& command) {
    const size_t playlist = changeable(command.playlist);
    std::vector<std::uint64_t> tracks;
    for (const auto& entry : command.entries) tracks.push_back(entry.track);
    const std::vector<TrackNumber> numbers = listable(tracks);
    const size_t count = library_.document().playlists().list()[playlist].items.size();
    for (const auto& entry : command.entries)
      if (entry.position == 0 || entry.position > count) failWithoutPosition();
    if (numbers.empty()) return {};
    EditedPlaylists& playlists = library_.change().playlists();
    for (size_t i = 0; i < numbers.size(); ++i)
      playlists.replaceEntry(playlist, command.entries[i].position - 1, numbers[i]);
    return {{}, command.playlist, {}};
  }
  Result operator()(const command::SetEntries& command) {
    const size_t playlist = changeable(command.playlist);
    const std::vector<TrackNumber> tracks = listable(command.tracks);
    library_.change().playlists().setEntries(playlist, tracks, command.unknownAt);
    return {{}, command.playlist, {}};
  }

  Result operator()(const command::DeleteEntries& command) {
    const size_t playlist = changeable(command.playlist);
    std::vector<std::uint64_t> positions = command.positions;  // from 1
    for (std::uint64_t& position : positions) --position;      // 0 becomes too large
    if (positions.empty()) return {};
    const auto removed = library_.document().playlists().entriesAt(playlist, positions);
    if (!removed) failWithoutPosition();
    library_.change().playlists().removeEntries(playlist, *removed);
    return {};
  }
  Result operator()(const command::DeleteAllEntries& command) {
    const size_t playlist = changeable(command.playlist);
    library_.change().playlists().removeAllEntries(playlist);
    return {};
  }
  Result operator()(const command::DuplicateTracks& command) {
    const size_t playlist = changeable(command.playlist);
    const std::vector<TrackNumber> tracks = listable(command.tracks);
    if (!tracks.empty()) library_.change().playlists().append(playlist, tracks);
    return {};
  }

  Result operator()(const command::DeleteTracks& command) {
    const std::vector<TrackNumber> tracks = numbers(command.tracks);
    if (!tracks.empty()) library_.change().removeTracks(tracks);
    return {};
  }
  Result operator()(const command::RestoreTracks& command) {
    const auto reversal = DocumentReversal::decoded(command.reversal);
    if (!reversal)
      throw CommandError(Failure::failed,
                         Message::tr("What the history has of these tracks cannot be read"));
    library_.change().restoreTracks(*reversal);
    library_.restored_ = true;
    return {};
  }

  Result operator()(const command::SetValues& command) {
    std::vector<std::uint64_t> ids;
    for (const auto& given : command.tracks) ids.push_back(given.track);
    const std::vector<TrackNumber> found = numbers(ids);
    if (found.empty()) return {};
    EditedDocument& document = library_.change();
    TextPool texts;
    for (size_t i = 0; i < found.size(); ++i) {
      const TrackValues& values = command.tracks[i].values;
      MediaItem item = document.tracks().item(found[i]);
      const ValueElements now = document.tracks().valueElements(found[i]);
      auto elements =
          values.stored.empty() ? std::nullopt : elementsOfStored(command.which, values.stored);
      if (elements)  // says more than the values do
        library_.restored_ = true;
      else
        elements = elementsOf(command.which, values, kestrel::valuesOf(item), now);
      setValues(item, command.which, values, texts);
      document.tracks().setValues(found[i], *elements, item, document.layout());
    }
    return {};
  }

  Result operator()(const command::MovePlaylist& command) {
    size_t playlist = 0, folder = 0;
    {
      const auto lists = library_.allPlaylists();
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
    library_.change().playlists().move(playlist, folder);
    return {};
  }

  Result operator()(const command::CreatePlaylist& command) {
    EditedDocument& document = library_.change();
    const std::uint64_t id = document.newPersistentID();
    document.playlists().add(playlistName(command.name), id, document.newID(), {});
    library_.playlistPlaces_.reset();
    return {{}, id, {}};
  }

 private:
  [[noreturn]] static void failToAdd(const std::string& path) {
    throw CommandError(
        Failure::wrongFile,
        Message::tr("%1: this is neither an audio file nor a playlist document").arg(path));
  }

  const MediaItem& track(std::uint64_t id) {
    const MediaItem* item = library_.track(id);
    if (!item) failWithoutTrack(id);
    return *item;
  }

  size_t position(std::uint64_t id) {
    const auto place = library_.playlist(id);
    if (!place) failWithoutPlaylist(id);
    return *place;
  }

  void remove(const std::vector<bool>& removed) {
    library_.change().playlists().remove(removed);
    library_.playlistPlaces_.reset();
  }

  /// The place of a playlist whose entries are the user's to change.
  size_t changeable(std::uint64_t id) {
    const auto lists = library_.allPlaylists();
    const size_t place = position(id);
    const Playlist& playlist = (*lists)[place];
    if (belongsToApplication(playlist) ||
        (playlist.kind != PlaylistKind::regular && playlist.kind != PlaylistKind::genius))
      refuseToFill(playlist);
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
    EditedTracks& tracks = library_.document().tracks();
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
      if (library_.document().tracks().trackID(found[i]) == noTrackID) failWithoutTrack(ids[i]);
    return found;
  }

  /// A copy must be found under the name of the playlist that it replaces, whatever that is.
  std::string playlistName(const std::string& name) {
    const auto lists = library_.allPlaylists();
    const bool known = std::any_of(lists->begin(), lists->end(),
                                   [&](const Playlist& playlist) { return playlist.name == name; });
    return known ? name : writableText(name);
  }

  /// Those of a playlist document, which is a library document that is read for its playlists.
  void addPlaylists(const std::string& path) {
    MappedFile file = library_.services_.files.map(path);
    const LibraryDocument imported = readLibraryDocument(file, path);
    // Its locations are compared with those of this library.
    mapLocations(*imported.items, library_.services_.maps, library_.services_.files);
    // The lists have persistent IDs only, which may repeat; the Track IDs are in the bytes.
    const DocumentText text(std::move(file));
    const DocumentIndex& index = *imported.index;

    EditedTracks& tracks = library_.document().tracks();
    std::unordered_map<std::int64_t, std::optional<TrackNumber>> matches;
    matches.reserve(index.trackCount());
    size_t next = 0;
    imported.items->forEach([&](const MediaItem& item) {
      const std::int64_t trackID = index.trackID(text.bytes(), index.entryOf(next++));
      std::optional<TrackNumber> match = tracks.byTrackID(trackID);
      if (!match || tracks.item(*match).persistentID != item.persistentID)
        match = tracks.byPersistentID(item.persistentID);
      if (!match) match = tracks.byLocation(locationOf(item));
      // One without a Track ID cannot stand in any playlist.
      if (match && tracks.trackID(*match) == noTrackID) match.reset();
      matches.emplace(trackID, match);
    });
    std::vector<std::vector<TrackNumber>> lists;
    for (size_t i = 0; i < index.playlistEnds.size(); ++i) {
      std::vector<TrackNumber>& numbers = lists.emplace_back();
      std::vector<EntryPlace> entries;
      index.playlist(text.bytes(), i, &entries);
      for (const EntryPlace& entry : entries)
        if (const auto match = matches.find(entry.trackID); match != matches.end() && match->second)
          numbers.push_back(*match->second);
    }
    text.checkUnchanged();
    EditedDocument& document = library_.change();
    for (size_t i = 0; i < lists.size(); ++i) {
      const std::uint64_t id = document.newPersistentID();
      document.playlists().add(playlistName((*imported.playlists)[i].name), id, document.newID(),
                               lists[i]);
    }
    library_.playlistPlaces_.reset();
  }

  void addMediaFile(const std::string& path, const FileStatus& status) {
    const auto facts = readAudioFacts(path);
    if (!facts) failToAdd(path);
    if (library_.document().tracks().byLocation(path)) return;
    EditedDocument& document = library_.change();
    using std::chrono::seconds;
    const auto secondsOf = [](Moment moment) {
      return std::chrono::floor<seconds>(moment).time_since_epoch().count();
    };
    TextPool texts;
    MediaItem item;
    fillItem(*facts, item, texts);
    setLocation(path, item, texts);
    item.rating = 0;
    item.playCount = 0;
    if (item.title.isNull()) {
      const std::string_view name = item.locationName.view();
      item.title = texts.add(writableText(name.substr(0, name.rfind('.'))));
    }
    item.persistentID = document.newPersistentID();
    item.fileSize = static_cast<std::int64_t>(status.size);
    item.modified = OptionalDate{secondsOf(status.modified)};
    item.added = OptionalDate{secondsOf(library_.services_.clock.now())};
    const TrackNumber track = document.tracks().add(item, document.newID());
    const auto& lists = document.playlists().list();
    const auto master = std::find_if(lists.begin(), lists.end(),
                                     [](const Playlist& playlist) { return playlist.isMaster; });
    if (master != lists.end())
      document.playlists().append(static_cast<size_t>(master - lists.begin()), {&track, 1});
  }

  DocumentLibrary& library_;
};

CommandResult DocumentLibrary::execute(const Command& command) {
  return std::visit(Commands(*this), command);
}

void DocumentLibrary::checkUnchangedFile() const {
  if (document_) document_->checkUnchanged();
}

}  // namespace kestrel
