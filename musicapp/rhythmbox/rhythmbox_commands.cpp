// Carrying commands out on the lists of Rhythmbox, in memory.
#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <variant>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/file_url.h"
#include "musicapp/revealer.h"
#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using Result = CommandResult;
using Failure = CommandFailure;

/// What went wrong with a command; nothing was changed by it.
class CommandProblem : public MessageError {
 public:
  CommandProblem(int number_, Message message_)
      : MessageError(std::move(message_)), number(number_) {}
  int number;
};

[[noreturn]] void failCommand(int number, Message message) {
  throw CommandProblem(number, std::move(message));
}
[[noreturn]] void failWithoutTrack(std::uint64_t id) {
  failCommand(
      Failure::noSuchObject,
      Message::tr("There is no track with the persistent ID %1").arg(TextSorter::decToHex(id)));
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
    library_.tracks_.reset();
    return {};
  }
  Result operator()(const command::TrackCloudStatus& c) {
    static_cast<void>(track(c.track));
    return {"unknown", {}, {}};
  }
  Result operator()(const command::TrackLocation& c) {
    const std::string path = filePath(track(c.track));
    return path.empty() ? Result() : Result{path, {}, {}};
  }
  Result operator()(const command::RevealTrack& c) {
    const std::string path = filePath(track(c.track));
    if (c.playlist) {
      const IDs& entries = list(*c.playlist).entries;
      if (std::find(entries.begin(), entries.end(), c.track) == entries.end())
        failWithoutTrack(c.track);
    }
    if (path.empty())
      failCommand(Failure::failed, Message::tr("The track has no file that could be shown"));
    reveal([&](Revealer& revealer) { revealer.revealFile(path); });
    return {};
  }
  Result operator()(const command::RevealPlaylist& c) {
    static_cast<void>(list(c.playlist));
    reveal([&](Revealer& revealer) { revealer.revealPlaylist(c.playlist); });
    return {};
  }

  Result operator()(const command::DeleteSameNamedPlaylists& c) {
    return remove([&](const List& list) {
      return !list.isAutomatic && list.id != c.except &&
             (c.caseSensitive ? list.name == c.name : sameIgnoringCase(list.name, c.name));
    });
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
  /// An entry of an unknown track stays behind the entry that it stood behind; among those that are
  /// replaced, behind as many as before.
  Result operator()(const command::SetEntries& c) {
    List& list = changeable(c.playlist);
    for (const std::uint64_t id : c.tracks) static_cast<void>(track(id));
    const std::vector<std::size_t> places = placesOf(list);
    std::size_t same = 0;  // at the end
    while (same < places.size() && same < c.tracks.size() &&
           list.entries[places[places.size() - 1 - same]] == c.tracks[c.tracks.size() - 1 - same])
      ++same;
    IDs entries;
    std::size_t known = 0, taken = 0;
    const auto takeUntil = [&](std::size_t count) {
      while (taken < std::min(count, c.tracks.size())) entries.push_back(c.tracks[taken++]);
    };
    for (std::size_t i = 0; i < list.entries.size(); ++i) {
      if (known < places.size() && places[known] == i) {
        ++known;
        continue;
      }
      const bool isInTail = known + same > places.size();
      takeUntil(isInTail ? known + c.tracks.size() - places.size()
                         : std::min(known, c.tracks.size() - same));
      entries.push_back(list.entries[i]);
    }
    takeUntil(c.tracks.size());
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
    if (found == lists.end())
      failCommand(Failure::noSuchObject,
                  Message::tr("There is no playlist with the persistent ID %1")
                      .arg(TextSorter::decToHex(id)));
    return *found;
  }
  List& changeable(std::uint64_t id) {
    List& found = list(id);
    const auto refuse = [&](Message why) {
      failCommand(Failure::notAllowed,
                  Message::tr("The playlist %1 %2").arg(inQuotes(found.name)).arg(std::move(why)));
    };
    if (found.isAutomatic) refuse(Message::tr("fills itself: its entries cannot be changed"));
    if (found.hasNamesake)
      refuse(
          Message::tr("shares its name with another, and Rhythmbox, while it runs, knows "
                      "playlists by name alone"));
    return found;
  }

  /// Where a list's entries of known tracks are.
  std::vector<std::size_t> placesOf(const List& list) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < list.entries.size(); ++i)
      if (library_.tracks().find(list.entries[i])) places.push_back(i);
    return places;
  }
  static std::size_t placeOf(const std::vector<std::size_t>& places, std::uint64_t position) {
    if (position == 0 || position > places.size())
      failCommand(Failure::noSuchPosition, Message::tr("The playlist has no entry at a position"));
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
    locked.entries = std::move(entries);
    if (library_.shown_)
      library_.unshown_.insert(static_cast<std::size_t>(&locked - library_.lists_.data()));
    return {{}, id, {}};
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

  template <typename Show>
  void reveal(Show&& show) {
    Revealer* revealer = library_.services_.revealer;
    if (!revealer) failCommand(Failure::failed, Message::tr("There is nothing here to show it in"));
    try {
      show(*revealer);
    } catch (const FileError& error) {
      failCommand(Failure::failed, error.message);
    }
  }

  RhythmboxLibrary& library_;
};

CommandResult RhythmboxLibrary::run(const Command& command) {
  CommandResult result;
  try {
    result = std::visit(Commands(*this), command);
    if (!hasBatch_) commit();
  } catch (const CommandProblem& error) {
    result = CommandResult::failing(error.message, error.number);
  } catch (const std::exception& error) {
    result = CommandResult::failing(messageOf(error), CommandFailure::failed);
  }
  if (!hasBatch_) {
    rollBack();
    lock_.reset();
  }
  return result;
}

}  // namespace kestrel
