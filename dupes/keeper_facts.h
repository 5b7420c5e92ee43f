/// What rules and reports ask of a library beyond a track itself: in how many playlists a track
/// stands, and how much of its album is there.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

#include "library/track_store.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Worked out on first use, in time that grows with the library's tracks and entries. Records are
/// those of `store`. Callable from several threads.
class KeeperFacts {
 public:
  /// Keeps both alive. Playlists that count are ordinary ones of the user.
  KeeperFacts(std::shared_ptr<const TrackStore> store,
              std::shared_ptr<const std::vector<Playlist>> playlists);

  /// In how many playlists a track stands, and how many entries name it.
  [[nodiscard]] std::int64_t playlistsWith(const TrackRecord& record) const;
  [[nodiscard]] std::int64_t entriesOf(const TrackRecord& record) const;
  /// The playlists that list a track, by number, ascending.
  [[nodiscard]] std::span<const std::uint32_t> playlistsOf(const TrackRecord& record) const;
  /// Calls `visit(place of a record in the store)` for each entry of a playlist, once for all its
  /// entries when `perPlaylist` returns; playlists in library order.
  template <typename Visit, typename PerPlaylist>
  void forEachEntry(Visit&& visit, PerPlaylist&& perPlaylist) const {
    playlistFacts();
    forEachListed(visit, perPlaylist);
  }

  /// The tracks that the library has of the album of a track, by title, artist and folder, in the
  /// upper half; in the lower half a number that no other album has, so that of two albums as large
  /// always the same wins and stays whole. 0 without an album.
  [[nodiscard]] std::int64_t albumScore(const TrackRecord& record) const;
  /// The upper half of such a number.
  static constexpr std::int64_t albumTracks(std::int64_t score) noexcept { return score >> 32; }

  /// The place of a record in the store; of one of an earlier store that of its track, which is
  /// the store's size when it has none.
  [[nodiscard]] std::size_t placeOf(const TrackRecord& record) const noexcept;
  [[nodiscard]] const TrackStore& store() const noexcept { return *store_; }

 private:
  template <typename Visit, typename PerPlaylist>
  void forEachListed(Visit&& visit, PerPlaylist&& perPlaylist) const {
    std::size_t begin = 0;
    for (const std::size_t end : ends_) {
      for (std::size_t i = begin; i < end; ++i) visit(entries_[i]);
      perPlaylist();
      begin = end;
    }
  }
  void playlistFacts() const;
  void albumFacts() const;

  std::shared_ptr<const TrackStore> store_;
  std::shared_ptr<const std::vector<Playlist>> playlists_;
  mutable std::once_flag playlistsOnce_, albumsOnce_;
  mutable std::vector<std::uint32_t> playlistsWith_, entriesOf_, entries_;
  mutable std::vector<std::uint32_t> starts_, lists_;  ///< playlists by place of a track
  mutable std::vector<std::size_t> ends_;              ///< of each playlist's entries
  mutable std::vector<std::int64_t> albums_;
};

/// Whether a kind keeps every bit of the sound, as its name tells.
bool isLossless(std::string_view kind);
/// What the lossless rule compares, as one number: lossless before lossy; of the lossless first
/// bits of a sample, then sample rate, channels and bit rate; of the lossy first the bit rate.
struct LosslessScore {
  bool isLossless = false;
  std::int64_t bits = 0, rate = 0, channels = 0, bitRate = 0;  ///< bits and channels: 0 unknown
  [[nodiscard]] std::int64_t number() const noexcept;
  static LosslessScore of(std::int64_t number) noexcept;
};

}  // namespace kestrel
