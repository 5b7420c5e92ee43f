#include "musicapp/mpd/mpd_library.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <mpd/protocol.h>
#include <set>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/mpd/mpd_journal.h"
#include "musicapp/mpd/mpd_list_edit.h"
#include "musicapp/mpd/mpd_name.h"
#include "musicapp/mpd/mpd_update.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;

/// A hash in which the order counts.
class Mark {
 public:
  void add(std::uint64_t word) noexcept {
    value_ = (value_ ^ word) * 0x100000001B3U ^ value_ >> 32U;
  }
  [[nodiscard]] std::uint64_t value() const noexcept { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

/// The server that answers first of those that an address may mean.
MpdConnection connectionTo(const std::string& address, milliseconds patience,
                           const std::string& password = {}) {
  std::vector<MpdServer> servers = mpdServers(address);
  for (MpdServer& server : servers)
    if (server.password.empty()) server.password = password;
  std::exception_ptr refusal;  // of the first that answers
  for (const MpdServer& server : servers) {
    try {
      return MpdConnection(server, patience);
    } catch (const MpdRefusal&) {
      if (!refusal) refusal = std::current_exception();
    } catch (const LibraryError&) {
      if (servers.size() == 1) throw;
    }
  }
  if (refusal) std::rethrow_exception(refusal);
  throw LibraryError("MPD", {}, Message::tr("no music player answers at the usual places"),
                     Message::tr("Start it, or give its address as mpd://HOST:PORT."));
}

/// Only those on the same machine are told, by its socket; and it may be a server's address.
std::string musicFolderOf(MpdConnection& connection) {
  if (!connection.server().music.empty()) return connection.server().music;
  try {
    std::string folder = connection.value({"config"}, "music_directory");
    while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
    return folder.starts_with('/') ? folder : std::string();
  } catch (const MpdRefusal&) {
    return {};
  }
}

/// Throws LibraryError when the server lets this client read only.
void requirePermission(MpdConnection& connection) {
  bool isPermitted = false;
  connection.ask({"commands"}, [&](std::string_view, std::string_view command) {
    isPermitted = isPermitted || command == "playlistadd";
  });
  if (!isPermitted)
    throw LibraryError(connection.server().address(), {},
                       Message::tr("lets its playlists be read only, with this password or none"),
                       Message::tr("Set MPD_HOST to PASSWORD@HOST."));
}

/// Whether the server keeps what is noted of songs.
bool hasStickers(MpdConnection& connection) {
  bool found = false;
  connection.ask({"commands"}, [&](std::string_view, std::string_view command) {
    found = found || command == "sticker";
  });
  return found;
}

}  // namespace

/// Nothing to be committed, and nothing to be reverted.
class MpdLibrary::Batch final : public kestrel::Batch {
 public:
  explicit Batch(MpdLibrary& library) : library_(library) {}
  ~Batch() override {
    library_.kept_.reset();
    library_.lock_.reset();
  }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  void commit(const Record&) override {}
  bool revert(std::string_view) override { return false; }

 private:
  MpdLibrary& library_;
};

MpdLibrary::MpdLibrary(const std::string& address, const ApplicationServices& services)
    : services_(services) {
  try {
    server_ = connectionTo(address, std::chrono::seconds(10), services.password).server();
    open();
  } catch (const MpdRefusal& refusal) {
    if (!refusal.wantsPassword()) throw;
    const bool isFirst = refusal.code == MPD_SERVER_ERROR_PERMISSION && server_.password.empty();
    throw PasswordError(refusal.file, {},
                        isFirst ? Message::tr("asks for a password") : refusal.problem,
                        refusal.remedy);
  }
}

void MpdLibrary::open() {
  if (MpdJournal::exists(services_.files)) {
    try {
      static_cast<void>(locked());
    } catch (const MessageError& error) {  // it can be read all the same
      services_.log.line(lineOf(error.message));
    }
  }
  read();
}

std::optional<LibraryLock> MpdLibrary::locked() {
  if (lock_) return std::nullopt;
  // One for all servers, as none tells by which addresses it is reached.
  std::optional<LibraryLock> lock(std::in_place, services_.files, "MPD");
  if (MpdJournal::exists(services_.files)) {
    MpdConnection connection(server_);
    if (MpdJournal::restore(connection, services_)) isStale_ = true;
  }
  return lock;
}

MpdConnection& MpdLibrary::connected(std::optional<MpdConnection>& own) {
  if (!lock_) return own.emplace(server_);
  constexpr std::chrono::seconds mostIdle(10);
  const auto now = std::chrono::steady_clock::now();
  if (!kept_ || now - keptAt_ > mostIdle) kept_.emplace(server_);
  keptAt_ = now;
  return *kept_;
}

Capabilities MpdLibrary::capabilities() const {
  return {.name = "MPD",
          .changesPlaylists = true,
          .editsInPlace = true,
          .tracksFollowFiles = !musicFolder_.empty(),
          .addsFiles = !musicFolder_.empty(),
          .reveals = services_.revealer && !musicFolder_.empty(),
          .takesValues = notesValues_ ? mpdValueSorts : TrackValueSet(),
          .whyNoOthers = whyNoOtherValues()};
}

Message MpdLibrary::whyNoOtherValues() const {
  return notesValues_
             ? Message::tr("the music player notes plays and ratings of its songs, and no more")
             : Message::tr(
                   "the music player notes nothing of its songs: its settings name no "
                   "sticker_file");
}

std::vector<std::optional<TrackValues>> MpdLibrary::valuesOf(
    std::span<const std::uint64_t> tracks) {
  auto values = valuesIn(*this, tracks);
  if (!notesValues_ || tracks.empty()) return values;
  std::unordered_map<std::uint64_t, const MediaItem*> items;
  for (const std::uint64_t track : tracks) items.emplace(track, nullptr);
  songs_.items->forEach([&](const MediaItem& item) {
    if (const auto found = items.find(item.persistentID); found != items.end())
      found->second = &item;
  });
  MpdConnection connection(server_);
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (!values[i]) continue;
    try {
      values[i] =
          mpdValues(*items[tracks[i]], mpdStickers(connection, *songs_.ids.uriOf(tracks[i])));
    } catch (const MpdRefusal& refusal) {
      if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;
      values[i].reset();  // its file has gone
    }
  }
  return values;
}

std::unique_ptr<kestrel::Batch> MpdLibrary::beginBatch() {
  const std::string address = server_.address();
  if (lock_)
    throw LibraryError(address, {}, Message::tr("is being changed already"),
                       Message::tr("Wait until that has finished."));
  if (isStale_) read();
  auto lock = locked();
  MpdConnection connection(server_);
  requirePermission(connection);
  if (isStale_ || !isAsRead(connection))
    throw LibraryError(address, {}, Message::tr("was changed since it was read"),
                       Message::tr("Read the library again, and repeat what was to be done."));
  lock_ = std::move(lock);
  return std::make_unique<Batch>(*this);
}

bool MpdLibrary::isAsRead(MpdConnection& connection) const {
  return mpdDatabaseState(connection) == songs_.state && mpdListTimes(connection) == lists_.times;
}

bool MpdLibrary::hasChanged() {
  if (isStale_) return false;  // it is read again anyway
  try {
    MpdConnection connection(server_, std::chrono::seconds(2));
    return !isAsRead(connection);
  } catch (const LibraryError&) {
    return false;
  }
}

void MpdLibrary::read() {
  MpdConnection connection(server_);
  std::string folder = musicFolderOf(connection);
  MpdSongs songs = readMpdSongs(connection, folder, services_);
  lists_ = readLists(connection, songs);
  songs_ = std::move(songs);
  musicFolder_ = std::move(folder);
  notesValues_ = hasStickers(connection);
  name_ = mpdServerName(connection);
  isStale_ = false;
}

void MpdLibrary::readAgainIfDue() noexcept {
  if (!std::exchange(isStale_, false)) return;
  try {
    read();
  } catch (const std::exception& error) {
    services_.log.line(lineOf(messageOf(error)));
    isStale_ = true;
  }
}

MpdLibrary::Lists MpdLibrary::readLists(MpdConnection& connection, const MpdSongs& songs) const {
  DerivedIDs ids("playlist");
  Lists lists;
  // Asked for first: a list that is changed while they are read is found to be another one.
  lists.times = mpdListTimes(connection);
  auto playlists = std::make_shared<std::vector<Playlist>>();
  playlists->push_back(masterPlaylist(*songs.items, "Music"));
  Mark all;
  for (const std::uint64_t item : playlists->front().items) all.add(item);
  lists.fingerprints.push_back(all.value());
  for (const auto& [name, time] : lists.times) {
    try {
      const MpdEntries entries = readMpdEntries(connection, name);
      Playlist& playlist = playlists->emplace_back();
      playlist.name = name;
      playlist.persistentID = ids.of(name);
      fill(playlist, entries, songs);
      lists.fingerprints.push_back(fingerprintOf(entries));
    } catch (const MpdRefusal& refusal) {
      if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;  // deleted meanwhile
    } catch (const LibraryError& error) {
      throw LibraryError(
          server_.address(), {},
          Message::tr("the playlist %1 cannot be read: %2").arg(inQuotes(name)).arg(error.problem),
          Message::tr("If it is very long, raise max_output_buffer_size in the "
                      "settings of the music player."));
    }
  }
  lists.playlists = std::move(playlists);
  return lists;
}

std::uint64_t MpdLibrary::fingerprintOf(const MpdEntries& entries) noexcept {
  Mark mark;
  for (const std::string& uri : entries) mark.add(derivedPersistentID("entry", uri));
  return mark.value();
}

void MpdLibrary::fill(Playlist& playlist, const MpdEntries& entries, const MpdSongs& songs) {
  playlist.items.clear();
  playlist.unknownAt.clear();
  for (const std::string& uri : entries) {
    if (const auto id = songs.ids.find(uri))
      playlist.items.push_back(*id);
    else
      playlist.unknownAt.push_back(playlist.items.size());
  }
}

std::shared_ptr<const MediaItems> MpdLibrary::allMediaItems() {
  readAgainIfDue();
  return songs_.items;
}

std::shared_ptr<const std::vector<Playlist>> MpdLibrary::allPlaylists() {
  readAgainIfDue();
  return lists_.playlists;
}

LibraryIdentity MpdLibrary::identity() {
  readAgainIfDue();
  Mark mark;
  songs_.items->forEach([&](const MediaItem& item) {
    mark.add(item.persistentID);
    mark.add(static_cast<std::uint64_t>(item.modified.seconds));
  });
  for (std::size_t i = 0; i < lists_.playlists->size(); ++i) {
    mark.add((*lists_.playlists)[i].persistentID);
    mark.add(lists_.fingerprints[i]);
  }
  return {server_.address(), name_, TextSorter::decToHex(mark.value())};
}

std::vector<Message> MpdLibrary::notes() {
  constexpr std::size_t usualLimit = 16384;
  std::vector<Message> notes;
  const auto lists = allPlaylists();
  for (std::size_t i = 1; i < lists->size(); ++i)
    if (const Playlist& list = (*lists)[i]; list.items.size() + list.unknownItems() >= usualLimit)
      notes.push_back(
          Message::tr("the playlist %1 is as long as servers allow unless they are set otherwise "
                      "(max_playlist_length): it may not be possible to change it")
              .arg(inQuotes(list.name)));
  return notes;
}

std::string MpdLibrary::uriOf(const std::string& path) const {
  if (musicFolder_.empty()) return {};
  const std::string folder = musicFolder_ + '/';
  const std::string plain = std::filesystem::path(path).lexically_normal().string();
  if (plain.starts_with(folder)) return plain.substr(folder.size());
  std::error_code error;
  const std::string real = std::filesystem::canonical(path, error).string();
  const std::string realFolder = std::filesystem::canonical(musicFolder_, error).string() + '/';
  return real.starts_with(realFolder) ? real.substr(realFolder.size()) : std::string();
}

void MpdLibrary::filesMoved(std::span<const std::string> paths,
                            const std::function<bool()>& cancelled) {
  constexpr std::size_t mostLooks = 8;
  std::vector<std::string> uris;
  for (const std::string& path : paths)
    if (std::string uri = uriOf(path); !uri.empty()) uris.push_back(std::move(uri));
  if (uris.empty()) return;
  isStale_ = true;
  try {
    MpdConnection connection(server_);
    updateMpd(connection,
              mpdPlacesToUpdate(connection, uris, mostLooks,
                                [&](const std::string& place) { return isAsKnown(place, uris); }),
              cancelled);
  } catch (const LibraryError& error) {
    services_.log.line(lineOf(error.message));
  }
}

bool MpdLibrary::isAsKnown(const std::string& place, std::span<const std::string> moved) const {
  const std::unordered_set<std::string_view> known(moved.begin(), moved.end());
  const std::string begin = musicFolder_ + (place.empty() ? "" : "/" + place) + '/';
  bool isAsKnown = true;
  songs_.items->forEach([&](const MediaItem& item) {
    if (!isAsKnown) return;
    const std::string* const uri = songs_.ids.uriOf(item.persistentID);
    const std::string path = filePath(item);
    if (!uri || !path.starts_with(begin) || known.contains(*uri)) return;
    const auto status = services_.files.status(path);
    isAsKnown =
        status &&
        std::chrono::floor<std::chrono::seconds>(status->modified).time_since_epoch().count() ==
            item.modified.seconds;
  });
  return isAsKnown;
}

Application mpdApplication() {
  const auto recognises = [](const std::string& address, const FileService&) {
    return isMpdAddress(address);
  };
  const auto open = [](const std::string& address, const ApplicationServices& services) {
    return std::unique_ptr<MusicApplication>(std::make_unique<MpdLibrary>(address, services));
  };
  const auto found = [](const ApplicationServices&) {
    try {
      return std::vector{connectionTo("mpd:", std::chrono::seconds(3)).server().address()};
    } catch (const MpdRefusal& refusal) {  // who opens it is told why
      return std::vector{refusal.file};
    } catch (const LibraryError&) {
      return std::vector<std::string>();
    }
  };
  return {Message::tr("Music Player Daemon (mpd:)"),
          {},
          recognises,
          open,
          found,
          Message::tr("MPD"),
          "library-server"};
}

}  // namespace kestrel
