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

Message RhythmboxLibrary::closePlayer() { return Message::tr("Close Rhythmbox, then try again."); }

void RhythmboxLibrary::fail(Message problem, Message remedy) const {
  throw LibraryError(playlistsPath_, {}, std::move(problem), std::move(remedy));
}

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

bool RhythmboxLibrary::playerRuns() {
  try {
    return player_.isRunning();
  } catch (const BusError& error) {
    fail(Message::tr("it cannot be found out whether Rhythmbox runs: %1").arg(error.message),
         Message::tr("Try again in the session in which Rhythmbox is used."));
  }
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
    if (tracks().find(entry))
      playlist.items.push_back(entry);
    else
      playlist.unknownAt.push_back(playlist.items.size());
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

std::vector<Message> RhythmboxLibrary::notes() {
  const auto count = std::count_if(lists_.begin(), lists_.end(),
                                   [](const List& list) { return list.isAutomatic; });
  if (count == 0) return {};
  return {
      Message::tr("%Ln playlists fill themselves and are shown without entries: Rhythmbox does "
                  "not tell what they hold",
                  "%Ln playlist fills itself and is shown without entries: Rhythmbox does not "
                  "tell what it holds",
                  count)};
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
