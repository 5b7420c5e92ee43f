#include "dupes/ordering.h"

#include <algorithm>
#include <memory>

#include "dupes/descriptor_sort.h"
#include "dupes/read_ahead.h"

namespace kestrel {
namespace {

struct Order {
  SortDescriptors descriptors;
  std::vector<TrackKey> keys;  ///< of the descriptors

  void add(TrackKey key, std::unique_ptr<SortDescriptor> descriptor) {
    keys.push_back(key);
    descriptors.push_back(std::move(descriptor));
  }
};

Order orderFor(std::span<const std::string> criteria) {
  const auto has = [&](TrackKey key) {
    return std::find(criteria.begin(), criteria.end(), trackKeyName(key)) != criteria.end();
  };
  Order order;
  for (const TrackKey key : {TrackKey::tArtist, TrackKey::tAlbum})
    if (has(key))
      order.add(key, std::make_unique<MySortDescriptor>(
                         std::string(trackKeyName(key)), true,
                         ComparisonSelector::localizedCaseInsensitiveCompare));
  for (const TrackKey key : {TrackKey::tTrackNum, TrackKey::tGroupID})
    if (has(key) || key == TrackKey::tGroupID)
      order.add(key, std::make_unique<PlainSortDescriptor>(std::string(trackKeyName(key))));
  return order;
}

/// Orders as the decimal text of `number` (0 or more) does: its digits moved to the left end of ten
/// places, and where that makes numbers equal, as of 1 and 10, their count.
///
/// Group numbers compare as texts, so "10" stands before "2". Deliberate: this only keeps groups
/// together that no other key tells apart.
std::int64_t decimalTextOrder(std::int64_t number) noexcept {
  constexpr std::int64_t tenDigits = 1'000'000'000;
  std::int64_t count = 10;
  for (std::int64_t left = std::max<std::int64_t>(number, 1); left < tenDigits; left *= 10) --count;
  for (std::int64_t i = count; i < 10; ++i) number *= 10;
  return number * 16 + count;
}

}  // namespace

void orderGroups(std::vector<ResultTrack>& tracks, std::span<const std::string> criteria) {
  const Order order = orderFor(criteria);
  const auto valueOf = [&](std::size_t row, std::size_t column) -> Value {
    const TrackKey key = order.keys[column];
    if (key == TrackKey::tGroupID) return decimalTextOrder(tracks[row].tGroupID);
    readAhead(row, tracks.size(), [&](std::size_t i) { return tracks[i].record; });
    return tracks[row].value(key);
  };
  arrange(tracks, sortedOrder(tracks.size(), order.descriptors, valueOf));
  std::int32_t run = 0;
  std::int32_t previous = -1;
  for (ResultTrack& track : tracks) {
    if (track.tGroupID != previous) ++run;
    previous = track.tGroupID;
    track.dupeSort = run;
  }
}

}  // namespace kestrel
