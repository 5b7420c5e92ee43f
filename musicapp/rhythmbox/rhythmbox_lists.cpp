// The lists of Rhythmbox, as its file and the running player have them.
#include <algorithm>
#include <unordered_map>
#include <utility>

#include "foundation/library_error.h"
#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {

namespace {

using std::string;

}  // namespace

std::vector<RhythmboxLibrary::List> RhythmboxLibrary::readLists() {
  playlistsStatus_ = services_.files.status(playlistsPath_);
  stored_ = playlistsStatus_
                ? rhythmbox::PlaylistsFile(services_.files.readAll(playlistsPath_), playlistsPath_)
                : rhythmbox::PlaylistsFile();
  std::vector<List> lists;
  std::unordered_map<string, std::size_t> namesakes;
  for (std::size_t i = 0; i < stored_.lists().size(); ++i) {
    const rhythmbox::StoredList& stored = stored_.lists()[i];
    const bool isAutomatic = stored.type == "automatic";
    if (!isAutomatic && stored.type != "static") continue;
    lists.push_back({newListID(stored.type, stored.name, namesakes[stored.type + stored.name]++),
                     stored.name, isAutomatic, idsOf(stored.uris), i});
  }
  hidden_.clear();
  try {
    if (isLive_) showRunning(lists);
  } catch (const BusError& error) {
    fail(Message::tr("Rhythmbox runs but does not say what its playlists hold: %1")
             .arg(error.message),
         Message::tr("Try again, or close Rhythmbox."));
  }
  return lists;
}

/// The lists as the running player has them, which the file will say some seconds later.
void RhythmboxLibrary::showRunning(std::vector<List>& lists) {
  std::unordered_map<string, std::size_t> named;
  for (string& name : player_.lists(!lists.empty())) ++named[std::move(name)];
  const std::size_t stored = std::erase_if(lists, [&](const List& l) { return !named[l.name]; });
  if (stored > 0 && lists.empty())
    fail(Message::tr("Rhythmbox runs with another library than this"), closePlayer());
  for (List& list : lists) {
    const std::size_t count = std::exchange(named[list.name], 0);
    list.hasNamesake = count != 1;
    if (count == 1 && !list.isAutomatic)
      takeShown(list, mayShow(list) ? idsOf(player_.entries(list.name)) : IDs());
  }
  for (const auto& [name, count] : named) {
    if (count == 0) continue;
    const bool isAutomatic = !player_.isStatic(name);
    lists.push_back({newListID(isAutomatic ? "automatic" : "static", name, 0),
                     name,
                     isAutomatic,
                     isAutomatic ? IDs() : idsOf(player_.entries(name)),
                     {},
                     count > 1});
  }
  // The player has tracks that are not in its file yet.
  for (const string& uri : addedUris())
    if (!tracks().find(ids_.of(uri)) && !loaded_.contains(uri))
      if (auto found = player_.properties(uri); !found.empty())
        loaded_.emplace(uri, std::move(found));
  std::size_t asked = 0;  // of many, the file says all before they would have been asked for
  for (const List& list : lists)
    for (const std::uint64_t entry : list.entries) {
      const string& uri = *ids_.uriOf(entry);
      if (tracks().find(entry) || loaded_.contains(uri) || ++asked > 1000) continue;
      if (auto found = player_.properties(uri); !found.empty())
        loaded_.emplace(uri, std::move(found));
    }
}

/// Whether the player may be asked what a list holds, which opens a window of its where that is
/// nothing: by the file, and by what was read or made last.
bool RhythmboxLibrary::mayShow(const List& list) {
  const auto hasFile = [&](std::uint64_t entry) {
    string path;
    return pathOfFileUrl(*ids_.uriOf(entry), path) && services_.files.exists(path);
  };
  const auto kept = std::find_if(kept_.begin(), kept_.end(),
                                 [&](const List& other) { return other.id == list.id; });
  return std::any_of(list.entries.begin(), list.entries.end(), hasFile) ||
         (kept != kept_.end() && std::any_of(kept->entries.begin(), kept->entries.end(), hasFile));
}

/// Entries that are not shown, since their files are missing, stay behind the ones they stood
/// behind.
void RhythmboxLibrary::takeShown(List& list, const IDs& shown) {
  const IDs stored = std::exchange(list.entries, shown);
  const std::unordered_set<std::uint64_t> isShown(shown.begin(), shown.end());
  IDs& entries = list.entries;
  std::optional<std::uint64_t> behind;
  for (const std::uint64_t entry : stored) {
    if (!isShown.contains(entry)) {
      if (!isMissing(entry)) continue;
      hidden_.insert(entry);
      entries.insert(
          behind ? std::find(entries.begin(), entries.end(), *behind) + 1 : entries.begin(), entry);
    }
    behind = entry;
  }
}

bool RhythmboxLibrary::isMissing(std::uint64_t entry) {
  const MediaItem* item = tracks().find(entry);
  if (!item) return false;  // which the player does not keep
  const string path = filePath(*item);
  return path.empty() || !services_.files.exists(path);
}

void RhythmboxLibrary::setLists(std::vector<List> lists) {
  kept_ = lists;
  lists_ = std::move(lists);
  shown_.reset();
  changed_ = false;
}

RhythmboxLibrary::Uris RhythmboxLibrary::urisOf(const IDs& entries, bool withHidden) const {
  Uris uris;
  for (const std::uint64_t entry : entries)
    if (withHidden || !hidden_.contains(entry)) uris.push_back(*ids_.uriOf(entry));
  return uris;
}

RhythmboxLibrary::IDs RhythmboxLibrary::idsOf(const Uris& uris) {
  IDs entries;
  entries.reserve(uris.size());
  for (const string& uri : uris) entries.push_back(ids_.of(uri));
  return entries;
}

std::uint64_t RhythmboxLibrary::newListID(const string& type, const string& name,
                                          std::size_t namesakes) {
  return listIDs_.of(type + "/" + name + (namesakes ? "\n" + std::to_string(namesakes) : ""));
}

string RhythmboxLibrary::addedPath() const {
  const string journal = journalPath();
  return journal.empty() ? journal : journal.substr(0, journal.rfind('.')) + ".added";
}

RhythmboxLibrary::Uris RhythmboxLibrary::addedUris() const {
  Uris uris;
  const string path = addedPath();
  if (path.empty() || !services_.files.exists(path)) return uris;
  try {
    const string text = services_.files.readAll(path);
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size());
      if (end > at) uris.push_back(text.substr(at, end - at));
      at = end + 1;
    }
  } catch (const FileError& error) {
    services_.log.line(error.what());
  }
  return uris;
}

void RhythmboxLibrary::keepAdded(const string& uri) {
  string text;
  for (const string& added : addedUris())
    if (!tracks().find(ids_.of(added)) || loaded_.contains(added)) text += added + '\n';
  text += uri + '\n';
  try {
    static_cast<void>(supportFolder(services_.files, playlistsPath_, "Rhythmbox"));
    services_.files.writeAtomically(addedPath(), text);
  } catch (const LibraryError& error) {  // it shows once the player has written its file
    services_.log.line(error.what());
  }
}

}  // namespace kestrel
