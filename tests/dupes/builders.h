/// Small libraries for tests, written as what matters about their tracks:
///
///     const World world({track("Help!").by("The Beatles").plays(9), track("help!")});
///
/// Everything that is not said has a plain value: a reachable file "/music/1.mp3" for the first
/// track, and so on, 0 and empty for the rest.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/library_error.h"
#include "library/result_track.h"
#include "musicapp/media_library.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/random.h"
#include "tests/platform/memory_files.h"
#include "ui/process.h"

namespace kestrel::testing {

struct TrackBuilder {
  std::string name, artist, albumName, kindText, file;
  MediaItem item;
  FileAvailability availability = FileAvailability::reachable;
  std::int32_t groupNumber = 0;

  TrackBuilder& by(std::string text) { return set(artist, std::move(text)); }
  TrackBuilder& album(std::string text) { return set(albumName, std::move(text)); }
  TrackBuilder& kind(std::string text) { return set(kindText, std::move(text)); }
  TrackBuilder& path(std::string text) { return set(file, std::move(text)); }
  TrackBuilder& number(std::int64_t n) { return set(item.trackNumber, n); }
  TrackBuilder& lasts(std::int64_t milliseconds) { return set(item.totalTime, milliseconds); }
  TrackBuilder& plays(std::int64_t n) { return set(item.playCount, n); }
  TrackBuilder& bits(std::int64_t kbps) { return set(item.bitrate, kbps); }
  TrackBuilder& bytes(std::int64_t n) { return set(item.fileSize, n); }
  TrackBuilder& added(std::int64_t seconds) { return set(item.added, seconds); }
  TrackBuilder& modified(std::int64_t seconds) { return set(item.modified, seconds); }
  TrackBuilder& played(std::int64_t seconds) { return set(item.lastPlayed, seconds); }
  TrackBuilder& compilation() { return set(item.isCompilation, true); }
  TrackBuilder& podcast() { return set(item.mediaKind, MediaKind::podcast); }
  TrackBuilder& cloud() { return set(availability, FileAvailability::cloud); }
  TrackBuilder& missing() { return set(availability, FileAvailability::missing); }
  TrackBuilder& inGroup(std::int32_t n) { return set(groupNumber, n); }

 private:
  template <typename Field, typename Given>
  TrackBuilder& set(Field& member, Given value) {
    member = std::move(value);
    return *this;
  }
};

inline TrackBuilder track(std::string name = "song") {
  TrackBuilder builder;
  builder.name = std::move(name);
  return builder;
}

/// A store of tracks, whose persistent IDs count from 1. What is no song is an item only, and has
/// to come last.
class World {
 public:
  explicit World(const std::vector<TrackBuilder>& tracks)
      : store_(std::make_shared<TrackStore>(std::make_shared<DateFormatter>("UTC"))) {
    items_ = std::make_shared<MediaItems>();
    TextPool& pool = items_->newPool();
    std::vector<MediaItem> block;
    for (const TrackBuilder& made : tracks) {
      MediaItem item = made.item;
      item.persistentID = block.size() + 1;
      item.title = pool.add(made.name);
      item.artist = pool.add(made.artist);
      item.album = pool.add(made.albumName);
      item.kind = pool.add(made.kindText);
      const std::string path =
          made.file.empty() ? "/music/" + std::to_string(item.persistentID) + ".mp3" : made.file;
      item.locationFolder = pool.add(path.substr(0, path.rfind('/')));
      item.locationName = pool.add(path.substr(path.rfind('/') + 1));
      block.push_back(item);
    }
    items_->append(std::move(block));
    store_->hold(items_);
    auto made = tracks.begin();
    items_->forEach([&](const MediaItem& item) {
      if (item.mediaKind != MediaKind::song) return;
      store_->put(item, made->availability, false);
      groups_.push_back((made++)->groupNumber);
    });
  }

  [[nodiscard]] const std::shared_ptr<TrackStore>& store() const { return store_; }
  [[nodiscard]] const MediaItems& items() const { return *items_; }
  /// By position.
  [[nodiscard]] const TrackRecord* operator[](std::size_t i) const { return &store_->records()[i]; }
  /// All of them, or those at some positions.
  [[nodiscard]] std::vector<const TrackRecord*> records() const {
    std::vector<const TrackRecord*> all;
    for (const TrackRecord& record : store_->records()) all.push_back(&record);
    return all;
  }
  [[nodiscard]] std::vector<const TrackRecord*> records(
      const std::vector<std::size_t>& positions) const {
    std::vector<const TrackRecord*> some;
    for (const std::size_t position : positions) some.push_back((*this)[position]);
    return some;
  }
  /// One result track for each track, in the group that it was built for.
  [[nodiscard]] std::vector<ResultTrack> rows() const {
    std::vector<ResultTrack> rows;
    for (std::size_t i = 0; i < groups_.size(); ++i)
      rows.push_back({(*this)[i], store_, groups_[i], 0, false, false});
    return rows;
  }

 private:
  std::shared_ptr<TrackStore> store_;
  std::shared_ptr<MediaItems> items_;
  std::vector<std::int32_t> groups_;
};

template <typename Row>
std::vector<const Row*> pointers(const std::vector<Row>& rows) {
  std::vector<const Row*> pointers;
  for (const Row& row : rows) pointers.push_back(&row);
  return pointers;
}

/// A library that consists of items and of playlists, which change when it is read again.
class PlaylistLibrary final : public MediaLibrary {
 public:
  using Playlists = std::shared_ptr<const std::vector<Playlist>>;
  Playlists onDisk, read;
  bool unreadable = false;
  bool memoryIsShort = false;
  std::string file, folder;
  std::shared_ptr<const MediaItems> items = std::make_shared<const MediaItems>();

  explicit PlaylistLibrary(Playlists made) : onDisk(made), read(std::move(made)) {}
  explicit PlaylistLibrary(std::vector<Playlist> made = {})
      : PlaylistLibrary(std::make_shared<const std::vector<Playlist>>(std::move(made))) {}
  std::shared_ptr<const MediaItems> allMediaItems() override { return items; }
  Playlists allPlaylists() override {
    if (memoryIsShort) throw std::bad_alloc();
    return read;
  }
  std::string mediaFolder() override { return folder; }
  std::string libraryFile() override { return file; }
  void reload() override {
    if (unreadable) throw LibraryError("Library.xml", {}, Message::verbatim("cannot be read"), {});
    read = onDisk;
  }
};

/// A process with nothing behind it: settings, log and files in memory, a main queue by hand.
struct TestProcess {
  Preferences preferences;
  ManualQueue mainQueue;
  MemoryLog log;
  ManualClock clock;
  SeededRandom random{1};
  MemoryFiles files;
  std::shared_ptr<MediaLibrary> library;
  Process process{{[this] { return library; }, preferences, mainQueue, log, clock, random, files}};

  MainWindowReferences& window() { return process.textSorter.window; }
};

}  // namespace kestrel::testing
