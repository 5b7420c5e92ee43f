// Carrying commands out on a Music Player Daemon.
#include <algorithm>
#include <mpd/protocol.h>
#include <numeric>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <variant>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/command_support.h"
#include "musicapp/mpd/mpd_journal.h"
#include "musicapp/mpd/mpd_library.h"
#include "musicapp/mpd/mpd_list_edit.h"
#include "musicapp/mpd/mpd_update.h"
#include "musicapp/revealer.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::size_t;
using Failure = CommandFailure;

/// What went wrong with a command; nothing was changed by it.
class MpdCommandError : public MessageError {
 public:
  MpdCommandError(int number_, Message message_)
      : MessageError(std::move(message_)), number(number_) {}
  int number;
};

[[noreturn]] void notAllowed(Message why) { throw MpdCommandError(Failure::notAllowed, why); }

/// What makes `then` of the entries of known songs `now`, which stand at `places` of a list, and
/// end at `length`: few changes, so that the other entries stay between their neighbours.
std::vector<MpdChange> changesTo(std::vector<std::uint64_t> then, std::vector<std::uint64_t> now,
                                 std::span<const size_t> places, size_t length,
                                 const DerivedIDs& ids) {
  constexpr size_t farthest = 2000;
  std::vector<MpdChange> changes;
  const auto agree = [&](size_t i, size_t j) {
    return i < now.size() && j < then.size() && now[i] == then[j];
  };
  size_t i = 0;
  while (agree(i, i)) ++i;
  while (std::min(now.size(), then.size()) > i && now.back() == then.back())
    now.pop_back(), then.pop_back();
  for (size_t j = i; i < now.size() || j < then.size();) {
    if (agree(i, j)) {
      ++i, ++j;
      continue;
    }
    // What lies before the next place where both agree: after replacing, taking out or putting in.
    const size_t taken = now.size() - i, put = then.size() - j, both = std::max(taken, put);
    auto [out, in] = both <= farthest
                         ? std::pair(taken, put)
                         : std::pair(std::min<size_t>(taken, 1), std::min<size_t>(put, 1));
    for (size_t k = 1; k < std::min(both, farthest); ++k)
      if (agree(i + k, j + k) || agree(i + k, j) || agree(i, j + k)) {
        out = agree(i + k, j + k) || agree(i + k, j) ? k : 0;
        in = agree(i + k, j + k) || !agree(i + k, j) ? k : 0;
        break;
      }
    for (size_t k = 0; k < std::max(out, in); ++k) {
      const size_t at = i + std::min(k, out);
      changes.push_back({at < places.size() ? places[at] : length, k < out,
                         k < in ? *ids.uriOf(then[j + k]) : std::string()});
    }
    i += out, j += in;
  }
  return changes;
}

/// The same around the entries of unknown songs, where it is said how many of `then` stand before
/// each of these.
std::vector<MpdChange> changesAround(const command::SetEntries& then, const Playlist& now,
                                     std::span<const size_t> places, size_t length,
                                     const DerivedIDs& ids) {
  const EntryMatch match = matchedEntries(now, then);
  if (match.unknownBefore.empty() && !then.tracks.empty())
    return changesTo(then.tracks, now.items, places, length, ids);
  std::vector<MpdChange> changes;
  size_t begin = 0, newBegin = 0;
  for (size_t unknown = 0; unknown <= now.unknownAt.size(); ++unknown) {
    const bool isLast = unknown == now.unknownAt.size();
    const size_t end = isLast ? now.items.size() : now.unknownAt[unknown];
    size_t newEnd = newBegin;
    while (newEnd < then.tracks.size() && match.unknownBefore[newEnd] == unknown) ++newEnd;
    // Before the unknown one itself, which stands behind as many known ones and those before it.
    const size_t endPlace = isLast ? length : end + unknown;
    const auto part = [](const std::vector<std::uint64_t>& all, size_t from, size_t to) {
      return std::vector(all.begin() + static_cast<std::ptrdiff_t>(from),
                         all.begin() + static_cast<std::ptrdiff_t>(to));
    };
    for (MpdChange& change :
         changesTo(part(then.tracks, newBegin, newEnd), part(now.items, begin, end),
                   places.subspan(begin, end - begin), endPlace, ids))
      changes.push_back(std::move(change));
    begin = end;
    newBegin = newEnd;
  }
  return changes;
}

}  // namespace

class MpdLibrary::Commands {
 public:
  explicit Commands(MpdLibrary& library) : library_(library) {}

  CommandResult operator()(const command::AddFile& c) {
    const auto status = library_.services_.files.status(c.path);
    if (!status)
      throw MpdCommandError(Failure::fileNotFound,
                            Message::tr("%1: there is no such file").arg(c.path));
    const std::string uri = library_.uriOf(c.path);
    if (uri.empty())
      notAllowed(library_.musicFolder_.empty()
                     ? Message::tr("The music player does not tell where its music lies")
                     : Message::tr("%1: it has to be moved into the folder of the music player "
                                   "first, %2")
                           .arg(c.path)
                           .arg(library_.musicFolder_));
    MpdConnection connection(library_.server_);
    library_.isStale_ = true;
    updateMpd(connection, {uri}, {});
    try {
      if (connection.value({"lsinfo", uri}, "file") == uri) return {};
    } catch (const MpdRefusal& refusal) {
      if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;
    }
    throw MpdCommandError(
        Failure::wrongFile,
        Message::tr("%1: the music player does not take it for audio").arg(c.path));
  }

  CommandResult operator()(const command::TrackCloudStatus& c) {
    static_cast<void>(track(c.track));
    return {"unknown", {}, {}};
  }
  CommandResult operator()(const command::TrackLocation& c) {
    const std::string path = filePath(track(c.track));
    return path.empty() ? CommandResult() : CommandResult{path, {}, {}};
  }
  CommandResult operator()(const command::RevealTrack& c) {
    const std::string path = filePath(track(c.track));
    if (c.playlist) {
      const auto& items = playlist(place(*c.playlist)).items;
      if (std::find(items.begin(), items.end(), c.track) == items.end()) failWithoutTrack(c.track);
    }
    if (path.empty())
      throw MpdCommandError(Failure::failed,
                            Message::tr("The track has no file that could be shown"));
    revealer().revealFile(path);
    return {};
  }
  CommandResult operator()(const command::RevealPlaylist& c) {
    static_cast<void>(place(c.playlist));
    revealer().revealPlaylist(c.playlist);
    return {};
  }

  CommandResult operator()(const command::DeleteSameNamedPlaylists& c) {
    std::vector<std::uint64_t> found;
    for (const Playlist& one : *library_.lists_.playlists)
      if (!one.isMaster && one.persistentID != c.except &&
          (c.caseSensitive ? one.name == c.name : sameIgnoringCase(one.name, c.name)))
        found.push_back(one.persistentID);
    for (const std::uint64_t id : found) operator()(command::DeletePlaylist{id});
    return {};
  }
  CommandResult operator()(const command::DeletePlaylist& c) {
    const size_t at = changeable(c.playlist);
    const auto lock = library_.locked();
    MpdConnection connection(library_.server_);
    static_cast<void>(entriesAsRead(connection, at));
    connection.tell({"rm", playlist(at).name});
    library_.lists_.times.erase(playlist(at).name);
    auto lists = copy();
    lists->erase(lists->begin() + static_cast<std::ptrdiff_t>(at));
    library_.lists_.fingerprints.erase(library_.lists_.fingerprints.begin() +
                                       static_cast<std::ptrdiff_t>(at));
    library_.lists_.playlists = std::move(lists);
    return {};
  }
  CommandResult operator()(const command::CreatePlaylist& c) {
    // The server takes these for something else, or not at all.
    if (c.name.empty() || c.name.find_first_of("/\n\r") != std::string::npos)
      notAllowed(Message::tr("The music player cannot have a playlist of the name %1")
                     .arg(inQuotes(c.name)));
    const auto& lists = *library_.lists_.playlists;
    if (std::any_of(lists.begin() + 1, lists.end(),
                    [&](const Playlist& one) { return one.name == c.name; }))
      notAllowed(Message::tr("There is a playlist of the name %1 already").arg(inQuotes(c.name)));
    if (lists.front().items.empty())
      notAllowed(
          Message::tr("The music player cannot have an empty playlist while it has no songs"));
    const auto lock = library_.locked();
    MpdConnection connection(library_.server_);
    try {
      static_cast<void>(readMpdEntries(connection, c.name));
      notAllowed(Message::tr("There is a playlist of the name %1 already").arg(inQuotes(c.name)));
    } catch (const MpdRefusal& refusal) {
      if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;
    }
    const MpdConnection::Words commands[] = {
        {"playlistadd", c.name, *library_.songs_.ids.uriOf(lists.front().items.front())},
        {"playlistdelete", c.name, "0"}};
    connection.tell(commands);
    library_.lists_ = library_.readLists(connection, library_.songs_);
    for (const Playlist& one : *library_.lists_.playlists)
      if (one.name == c.name && !one.isMaster) return {{}, one.persistentID, {}};
    throw MpdCommandError(Failure::failed,
                          Message::tr("%1 was made, but not told where").arg(inQuotes(c.name)));
  }

  CommandResult operator()(const command::ReplaceEntries& c) {
    const size_t at = changeable(c.playlist);
    command::SetEntries then{c.playlist, playlist(at).items, playlist(at).unknownAt};
    for (const auto& entry : c.entries)
      then.tracks[checked(entry.position, then.tracks)] = entry.track;
    return operator()(then);
  }
  CommandResult operator()(const command::SetEntries& c) {
    return set(
        c.playlist,
        [&](const Playlist& now, const auto& places, size_t length) {
          return changesAround(c, now, places, length, library_.songs_.ids);
        },
        c.tracks);
  }
  CommandResult operator()(const command::DeleteEntries& c) {
    const size_t at = changeable(c.playlist);
    std::vector<size_t> left(playlist(at).items.size());
    std::iota(left.begin(), left.end(), size_t{0});
    std::vector<bool> removed(left.size());
    for (const std::uint64_t position : c.positions) {
      const auto entry = left.begin() + static_cast<std::ptrdiff_t>(checked(position, left));
      removed[*entry] = true;
      left.erase(entry);
    }
    return set(c.playlist, [&](const Playlist&, const auto& places, size_t) {
      std::vector<MpdChange> changes;
      for (size_t i = 0; i < removed.size(); ++i)
        if (removed[i]) changes.push_back({places[i], true, {}});
      return changes;
    });
  }
  CommandResult operator()(const command::DeleteAllEntries& c) {
    return operator()(command::SetEntries{c.playlist, {}});
  }
  CommandResult operator()(const command::DuplicateTracks& c) {
    return set(
        c.playlist,
        [&](const Playlist&, const auto&, size_t length) {
          std::vector<MpdChange> changes;
          for (const std::uint64_t track : c.tracks)
            changes.push_back({length, false, *library_.songs_.ids.uriOf(track)});
          return changes;
        },
        c.tracks);
  }

  CommandResult operator()(const command::DeleteTracks&) {
    notAllowed(
        Message::tr("A song leaves the music player when its file does: move that to the trash"));
  }
  CommandResult operator()(const command::RestoreTracks&) {
    notAllowed(Message::tr("A song comes back to the music player with its file"));
  }
  CommandResult operator()(const command::SetValues& c) {
    if (!library_.notesValues_ || !c.which.without(mpdValueSorts).empty())
      notAllowed(library_.whyNoOtherValues());
    for (const auto& given : c.tracks)
      if (!library_.songs_.ids.uriOf(given.track)) failWithoutTrack(given.track);
    const auto lock = library_.locked();
    MpdConnection connection(library_.server_);
    std::vector<MpdConnection::Words> commands;
    GivenValues now;
    for (const auto& [id, values] : c.tracks) {
      const std::string& uri = *library_.songs_.ids.uriOf(id);
      MpdStickers noted;
      try {
        noted = mpdStickers(connection, uri);
      } catch (const MpdRefusal& refusal) {
        if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;
        failWithoutTrack(id);
      }
      for (auto& words : mpdValueCommands(uri, c.which, values, noted, library_.songs_.words))
        commands.push_back(std::move(words));
      give(now, id, c.which, values);
    }
    constexpr size_t most = 500;  // of what the server takes at once
    for (size_t first = 0; first < commands.size(); first += most)
      connection.tell(std::span(commands).subspan(first, std::min(most, commands.size() - first)));
    library_.songs_.items = withValues(library_.songs_.items, now);
    return {};
  }
  CommandResult operator()(const command::MovePlaylist&) {
    notAllowed(Message::tr("The music player has no folders of playlists"));
  }

 private:
  [[noreturn]] static void failWithoutTrack(std::uint64_t id) {
    throw MpdCommandError(
        Failure::noSuchObject,
        Message::tr("There is no track with the persistent ID %1").arg(TextSorter::decToHex(id)));
  }

  const MediaItem& track(std::uint64_t id) {
    const MediaItem* found = nullptr;
    library_.songs_.items->forEach([&](const MediaItem& item) {
      if (item.persistentID == id) found = &item;
    });
    if (!found) failWithoutTrack(id);
    return *found;
  }

  const Playlist& playlist(size_t place) { return (*library_.lists_.playlists)[place]; }
  size_t place(std::uint64_t id) {
    const auto& lists = *library_.lists_.playlists;
    const auto found = std::find_if(lists.begin(), lists.end(),
                                    [&](const Playlist& one) { return one.persistentID == id; });
    if (found == lists.end())
      throw MpdCommandError(Failure::noSuchObject,
                            Message::tr("There is no playlist with the persistent ID %1")
                                .arg(TextSorter::decToHex(id)));
    return static_cast<size_t>(found - lists.begin());
  }
  size_t changeable(std::uint64_t id) {
    const size_t at = place(id);
    if (playlist(at).isMaster)
      notAllowed(Message::tr("The playlist %1 %2")
                     .arg(inQuotes(playlist(at).name))
                     .arg(Message::tr("fills itself: its entries cannot be changed")));
    return at;
  }
  template <typename Item>
  static size_t checked(std::uint64_t position, const std::vector<Item>& items) {
    if (position == 0 || position > items.size())
      throw MpdCommandError(Failure::noSuchPosition,
                            Message::tr("The playlist has no entry at a position"));
    return position - 1;
  }
  Revealer& revealer() {
    Revealer* revealer = library_.services_.revealer;
    if (!revealer)
      throw MpdCommandError(Failure::failed, Message::tr("There is nothing here to show it in"));
    return *revealer;
  }
  std::shared_ptr<std::vector<Playlist>> copy() {
    return std::make_shared<std::vector<Playlist>>(*library_.lists_.playlists);
  }

  /// What the server has in a playlist, if that is what was read.
  MpdEntries entriesAsRead(MpdConnection& connection, size_t at) {
    MpdEntries entries = readMpdEntries(connection, playlist(at).name);
    if (fingerprintOf(entries) != library_.lists_.fingerprints[at])
      notAllowed(Message::tr("the playlist %1 was changed since it was read")
                     .arg(inQuotes(playlist(at).name)));
    return entries;
  }

  /// Makes the changes that `changesOf` says of a playlist, the places of its known entries and its
  /// length. `added`: what comes in.
  template <typename ChangesOf>
  CommandResult set(std::uint64_t id, ChangesOf&& changesOf,
                    const std::vector<std::uint64_t>& added = {}) {
    const size_t at = changeable(id);
    const DerivedIDs& ids = library_.songs_.ids;
    for (const std::uint64_t one : added)
      if (!ids.uriOf(one)) failWithoutTrack(one);
    const auto lock = library_.locked();
    std::optional<MpdConnection> own;
    MpdConnection& connection = library_.connected(own);
    const MpdEntries entries = entriesAsRead(connection, at);
    std::vector<size_t> places;  // of the entries of known songs
    for (size_t i = 0; i < entries.size(); ++i)
      if (ids.find(entries[i])) places.push_back(i);
    const auto steps = stepsOf(entries, changesOf(playlist(at), places, entries.size()));
    const MpdEntries result = afterSteps(entries, steps);
    const auto show = [&] {
      auto lists = copy();
      fill((*lists)[at], result, library_.songs_);
      library_.lists_.playlists = std::move(lists);
      library_.lists_.fingerprints[at] = fingerprintOf(result);
    };
    MpdJournal journal(library_.services_.files, library_.server_.address(), playlist(at).name,
                       entries, steps);
    try {
      editMpdList(connection, playlist(at).name, entries, steps);
    } catch (const MpdEditError& error) {
      if (error.isUnchanged) journal.remove();
      // Whoever compares has to see that the list may be another one.
      if (!error.isUnchanged) show();
      throw;
    }
    journal.remove();
    show();
    library_.lists_.times[playlist(at).name] = mpdListTimes(connection)[playlist(at).name];
    return {{}, id, {}};
  }

  MpdLibrary& library_;
};

CommandResult MpdLibrary::run(const Command& command) {
  readAgainIfDue();
  const auto failing = [this](const Message& problem, int number) {
    kept_.reset();  // it may be what went wrong
    return CommandResult::failing(problem, number);
  };
  try {
    return std::visit(Commands(*this), command);
  } catch (const MpdCommandError& error) {
    return failing(error.message, error.number);
  } catch (const MpdEditError& error) {
    return failing(error.message,
                   error.isRefused ? CommandFailure::notAllowed : CommandFailure::failed);
  } catch (const std::exception& error) {
    return failing(messageOf(error), CommandFailure::failed);
  }
}

}  // namespace kestrel
