#include "dupes/time_split.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace kestrel {
namespace {

struct Entry {
  std::int64_t seconds;
  const TrackRecord* record;
  std::uint32_t place;  ///< in the bucket
};

/// The different tracks of a bucket, by seconds.
std::vector<Entry> entriesByTime(std::span<const TrackRecord* const> bucket) {
  std::vector<Entry> entries;
  entries.reserve(bucket.size());
  for (const TrackRecord* record : bucket)
    entries.push_back({roundedSeconds(record->item().totalTime), record,
                       static_cast<std::uint32_t>(entries.size())});
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    if (a.seconds != b.seconds) return a.seconds < b.seconds;
    if (a.record != b.record) return std::less<>{}(a.record, b.record);
    return a.place < b.place;
  });
  // Records of one store are equal exactly when they are the same.
  const auto repeats =
      std::unique(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return a.record == b.record; });
  entries.erase(repeats, entries.end());
  return entries;
}

/// Which of the entries no group has taken yet.
class Remaining {
 public:
  explicit Remaining(std::size_t size) : next_(size + 1) {
    for (std::uint32_t i = 0; i <= size; ++i) next_[i] = i;
  }
  void take(std::size_t entry) { next_[entry] = static_cast<std::uint32_t>(entry + 1); }
  [[nodiscard]] bool has(std::size_t entry) const { return next_[entry] == entry; }
  /// The first one at `entry` or behind it, else the size. Skips what was taken in ever longer
  /// leaps.
  std::size_t from(std::size_t entry) {
    while (next_[entry] != entry) {
      next_[entry] = next_[next_[entry]];
      entry = next_[entry];
    }
    return entry;
  }

 private:
  std::vector<std::uint32_t> next_;
};

}  // namespace

void splitByTime(std::span<const TrackRecord* const> bucket, std::int64_t toleranceSeconds,
                 FunctionRef<void(std::span<const TrackRecord* const>)> addGroup) {
  // Beyond any difference of times, and far from the limits of the type.
  const std::int64_t tolerance = std::min(toleranceSeconds, std::int64_t{1} << 60);
  const std::vector<Entry> entries = entriesByTime(bucket);
  constexpr auto absent = static_cast<std::uint32_t>(-1);
  std::vector<std::uint32_t> entryAt(bucket.size(), absent);  // by place in the bucket
  for (std::uint32_t i = 0; i < entries.size(); ++i) entryAt[entries[i].place] = i;

  Remaining remaining(entries.size());
  std::vector<std::uint32_t> taken;
  std::vector<const TrackRecord*> group;
  for (const std::uint32_t seed : entryAt) {
    if (seed == absent || !remaining.has(seed)) continue;
    const std::int64_t earliest = entries[seed].seconds - tolerance;
    const std::int64_t latest = entries[seed].seconds + tolerance;
    const auto begin =
        std::partition_point(entries.begin(), entries.end(),
                             [&](const Entry& entry) { return entry.seconds < earliest; });
    taken.clear();
    for (std::size_t i = remaining.from(static_cast<std::size_t>(begin - entries.begin()));
         i < entries.size() && entries[i].seconds <= latest; i = remaining.from(i + 1)) {
      taken.push_back(entries[i].place);
      remaining.take(i);
    }
    if (taken.size() < 2) continue;
    std::sort(taken.begin(), taken.end());
    group.clear();
    for (const std::uint32_t place : taken) group.push_back(bucket[place]);
    addGroup(group);
  }
}

}  // namespace kestrel
