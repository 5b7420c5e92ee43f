// Carrying commands out on Strawberry's lists, in memory. Each checks everything before it changes
// anything.
#include <algorithm>
#include <utility>
#include <variant>

#include "foundation/library_error.h"
#include "musicapp/command_support.h"
#include "musicapp/strawberry/strawberry_library.h"

namespace kestrel {

using Result = CommandResult;
using Failure = CommandFailure;

class StrawberryLibrary::Commands {
 public:
  explicit Commands(StrawberryLibrary& library) : library_(library) {}

  Result operator()(const command::AddFile& command) {
    throw CommandError(Failure::notAllowed,
                       Message::tr("%1: only Strawberry itself takes files into its collection. "
                                   "Put it into one of its folders")
                           .arg(command.path));
  }

  Result operator()(const command::TrackCloudStatus& command) {
    return cloudStatusOf(track(command.track));
  }
  Result operator()(const command::TrackLocation& command) {
    return filePathOf(track(command.track));
  }
  Result operator()(const command::RevealTrack& command) {
    const MediaItem& item = track(command.track);
    if (command.playlist) requireListed(command.track, shown(*command.playlist));
    return revealTrack(item, library_.services_.revealer);
  }
  Result operator()(const command::RevealPlaylist& command) {
    static_cast<void>(shown(command.playlist));
    return revealPlaylist(command.playlist, library_.services_.revealer);
  }

  Result operator()(const command::DeleteSameNamedPlaylists& command) {
    const auto shown = library_.allPlaylists();
    remove([&](const StrawberryPlaylist& playlist) {
      return std::any_of(shown->begin(), shown->end(), [&](const Playlist& list) {
        return list.persistentID == playlist.id && isNamedIn(command, list);
      });
    });
    return {};
  }
  Result operator()(const command::DeletePlaylist& command) {
    const Playlist& playlist = shown(command.playlist);
    if (playlist.isMaster) refuse(playlist, Message::tr("cannot be deleted"));
    if (playlist.kind != PlaylistKind::folder) {
      remove([&](const StrawberryPlaylist& list) { return list.id == command.playlist; });
      return {};
    }
    const std::string folder = library_.folders_.at(command.playlist) + "/";
    remove([&](const StrawberryPlaylist& list) { return (list.folder + "/").starts_with(folder); });
    return {};
  }

  Result operator()(const command::ReplaceEntries& command) {
    StrawberryPlaylist& playlist = changeable(command.playlist);
    const std::vector<std::size_t> places = placesIn(playlist);
    for (const auto& entry : command.entries) {
      static_cast<void>(track(entry.track));
      if (entry.position == 0 || entry.position > places.size()) failWithoutPosition();
    }
    for (const auto& entry : command.entries)
      playlist.entries[places[entry.position - 1]].song = entry.track;
    return changed(command.playlist);
  }
  Result operator()(const command::SetEntries& command) {
    StrawberryPlaylist& playlist = changeable(command.playlist);
    for (const std::uint64_t id : command.tracks) static_cast<void>(track(id));
    const std::vector<std::size_t> places = placesIn(playlist);
    const EntryMatch match = matchedEntries(shown(command.playlist), command);
    std::vector<StrawberryEntry> entries;
    std::size_t next = 0, kept = 0;  // of the old ones, and of those of no track among them
    // Up to a place, or a number of them.
    const auto keepUnknown = [&](std::size_t place, std::size_t count) {
      for (; next < place && kept < count; ++next)
        if (!isTrack(playlist.entries[next])) {
          entries.push_back(playlist.entries[next]);
          ++kept;
        }
    };
    for (std::size_t j = 0; j < match.from.size(); ++j) {
      const std::size_t from = match.from[j];
      if (!match.unknownBefore.empty())
        keepUnknown(playlist.entries.size(), match.unknownBefore[j]);
      else if (from != noEntry)
        keepUnknown(places[from], SIZE_MAX);
      entries.push_back(
          {from == noEntry ? 0 : playlist.entries[places[from]].row, command.tracks[j]});
    }
    keepUnknown(playlist.entries.size(), SIZE_MAX);
    playlist.entries = std::move(entries);
    return changed(command.playlist);
  }

  Result operator()(const command::DeleteEntries& command) {
    StrawberryPlaylist& playlist = changeable(command.playlist);
    std::vector<std::size_t> places = placesIn(playlist);
    std::vector<bool> removed(playlist.entries.size());
    for (const std::uint64_t position : command.positions) {
      if (position == 0 || position > places.size()) failWithoutPosition();
      const auto place = places.begin() + static_cast<std::ptrdiff_t>(position - 1);
      removed[*place] = true;
      places.erase(place);
    }
    std::vector<StrawberryEntry> kept;
    for (std::size_t i = 0; i < removed.size(); ++i)
      if (!removed[i]) kept.push_back(playlist.entries[i]);
    playlist.entries = std::move(kept);
    changed(command.playlist);
    return {};
  }
  Result operator()(const command::DeleteAllEntries& command) {
    changeable(command.playlist).entries.clear();
    changed(command.playlist);
    return {};
  }
  Result operator()(const command::DuplicateTracks& command) {
    StrawberryPlaylist& playlist = changeable(command.playlist);
    for (const std::uint64_t id : command.tracks) static_cast<void>(track(id));
    playlist.entries.reserve(playlist.entries.size() + command.tracks.size());
    for (const std::uint64_t id : command.tracks) playlist.entries.push_back({0, id});
    return changed(command.playlist);
  }

  Result operator()(const command::DeleteTracks& command) {
    for (const std::uint64_t id : command.tracks) static_cast<void>(track(id));
    for (const std::uint64_t id : command.tracks) library_.now_.files[id] = SongFile::removed();
    library_.items_.reset();
    changed({});
    return {};
  }
  Result operator()(const command::RestoreTracks& command) {
    const auto files = decodedFiles(command.reversal);
    if (files.empty())
      throw CommandError(Failure::failed,
                         Message::tr("What the history has of these tracks cannot be read"));
    for (const auto& [song, file] : files)
      if (!library_.songs_.contains(song)) failWithoutTrack(song);
    for (const auto& [song, file] : files)
      if (library_.isRemoved(song)) library_.now_.files[song] = file;
    library_.items_.reset();
    changed({});
    return {};
  }

  Result operator()(const command::SetValues& command) {
    if (!command.which.without(strawberryValues).empty()) refuseValues(whyNoDates());
    for (const auto& given : command.tracks) static_cast<void>(track(given.track));
    for (const auto& [song, values] : command.tracks)
      give(library_.now_.values, song, command.which, values);
    library_.items_.reset();
    return {};
  }

  Result operator()(const command::MovePlaylist& command) {
    const Playlist &playlist = shown(command.playlist), &folder = shown(command.folder);
    if (folder.kind != PlaylistKind::folder) refuse(folder, Message::tr("is no folder"));
    StrawberryPlaylist* list = find(command.playlist);
    if (!list) refuse(playlist, Message::tr("cannot be moved"));
    list->folder = library_.folders_.at(command.folder);
    changed(command.playlist);
    return {};
  }
  Result operator()(const command::CreatePlaylist& command) {
    std::uint64_t last = 0;
    for (const auto* lists : {&library_.now_, &library_.stored_.lists})
      for (const StrawberryPlaylist& playlist : lists->playlists)
        last = std::max(last, playlist.id);
    library_.now_.playlists.push_back({last + 1, command.name, {}, false, {}});
    return changed(last + 1);
  }

 private:
  [[nodiscard]] bool isTrack(const StrawberryEntry& entry) const { return library_.isTrack(entry); }
  const MediaItem& track(std::uint64_t id) const {
    const auto found = library_.songs_.find(id);
    if (found == library_.songs_.end() || library_.isRemoved(id)) failWithoutTrack(id);
    return *found->second;
  }
  /// Valid until something changes.
  const Playlist& shown(std::uint64_t id) {
    const auto lists = library_.allPlaylists();
    const auto found = std::find_if(lists->begin(), lists->end(), [&](const Playlist& playlist) {
      return playlist.persistentID == id;
    });
    if (found == lists->end()) failWithoutPlaylist(id);
    return *found;
  }
  StrawberryPlaylist* find(std::uint64_t id) {
    auto& lists = library_.now_.playlists;
    const auto found = std::find_if(lists.begin(), lists.end(),
                                    [&](const StrawberryPlaylist& list) { return list.id == id; });
    return found == lists.end() ? nullptr : &*found;
  }
  StrawberryPlaylist& changeable(std::uint64_t id) {
    StrawberryPlaylist* playlist = find(id);
    if (!playlist || playlist->isDynamic) refuseToFill(shown(id));
    return *playlist;
  }
  /// The places of the entries that positions count.
  [[nodiscard]] std::vector<std::size_t> placesIn(const StrawberryPlaylist& playlist) const {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < playlist.entries.size(); ++i)
      if (isTrack(playlist.entries[i])) places.push_back(i);
    return places;
  }
  template <typename IsRemoved>
  void remove(IsRemoved&& isRemoved) {
    std::erase_if(library_.now_.playlists, isRemoved);
    changed({});
  }
  Result changed(std::optional<std::uint64_t> playlist) {
    library_.playlists_.reset();
    return {{}, playlist, {}};
  }

  StrawberryLibrary& library_;
};

CommandResult StrawberryLibrary::execute(const Command& command) {
  return std::visit(Commands(*this), command);
}

}  // namespace kestrel
