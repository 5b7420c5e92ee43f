/// What goes with the copies that are not kept: what they have and their keeper lacks.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dupes/keeper_facts.h"
#include "foundation/function_ref.h"
#include "library/result_track.h"
#include "musicapp/track_values.h"

namespace kestrel {

/// Of one copy. What the keeper has as well, or better, is 0, nothing or false.
struct Loss {
  const TrackRecord* track = nullptr;
  const TrackRecord* keeper = nullptr;
  std::int64_t plays = 0;      ///< of the copy: counts add up
  std::int64_t rating = 0;     ///< higher than the keeper's
  OptionalDate added;          ///< earlier than the keeper's
  OptionalDate lastPlayed;     ///< later than the keeper's
  std::int64_t skips = 0;      ///< of the copy, as plays
  OptionalDate lastSkipped;    ///< later than the keeper's
  std::string_view comments;   ///< others than the keeper's
  std::string_view grouping;   ///< where the keeper has none
  std::int64_t bpm = 0;        ///< likewise
  bool lossless = false;       ///< and the keeper is not
  bool cover = false;          ///< and the keeper has none; only where covers are asked for
  std::int64_t playlists = 0;  ///< that list the copy and not the keeper

  [[nodiscard]] bool isNothing() const noexcept;
};

/// What copies lose still when their keepers take over what they can: counts add up and the best of
/// dates and ratings is taken, but only one copy's comments have a place, and none where the keeper
/// has its own. Skips are not carried over.
class LossesBesideCarrying {
 public:
  explicit LossesBesideCarrying(TrackValueSet carried) noexcept : carried_(carried) {}
  /// To be called with the losses of all that go, in their order.
  void leaveOut(Loss& loss);

 private:
  TrackValueSet carried_;
  std::unordered_map<const TrackRecord*, std::string_view> comments_;  ///< that keepers get
};

/// In all: how many copies lose each, but for plays, skips and playlists, which add up.
struct LossTotal {
  std::int64_t copies = 0;  ///< that have anything to lose
  std::int64_t plays = 0, ratings = 0, added = 0, lastPlayed = 0, skips = 0, lastSkipped = 0,
               comments = 0, groupings = 0, bpm = 0, lossless = 0, cover = 0, playlists = 0;
  void add(const Loss& loss) noexcept;
};

/// Whether a track has a cover, as the files say; nothing where that cannot be told.
using CoverOf = std::function<std::optional<bool>(const TrackRecord&)>;

/// Of one copy beside the keeper of its group. Without `cover`, covers are left out.
Loss lossOf(const TrackRecord& track, const TrackRecord& keeper, const KeeperFacts& facts,
            const CoverOf& cover = nullptr);
/// Of the members of a group that are not kept, those only with something to lose, in their order.
/// Of several keepers the first counts; none: nothing is said, since nothing may go.
std::vector<Loss> lossesOf(std::span<const ResultTrack* const> members, const KeeperFacts& facts,
                           FunctionRef<bool(const ResultTrack&)> isKeeper,
                           const CoverOf& cover = nullptr);

/// "41 plays, ★★★★, 3 skips, comments, 2 playlists"
Message explain(const Loss& loss);
/// Empty when nothing is lost.
Message explain(const LossTotal& total);

}  // namespace kestrel
