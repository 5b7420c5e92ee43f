#include "dupes/grouping.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <future>
#include <optional>
#include <string>
#include <utility>

#include "dupes/match_key.h"
#include "foundation/number_table.h"

namespace kestrel {
namespace {

/// Stands for the bucket of a track without a match key.
constexpr std::uint32_t none = 0;

using Tracks = std::span<const TrackRecord* const>;

struct Buckets {
  std::vector<std::uint32_t> ofTrack;  ///< bucket number plus one, or none
  std::vector<std::uint32_t> sizes;    ///< by bucket number plus one
};

/// Stands for the hash of an empty match key.
constexpr std::uint64_t noHash = 0;

/// Numbers match keys in the order in which they are met.
///
/// A stretch of tracks at a time: the keys are made and hashed, then looked up in order. While one
/// stretch is looked up, a second thread hashes the next, if there are many tracks. Keys are not
/// kept: a track stands for its key, and only when hashes are equal are two keys compared.
class KeyNumbers {
 public:
  KeyNumbers(const TrackStore& store, Tracks tracks, std::span<const std::string> criteria,
             const GroupingOptions& options)
      : maker_(store, criteria, options),
        helpersMaker_(store, criteria, options),
        tracks_(tracks),
        table_(tracks.size()) {
    firsts_.reserve(tracks.size());
  }

  /// Calls `numbered(bucket number plus one, or none)` for each track in order until it returns
  /// false.
  template <typename Numbered>
  void forEach(Numbered&& numbered) {
    Stretch* current = &stretches_[0];
    Stretch* next = &stretches_[1];
    hash(*current, 0, [] {});
    for (std::size_t begin = 0; begin < tracks_.size(); begin += stretchSize) {
      bool stopped = false;
      hash(*next, begin + stretchSize, [&] {
        const Tracks part = current->tracks;
        for (std::size_t i = 0; i < part.size() && !stopped; ++i) {
          lookAhead(*current, i);
          const std::uint64_t hash = current->hashes[i];
          stopped = !numbered(hash == noHash ? none : number(begin + i, hash) + 1);
        }
        if (stopped) next->started = next->tracks.size();
      });
      if (stopped) return;
      std::swap(current, next);
    }
  }

 private:
  static constexpr std::size_t stretchSize = 1 << 15;
  /// What a thread takes of a stretch at a time.
  static constexpr std::size_t piece = 1 << 10;
  /// A playlist with fewer tracks is searched before one looks up.
  static constexpr std::size_t enoughForTwo = 1 << 17;

  struct Stretch {
    Tracks tracks;
    std::vector<std::uint64_t> hashes;
    std::atomic<std::size_t> started;  ///< how many tracks threads have taken
  };

  /// Hashes the keys of the stretch that begins at a track. `meanwhile` is what this thread does
  /// before it lends a hand.
  template <typename Meanwhile>
  void hash(Stretch& stretch, std::size_t begin, Meanwhile&& meanwhile) {
    stretch.tracks = tracks_.subspan(std::min(begin, tracks_.size()));
    stretch.tracks = stretch.tracks.first(std::min(stretchSize, stretch.tracks.size()));
    stretch.hashes.resize(stretch.tracks.size());
    stretch.started = 0;
    std::future<void> helper;
    if (tracks_.size() >= enoughForTwo)
      helper = std::async([&] { hashPieces(helpersMaker_, stretch); });
    meanwhile();
    hashPieces(maker_, stretch);
    if (helper.valid()) helper.get();
  }
  static void hashPieces(MatchKeyMaker& maker, Stretch& stretch) {
    std::string key;
    const std::size_t size = stretch.tracks.size();
    for (std::size_t begin; (begin = stretch.started.fetch_add(piece)) < size;)
      for (std::size_t i = begin; i < std::min(begin + piece, size); ++i) {
        maker.make(*stretch.tracks[i], key);
        const std::uint64_t hash = std::hash<std::string_view>{}(key);
        stretch.hashes[i] = key.empty() ? noHash : hash == noHash ? 1 : hash;
      }
  }
  /// A table of a million keys lies all over the memory, as do the tracks that it leads to: what a
  /// lookup will read is asked for, one thing after the other, before it is waited for.
  void lookAhead(const Stretch& stretch, std::size_t i) const noexcept {
    constexpr std::size_t step = 12;
    const std::vector<std::uint64_t>& hashes = stretch.hashes;
    if (i + 4 * step < hashes.size()) table_.prefetch(hashes[i + 4 * step]);
    if (const TrackRecord* first = firstLike(hashes, i + 3 * step)) __builtin_prefetch(first);
    if (const TrackRecord* first = firstLike(hashes, i + 2 * step)) maker_.prefetchItem(*first);
    if (const TrackRecord* first = firstLike(hashes, i + step)) maker_.prefetchTexts(*first);
  }
  /// The track that most likely has the key with the `i`-th hash.
  [[nodiscard]] const TrackRecord* firstLike(const std::vector<std::uint64_t>& hashes,
                                             std::size_t i) const noexcept {
    if (i >= hashes.size()) return nullptr;
    const auto candidate = table_.find(hashes[i], [](std::uint32_t) { return true; });
    return candidate ? tracks_[firsts_[*candidate]] : nullptr;
  }
  std::uint32_t number(std::size_t track, std::uint64_t hash) {
    const std::uint32_t found = table_.number(hash, [&](std::uint32_t candidate) {
      return maker_.same(*tracks_[firsts_[candidate]], *tracks_[track]);
    });
    if (found == firsts_.size()) firsts_.push_back(static_cast<std::uint32_t>(track));
    return found;
  }

  MatchKeyMaker maker_, helpersMaker_;
  Tracks tracks_;
  std::array<Stretch, 2> stretches_;
  NumberTable table_;
  std::vector<std::uint32_t> firsts_;  ///< the first track of each number
};

/// Ends early when cancelled, after the track at hand.
Buckets fillBuckets(KeyNumbers& numbers, std::size_t tracks, FunctionRef<bool()> cancelled) {
  Buckets buckets;
  buckets.ofTrack.reserve(tracks);
  buckets.sizes.reserve(tracks + 1);
  buckets.sizes.push_back(0);
  numbers.forEach([&](std::uint32_t bucket) {
    const bool stop = cancelled();
    buckets.ofTrack.push_back(bucket);
    if (bucket == buckets.sizes.size()) buckets.sizes.push_back(0);
    ++buckets.sizes[bucket];
    return !stop;
  });
  return buckets;
}

/// The tracks of all buckets of two or more, bucket after bucket in the order of their numbers;
/// `ends` receives where each of them ends.
std::vector<const TrackRecord*> gather(Tracks tracks, const Buckets& buckets,
                                       std::vector<std::size_t>& ends) {
  std::vector<std::uint32_t> places(buckets.sizes.size());
  std::uint32_t total = 0;
  for (std::size_t bucket = 1; bucket < buckets.sizes.size(); ++bucket) {
    if (buckets.sizes[bucket] < 2) continue;
    places[bucket] = total;
    total += buckets.sizes[bucket];
    ends.push_back(total);
  }
  std::vector<const TrackRecord*> gathered(total);
  for (std::size_t i = 0; i < buckets.ofTrack.size(); ++i) {
    const std::uint32_t bucket = buckets.ofTrack[i];
    if (bucket != none && buckets.sizes[bucket] >= 2) gathered[places[bucket]++] = tracks[i];
  }
  return gathered;
}

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

Grouping groupTracks(const TrackStore& store, Tracks tracks, std::span<const std::string> criteria,
                     const GroupingOptions& options, FunctionRef<bool()> cancelled) {
  KeyNumbers numbers(store, tracks, criteria, options);
  const Buckets buckets = fillBuckets(numbers, tracks.size(), cancelled);
  Grouping result;
  result.cancelled = cancelled();
  if (result.cancelled) return result;

  std::vector<std::size_t> ends;
  const std::vector<const TrackRecord*> gathered = gather(tracks, buckets, ends);
  result.members.reserve(gathered.size());
  const auto addGroup = [&](Tracks group) {
    for (const TrackRecord* track : group) result.members.push_back({track, result.groups});
    ++result.groups;
  };
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    const Tracks bucket = Tracks(gathered).subspan(begin, end - begin);
    if (options.toleranceSeconds > 0)
      splitByTime(bucket, options.toleranceSeconds, addGroup);
    else
      addGroup(bucket);
    begin = end;
  }
  // The file-name pass keeps only groups that hold a single value for a key that no record has, and
  // a group has one (missing) value for each of its two tracks or more: a saved list of criteria
  // with this word must not offer anything for removal.
  if (std::find(criteria.begin(), criteria.end(), "Filename") != criteria.end())
    result.members.clear();
  return result;
}

}  // namespace kestrel
