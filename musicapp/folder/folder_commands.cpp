// Carrying commands out on the playlists of a folder, in memory.
#include <algorithm>
#include <filesystem>
#include <utility>
#include <variant>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/command_support.h"
#include "musicapp/folder/track_finder.h"
#include "musicapp/revealer.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::size_t;
using IDs = std::vector<std::uint64_t>;
using Failing = CommandFailure;

[[noreturn]] void failToAllow(Message message) {
  throw CommandError(Failing::notAllowed, std::move(message));
}

/// A name as that of a file that is not hidden.
std::string fileName(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  std::replace(name.begin(), name.end(), '\0', '_');
  return name.empty() || name.starts_with('.') ? "_" + name : name;
}

}  // namespace

class FolderLibrary::Commands {
 public:
  explicit Commands(FolderLibrary& library) : library_(library) {}

  CommandResult operator()(const command::AddFile&) {
    failToAllow(
        Message::tr("A folder has the files that lie in it: put the file there, then read the "
                    "library again"));
  }
  CommandResult operator()(const command::TrackCloudStatus& command) {
    static_cast<void>(track(command.track));
    return {"unknown", {}, {}};
  }
  CommandResult operator()(const command::TrackLocation& command) {
    return {filePath(track(command.track)), {}, {}};
  }
  CommandResult operator()(const command::RevealTrack& command) {
    if (command.playlist) {
      const IDs& items = (*library_.playlists_)[position(*command.playlist)].items;
      if (std::find(items.begin(), items.end(), command.track) == items.end())
        failWithoutTrack(command.track);
    }
    return reveal(filePath(track(command.track)));
  }
  CommandResult operator()(const command::RevealPlaylist& command) {
    const std::string& path = library_.lists_[position(command.playlist)].path;
    return reveal(path.empty() ? library_.root_ : path);
  }

  CommandResult operator()(const command::DeleteSameNamedPlaylists& command) {
    for (size_t i = library_.lists_.size(); i-- > 0;) {
      const Playlist& list = (*library_.playlists_)[i];
      const bool isNamed = command.caseSensitive ? list.name == command.name
                                                 : sameIgnoringCase(list.name, command.name);
      if (isNamed && isList(i) && list.persistentID != command.except) library_.remove(i);
    }
    return {};
  }
  CommandResult operator()(const command::DeletePlaylist& command) {
    const size_t playlist = position(command.playlist);
    if (library_.lists_[playlist].path.empty())
      failToAllow(Message::tr("Only playlists that are files can be deleted"));
    library_.remove(playlist);
    return {};
  }

  CommandResult operator()(const command::ReplaceEntries& command) {
    const size_t playlist = changeable(command.playlist);
    IDs tracks;
    for (const auto& entry : command.entries) tracks.push_back(entry.track);
    requireTracks(tracks);
    const size_t count = (*library_.playlists_)[playlist].items.size();
    for (const auto& entry : command.entries)
      if (entry.position == 0 || entry.position > count) failWithoutPosition();
    if (tracks.empty()) return {};
    const auto entries = known(playlist);
    for (const auto& entry : command.entries) entries[entry.position - 1]->track = entry.track;
    return changed(playlist);
  }
  CommandResult operator()(const command::SetEntries& command) {
    const size_t playlist = changeable(command.playlist);
    requireTracks(command.tracks);
    std::vector<Entry>& entries = library_.edit(playlist).entries;
    setEntries(entries, command, matchedEntries((*library_.playlists_)[playlist], command));
    return changed(playlist);
  }
  CommandResult operator()(const command::DeleteEntries& command) {
    const size_t playlist = changeable(command.playlist);
    if (command.positions.empty()) return {};
    std::vector<Entry*> entries = known(playlist);
    IDs then;  // checked first: a failing command changes nothing
    for (const std::uint64_t position : command.positions) {
      if (position == 0 || position > entries.size()) failWithoutPosition();
      Entry*& entry = entries[position - 1];
      then.push_back(static_cast<std::uint64_t>(entry - library_.edit(playlist).entries.data()));
      entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(position - 1));
    }
    std::sort(then.rbegin(), then.rend());
    std::vector<Entry>& list = library_.edit(playlist).entries;
    for (const std::uint64_t place : then)
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(place));
    return changed(playlist);
  }
  CommandResult operator()(const command::DeleteAllEntries& command) {
    const size_t playlist = changeable(command.playlist);
    library_.edit(playlist).entries.clear();
    return changed(playlist);
  }
  CommandResult operator()(const command::DuplicateTracks& command) {
    const size_t playlist = changeable(command.playlist);
    requireTracks(command.tracks);
    std::vector<Entry>& entries = library_.edit(playlist).entries;
    for (const std::uint64_t track : command.tracks) entries.push_back(added(track));
    return changed(playlist);
  }

  CommandResult operator()(const command::DeleteTracks&) {
    failToAllow(Message::tr(
        "A folder has the files that lie in it: a track leaves when its file goes to the trash"));
  }
  CommandResult operator()(const command::RestoreTracks&) {
    failToAllow(Message::tr(
        "A folder has the files that lie in it: a track comes back when its file does"));
  }

  CommandResult operator()(const command::SetValues&) { refuseValues(whyNoValues()); }
  CommandResult operator()(const command::MovePlaylist& command) {
    const size_t playlist = changeable(command.playlist), folder = position(command.folder);
    if ((*library_.playlists_)[folder].kind != PlaylistKind::folder)
      failToAllow(Message::tr("The playlist %1 %2")
                      .arg(inQuotes((*library_.playlists_)[folder].name))
                      .arg(Message::tr("is no folder")));
    if ((*library_.playlists_)[playlist].parentID == command.folder) return {};
    const std::string& old = library_.lists_[playlist].path;
    std::string path;
    for (const ListFile& list : library_.lists_)
      if (!list.path.empty() && library_.folderOf(list.path) == command.folder)
        path =
            std::filesystem::path(list.path).parent_path() / std::filesystem::path(old).filename();
    if (path.empty() || isTaken(path))
      failToAllow(Message::tr("There is a playlist file %1 already").arg(path));
    EditedList& edited = library_.edit(playlist);
    std::string name = (*library_.playlists_)[playlist].name;
    library_.ownPlaylists()[playlist] = library_.playlistOf(path, edited.entries);
    library_.ownPlaylists()[playlist].name = std::move(name);  // until the files are read again
    library_.lists_[playlist] = {path, {}};
    return changed(playlist);
  }
  CommandResult operator()(const command::CreatePlaylist& command) {
    library_.lock();
    const std::string name = fileName(command.name);
    // One that had its ending in its name gets that again.
    const bool hasEnding = PlaylistFile::isName(name);
    const size_t stem = hasEnding ? name.rfind('.') : name.size();
    std::string path;
    for (int number = 1; path.empty(); ++number)
      for (const std::string& ending :
           hasEnding ? std::vector{name.substr(stem)}
                     : std::vector<std::string>{".m3u8", ".m3u", ".xspf", ".pls"}) {
        std::string next = library_.root_ + "/" + name.substr(0, stem) +
                           (number > 1 ? " " + std::to_string(number) : "") + ending;
        if (isTaken(next)) continue;
        path = std::move(next);
        break;
      }
    EditedList edited;
    edited.file = PlaylistFile::read(path, PlaylistFile::empty(path));
    std::vector<Playlist>& playlists = library_.ownPlaylists();
    playlists.push_back(library_.playlistOf(path, {}));
    if (hasEnding) playlists.back().name = writableText(name);
    library_.lists_.push_back({path, {}});
    const std::uint64_t id = playlists.back().persistentID;
    library_.edited_.emplace(playlists.size() - 1, std::move(edited));
    return {{}, id, {}};
  }

 private:
  const MediaItem& track(std::uint64_t id) {
    const MediaItem* found = library_.finder().track(id);
    if (!found) failWithoutTrack(id);
    return *found;
  }
  void requireTracks(const IDs& ids) {
    for (const std::uint64_t id : ids) static_cast<void>(track(id));
  }
  size_t position(std::uint64_t id) {
    const auto& lists = *library_.playlists_;
    const auto found = std::find_if(lists.begin(), lists.end(),
                                    [&](const auto& list) { return list.persistentID == id; });
    if (found == lists.end()) failWithoutPlaylist(id);
    return static_cast<size_t>(found - lists.begin());
  }
  [[nodiscard]] bool isList(size_t playlist) const {
    return !library_.lists_[playlist].path.empty();
  }
  size_t changeable(std::uint64_t id) {
    const size_t playlist = position(id);
    if (!isList(playlist))
      failToAllow(Message::tr("The playlist %1 %2")
                      .arg(inQuotes((*library_.playlists_)[playlist].name))
                      .arg(Message::tr("fills itself: its entries cannot be changed")));
    if (Message reason = library_.reasonNotToChange(id); !reason.empty())
      failToAllow(std::move(reason));
    return playlist;
  }
  [[nodiscard]] bool isTaken(const std::string& path) const {
    const auto& lists = library_.lists_;
    return library_.services_.files.entryStatus(path) ||
           std::any_of(lists.begin(), lists.end(),
                       [&](const ListFile& list) { return list.path == path; });
  }

  /// The entries of tracks that the library has, which are those that positions count.
  std::vector<Entry*> known(size_t playlist) {
    std::vector<Entry*> entries;
    for (Entry& entry : library_.edit(playlist).entries)
      if (entry.track != 0) entries.push_back(&entry);
    return entries;
  }
  static Entry added(std::uint64_t track) {
    Entry entry;
    entry.track = track;
    return entry;
  }
  CommandResult changed(size_t playlist) {
    library_.showEntries(playlist);
    return {{}, (*library_.playlists_)[playlist].persistentID, {}};
  }

  static void setEntries(std::vector<Entry>& entries, const command::SetEntries& then,
                         const EntryMatch& match) {
    std::vector<size_t> known, unknown;  // places
    for (size_t i = 0; i < entries.size(); ++i)
      (entries[i].track == 0 ? unknown : known).push_back(i);
    std::vector<Entry> result;
    size_t next = 0;  // of the unknown ones
    // Up to a place, or a number of them.
    const auto keepUnknown = [&](size_t place, size_t count) {
      for (; next < unknown.size() && unknown[next] < place && next < count; ++next)
        result.push_back(std::move(entries[unknown[next]]));
    };
    for (size_t j = 0; j < then.tracks.size(); ++j) {
      const size_t from = match.from[j];
      if (!match.unknownBefore.empty())
        keepUnknown(SIZE_MAX, match.unknownBefore[j]);
      else if (from != noEntry)
        keepUnknown(known[from], SIZE_MAX);
      result.push_back(from == noEntry ? added(then.tracks[j]) : std::move(entries[known[from]]));
      result.back().track = then.tracks[j];
    }
    keepUnknown(SIZE_MAX, SIZE_MAX);
    entries = std::move(result);
  }

  CommandResult reveal(const std::string& path) {
    Revealer* revealer = library_.services_.revealer;
    if (!revealer)
      throw CommandError(Failing::failed, Message::tr("There is nothing here to show it in"));
    try {
      revealer->revealFile(path);
    } catch (const FileError& error) {
      throw CommandError(Failing::failed, error.message);
    }
    return {};
  }

  FolderLibrary& library_;
};

CommandResult FolderLibrary::execute(const Command& command) {
  return std::visit(Commands(*this), command);
}

}  // namespace kestrel
