/// What a track has been given over the years, and another one can take over from it: plays, a
/// rating, the date it was added and comments. Not what its file says of the recording.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/message.h"
#include "foundation/name_table.h"
#include "musicapp/media_item.h"

namespace kestrel {

class MediaItems;
class MediaLibrary;

enum class TrackValue : std::uint8_t { plays, rating, added, comments };
/// The words for them on the command line, in plans and in the history.
inline constexpr NameTable<TrackValue, 4> trackValueNames{{{TrackValue::plays, "plays"},
                                                           {TrackValue::rating, "rating"},
                                                           {TrackValue::added, "added"},
                                                           {TrackValue::comments, "comments"}}};

class TrackValueSet {
 public:
  constexpr TrackValueSet() = default;
  constexpr TrackValueSet(std::initializer_list<TrackValue> values) {
    for (const TrackValue value : values) add(value);
  }
  static constexpr TrackValueSet all() noexcept {
    return {TrackValue::plays, TrackValue::rating, TrackValue::added, TrackValue::comments};
  }
  constexpr void add(TrackValue value) noexcept { bits_ |= 1U << static_cast<unsigned>(value); }
  [[nodiscard]] constexpr bool has(TrackValue value) const noexcept {
    return (bits_ >> static_cast<unsigned>(value) & 1U) != 0;
  }
  [[nodiscard]] constexpr bool empty() const noexcept { return bits_ == 0; }
  /// In the order of their names' table.
  [[nodiscard]] std::vector<TrackValue> list() const;
  /// Those that `others` lacks.
  [[nodiscard]] TrackValueSet without(TrackValueSet others) const noexcept;
  friend constexpr bool operator==(TrackValueSet, TrackValueSet) = default;

 private:
  unsigned bits_ = 0;
};

/// Numbers are 0, dates missing and texts empty where there is nothing.
struct TrackValues {
  std::int64_t plays = 0;
  OptionalDate lastPlayed;  ///< goes with the plays
  std::int64_t rating = 0;  ///< 0-100, given by the user: one that is worked out is none
  OptionalDate added;
  std::string comments;
  /// How the application itself has them, where that may say more than the above. Of use to it
  /// alone, so that it gives them back as they were.
  std::string stored;
  friend bool operator==(const TrackValues&, const TrackValues&) = default;
};

/// Whether both have the same value of that sort. The plays' date counts with them.
bool isSame(TrackValue which, const TrackValues& a, const TrackValues& b) noexcept;
bool isSame(TrackValueSet which, const TrackValues& a, const TrackValues& b) noexcept;
bool hasAny(TrackValueSet which, const TrackValues& values) noexcept;

TrackValues valuesOf(const MediaItem& item);
/// Those of the tracks as the library shows them; nothing for one that it does not have.
std::vector<std::optional<TrackValues>> valuesIn(MediaLibrary& library,
                                                 std::span<const std::uint64_t> tracks);

/// What a kept track has when copies of it have gone: the sum of plays and the latest of their
/// dates, the highest rating, the earliest date added, and the first comments where it has none.
/// Sums stop at the largest number that libraries hold. Comments are as XML can hold them.
TrackValues carriedOver(TrackValueSet which, const TrackValues& kept,
                        std::span<const TrackValues* const> copies);

/// In words what the second has beyond the first: "12 plays, rating 80, an earlier date added,
/// comments". Empty when that is nothing.
Message gainOf(TrackValueSet which, const TrackValues& before, const TrackValues& after);

/// Gives an item these values; its texts go into the pool.
void setValues(MediaItem& item, TrackValueSet which, const TrackValues& values, TextPool& pool);

/// By persistent ID.
using GivenValues = std::map<std::uint64_t, std::pair<TrackValueSet, TrackValues>>;
/// Notes that a track was given values, in addition to those that it was given before.
void give(GivenValues& given, std::uint64_t track, TrackValueSet which, const TrackValues& values);
/// The items with what some of them were given; keeps the others' texts alive.
std::shared_ptr<const MediaItems> withValues(std::shared_ptr<const MediaItems> items,
                                             const GivenValues& given);

}  // namespace kestrel
