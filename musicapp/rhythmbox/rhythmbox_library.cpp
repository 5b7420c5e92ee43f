#include "musicapp/rhythmbox/rhythmbox_library.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "musicapp/audio/missing_facts.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using std::string;
using std::string_view;

constexpr string_view scheme = "rhythmbox:";
constexpr string_view databaseName = "/rhythmdb.xml";

string canonicalFolder(const string& folder) {
  std::error_code error;
  const auto found = std::filesystem::weakly_canonical(folder, error);
  string path = error ? folder : found.string();
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// Where players of this user keep their data: the distribution's, and a sandboxed one.
std::vector<string> usualFolders(const FileService& files) {
  std::vector<string> folders;
  if (const auto data = files.applicationSupportDirectory())
    folders.push_back(canonicalFolder(*data + "/rhythmbox"));
  if (const char* home = std::getenv("HOME"); home && *home == '/')
    folders.push_back(
        canonicalFolder(string(home) + "/.var/app/org.gnome.Rhythmbox3/data/rhythmbox"));
  return folders;
}

/// Whether a player runs in this session, as far as that can be found out.
bool rhythmboxRuns(Clock& clock) noexcept {
  try {
    return rhythmbox::RunningPlayer({}, clock).isRunning();
  } catch (const std::exception&) {
    return false;
  }
}

Message closePlayer() { return Message::tr("Close Rhythmbox, then try again."); }
Message readAgain() { return Message::tr("Reload the library and try again."); }

}  // namespace

RhythmboxLibrary::RhythmboxLibrary(string folder, const ApplicationServices& services,
                                   CommitOptions options)
    : folder_(canonicalFolder(folder)),
      databasePath_(folder_ + string(databaseName)),
      playlistsPath_(folder_ + "/playlists.xml"),
      services_(services),
      options_(std::move(options)),
      player_(folder_, services.clock) {
  const auto usual = usualFolders(services_.files);
  isUsual_ = std::find(usual.begin(), usual.end(), folder_) != usual.end();
  read();
  try {
    if (!services_.files.exists(journalPath())) return;
    lock();
  } catch (const LibraryError& error) {  // it can be read all the same
    services_.log.line(error.what());
  }
  lock_.reset();
}

Capabilities RhythmboxLibrary::capabilities() const {
  return {.name = "Rhythmbox",
          .changesPlaylists = true,
          .editsInPlace = true,
          .keepsRepeats = false,
          .addsFiles = isLive_,
          .reveals = services_.revealer != nullptr,
          .takesValues = takenValues(),
          .whyNoOthers = isLive_ ? rhythmbox::whyNoComments() : Message()};
}

TrackValueSet RhythmboxLibrary::takenValues() const {
  return isLive_ ? TrackValueSet::all().without({TrackValue::comments}) : TrackValueSet::all();
}

void RhythmboxLibrary::fail(Message problem, Message remedy) const {
  throw LibraryError(playlistsPath_, {}, std::move(problem), std::move(remedy));
}

// Reading.

void RhythmboxLibrary::read() {
  clearLeftoversOf(playlistsPath_, services_.files, services_.log);
  if (services_.files.status(databasePath_) != databaseStatus_ || !databaseStatus_) tracks_.reset();
  isLive_ = isRunning();
  taken_.clear();
  items_.reset();
  tracks();
  const std::size_t known = loaded_.size();
  setLists(readLists());
  if (known != loaded_.size()) tracks_.reset();
}

rhythmbox::PlayerTracks& RhythmboxLibrary::tracks() {
  if (tracks_) return *tracks_;
  auto found = std::make_unique<rhythmbox::PlayerTracks>(ids_);
  const MappedFile file = services_.files.map(databasePath_);
  file.checked([&] {
    found->read({file.bytes().data(), file.bytes().size()}, databasePath_);
    return true;
  });
  for (const auto& [uri, properties] : loaded_) found->add(properties);
  if (services_.readsFiles)
    fillMissingFacts(found->itemsToFill(), databasePath_, services_.files, services_.log,
                     services_.watch);
  found->finish();
  databaseStatus_ = file.status();
  tracks_ = std::move(found);
  shown_.reset();
  items_.reset();
  return *tracks_;
}

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

bool RhythmboxLibrary::playerRuns() {
  try {
    return player_.isRunning();
  } catch (const BusError& error) {
    fail(Message::tr("it cannot be found out whether Rhythmbox runs: %1").arg(error.message),
         Message::tr("Try again in the session in which Rhythmbox is used."));
  }
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

bool RhythmboxLibrary::hasChanged() {
  try {
    if (isRunning() != isLive_) return true;
    const auto database = services_.files.status(databasePath_);
    const auto playlists = services_.files.status(playlistsPath_);
    if (!database || (!playlists && playlistsStatus_)) return false;
    const bool isSame = database == databaseStatus_ && playlists == playlistsStatus_;
    if (isSame || !isLive_) return !isSame;
    return (playlists && !isAsWritten(*playlists)) || hasOtherSongs(*database);
  } catch (const MessageError&) {  // the files are being written, or the bus is gone
    return false;
  }
}

/// Whether the file, which the running player writes some seconds after each change, has the lists
/// that were read or made.
bool RhythmboxLibrary::isAsWritten(const FileStatus& playlists) {
  if (playlists == playlistsStatus_ || playlists == knownPlaylists_) return true;
  const rhythmbox::PlaylistsFile file(services_.files.readAll(playlistsPath_), playlistsPath_);
  std::multiset<std::pair<string, Uris>> found, known;
  for (const rhythmbox::StoredList& list : file.lists())
    if (list.type == "static") found.emplace(list.name, list.uris);
  for (const List& list : kept_)
    if (!list.isAutomatic) known.emplace(list.name, urisOf(list.entries));
  if (found != known) return false;
  knownPlaylists_ = playlists;
  return true;
}

/// The player writes its songs again for each that it plays.
bool RhythmboxLibrary::hasOtherSongs(const FileStatus& database) {
  if (database == databaseStatus_ || database == knownDatabase_) return false;
  const MappedFile file = services_.files.map(databasePath_);
  const bool isSame = file.checked([&] {
    return tracks().areIn({file.bytes().data(), file.bytes().size()}, databasePath_);
  });
  if (isSame) knownDatabase_ = database;
  return !isSame;
}

void RhythmboxLibrary::reload() {
  if (!isLive_ && !isRunning() && services_.files.status(databasePath_) == databaseStatus_ &&
      services_.files.status(playlistsPath_) == playlistsStatus_)
    return;
  if (changed_) throwChangedMeanwhile(playlistsPath_);
  read();
}

std::shared_ptr<const MediaItems> RhythmboxLibrary::allMediaItems() {
  static_cast<void>(tracks());
  if (!items_) {
    GivenValues all = taken_;
    for (const auto& [track, given] : given_) give(all, track, given.first, given.second);
    items_ = withValues(tracks().items(), all);
  }
  return items_;
}

Playlist RhythmboxLibrary::playlistOf(const List& list) {
  Playlist playlist;
  playlist.name = list.name;
  playlist.persistentID = list.id;
  playlist.kind = list.isAutomatic ? PlaylistKind::smart : PlaylistKind::regular;
  for (const std::uint64_t entry : list.entries)
    if (tracks().find(entry)) playlist.items.push_back(entry);
  playlist.unknownItems = list.entries.size() - playlist.items.size();
  return playlist;
}

std::shared_ptr<const std::vector<Playlist>> RhythmboxLibrary::allPlaylists() {
  static_cast<void>(tracks());
  if (!shown_) {
    shown_ = std::make_shared<std::vector<Playlist>>();
    shown_->push_back(masterPlaylist(*tracks().items(), "Music"));
    for (const List& list : lists_) shown_->push_back(playlistOf(list));
  } else if (!unshown_.empty()) {
    if (shown_.use_count() > 1) shown_ = std::make_shared<std::vector<Playlist>>(*shown_);
    for (const std::size_t i : unshown_) (*shown_)[i + 1] = playlistOf(lists_[i]);
  }
  unshown_.clear();
  return shown_;
}

/// By tracks and entries: the player writes its files again for every song that it plays.
LibraryIdentity RhythmboxLibrary::identity() {
  ContentHash hash;
  const auto add = [&](std::uint64_t number) {
    hash.add({reinterpret_cast<const char*>(&number), sizeof number});
  };
  std::uint64_t sum = 0;  // in whatever order
  tracks().items()->forEach([&](const MediaItem& item) { sum += item.persistentID; });
  add(sum);
  for (const List& list : kept_) {
    add(list.id);
    if (list.isAutomatic) continue;
    add(list.entries.size());
    for (const std::uint64_t entry : list.entries) add(entry);
  }
  LibraryIdentity identity{string(scheme) + folder_, {}, {}};
  appendBase64(hash.value(), identity.version);
  return identity;
}

// Changing.

void RhythmboxLibrary::change() {
  lock();
  changed_ = true;
}

void RhythmboxLibrary::lock() {
  if (lock_) return;
  lock_.emplace(services_.files, realPathOf(databasePath_));
  try {
    if (!isUsual_ && playerRuns())
      fail(Message::tr("Rhythmbox runs, with this library or another"), closePlayer());
    restoreBroken();
    checkUnchanged();
    if (isLive_) return;
    const string path = realPathOf(playlistsPath_);
    clearLeftoversOf(path, services_.files, services_.log);
    LibraryBackups(services_.files, path).removeUnreplaced();
    checkWritable(path);
  } catch (...) {
    lock_.reset();
    throw;
  }
}

void RhythmboxLibrary::checkUnchanged() {
  if (isRunning() != isLive_)
    fail(isLive_ ? Message::tr("Rhythmbox was closed since its library was read")
                 : Message::tr("Rhythmbox was started since its library was read"),
         readAgain());
  if (!isLive_) {
    if (services_.files.status(playlistsPath_) != playlistsStatus_)
      throwChangedMeanwhile(playlistsPath_);
    return;
  }
  const std::vector<List> now = readLists();
  const bool isSame = std::equal(now.begin(), now.end(), kept_.begin(), kept_.end(),
                                 [](const List& a, const List& b) {
                                   return a.id == b.id && (a.isAutomatic || a.entries == b.entries);
                                 });
  if (!isSame) throwChangedMeanwhile(playlistsPath_);
}

std::vector<RhythmboxLibrary::Change> RhythmboxLibrary::changes() const {
  std::unordered_map<std::uint64_t, const List*> before;
  for (const List& list : kept_) before.emplace(list.id, &list);
  std::vector<Change> changes;
  for (const List& list : lists_) {
    const auto found = before.find(list.id);
    const List* old = found == before.end() ? nullptr : found->second;
    if (old) before.erase(found);
    if (!old || old->entries != list.entries) changes.push_back({old, &list});
  }
  for (const auto& [id, list] : before) changes.push_back({list, nullptr});
  return changes;
}

void RhythmboxLibrary::commit(const Batch::Record&) {
  if (!changed_) return;
  if (const std::vector<Change> changes = this->changes(); !changes.empty()) {
    if (isLive_) {
      commitToPlayer(changes);
      setLists(std::move(lists_));
    } else {
      commitToFile(changes);
      setLists(readLists());
    }
  }
  commitValues();
  changed_ = false;
}

void RhythmboxLibrary::commitToFile(const std::vector<Change>& changes) {
  if (isRunning())
    fail(Message::tr("Rhythmbox was started since its library was read"), readAgain());
  std::vector<rhythmbox::ListEdit> edits;
  for (const Change& change : changes) {
    rhythmbox::ListEdit& edit = edits.emplace_back();
    if (change.before) edit.list = change.before->stored;
    if (!change.after) continue;
    edit.name = change.after->name;
    edit.uris = urisOf(change.after->entries);
  }
  const string bytes = stored_.edited(edits);
  replaceLibraryFile({realPathOf(playlistsPath_), playlistsStatus_.value_or(FileStatus())},
                     services_.files, services_.log, options_,
                     [&](TextSink& sink) { sink.append(bytes); });
}

void RhythmboxLibrary::checkPossible(const std::vector<Change>& changes) {
  const Uris names = player_.lists(false);
  for (const Change& change : changes)
    if (Message why = reasonAgainst(change, names); !why.empty())
      fail(std::move(why), closePlayer());
}

Message RhythmboxLibrary::reasonAgainst(const Change& change, const Uris& names) {
  const List& list = change.after ? *change.after : *change.before;
  const auto reason = [&](Message why) {
    return Message::tr("the playlist %1 cannot be changed while Rhythmbox runs: %2")
        .arg(inQuotes(list.name))
        .arg(std::move(why));
  };
  const auto count = std::count(names.begin(), names.end(), list.name);
  if (count > (change.before ? 1 : 0)) return reason(Message::tr("another playlist has its name"));
  if (change.before && count == 0) throwChangedMeanwhile(playlistsPath_);
  const IDs none, &before = change.before ? change.before->entries : none;
  const Uris shown = urisOf(before, false);
  if (change.before && !shown.empty() && player_.entries(list.name) != shown)
    throwChangedMeanwhile(playlistsPath_);
  if (!change.after) return {};
  for (std::size_t i = rhythmbox::firstMoved(urisOf(before), urisOf(list.entries));
       i < list.entries.size(); ++i) {
    const string uri = *ids_.uriOf(list.entries[i]);
    string path;
    if (hidden_.contains(list.entries[i]) || !pathOfFileUrl(uri, path) ||
        !services_.files.exists(path))
      return reason(Message::tr("it would lose the entry %1, whose file is not there")
                        .arg(path.empty() ? uri : path));
  }
  return {};
}

void RhythmboxLibrary::carryOut(const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    if (!change.after) continue;
    const List& list = *change.after;
    if (!change.before) player_.create(list.name);
    player_.change(list.name, change.before ? urisOf(change.before->entries) : Uris(),
                   urisOf(list.entries));
    const Uris wanted = urisOf(list.entries, false);
    if (!wanted.empty() && player_.entries(list.name) != wanted)
      fail(Message::tr("Rhythmbox did not make the playlist %1 what it was told to")
               .arg(inQuotes(list.name)),
           readAgain());
  }
  for (const Change& change : changes)
    if (!change.after) player_.remove(change.before->name);
}

void RhythmboxLibrary::commitToPlayer(const std::vector<Change>& changes) {
  std::vector<rhythmbox::ListEdit> journal;
  for (const Change& change : changes) {
    if (!change.after) continue;
    const string& name = change.after->name;
    journal.push_back({{}, name, change.before ? urisOf(change.before->entries) : Uris()});
    journal.push_back({{}, change.before ? name : "", urisOf(change.after->entries)});
  }
  const string path = journalPath();
  Message problem;
  try {
    checkPossible(changes);
    static_cast<void>(supportFolder(services_.files, playlistsPath_, "Rhythmbox"));
    services_.files.writeAtomically(path, rhythmbox::PlaylistsFile().edited(journal));
    try {
      carryOut(changes);
      services_.files.remove(path);
      return;
    } catch (const MessageError& error) {
      problem = error.message;
    }
  } catch (const BusError& error) {
    fail(Message::tr("Rhythmbox does not answer: %1").arg(error.message), readAgain());
  }
  lists_ = kept_;
  try {
    restoreBroken();
  } catch (const MessageError& error) {
    problem = joined(ended(std::move(problem)), error.message);
  }
  fail(std::move(problem), readAgain());
}

void RhythmboxLibrary::rollBack() {
  if (!std::exchange(given_, {}).empty()) items_.reset();
  if (!std::exchange(changed_, false)) return;
  lists_ = kept_;
  shown_.reset();
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

string RhythmboxLibrary::journalPath() const {
  const auto support = services_.files.applicationSupportDirectory();
  return support ? *support + "/Kestrel/Rhythmbox/" + libraryHash(folder_) + ".xml" : string();
}

/// The journal has two lists for each that was to be changed: what it held before, and what it was
/// to hold, the latter without a name when it was to be made.
void RhythmboxLibrary::restoreBroken() {
  const string path = journalPath();
  if (!services_.files.exists(path)) return;
  read();
  const rhythmbox::PlaylistsFile journal(services_.files.readAll(path), path);
  const auto& pairs = journal.lists();
  bool isComplete = true;
  std::unordered_set<std::uint64_t> unneeded;
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    const auto list = std::find_if(lists_.begin(), lists_.end(), [&](const List& other) {
      return other.name == pairs[i].name && !other.isAutomatic;
    });
    const IDs before = idsOf(pairs[i].uris), after = idsOf(pairs[i + 1].uris);
    isComplete = isComplete && list != lists_.end() && list->entries == after;
    if (list == lists_.end()) continue;
    // What has come in since stays, behind the old entries.
    IDs ours = before;
    ours.insert(ours.end(), after.begin(), after.end());
    const std::unordered_set<std::uint64_t> known(ours.begin(), ours.end());
    const IDs now = std::exchange(list->entries, before);
    std::copy_if(now.begin(), now.end(), std::back_inserter(list->entries),
                 [&](std::uint64_t entry) { return !known.contains(entry); });
    if (pairs[i + 1].name.empty() && list->entries.empty()) unneeded.insert(list->id);
  }
  std::erase_if(lists_, [&](const List& list) { return unneeded.contains(list.id); });
  const std::vector<Change> changes = isComplete ? std::vector<Change>() : this->changes();
  try {
    if (isLive_ && !changes.empty()) {
      checkPossible(changes);
      carryOut(changes);
    } else if (!changes.empty()) {
      commitToFile(changes);
    }
  } catch (const MessageError& error) {
    lists_ = kept_;
    fail(Message::tr("playlists that Rhythmbox was changing when it broke off were not given their "
                     "old entries back: %1")
             .arg(error.message),
         closePlayer());
  }
  if (!changes.empty())
    services_.log.line(playlistsPath_ + ": gave playlists their old entries back");
  services_.files.remove(path);
  read();
}

Application rhythmboxApplication() {
  const auto recognises = [](const string& address, const FileService&) {
    return address.starts_with(scheme) || address.ends_with(databaseName);
  };
  const auto open = [](const string& address, const ApplicationServices& services) {
    string folder(string_view(address).substr(address.starts_with(scheme) ? scheme.size() : 0));
    if (folder.ends_with(databaseName)) folder.resize(folder.size() - databaseName.size());
    if (folder.empty()) {
      const auto usual = usualFolders(services.files);
      const auto found = std::find_if(usual.begin(), usual.end(), [&](const string& one) {
        return services.files.exists(one + string(databaseName));
      });
      if (found == usual.end()) {
        const bool runs = rhythmboxRuns(services.clock);
        throw LibraryError(
            address, {},
            runs ? Message::tr("Rhythmbox runs for the first time, and has not written its library")
                 : Message::tr("there is no library of Rhythmbox here"),
            runs ? Message::tr("Close it once: it writes its library then.")
                 : Message::tr("Start Rhythmbox once, or say in which folder it is."));
      }
      folder = *found;
    }
    return std::unique_ptr<MusicApplication>(
        std::make_unique<RhythmboxLibrary>(std::move(folder), services));
  };
  const auto found = [](const ApplicationServices& services) {
    std::vector<string> addresses;
    for (const string& folder : usualFolders(services.files))
      if (services.files.exists(folder + string(databaseName)))
        addresses.push_back(string(scheme) + folder);
    // Who opens it is told what to do.
    if (addresses.empty() && rhythmboxRuns(services.clock)) addresses.emplace_back(scheme);
    return addresses;
  };
  return {Message::tr("Rhythmbox"), {}, recognises, open, found, Message::tr("Rhythmbox"),
          "library-player"};
}

}  // namespace kestrel
