#include "dupes/find_dupes.h"

#include <algorithm>
#include <memory>

#include "dupes/criteria_preview.h"
#include "dupes/read_ahead.h"
#include "dupes/sorting.h"
#include "platform/log.h"

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
/// Group numbers compare as texts, so "10" stands before "2"; this only keeps groups
/// together that no other key tells apart.
std::int64_t decimalTextOrder(std::int64_t number) noexcept {
  constexpr std::int64_t tenDigits = 1'000'000'000;
  std::int64_t count = 10;
  for (std::int64_t left = std::max<std::int64_t>(number, 1); left < tenDigits; left *= 10) --count;
  for (std::int64_t i = count; i < 10; ++i) number *= 10;
  return number * 16 + count;
}

std::string joined(std::span<const std::string> texts) {
  std::string out = "(";
  for (const std::string& text : texts) out.append(out.size() > 1 ? ", " : "").append(text);
  return out + ")";
}

std::vector<ResultTrack> resultTracks(const Grouping& grouping,
                                      const std::shared_ptr<const TrackStore>& store,
                                      bool checkBox) {
  std::vector<ResultTrack> tracks;
  tracks.reserve(grouping.members.size());
  for (std::size_t i = 0; i < grouping.members.size(); ++i) {
    readAhead(i, grouping.members.size(),
              [&](std::size_t at) { return grouping.members[at].record; });
    const GroupMember& member = grouping.members[i];
    const bool tCheckbox = member.record->value(TrackKey::tCheckbox).number() != 0;
    tracks.push_back({member.record, store, member.group, 0, checkBox, tCheckbox});
  }
  return tracks;
}

}  // namespace

std::vector<const TrackRecord*> tracksOf(const TrackStore& store,
                                         std::span<const std::uint64_t> items) {
  std::vector<const TrackRecord*> tracks;
  tracks.reserve(items.size());
  const std::vector<TrackRecord>& records = store.records();
  // The master playlist follows the library's order, so the next record is mostly the one wanted,
  // and is at hand without the table that finds any.
  std::size_t next = 0;
  for (const std::uint64_t item : items) {
    const TrackRecord* track = next < records.size() && records[next].item().persistentID == item
                                   ? &records[next]
                                   : store.find(item);
    if (!track) continue;
    next = static_cast<std::size_t>(track - records.data()) + 1;
    tracks.push_back(track);
  }
  return tracks;
}

DupeRows findDupes(const std::shared_ptr<const TrackStore>& store,
                   std::span<const std::uint64_t> items, std::span<const std::string> criteria,
                   const GroupingOptions& options, bool checkBox, Log& log,
                   FunctionRef<bool()> cancelled) {
  log.line("--- LIBRARY TRACK COUNT = " + std::to_string(store->size()));
  log.line("--- TARGET TRACKS COUNT = " + std::to_string(items.size()));
  log.line("--> Criteria: " + joined(criteria));
  const std::vector<const TrackRecord*> tracks = tracksOf(*store, items);
  const Grouping grouping = groupTracks(*store, tracks, criteria, options, cancelled);
  DupeRows found{resultTracks(grouping, store, checkBox), grouping.cancelled};
  for (const GroupMember& member : grouping.members)
    if (static_cast<std::size_t>(member.group) == found.seeds.size())
      found.seeds.push_back(member.record);
  orderGroups(found.rows, criteria);
  return found;
}

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
