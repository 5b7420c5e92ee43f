// The playlists of a folder: reading their files, and changing them.
#include <algorithm>
#include <deque>
#include <unordered_set>
#include <utility>

#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/file_url.h"
#include "musicapp/folder/list_index.h"
#include "musicapp/folder/track_finder.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::size_t;

std::string folderPart(const std::string& path) { return path.substr(0, path.rfind('/')); }
/// A line without the white space that it begins with; empty for one that does not.
std::string_view withoutIndent(std::string_view line) {
  const size_t begin = std::min(line.find_first_not_of(" \t\r"), line.size());
  return begin == 0 ? std::string_view() : line.substr(begin);
}

std::string namePart(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

FolderLibrary::TrackFinder& FolderLibrary::finder() {
  if (!finder_) finder_ = std::make_unique<TrackFinder>(*items_);
  return *finder_;
}

std::string FolderLibrary::uriOf(const std::string& listPath) const {
  for (size_t i = 0; i < roots_.size(); ++i)
    if (liesIn(listPath, roots_[i])) {
      const std::string within = listPath.substr(roots_[i].size() + 1);
      return i == 0 ? within : "/" + std::to_string(i) + "/" + within;
    }
  return listPath;
}

std::string FolderLibrary::pathOfUri(const std::string& uri) const {
  if (!uri.starts_with('/')) return (root_ == "/" ? "" : root_) + "/" + uri;
  for (size_t i = 1; i < roots_.size(); ++i)
    if (const std::string prefix = "/" + std::to_string(i) + "/"; uri.starts_with(prefix))
      return roots_[i] + uri.substr(prefix.size() - 1);
  return uri;
}

std::vector<FolderLibrary::Entry> FolderLibrary::entriesOf(const ListedPaths& listed,
                                                           const std::string& path) {
  std::vector<Entry> entries(listed.entries.size());
  const std::string folder = folderPart(path);
  for (size_t i = 0; i < entries.size(); ++i) {
    Entry& entry = entries[i];
    entry.from = i;
    const ListedPaths::Spelling& spelling = listed.entries[i];
    const auto take = [&](const MediaItem& track, PathReading& reading) {
      entry.track = entry.then = track.persistentID;
      entry.style = std::move(reading.style);
    };
    auto likeliest = likeliestReading(spelling.text, folder, listed.areUrls);
    const MediaItem* const there = likeliest ? finder().exactly(likeliest->path) : nullptr;
    if (there) {
      take(*there, *likeliest);
      continue;
    }
    const std::string_view trimmed[] = {withoutIndent(spelling.text),
                                        withoutIndent(spelling.decoded)};
    for (const std::string_view text :
         {std::string_view(spelling.text), std::string_view(spelling.decoded), trimmed[0],
          trimmed[1]}) {
      if (entry.track != 0) break;
      const bool isLikely = trimmed[0].empty() || text.data() == trimmed[0].data();
      for (PathReading& reading : readingsOf(text, folder, listed.areUrls)) {
        if (const MediaItem* track = finder().at(reading.path)) {
          take(*track, reading);
          break;
        }
        if (!entry.path.empty() || !isLikely) continue;
        entry.path = std::move(reading.path);
        entry.style = std::move(reading.style);
      }
    }
  }
  return entries;
}

std::string FolderLibrary::folderWithin(const std::string& listPath) const {
  std::string uri = uriOf(listPath);
  const size_t slash = uri.rfind('/');
  const bool isTop =
      slash == std::string::npos || (uri.starts_with('/') && uri.find('/', 1) == slash);
  uri.resize(isTop ? 0 : slash);
  return uri;
}

std::uint64_t FolderLibrary::folderOf(const std::string& listPath) {
  const std::string folder = folderWithin(listPath);
  return folder.empty() ? 0 : folderIDs_.of(folder);
}

Playlist FolderLibrary::playlistOf(const std::string& path, const std::vector<Entry>& entries) {
  Playlist list;
  const std::string name = namePart(path);
  list.name = writableText(name.substr(0, name.rfind('.')));
  list.persistentID = listIDs_.of(uriOf(path));
  if (const std::uint64_t folder = folderOf(path)) list.parentID = folder;
  show(entries, list);
  return list;
}

void FolderLibrary::show(const std::vector<Entry>& entries, Playlist& list) {
  list.items.clear();
  list.unknownAt.clear();
  for (const Entry& entry : entries)
    if (entry.track == 0)
      list.unknownAt.push_back(list.items.size());
    else
      list.items.push_back(entry.track);
}

void FolderLibrary::readLists(std::unique_ptr<ListIndex> index) {
  notes_.resize(notesOfTracks_);
  unread_.clear();
  auto playlists = std::make_shared<std::vector<Playlist>>();
  playlists->push_back(masterPlaylist(*items_, writableText(namePart(root_))));
  std::vector<ListFile> lists(1);
  // Those of a folder stand together, the top ones first.
  std::vector<std::pair<std::string, std::string>> paths;  // with their folders before them
  paths.reserve(contents_.lists.size());
  for (const std::string& path : contents_.lists)
    paths.emplace_back(folderWithin(path).empty() ? "" : folderPart(path), path);
  std::sort(paths.begin(), paths.end());
  if (!index) index = std::make_unique<ListIndex>(services_.files, services_.log, roots_);
  const Moment now = services_.clock.now();
  size_t folder = 0;  // the place of the last one
  for (const auto& [before, path] : paths) {
    Playlist list;
    const auto state = contents_.listStates.find(path);
    const auto status = state == contents_.listStates.end() ? services_.files.status(path)
                                                            : std::optional(state->second);
    try {
      auto listed = status ? index->find(path, *status) : std::nullopt;
      if (!listed) {
        listed = PlaylistFile::read(path, services_.files.readAll(path))->listed();
        if (status) index->keep(path, *status, *listed, now);
      }
      list = playlistOf(path, entriesOf(*listed, path));
    } catch (const LibraryError& error) {
      notes_.push_back(error.message);
      unread_.push_back(path);
      continue;
    }
    if (list.parentID && (folder == 0 || (*playlists)[folder].persistentID != list.parentID)) {
      folder = playlists->size();
      Playlist& parent = playlists->emplace_back();
      const std::string within = folderWithin(path);
      parent.name =
          writableText(within.substr(within.starts_with('/') ? within.find('/', 1) + 1 : 0));
      parent.persistentID = *list.parentID;
      parent.kind = PlaylistKind::folder;
      lists.emplace_back();
    }
    playlists->push_back(std::move(list));
    lists.push_back({path, status});
  }
  index->save();
  tellApart(*playlists, lists);
  fill(*playlists);
  playlists_ = std::move(playlists);
  lists_ = std::move(lists);
  finder_.reset();
}

/// Two files of a folder may differ in their endings alone: those have them in their names.
void FolderLibrary::tellApart(std::vector<Playlist>& playlists, std::span<const ListFile> lists) {
  std::map<std::pair<std::uint64_t, std::string>, std::vector<size_t>> named;
  for (size_t i = 0; i < lists.size(); ++i)
    if (!lists[i].path.empty())
      named[{playlists[i].parentID.value_or(0), playlists[i].name}].push_back(i);
  for (const auto& [name, places] : named)
    if (places.size() > 1)
      for (const size_t place : places)
        playlists[place].name = writableText(namePart(lists[place].path));
}

/// Folders of playlists hold what these do.
void FolderLibrary::fill(std::vector<Playlist>& playlists) {
  std::unordered_map<std::uint64_t, Playlist*> folders;
  for (Playlist& playlist : playlists)
    if (playlist.kind == PlaylistKind::folder) {
      playlist.items.clear();
      folders.emplace(playlist.persistentID, &playlist);
    }
  for (const Playlist& playlist : playlists)
    if (playlist.parentID)
      if (const auto found = folders.find(*playlist.parentID); found != folders.end())
        found->second->items.insert(found->second->items.end(), playlist.items.begin(),
                                    playlist.items.end());
}

void FolderLibrary::fillFolders() {
  auto filled = std::make_shared<std::vector<Playlist>>(*playlists_);
  fill(*filled);
  playlists_ = std::move(filled);
}

void FolderLibrary::checkUnchanged() const {
  for (const ListFile& list : lists_)
    if (list.status && services_.files.status(list.path) != list.status)
      throwChangedMeanwhile(list.path);
}

void FolderLibrary::lock() {
  if (lock_) return;
  LibraryLock lock(services_.files, root_);
  checkUnchanged();
  lock_.emplace(std::move(lock));
}

std::vector<Playlist>& FolderLibrary::ownPlaylists() {
  if (!committed_) {
    committed_ = playlists_;
    committedLists_ = lists_;
    playlists_ = std::make_shared<std::vector<Playlist>>(*playlists_);
  } else if (playlists_.use_count() > 1) {
    playlists_ = std::make_shared<std::vector<Playlist>>(*playlists_);
  }
  return const_cast<std::vector<Playlist>&>(*playlists_);
}

FolderLibrary::EditedList& FolderLibrary::edit(size_t playlist) {
  lock();
  const auto found = edited_.find(playlist);
  if (found != edited_.end()) return found->second;
  const ListFile& list = lists_[playlist];
  EditedList edited;
  edited.then = list;
  edited.bytes = services_.files.readAll(list.path);
  edited.bytes.shrink_to_fit();  // thousands of small ones may be edited together
  if (services_.files.status(list.path) != list.status) throwChangedMeanwhile(list.path);
  edited.file = PlaylistFile::read(list.path, edited.bytes);
  edited.entries = entriesOf(edited.file->listed(), list.path);
  const auto styled = std::find_if(edited.entries.begin(), edited.entries.end(),
                                   [](const Entry& entry) { return entry.then != 0; });
  if (styled != edited.entries.end()) edited.style = styled->style;
  // Not every program, nor every disk, leaves a trace of a change in size and time.
  if (playlistOf(list.path, edited.entries).items != (*playlists_)[playlist].items) {
    ListIndex::forget(services_.files, services_.log, list.path);
    throwChangedMeanwhile(list.path);
  }
  ownPlaylists();
  return edited_.emplace(playlist, std::move(edited)).first->second;
}

void FolderLibrary::showEntries(size_t playlist) {
  show(edited_.at(playlist).entries, ownPlaylists()[playlist]);
}

void FolderLibrary::remove(size_t playlist) {
  edit(playlist);
  removed_.push_back(std::move(edited_.extract(playlist).mapped()));
  const auto at = static_cast<std::ptrdiff_t>(playlist);
  ownPlaylists().erase(ownPlaylists().begin() + at);
  lists_.erase(lists_.begin() + at);
  std::map<size_t, EditedList> moved;
  for (auto& [place, list] : edited_)
    moved.emplace(place > playlist ? place - 1 : place, std::move(list));
  edited_ = std::move(moved);
}

std::string FolderLibrary::written(const EditedList& list, const std::string& path) {
  const std::string folder = folderPart(path);
  const bool isMoved = !list.then.path.empty() && folderPart(list.then.path) != folder;
  // An added entry is spelled like the one before it, the first like the first.
  PathStyle style;
  style.isEncoded = list.file->hasUrls();
  style.isAbsolute = style.isEncoded || !liesIn(path, root_);
  if (style.isEncoded) style.scheme = "file://";
  if (list.style) style = *list.style;

  std::deque<ListedTrack> tracks;
  const auto listed = [&](std::uint64_t id) {
    ListedTrack& track = tracks.emplace_back();
    if (const MediaItem* item = finder().track(id)) {
      track.title = printable(item->title.view());
      track.artist = printable(item->artist.view());
      track.album = printable(item->album.view());
      track.milliseconds = item->totalTime;
    }
    return &track;
  };
  std::vector<PlaylistSlot> slots;
  for (const Entry& entry : list.entries) {
    if (entry.then != 0) style = entry.style;
    PlaylistSlot& slot = slots.emplace_back();
    slot.from = entry.from;
    const bool isAdded = entry.from == PlaylistSlot::added;
    const PathStyle& own = isAdded ? style : entry.style;
    slot.onlyLocation = !isAdded && entry.track == entry.then;
    if (slot.onlyLocation && (!isMoved || own.isAbsolute)) continue;
    const MediaItem* item = entry.track ? finder().track(entry.track) : nullptr;
    const std::string target = item ? filePath(*item) : entry.path;
    if (target.empty()) continue;  // the address of something else
    ListedTrack* now = listed(entry.track);
    now->location = spelled(target, folder, own);
    if (!list.file->canHold(now->location, entry.from)) now->location = fileUrlOfPath(target);
    slot.now = now;
    if (entry.then != 0) slot.then = listed(entry.then);
  }
  return list.file->written(slots);
}

/// What comes into a list, and what it comes in place of, were compared by their tags.
void FolderLibrary::checkSongs() {
  std::unordered_set<std::uint64_t> checked;
  const auto check = [&](std::uint64_t id, bool mayBeGone) {
    const MediaItem* item = id != 0 && checked.insert(id).second ? finder().track(id) : nullptr;
    if (!item || isFileAsRead(*item)) return;
    const std::string path = filePath(*item);
    if (!mayBeGone || services_.files.exists(path)) throwChangedMeanwhile(path);
  };
  for (const auto& [playlist, list] : edited_)
    for (const Entry& entry : list.entries)
      if (entry.track != entry.then) check(entry.track, false);
  for (const auto& [playlist, list] : edited_)
    for (const Entry& entry : list.entries)
      if (entry.track != entry.then) check(entry.then, true);
}

std::vector<ListChange> FolderLibrary::changes() {
  checkSongs();
  std::vector<ListChange> changes;
  for (const EditedList& list : removed_)
    if (!list.then.path.empty())
      changes.push_back({list.then.path, list.then.status, list.bytes, {}, {}});
  for (const auto& [playlist, list] : edited_) {
    const std::string& path = lists_[playlist].path;
    std::string after = written(list, path);
    if (list.then.path != path) {
      if (!list.then.path.empty())
        changes.push_back({list.then.path, list.then.status, list.bytes, {}, {}});
      changes.push_back({path, {}, {}, std::move(after), {}});
    } else if (after != list.bytes) {
      changes.push_back({path, list.then.status, list.bytes, std::move(after), {}});
    }
  }
  return changes;
}

void FolderLibrary::commit(const Batch::Record& record) {
  if (!isChanged() && !reversion_) return;
  const bool isReversion = reversion_.has_value();
  std::vector<ListChange> list = isReversion ? *std::exchange(reversion_, {}) : changes();
  const std::vector<std::string> folders = unchangedFoldersOf(list);
  commitLists(list, services_.files, services_.log, options_, [&] {
    if (record && !isReversion) record(reversalOf(list, root_));
  });
  bool comesOrGoes = isReversion;
  for (const ListChange& change : list) {
    comesOrGoes |= !change.before || !change.after;
    if (!change.after) std::erase(contents_.lists, change.path);
    if (!change.before) contents_.lists.push_back(change.path);
    for (ListFile& file : lists_)
      if (file.path == change.path) file.status = change.status;
  }
  takeFolders(folders);
  edited_.clear();
  removed_.clear();
  committed_.reset();
  committedLists_.clear();
  comesOrGoes ? readLists() : fillFolders();
  finder_.reset();
}

void FolderLibrary::rollBack() {
  reversion_.reset();
  edited_.clear();
  removed_.clear();
  finder_.reset();
  if (!committed_) return;
  playlists_ = std::exchange(committed_, nullptr);
  lists_ = std::exchange(committedLists_, {});
}

}  // namespace kestrel
