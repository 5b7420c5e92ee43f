// Carrying commands out on the lists of Rhythmbox, in memory.
#include <algorithm>
#include <unordered_map>
#include <utility>
#include <variant>

#include "foundation/library_error.h"
#include "musicapp/command_support.h"
#include "musicapp/file_url.h"
#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "platform/files.h"
#include "platform/session_bus.h"

namespace kestrel {
namespace {

using Result = CommandResult;
using Failure = CommandFailure;

[[noreturn]] void failCommand(int number, Message message) {
  throw CommandError(number, std::move(message));
}

}  // namespace

class RhythmboxLibrary::Commands {
 public:
  explicit Commands(RhythmboxLibrary& library) : library_(library) {}

  Result operator()(const command::AddFile& c) {
    if (!library_.services_.files.exists(c.path))
      failCommand(Failure::fileNotFound, Message::tr("%1: there is no such file").arg(c.path));
    if (!library_.isLive_)
      failCommand(Failure::notAllowed, Message::tr("Rhythmbox adds files only while it runs"));
    const std::string uri = fileUrlOfPath(c.path);
    auto properties = library_.player_.load(uri);
    if (properties.empty())
      failCommand(Failure::wrongFile,
                  Message::tr("%1: Rhythmbox does not take this file").arg(c.path));
    library_.loaded_.insert_or_assign(uri, std::move(properties));
    library_.keepAdded(uri);
    library_.tracks_.reset();
    // Lists that fill themselves may have it.
    if (!library_.changed_) library_.setLists(library_.readLists());
    return {};
  }
  Result operator()(const command::TrackCloudStatus& c) { return cloudStatusOf(track(c.track)); }
  Result operator()(const command::TrackLocation& c) { return filePathOf(track(c.track)); }
  Result operator()(const command::RevealTrack& c) {
    if (c.playlist) requireListed(c.track, shown(list(*c.playlist)));
    return revealTrack(track(c.track), library_.services_.revealer);
  }
  Result operator()(const command::RevealPlaylist& c) {
    return revealPlaylist(list(c.playlist).id, library_.services_.revealer);
  }

  Result operator()(const command::DeleteSameNamedPlaylists& c) {
    return remove([&](const List& list) { return isNamedIn(c, shown(list)); });
  }
  Result operator()(const command::DeletePlaylist& c) {
    static_cast<void>(changeable(c.playlist));
    return remove([&](const List& list) { return list.id == c.playlist; });
  }
  Result operator()(const command::CreatePlaylist& c) {
    for (const List& list : library_.lists_)
      if (list.name == c.name)
        failCommand(Failure::notAllowed,
                    Message::tr("There is a playlist %1 already").arg(inQuotes(c.name)));
    library_.change();
    List made;
    made.id = library_.newListID("static", c.name, 0);
    made.name = c.name;
    library_.lists_.push_back(std::move(made));
    library_.shown_.reset();
    return {{}, library_.lists_.back().id, {}};
  }

  Result operator()(const command::ReplaceEntries& c) {
    List& list = changeable(c.playlist);
    IDs entries = list.entries;
    const std::vector<std::size_t> places = placesOf(list);
    for (const auto& entry : c.entries) {
      static_cast<void>(track(entry.track));
      entries[placeOf(places, entry.position)] = entry.track;
    }
    return set(list, std::move(entries));
  }
  /// Entries of unknown tracks stay behind the entries that they stood behind.
  Result operator()(const command::SetEntries& c) {
    List& list = changeable(c.playlist);
    for (const std::uint64_t id : c.tracks) static_cast<void>(track(id));
    const std::vector<std::size_t> places = placesOf(list);
    const EntryMatch match = matchedEntries(shown(list), c);
    IDs entries;
    std::size_t next = 0, taken = 0;  // of the old ones, and of the unknown ones among them
    // Up to a place, or a number of them.
    const auto takeUnknown = [&](std::size_t end, std::size_t count) {
      for (; next < end && taken < count; ++next)
        if (!library_.tracks().find(list.entries[next])) {
          entries.push_back(list.entries[next]);
          ++taken;
        }
    };
    for (std::size_t i = 0; i < c.tracks.size(); ++i) {
      if (!match.unknownBefore.empty())
        takeUnknown(list.entries.size(), match.unknownBefore[i]);
      else if (match.from[i] != noEntry)
        takeUnknown(places[match.from[i]] + 1, SIZE_MAX);
      entries.push_back(c.tracks[i]);
    }
    takeUnknown(list.entries.size(), SIZE_MAX);
    return set(list, std::move(entries));
  }
  Result operator()(const command::DeleteEntries& c) {
    List& list = changeable(c.playlist);
    IDs entries = list.entries;
    std::vector<std::size_t> places = placesOf(list), removed;
    for (const std::uint64_t position : c.positions) {
      removed.push_back(placeOf(places, position));
      places.erase(places.begin() + static_cast<std::ptrdiff_t>(position - 1));
    }
    std::sort(removed.rbegin(), removed.rend());
    for (const std::size_t place : removed)
      entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(place));
    return set(list, std::move(entries));
  }
  Result operator()(const command::DeleteAllEntries& c) { return set(changeable(c.playlist), {}); }
  Result operator()(const command::DuplicateTracks& c) {
    List& list = changeable(c.playlist);
    IDs entries = list.entries;
    for (const std::uint64_t id : c.tracks) {
      static_cast<void>(track(id));
      entries.push_back(id);
    }
    return set(list, std::move(entries));
  }

  Result operator()(const command::SetValues& c) {
    if (!c.which.without(library_.takenValues()).empty()) refuseValues(rhythmbox::whyNoComments());
    for (const auto& given : c.tracks) static_cast<void>(track(given.track));
    if (c.tracks.empty()) return {};
    library_.change();
    for (const auto& [id, values] : c.tracks) give(library_.given_, id, c.which, values);
    library_.items_.reset();
    return {};
  }

  Result operator()(const command::MovePlaylist& c) {
    static_cast<void>(list(c.playlist));
    failCommand(Failure::notAllowed, Message::tr("Rhythmbox has no folders of playlists"));
  }
  Result operator()(const command::DeleteTracks&) { failToRemove(); }
  Result operator()(const command::RestoreTracks&) { failToRemove(); }

 private:
  [[noreturn]] static void failToRemove() {
    failCommand(Failure::notAllowed,
                Message::tr("Rhythmbox itself removes the tracks whose files are gone"));
  }

  const MediaItem& track(std::uint64_t id) {
    const MediaItem* item = library_.tracks().find(id);
    if (!item) failWithoutTrack(id);
    return *item;
  }
  List& list(std::uint64_t id) {
    auto& lists = library_.lists_;
    const auto found =
        std::find_if(lists.begin(), lists.end(), [&](const List& list) { return list.id == id; });
    if (found == lists.end()) failWithoutPlaylist(id);
    return *found;
  }
  List& changeable(std::uint64_t id) {
    List& found = list(id);
    if (found.isAutomatic) refuseToFill(shown(found));
    if (found.hasNamesake)
      refuse(shown(found), Message::tr("shares its name with another, and Rhythmbox, while it "
                                       "runs, knows playlists by name alone"));
    return found;
  }

  [[nodiscard]] Playlist shown(const List& list) { return library_.playlistOf(list); }

  /// Where a list's entries of known tracks are.
  std::vector<std::size_t> placesOf(const List& list) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < list.entries.size(); ++i)
      if (library_.tracks().find(list.entries[i])) places.push_back(i);
    return places;
  }
  static std::size_t placeOf(const std::vector<std::size_t>& places, std::uint64_t position) {
    if (position == 0 || position > places.size()) failWithoutPosition();
    return places[position - 1];
  }

  Result set(List& list, IDs entries) {
    const std::uint64_t id = list.id;
    if (entries == list.entries) return {{}, id, {}};
    std::unordered_map<std::uint64_t, std::size_t> old, listed;
    for (const std::uint64_t entry : list.entries) ++old[entry];
    for (const std::uint64_t entry : entries)
      if (++listed[entry] > std::max<std::size_t>(old[entry], 1))
        failCommand(
            Failure::notAllowed,
            Message::tr("The playlist %1 would list a track twice, which Rhythmbox does not do")
                .arg(inQuotes(list.name)));
    library_.change();
    List& locked = this->list(id);  // what was half done before may have been restored
    std::swap(locked.entries, entries);
    if (library_.isLive_)
      if (Message why = reasonAgainst(locked); !why.empty()) {
        std::swap(locked.entries, entries);
        failCommand(Failure::notAllowed, std::move(why));
      }
    if (library_.shown_)
      library_.unshown_.insert(static_cast<std::size_t>(&locked - library_.lists_.data()));
    return {{}, id, {}};
  }

  /// Of a list as it is to become, before it counts.
  [[nodiscard]] Message reasonAgainst(const List& list) {
    const auto& kept = library_.kept_;
    const auto before = std::find_if(kept.begin(), kept.end(),
                                     [&](const List& other) { return other.id == list.id; });
    if (before == kept.end()) return {};  // it is made by this batch
    return library_.reasonAgainst({&*before, &list}, {list.name});
  }

  template <typename Test>
  Result remove(Test&& isRemoved) {
    auto& lists = library_.lists_;
    if (std::none_of(lists.begin(), lists.end(), isRemoved)) return {};
    library_.change();
    std::erase_if(lists, isRemoved);
    library_.shown_.reset();
    return {};
  }

  RhythmboxLibrary& library_;
};

Message RhythmboxLibrary::reasonNotToChange(std::uint64_t playlist) {
  for (const List& list : lists_)
    if (list.id == playlist &&
        std::unordered_set(list.entries.begin(), list.entries.end()).size() != list.entries.size())
      return Message::tr("it lists a track twice, which Rhythmbox does not do");
  return {};
}

CommandResult RhythmboxLibrary::execute(const Command& command) {
  try {
    return std::visit(Commands(*this), command);
  } catch (const BusError& error) {  // asked before anything was changed
    failCommand(CommandFailure::failed, error.message);
  }
}

}  // namespace kestrel
