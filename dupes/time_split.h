/// Splits tracks with equal match keys by their playing times.
#pragma once

#include <cstdint>
#include <span>

#include "foundation/function_ref.h"
#include "library/track_record.h"

namespace kestrel {

/// Whole seconds of a playing time in milliseconds, halves up; a negative time is cut towards zero.
constexpr std::int64_t roundedSeconds(std::int64_t milliseconds) noexcept {
  return milliseconds / 1000 + (milliseconds % 1000 >= 500 ? 1 : 0);
}

/// Calls `addGroup` for each group of two tracks or more. The first track that no group has taken
/// yet takes all such tracks whose seconds differ from its own by `toleranceSeconds` (more than 0)
/// or less; later members take none, so times do not chain. A repeated track counts once, where it
/// stands first. Order is kept. n log n for n tracks.
void splitByTime(std::span<const TrackRecord* const> bucket, std::int64_t toleranceSeconds,
                 FunctionRef<void(std::span<const TrackRecord* const>)> addGroup);

}  // namespace kestrel
