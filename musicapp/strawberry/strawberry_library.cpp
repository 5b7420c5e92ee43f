#include "musicapp/strawberry/strawberry_library.h"

#include <cstdlib>
#include <unistd.h>
#include <utility>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/audio/missing_facts.h"
#include "musicapp/synthetic.h"
#include "platform/file_error.h"
#include "platform/file_users.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/session_bus.h"

namespace kestrel {
namespace {

constexpr std::string_view scheme = "strawberry:";

Message reasonStrawberryGives(const std::string& path) {
  try {
    if (auto bus = SessionBus::open(); bus && bus->hasOwner("org.mpris.MediaPlayer2.strawberry"))
      return Message::tr("cannot be changed while Strawberry runs, which would undo it");
  } catch (const BusError&) {  // what has the file open tells as much
  }
  return isOpenElsewhere(path) ? Message::tr("is open in another program, such as Strawberry")
                               : Message();
}

/// Where Strawberry keeps its database: as a package of the system, and as one of Flathub's.
std::vector<std::string> usualPlaces(const FileService& files) {
  std::vector<std::string> places;
  const std::string inside = "/strawberry/strawberry/strawberry.db";
  if (const auto support = files.applicationSupportDirectory()) places.push_back(*support + inside);
  if (const char* home = std::getenv("HOME"); home && *home)
    places.push_back(home + std::string("/.var/app/org.strawberrymusicplayer.strawberry/data") +
                     inside);
  return places;
}

std::string pathOf(const std::string& address, const FileService& files) {
  if (!address.starts_with(scheme)) return address;
  if (address.size() > scheme.size()) return address.substr(scheme.size());
  for (const std::string& place : usualPlaces(files))
    if (files.exists(place)) return place;
  throw LibraryError(address, {},
                     Message::tr("Strawberry has no database here: it has never been started, or "
                                 "keeps it elsewhere"),
                     Message::tr("Give the path of its strawberry.db."));
}

}  // namespace

StrawberryLibrary::StrawberryLibrary(std::string path, const ApplicationServices& services,
                                     StrawberryOptions options)
    : path_(std::move(path)), services_(services), options_(std::move(options)) {
  read();
}

Capabilities StrawberryLibrary::capabilities() const {
  return {.name = "Strawberry",
          .changesPlaylists = true,
          .editsInPlace = true,
          .deletesTracks = true,
          .restoresTracks = true,
          .addsFiles = false,
          .reveals = services_.revealer != nullptr,
          .takesValues = strawberryValues,
          .whyNoOthers = whyNoDates()};
}

Message StrawberryLibrary::whyNoDates() {
  return Message::tr("Strawberry does not keep when a song was added");
}

std::vector<std::optional<TrackValues>> StrawberryLibrary::valuesOf(
    std::span<const std::uint64_t> tracks) {
  auto values = valuesIn(*this, tracks);
  const auto stored = storedValues(path_, tracks);
  for (std::size_t i = 0; i < tracks.size(); ++i)
    // What was given in an open batch is not in the database yet.
    if (values[i] && now_.values == stored_.lists.values) values[i]->stored = stored[i];
  return values;
}

void StrawberryLibrary::read() {
  if (!services_.files.exists(path_)) static_cast<void>(services_.files.map(path_));  // says why
  StrawberryContents found = readStrawberry(path_, services_.files);
  if (services_.readsFiles)
    fillMissingFacts(*found.songs, path_, services_.files, services_.log, services_.watch);
  found.songs->seal();
  stored_ = std::move(found);
  now_ = stored_.lists;
  numberSongs();
  items_.reset();
  playlists_.reset();
}

void StrawberryLibrary::numberSongs() {
  songs_.clear();
  songs_.reserve(stored_.songs->size());
  stored_.songs->forEach([&](const MediaItem& song) { songs_.emplace(song.persistentID, &song); });
}

void StrawberryLibrary::keepValues() {
  if (now_.values.empty()) return;
  stored_.songs = std::const_pointer_cast<MediaItems>(withValues(stored_.songs, now_.values));
  now_.values.clear();
  stored_.lists.values.clear();
  numberSongs();
  items_.reset();
}

LibraryIdentity StrawberryLibrary::identity() {
  LibraryIdentity identity = fileIdentity(path_, {}, stored_.status.file);
  if (const auto& log = stored_.status.log)
    identity.version += "+" + fileIdentity(path_, {}, *log).version;
  return identity;
}

bool StrawberryLibrary::hasChanged() {
  const auto status = strawberryStatus(path_, services_.files);
  return status && *status != stored_.status;
}

void StrawberryLibrary::reload() {
  if (strawberryStatus(path_, services_.files) == stored_.status) return;
  if (isChanged()) throwChangedMeanwhile(path_);
  read();
}

bool StrawberryLibrary::isRemoved(std::uint64_t song) const {
  const auto file = now_.files.find(song);
  return file != now_.files.end() && file->second.isRemoved();
}

std::vector<std::uint64_t> StrawberryLibrary::tracksOf(const StrawberryPlaylist& playlist) const {
  std::vector<std::uint64_t> tracks;
  tracks.reserve(playlist.entries.size());
  for (const StrawberryEntry& entry : playlist.entries)
    if (isTrack(entry)) tracks.push_back(entry.song);
  return tracks;
}

std::shared_ptr<const MediaItems> StrawberryLibrary::allMediaItems() {
  if (items_) return items_;
  if (now_.files.empty()) return items_ = withValues(stored_.songs, now_.values);
  // Their texts are those of all songs, which so live as long.
  const auto both = std::make_shared<std::pair<MediaItems, std::shared_ptr<MediaItems>>>();
  both->second = stored_.songs;
  std::vector<MediaItem> songs;
  stored_.songs->forEach([&](const MediaItem& song) {
    if (!isRemoved(song.persistentID)) songs.push_back(song);
  });
  both->first.append(std::move(songs));
  return items_ = withValues({both, &both->first}, now_.values);
}

std::shared_ptr<const std::vector<Playlist>> StrawberryLibrary::allPlaylists() {
  if (playlists_) return playlists_;
  const auto lists = std::make_shared<std::vector<Playlist>>();
  lists->push_back(masterPlaylist(*allMediaItems(), "Collection"));
  folders_.clear();
  // A folder stands before the first list in it, and holds the tracks of all lists in it.
  std::unordered_map<std::string, std::size_t> places;
  for (const StrawberryPlaylist& stored : now_.playlists) {
    Playlist list;
    list.name = stored.name;
    list.persistentID = stored.id;
    list.kind = stored.isDynamic ? PlaylistKind::smart : PlaylistKind::regular;
    list.items = tracksOf(stored);
    std::uint64_t known = 0;
    for (const StrawberryEntry& entry : stored.entries)
      if (isTrack(entry))
        ++known;
      else
        list.unknownAt.push_back(known);
    for (std::size_t end = 0; end < stored.folder.size(); ++end) {
      const std::size_t begin = end;
      end = std::min(stored.folder.find('/', begin), stored.folder.size());
      if (end == begin) continue;
      const std::string path = stored.folder.substr(0, end);
      const auto [place, isNew] = places.try_emplace(path, lists->size());
      if (isNew) {
        Playlist& folder = lists->emplace_back();
        folder.name = path.substr(begin);
        folder.persistentID = derivedPersistentID("folder", path);
        folder.kind = PlaylistKind::folder;
        folder.parentID = list.parentID;
        folders_.emplace(folder.persistentID, path);
      }
      std::vector<std::uint64_t>& items = (*lists)[place->second].items;
      items.insert(items.end(), list.items.begin(), list.items.end());
      list.parentID = (*lists)[place->second].persistentID;
    }
    lists->push_back(std::move(list));
  }
  return playlists_ = lists;
}

void StrawberryLibrary::lock() {
  if (lock_) return;
  LibraryLock lock(services_.files, realPathOf(path_));
  if (Message reason = options_.reasonNotToWrite(lock.library()); !reason.empty())
    throw LibraryError(path_, {}, std::move(reason),
                       Message::tr("Close Strawberry first, then try again."));
  if (strawberryStatus(path_, services_.files) != stored_.status) throwChangedMeanwhile(path_);
  if (::access(lock.library().c_str(), W_OK) != 0)
    throw FileError(path_, Message::tr("is read-only"),
                    Message::tr("Allow writing to it, then try again."));
  lock_.emplace(std::move(lock));
}

void StrawberryLibrary::commit(const Batch::Record& record) {
  if (!isChanged()) return;
  lock();
  FileService& files = services_.files;
  LibraryBackups backups(files, lock_->library(), ".db");
  const std::string copy = backups.folder() + "/unfinished";
  std::string backup;
  StrawberryLists written = now_;
  try {
    step(StrawberryStep::begin);
    StrawberryChange change(lock_->library(), stored_.lists);
    if (strawberryStatus(path_, files) != stored_.status) throwChangedMeanwhile(path_);
    step(StrawberryStep::backUp);
    files.remove(copy);
    change.backUp(copy);
    backup = backups.add(copy);
    files.remove(copy);
    step(StrawberryStep::write);
    const std::string reversal = change.write(written, former_);
    if (record) record(reversal);
    step(StrawberryStep::commit);
    // It may have been started meanwhile.
    if (Message reason = options_.reasonNotToWrite(lock_->library()); !reason.empty())
      throw LibraryError(path_, {}, std::move(reason),
                         Message::tr("Close Strawberry first, then try again."));
    change.commit();
  } catch (...) {
    for (const std::string& made : {copy, backup}) ::unlink(made.c_str());
    throw;
  }
  stored_.lists = now_ = std::move(written);
  keepValues();
  stored_.status = strawberryStatus(path_, files).value_or(StrawberryStatus{});
  try {
    step(StrawberryStep::prune);
    backups.prune(options_.keptBackups);
  } catch (const FileError& error) {
    services_.log.line(error.what());
  }
}

void StrawberryLibrary::recall(std::string_view reversal) { former_ = decodedEntries(reversal); }

void StrawberryLibrary::rollBack() {
  former_ = {};
  if (!isChanged()) return;
  now_ = stored_.lists;
  items_.reset();
  playlists_.reset();
}

Application strawberryApplication() {
  const auto recognises = [](const std::string& address, const FileService&) {
    return address.starts_with(scheme) ||
           (address.size() > 3 && sameIgnoringCase(address.substr(address.size() - 3), ".db"));
  };
  const auto open = [](const std::string& address, const ApplicationServices& services) {
    return std::unique_ptr<MusicApplication>(std::make_unique<StrawberryLibrary>(
        pathOf(address, services.files), services,
        StrawberryOptions{.reasonNotToWrite = reasonStrawberryGives, .onStep = {}}));
  };
  const auto found = [](const ApplicationServices& services) {
    std::vector<std::string> addresses;
    for (const std::string& place : usualPlaces(services.files))
      if (services.files.exists(place)) addresses.push_back(std::string(scheme) + place);
    return addresses;
  };
  return {Message::tr("Strawberry's collection"),
          "*.db",
          recognises,
          open,
          found,
          Message::tr("Strawberry"),
          "library-collection"};
}

}  // namespace kestrel
