#include "sound/sound_groups.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "platform/all_cores.h"

namespace kestrel {
namespace {

using std::size_t;

/// One item of so many enters the index.
constexpr std::uint32_t itemsAPosting = 4;
/// Of files that share an item, each is joined with so many of the next.
constexpr size_t mostNeighbours = 32;
/// Items that two files have in common before they are compared.
constexpr std::uint16_t fewestShared = 3;
/// Candidates of one file among those behind it: those that share the most.
constexpr size_t mostCandidates = 64;

/// The lowest bits are the first to change with format and bit rate.
constexpr std::uint32_t steadyPart(std::uint32_t item) { return item >> 4U; }

constexpr std::uint32_t mixed(std::uint32_t number) {
  number ^= number >> 16U;
  number *= 0x7FEB352DU;
  number ^= number >> 15U;
  number *= 0x846CA68BU;
  return number ^ number >> 16U;
}

// A posting: an item, of which the bits that chose it say nothing, a file, and where the item is
// met first in it.
constexpr unsigned fileBits = 24, placeBits = 10;

constexpr std::uint64_t postingOf(std::uint32_t item, std::uint32_t file, std::size_t place) {
  const std::uint64_t kept = item / itemsAPosting;
  const std::uint64_t last = (1U << placeBits) - 1;
  return (kept << fileBits | file) << placeBits | std::min<std::uint64_t>(place, last);
}
constexpr std::uint32_t fileOf(std::uint64_t posting) {
  return static_cast<std::uint32_t>(posting >> placeBits) & ((1U << fileBits) - 1);
}
constexpr int placeOf(std::uint64_t posting) {
  return static_cast<int>(posting & ((1U << placeBits) - 1));
}
constexpr std::uint64_t itemOf(std::uint64_t posting) { return posting >> (fileBits + placeBits); }

/// The places of each file's postings, one file after the other.
struct PlacesByFile {
  PlacesByFile(std::span<const std::uint64_t> postings, std::uint32_t files)
      : starts(files + size_t{1}), places(postings.size()) {
    for (const std::uint64_t posting : postings) ++starts[fileOf(posting)];
    std::uint32_t sum = 0;
    for (std::uint32_t& start : starts) sum += std::exchange(start, sum);
    std::vector<std::uint32_t> at(starts.begin(), starts.end());
    for (size_t i = 0; i < postings.size(); ++i)
      places[at[fileOf(postings[i])]++] = static_cast<std::uint32_t>(i);
  }
  std::vector<std::uint32_t> starts, places;
};

/// Whether two files share enough items that are all shifted by the same, give or take one place.
class Shifts {
 public:
  Shifts(std::span<const std::uint64_t> postings, const PlacesByFile& places)
      : postings_(postings), places_(places) {}
  bool agree(std::uint32_t one, std::uint32_t other) {
    shifts_.clear();
    const auto end = [&](std::uint32_t file) { return places_.starts[file + 1]; };
    std::uint32_t a = places_.starts[one], b = places_.starts[other];
    while (a < end(one) && b < end(other)) {
      const std::uint64_t first = postings_[places_.places[a]],
                          second = postings_[places_.places[b]];
      // Postings of one item are neighbours, so that none that both have is passed over.
      if (itemOf(first) == itemOf(second)) shifts_.push_back(placeOf(first) - placeOf(second));
      places_.places[a] < places_.places[b] ? ++a : ++b;
    }
    std::sort(shifts_.begin(), shifts_.end());
    for (size_t last = fewestShared - 1; last < shifts_.size(); ++last)
      if (shifts_[last] - shifts_[last + 1 - fewestShared] <= 2) return true;
    return false;
  }

 private:
  std::span<const std::uint64_t> postings_;
  const PlacesByFile& places_;
  std::vector<int> shifts_;
};

/// How many items a file shares with each of those behind it.
class Shared {
 public:
  explicit Shared(std::uint32_t files) : counts_(files) {}
  void count(std::uint32_t file) {
    if (counts_[file]++ == 0) met_.push_back(file);
  }
  /// Those that share enough in step, ascending; then nothing is counted any more.
  void take(std::uint32_t file, Shifts& shifts, std::vector<SoundPair>& pairs) {
    std::erase_if(met_, [&](std::uint32_t other) {
      if (counts_[other] >= fewestShared && shifts.agree(file, other)) return false;
      counts_[other] = 0;
      return true;
    });
    const auto closer = [&](std::uint32_t a, std::uint32_t b) {
      return counts_[a] != counts_[b] ? counts_[a] > counts_[b] : a < b;
    };
    if (met_.size() > mostCandidates) {
      const auto last = met_.begin() + mostCandidates;
      std::nth_element(met_.begin(), last, met_.end(), closer);
      std::for_each(last, met_.end(), [&](std::uint32_t other) { counts_[other] = 0; });
      met_.erase(last, met_.end());
    }
    std::sort(met_.begin(), met_.end());
    for (const std::uint32_t other : met_) {
      pairs.emplace_back(file, other);
      counts_[other] = 0;
    }
    met_.clear();
  }

 private:
  std::vector<std::uint16_t> counts_;
  std::vector<std::uint32_t> met_;
};

}  // namespace

void SoundIndex::add(std::uint32_t file, const Sound& sound) {
  files_ = std::max(files_, file + 1);
  if (!sound.checksum.empty()) checksums_.emplace_back(sound.checksum, file);
  std::vector<std::pair<std::uint32_t, size_t>> items;
  for (size_t place = 0; place < sound.fingerprint.size(); ++place)
    if (const std::uint32_t item = mixed(steadyPart(sound.fingerprint[place]));
        item % itemsAPosting == 0)
      items.emplace_back(item, place);
  std::sort(items.begin(), items.end());
  const auto sameItem = [](const auto& a, const auto& b) { return a.first == b.first; };
  items.erase(std::unique(items.begin(), items.end(), sameItem), items.end());
  for (const auto& [item, place] : items)
    postings_[item / itemsAPosting % shards].push_back(postingOf(item, file, place));
}

std::vector<SoundPair> SoundIndex::candidates(FunctionRef<bool()> stopped) {
  withAllCores(shards, [&](size_t shard) {
    if (!stopped()) std::sort(postings_[shard].begin(), postings_[shard].end());
  });
  std::vector<std::uint64_t> postings;
  size_t count = 0;
  for (const auto& shard : postings_) count += shard.size();
  postings.reserve(count);
  for (auto& shard : postings_) {
    postings.insert(postings.end(), shard.begin(), shard.end());
    std::vector<std::uint64_t>().swap(shard);
  }
  const PlacesByFile places(postings, files_);

  constexpr std::uint32_t filesAPart = 1024;
  std::vector<std::vector<SoundPair>> parts(files_ / filesAPart + 1);
  withAllCores(parts.size(), [&](size_t part) {
    if (stopped()) return;
    Shared shared(files_);
    Shifts shifts(postings, places);
    const auto first = static_cast<std::uint32_t>(part) * filesAPart;
    for (std::uint32_t file = first; file < std::min(first + filesAPart, files_); ++file) {
      for (std::uint32_t i = places.starts[file]; i < places.starts[file + 1]; ++i) {
        const size_t place = places.places[i];
        const size_t end = std::min(postings.size(), place + 1 + mostNeighbours);
        for (size_t next = place + 1;
             next < end && itemOf(postings[next]) == itemOf(postings[place]); ++next)
          shared.count(fileOf(postings[next]));
      }
      shared.take(file, shifts, parts[part]);
    }
  });
  std::vector<SoundPair> pairs;
  if (stopped()) return pairs;
  for (const auto& part : parts) pairs.insert(pairs.end(), part.begin(), part.end());

  // The same audio, also where it is too short for a fingerprint.
  std::sort(checksums_.begin(), checksums_.end());
  for (size_t i = 1; i < checksums_.size(); ++i)
    if (checksums_[i].first == checksums_[i - 1].first)
      pairs.emplace_back(checksums_[i - 1].second, checksums_[i].second);
  checksums_.clear();
  std::sort(pairs.begin(), pairs.end());
  pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
  return pairs;
}

std::vector<std::vector<std::uint32_t>> soundGroups(
    std::span<const SoundPair> candidates,
    FunctionRef<bool(std::uint32_t, std::uint32_t)> soundSame, FunctionRef<bool()> stopped) {
  std::vector<std::vector<std::uint32_t>> groups;
  // Most first files take those that candidates pair them with: these are compared side by side.
  std::vector<char> isSame(candidates.size());
  constexpr size_t pairsAPart = 64;
  withAllCores((candidates.size() + pairsAPart - 1) / pairsAPart, [&](size_t part) {
    if (stopped()) return;
    const size_t end = std::min(candidates.size(), (part + 1) * pairsAPart);
    for (size_t i = part * pairsAPart; i < end; ++i)
      isSame[i] = soundSame(candidates[i].first, candidates[i].second) ? 1 : 0;
  });
  if (stopped()) return groups;

  std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> same;  // both ways
  for (size_t i = 0; i < candidates.size(); ++i) {
    if (!isSame[i]) continue;
    same[candidates[i].first].push_back(candidates[i].second);
    same[candidates[i].second].push_back(candidates[i].first);
  }
  std::vector<std::uint32_t> files;
  for (const auto& [file, others] : same) files.push_back(file);
  std::sort(files.begin(), files.end());
  std::unordered_set<std::uint32_t> taken;
  for (const std::uint32_t first : files) {
    if (taken.contains(first)) continue;
    if (stopped()) return {};
    std::vector<std::uint32_t> group{first};
    std::unordered_set<std::uint32_t> asked{first};
    for (size_t at = 0; at < group.size(); ++at)
      for (const std::uint32_t other : same[group[at]])
        if (!taken.contains(other) && asked.insert(other).second &&
            (at == 0 || soundSame(first, other)))
          group.push_back(other);
    if (group.size() < 2) continue;
    taken.insert(group.begin(), group.end());
    std::sort(group.begin(), group.end());
    groups.push_back(std::move(group));
  }
  return groups;
}

}  // namespace kestrel
