/// Dupe grouping: which tracks duplicate one another.
///
/// Tracks with equal match keys form a bucket, in the order in which they were met; a time
/// tolerance splits buckets by playing time. What is left with two tracks or more is a dupe group.
/// Nothing here reads settings or touches a window.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "dupes/loosening.h"
#include "foundation/function_ref.h"
#include "library/track_store.h"

namespace kestrel {

struct GroupingOptions {
  bool caseSensitive = false;
  /// Largest difference of playing times, in whole seconds, to the first track of a group; 0 and
  /// below: times do not matter.
  std::int64_t toleranceSeconds = 0;
  /// Of `Loose`: what is passed over. With any of it a track that has an empty value under one of
  /// the criteria matches none, unless that is passed over too.
  LooseSet loose = 0;
};

/// The tolerance of a user who accepts that times differ by `seconds`. Plus one: times are rounded
/// to seconds, so that recordings a moment apart may differ by one although no difference is
/// accepted.
constexpr std::int64_t toleranceFor(std::int64_t seconds) noexcept {
  return std::min<std::int64_t>(seconds, std::numeric_limits<std::int32_t>::max()) + 1;
}

struct GroupMember {
  const TrackRecord* record;
  std::int32_t group;  ///< from 0, without gaps

  friend bool operator==(const GroupMember&, const GroupMember&) = default;
};

struct Grouping {
  std::vector<GroupMember> members;  ///< the groups one after the other
  std::int32_t groups = 0;           ///< how many were formed
  bool cancelled = false;
};

/// Groups `tracks`, which are records of `store` in playlist order, repeats included, by the values
/// under the key texts `criteria`. Groups are numbered in the order in which their keys were met.
/// Without tolerance a track that is listed twice duplicates itself; with tolerance it counts once.
///
/// `cancelled` is asked once for each track and once when all keys are known. If it holds then,
/// the result is empty and says so; the grouping itself is not interrupted.
///
/// Time and memory grow with the number of tracks, however they share keys; with tolerance a
/// bucket of n costs n log n.
Grouping groupTracks(const TrackStore& store, std::span<const TrackRecord* const> tracks,
                     std::span<const std::string> criteria, const GroupingOptions& options,
                     FunctionRef<bool()> cancelled);

/// Whole seconds of a playing time in milliseconds, halves up; a negative time is cut towards zero.
constexpr std::int64_t roundedSeconds(std::int64_t milliseconds) noexcept {
  return milliseconds / 1000 + (milliseconds % 1000 >= 500 ? 1 : 0);
}

/// Splits tracks with equal match keys by their playing times: calls `addGroup` for each group of
/// two tracks or more. The first track that no group has taken yet takes all such tracks whose
/// seconds differ from its own by `toleranceSeconds` (more than 0) or less; later members take
/// none, so times do not chain. A repeated track counts once, where it stands first. Order is kept.
/// n log n for n tracks.
void splitByTime(std::span<const TrackRecord* const> bucket, std::int64_t toleranceSeconds,
                 FunctionRef<void(std::span<const TrackRecord* const>)> addGroup);

}  // namespace kestrel
