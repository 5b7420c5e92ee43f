/// Which playlists hold tracks that are to be replaced, and by which.
///
/// Nothing here reads settings or windows. Callable from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "library/listed_playlist.h"
#include "library/playlist_tree.h"
#include "library/track_store.h"
#include "replaylist/survey_groups.h"

namespace kestrel {

/// An entry's track and the one that takes its place.
struct KeeperPair {
  std::uint64_t item = 0;
  std::uint64_t keeper = 0;
  friend bool operator==(const KeeperPair&, const KeeperPair&) = default;
};

/// One pair for each track among the items that has a keeper, in playlist order. `seen` is used to
/// tell repeats; what it holds is lost.
std::vector<KeeperPair> keeperPairs(std::span<const std::uint64_t> items,
                                    const KeeperTable& keepers, IdMap& seen);

/// A replaylist playlist record, of a user playlist or a folder. Reads as a string-keyed
/// dictionary, to which "items", "nonKeeperKeeperPairs" and "trackInfo" (where there are pairs),
/// and "Child" by its place in the outline, belong.
class ReplaylistRecord final : public ListedPlaylist {
 public:
  explicit ReplaylistRecord(std::shared_ptr<const Playlist> playlist,
                            std::vector<KeeperPair> pairs = {},
                            std::shared_ptr<const TrackStore> tracks = nullptr)
      : ListedPlaylist(std::move(playlist)), pairs_(std::move(pairs)), tracks_(std::move(tracks)) {}

  /// None for folders, and for playlists whose non-keepers have no keepers.
  [[nodiscard]] const std::vector<KeeperPair>& nonKeeperKeeperPairs() const noexcept {
    return pairs_;
  }
  /// The record of a track of the pairs; nullptr when the snapshot has none of it.
  [[nodiscard]] const TrackRecord* trackInfo(std::uint64_t track) const noexcept {
    return tracks_ ? tracks_->find(track) : nullptr;
  }
  /// What keeps those records alive.
  [[nodiscard]] const std::shared_ptr<const TrackStore>& tracks() const noexcept { return tracks_; }

  /// The keys whose values are texts; absent for others. At top level both parent keys are absent.
  [[nodiscard]] Value value(std::string_view key) const;
  /// Calls `visit(std::string_view name, const Value&)` for each text that the record holds.
  template <typename Visit>
  void forEachKey(Visit&& visit) const {
    forEachText(*this, visit);
  }

 private:
  std::vector<KeeperPair> pairs_;
  std::shared_ptr<const TrackStore> tracks_;
};

using ReplaylistRow = OutlineNode<ReplaylistRecord>;

/// User playlists with a non-keeper, be there a keeper for it or not.
using PlaylistSurvey = AffectedPlaylists<ReplaylistRecord>;

/// Only regular playlists and folders are considered, and none that the application provides.
PlaylistSurvey surveyPlaylists(const Playlists& playlists, const KeeperTable& keepers,
                               const std::shared_ptr<const TrackStore>& tracks);

}  // namespace kestrel
