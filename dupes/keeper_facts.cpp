#include "dupes/keeper_facts.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

#include "foundation/number_table.h"

namespace kestrel {
namespace {

/// The artist who tells albums of one title apart: none of a compilation, whose tracks have many.
std::string_view albumArtistOf(const MediaItem& item) {
  const std::string_view artist = item.albumArtist.view();
  if (!artist.empty() || item.isCompilation) return artist;
  return item.artist.view();
}

bool isSameAlbum(const MediaItem& a, const MediaItem& b) {
  return a.album == b.album && a.locationFolder == b.locationFolder &&
         albumArtistOf(a) == albumArtistOf(b);
}

std::uint64_t albumHash(const MediaItem& item) {
  const std::hash<std::string_view> hash;
  return (hash(item.album.view()) * 3 + hash(albumArtistOf(item))) * 3 +
         hash(item.locationFolder.view());
}

bool countsAsPlaylist(const Playlist& playlist) noexcept {
  return playlist.kind == PlaylistKind::regular && !playlist.isMaster &&
         playlist.distinguishedKind == 0;
}

}  // namespace

KeeperFacts::KeeperFacts(std::shared_ptr<const TrackStore> store,
                         std::shared_ptr<const std::vector<Playlist>> playlists)
    : store_(std::move(store)), playlists_(std::move(playlists)) {}

std::size_t KeeperFacts::placeOf(const TrackRecord& record) const noexcept {
  const std::vector<TrackRecord>& records = store_->records();
  const std::less<> before;
  const TrackRecord* found = &record;
  if (before(found, records.data()) || !before(found, records.data() + records.size()))
    found = store_->find(record.item().persistentID);
  return found ? static_cast<std::size_t>(found - records.data()) : records.size();
}

void KeeperFacts::playlistFacts() const {
  std::call_once(playlistsOnce_, [this] {
    playlistsWith_.resize(store_->size() + 1);  // the last stands for tracks it does not have
    entriesOf_.resize(store_->size() + 1);
    std::vector<std::uint32_t> lastSeen(store_->size());
    std::uint32_t number = 0;
    for (const Playlist& playlist : *playlists_) {
      if (!countsAsPlaylist(playlist)) continue;
      ++number;
      for (const std::uint64_t id : playlist.items) {
        const TrackRecord* record = store_->find(id);
        if (!record) continue;
        const std::size_t place = placeOf(*record);
        entries_.push_back(static_cast<std::uint32_t>(place));
        ++entriesOf_[place];
        if (std::exchange(lastSeen[place], number) != number) ++playlistsWith_[place];
      }
      ends_.push_back(entries_.size());
    }
    starts_.assign(1, 0);
    for (const std::uint32_t count : playlistsWith_) starts_.push_back(starts_.back() + count);
    lists_.resize(starts_.back());
    std::vector<std::uint32_t> next = starts_;
    std::fill(lastSeen.begin(), lastSeen.end(), 0);
    number = 0;
    forEachListed(
        [&](std::uint32_t place) {
          if (std::exchange(lastSeen[place], number + 1) != number + 1)
            lists_[next[place]++] = number;
        },
        [&] { ++number; });
  });
}

void KeeperFacts::albumFacts() const {
  std::call_once(albumsOnce_, [this] {
    const std::vector<TrackRecord>& records = store_->records();
    NumberTable table(records.size() / 8);
    std::vector<const MediaItem*> firsts;
    std::vector<std::uint32_t> sizes, albumOf;
    albumOf.reserve(records.size());
    constexpr auto none = std::numeric_limits<std::uint32_t>::max();
    for (const TrackRecord& record : records) {
      const MediaItem& item = record.item();
      if (item.album.view().empty()) {
        albumOf.push_back(none);
        continue;
      }
      // Mostly the track before is of the same album.
      std::uint32_t number = albumOf.empty() ? none : albumOf.back();
      if (number == none || !isSameAlbum(*firsts[number], item)) {
        number = table.number(albumHash(item), [&](std::uint32_t candidate) {
          return isSameAlbum(*firsts[candidate], item);
        });
        if (number == firsts.size()) {
          firsts.push_back(&item);
          sizes.push_back(0);
        }
      }
      albumOf.push_back(number);
      ++sizes[number];
    }
    albums_.reserve(records.size() + 1);
    for (const std::uint32_t album : albumOf)
      albums_.push_back(album == none ? 0 : std::int64_t{sizes[album]} << 32 | (none - album));
    albums_.push_back(0);
  });
}

std::int64_t KeeperFacts::playlistsWith(const TrackRecord& record) const {
  playlistFacts();
  return playlistsWith_[placeOf(record)];
}

std::span<const std::uint32_t> KeeperFacts::playlistsOf(const TrackRecord& record) const {
  playlistFacts();
  const std::size_t place = placeOf(record);
  return std::span(lists_).subspan(starts_[place], playlistsWith_[place]);
}

std::int64_t KeeperFacts::entriesOf(const TrackRecord& record) const {
  playlistFacts();
  return entriesOf_[placeOf(record)];
}

std::int64_t KeeperFacts::albumScore(const TrackRecord& record) const {
  albumFacts();
  return albums_[placeOf(record)];
}

}  // namespace kestrel
