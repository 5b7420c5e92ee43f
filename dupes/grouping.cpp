#include "dupes/grouping.h"

#include <algorithm>
#include <array>
#include <functional>

#include "dupes/id_table.h"
#include "dupes/match_key.h"
#include "dupes/time_split.h"
#include "foundation/text_pool.h"

namespace kestrel {
namespace {

/// Stands for the bucket of a track without a match key.
constexpr std::uint32_t none = 0;

using Tracks = std::span<const TrackRecord* const>;

struct Buckets {
  std::vector<std::uint32_t> ofTrack;  ///< bucket number plus one, or none
  std::vector<std::uint32_t> sizes;    ///< by bucket number plus one
};

/// Numbers match keys in the order in which they are met.
///
/// Keys come in blocks: a table of a million keys lies all over the memory, so what a block's
/// lookups will read is asked for before the first of them waits for it.
class KeyNumbers {
 public:
  explicit KeyNumbers(std::size_t most) : table_(most) {}

  /// Where the next key of the block is to be written.
  std::string& next() { return block_[size_]; }
  /// Takes the key into the block; true when the block is full.
  bool take() {
    hashes_[size_] = std::hash<std::string_view>{}(block_[size_]);
    table_.prefetch(hashes_[size_]);
    return ++size_ == block_.size();
  }
  /// Calls `numbered(bucket number plus one, or none)` for each key of the block and empties it.
  template <typename Numbered>
  void finish(Numbered&& numbered) {
    for (std::size_t i = 0; i < size_; ++i)
      if (const auto candidate = table_.candidate(hashes_[i]))
        __builtin_prefetch(&keys_[*candidate]);
    for (std::size_t i = 0; i < size_; ++i)
      if (const auto candidate = table_.candidate(hashes_[i]))
        __builtin_prefetch(keys_[*candidate].view().data());
    for (std::size_t i = 0; i < size_; ++i) numbered(block_[i].empty() ? none : number(i) + 1);
    size_ = 0;
  }

 private:
  std::uint32_t number(std::size_t i) {
    const std::string& key = block_[i];
    const std::uint32_t found = table_.number(
        hashes_[i], [&](std::uint32_t candidate) { return keys_[candidate].view() == key; });
    if (found == keys_.size()) keys_.push_back(texts_.add(key));
    return found;
  }

  IdTable table_;
  TextPool texts_;
  std::vector<Text> keys_;  ///< by number
  std::array<std::string, 64> block_;
  std::array<std::uint64_t, 64> hashes_{};
  std::size_t size_ = 0;
};

/// Ends early when cancelled, after the track at hand.
Buckets fillBuckets(Tracks tracks, MatchKeyMaker& maker, FunctionRef<bool()> cancelled) {
  Buckets buckets{{}, {0}};
  buckets.ofTrack.reserve(tracks.size());
  const auto add = [&](std::uint32_t bucket) {
    buckets.ofTrack.push_back(bucket);
    if (bucket == buckets.sizes.size()) buckets.sizes.push_back(0);
    ++buckets.sizes[bucket];
  };
  KeyNumbers numbers(tracks.size());
  for (const TrackRecord* track : tracks) {
    const bool stop = cancelled();
    maker.make(*track, numbers.next());
    if (numbers.take()) numbers.finish(add);
    if (stop) break;
  }
  numbers.finish(add);
  return buckets;
}

/// The tracks of all buckets of two or more, bucket after bucket in the order of their numbers;
/// `ends` receives where each of them ends.
std::vector<const TrackRecord*> gather(Tracks tracks, const Buckets& buckets,
                                       std::vector<std::size_t>& ends) {
  std::vector<std::size_t> places(buckets.sizes.size());
  std::size_t total = 0;
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
  MatchKeyMaker maker(store, criteria, options.caseSensitive);
  const Buckets buckets = fillBuckets(tracks, maker, cancelled);
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
