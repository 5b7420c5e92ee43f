#include "dupes/grouping.h"

#include <algorithm>
#include <array>
#include <functional>
#include <future>

#include "dupes/id_table.h"
#include "dupes/match_key.h"
#include "dupes/time_split.h"

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
/// Two passes over a stretch of tracks at a time: the keys are made and hashed, by two threads
/// when there are many, then looked up in order. Keys are not kept: a track stands for its
/// key, and only when hashes are equal are two keys compared.
class KeyNumbers {
 public:
  KeyNumbers(const TrackStore& store, Tracks tracks, std::span<const std::string> criteria,
             bool caseSensitive)
      : makers_{{{store, criteria, caseSensitive}, {store, criteria, caseSensitive}}},
        tracks_(tracks),
        hashes_(std::min(tracks.size(), stretch)),
        table_(tracks.size()) {
    firsts_.reserve(tracks.size());
  }

  /// Calls `numbered(bucket number plus one, or none)` for each track in order until it returns
  /// false.
  template <typename Numbered>
  void forEach(Numbered&& numbered) {
    for (std::size_t begin = 0; begin < tracks_.size(); begin += stretch) {
      const Tracks part = tracks_.subspan(begin, std::min(stretch, tracks_.size() - begin));
      hash(part);
      for (std::size_t i = 0; i < part.size(); ++i) {
        lookAhead(i, part.size());
        if (!numbered(hashes_[i] == noHash ? none : number(begin + i, hashes_[i]) + 1)) return;
      }
    }
  }

 private:
  static constexpr std::size_t stretch = 1 << 15;
  /// A playlist with fewer tracks is searched before anybody looks up.
  static constexpr std::size_t enoughForTwo = 1 << 17;

  void hash(Tracks part) {
    const std::size_t half = tracks_.size() < enoughForTwo ? 0 : part.size() / 2;
    std::future<void> first;
    if (half != 0) first = std::async([&] { hash(makers_[0], part, 0, half); });
    hash(makers_[1], part, half, part.size());
    if (half != 0) first.get();
  }
  void hash(MatchKeyMaker& maker, Tracks part, std::size_t begin, std::size_t end) {
    std::string key;
    for (std::size_t i = begin; i < end; ++i) {
      maker.make(*part[i], key);
      const std::uint64_t hash = std::hash<std::string_view>{}(key);
      hashes_[i] = key.empty() ? noHash : hash == noHash ? 1 : hash;
    }
  }
  /// A table of a million keys lies all over the memory, as do the tracks that it leads to: what a
  /// lookup will read is asked for, one thing after the other, before it is waited for.
  void lookAhead(std::size_t i, std::size_t size) const noexcept {
    constexpr std::size_t step = 12;
    if (i + 4 * step < size) table_.prefetch(hashes_[i + 4 * step]);
    if (const TrackRecord* first = firstLike(i + 3 * step, size)) __builtin_prefetch(first);
    if (const TrackRecord* first = firstLike(i + 2 * step, size)) makers_[0].prefetchItem(*first);
    if (const TrackRecord* first = firstLike(i + step, size)) makers_[0].prefetchTexts(*first);
  }
  /// The track that most likely has the key of the stretch's `i`-th.
  [[nodiscard]] const TrackRecord* firstLike(std::size_t i, std::size_t size) const noexcept {
    if (i >= size) return nullptr;
    const auto candidate = table_.candidate(hashes_[i]);
    return candidate ? tracks_[firsts_[*candidate]] : nullptr;
  }
  std::uint32_t number(std::size_t track, std::uint64_t hash) {
    const std::uint32_t found = table_.number(hash, [&](std::uint32_t candidate) {
      return makers_[0].same(*tracks_[firsts_[candidate]], *tracks_[track]);
    });
    if (found == firsts_.size()) firsts_.push_back(static_cast<std::uint32_t>(track));
    return found;
  }

  std::array<MatchKeyMaker, 2> makers_;
  Tracks tracks_;
  std::vector<std::uint64_t> hashes_;  ///< of the stretch at hand
  IdTable table_;
  std::vector<std::uint32_t> firsts_;  ///< the first track of each number
};

/// Ends early when cancelled, after the track at hand.
Buckets fillBuckets(KeyNumbers numbers, std::size_t tracks, FunctionRef<bool()> cancelled) {
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

}  // namespace

Grouping groupTracks(const TrackStore& store, Tracks tracks, std::span<const std::string> criteria,
                     const GroupingOptions& options, FunctionRef<bool()> cancelled) {
  const Buckets buckets =
      fillBuckets({store, tracks, criteria, options.caseSensitive}, tracks.size(), cancelled);
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
  // The file-name pass, kept as it always was: it keeps only groups that hold a single value for a
  // key that no record has, and a group has one (missing) value for each of its two tracks or more.
  // Deliberate: a saved list of criteria with this word must not offer anything for removal.
  if (std::find(criteria.begin(), criteria.end(), "Filename") != criteria.end())
    result.members.clear();
  return result;
}

}  // namespace kestrel
