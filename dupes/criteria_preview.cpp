#include "dupes/criteria_preview.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <limits>
#include <map>
#include <memory>
#include <thread>

#include "dupes/match_key.h"
#include "foundation/collation.h"
#include "foundation/number_table.h"

namespace kestrel {
namespace {

using PreviewTracks = std::span<const TrackRecord* const>;

/// A text that can be joined to another without its letters: the hash of "ab" is the same whether
/// it comes of "ab" or of "a" and "b".
struct PartHash {
  std::uint64_t hash = 0;
  std::uint64_t shift = 1;  ///< what a text before it is multiplied by
};

constexpr std::uint64_t prime = (std::uint64_t{1} << 61) - 1;
constexpr std::uint64_t base = 0x16B2C5A9E1D3F047U % prime;

constexpr std::uint64_t times(std::uint64_t a, std::uint64_t b) noexcept {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  const std::uint64_t sum =
      static_cast<std::uint64_t>(product & prime) + static_cast<std::uint64_t>(product >> 61);
  return sum >= prime ? sum - prime : sum;
}

constexpr std::uint64_t plus(std::uint64_t a, std::uint64_t b) noexcept {
  return a + b >= prime ? a + b - prime : a + b;
}

PartHash hashOf(std::string_view text) noexcept {
  PartHash result;
  for (const char c : text) {
    result.hash = plus(times(result.hash, base), static_cast<unsigned char>(c) + std::uint64_t{1});
    result.shift = times(result.shift, base);
  }
  return result;
}

constexpr PartHash joined(PartHash a, PartHash b) noexcept {
  return {plus(times(a.hash, b.shift), b.hash), times(a.shift, b.shift)};
}

/// A capital sigma becomes small by what stands around it, so that its text cannot be taken alone.
bool hasCapitalSigma(std::string_view text) noexcept {
  return text.find("\xCE\xA3") != std::string_view::npos;
}

/// The values of one key, of all tracks.
struct KeyHashes {
  std::vector<PartHash> ofTrack;
  std::vector<std::uint32_t> withSigma;  ///< places of tracks, ascending
};

class Preview {
 public:
  Preview(const TrackStore& store, PreviewTracks tracks, const GroupingOptions& options)
      : store_(store), tracks_(tracks), options_(options) {}

  KeyHashes read(const std::string& key) const {
    const std::string keys[] = {key};
    GroupingOptions asTheyStand = options_;
    asTheyStand.caseSensitive = true;
    MatchKeyMaker maker(store_, keys, asTheyStand);
    KeyHashes hashes;
    if (maker.parts() == 0) return hashes;
    hashes.ofTrack.reserve(tracks_.size());
    std::string text, lower;
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
      maker.value(*tracks_[i], 0, text);
      if (options_.caseSensitive) {
        hashes.ofTrack.push_back(hashOf(text));
        continue;
      }
      if (hasCapitalSigma(text)) hashes.withSigma.push_back(static_cast<std::uint32_t>(i));
      lowercaseInto(text, lower);
      hashes.ofTrack.push_back(hashOf(lower));
    }
    return hashes;
  }

  std::size_t groups(std::span<const std::string> criteria,
                     std::span<const KeyHashes* const> keys) const {
    if (std::find(criteria.begin(), criteria.end(), "Filename") != criteria.end()) return 0;
    std::vector<std::uint64_t> hashes(tracks_.size());
    std::vector<std::uint32_t> again;
    // With looser matching an empty value matches nothing, unless that was asked for.
    const bool needsValues = options_.loose && !(options_.loose & bitOf(Loose::emptyValues));
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
      PartHash hash;
      bool lacks = false;
      for (const KeyHashes* key : keys) {
        hash = joined(hash, key->ofTrack[i]);
        lacks = lacks || key->ofTrack[i].shift == 1;
      }
      hashes[i] = hash.shift == 1 || (needsValues && lacks) ? 0 : hash.hash;
    }
    for (const KeyHashes* key : keys)
      again.insert(again.end(), key->withSigma.begin(), key->withSigma.end());
    MatchKeyMaker maker(store_, criteria, options_);
    std::string text;
    for (const std::uint32_t i : again) {
      maker.make(*tracks_[i], text);
      hashes[i] = hashOf(text).hash;
    }
    return options_.toleranceSeconds > 0 ? countByTime(hashes) : countPairs(hashes);
  }

 private:
  /// Of the hashes other than 0, those that come more than once.
  static std::size_t countPairs(const std::vector<std::uint64_t>& hashes) {
    // Slots hold a hash in their upper bits, and whether it has come again in the lowest.
    std::size_t size = 16;
    while (size < hashes.size() * 2) size *= 2;
    std::vector<std::uint64_t> slots(size);
    std::size_t groups = 0;
    for (const std::uint64_t hash : hashes) {
      if (hash == 0) continue;
      const std::uint64_t mark = hash << 1;
      std::size_t at = (hash * 0x9E3779B97F4A7C15U >> 20) & (size - 1);
      while (slots[at] && (slots[at] | 1) != (mark | 1)) at = (at + 1) & (size - 1);
      if (!slots[at]) {
        slots[at] = mark;
      } else if (!(slots[at] & 1)) {
        slots[at] |= 1;
        ++groups;
      }
    }
    return groups;
  }
  std::size_t countByTime(const std::vector<std::uint64_t>& hashes) const {
    std::vector<std::uint32_t> order;
    order.reserve(hashes.size());
    for (std::uint32_t i = 0; i < hashes.size(); ++i)
      if (hashes[i]) order.push_back(i);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
      return hashes[a] != hashes[b] ? hashes[a] < hashes[b] : a < b;
    });
    std::size_t groups = 0;
    std::vector<const TrackRecord*> bucket;
    for (std::size_t begin = 0; begin < order.size();) {
      bucket.clear();
      std::size_t end = begin;
      for (; end < order.size() && hashes[order[end]] == hashes[order[begin]]; ++end)
        bucket.push_back(tracks_[order[end]]);
      begin = end;
      if (bucket.size() > 1)
        splitByTime(bucket, options_.toleranceSeconds, [&](auto) { ++groups; });
    }
    return groups;
  }

  const TrackStore& store_;
  PreviewTracks tracks_;
  const GroupingOptions& options_;
};

/// Calls `work(i)` for each number below `count` on a few threads.
template <typename Work>
void inParallel(std::size_t count, Work&& work) {
  std::atomic<std::size_t> next{0};
  const auto run = [&] {
    for (std::size_t i; (i = next.fetch_add(1)) < count;) work(i);
  };
  const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
  std::vector<std::future<void>> helpers;
  for (unsigned i = 1; i < threads; ++i) helpers.push_back(std::async(std::launch::async, run));
  run();
  for (auto& helper : helpers) helper.get();
}

}  // namespace

std::vector<std::optional<std::size_t>> previewCriteria(
    const TrackStore& store, PreviewTracks tracks, std::span<const std::vector<std::string>> lists,
    const GroupingOptions& options, FunctionRef<bool()> cancelled) {
  const Preview preview(store, tracks, options);
  // Keys of several lists are read first; the others by the list that has them, so that memory does
  // not grow with their number.
  std::map<std::string, std::size_t> uses;
  for (const auto& list : lists)
    for (const std::string& key : list) ++uses[key];
  std::erase_if(uses, [](const auto& use) { return use.second < 2; });
  std::map<std::string, KeyHashes> shared;
  std::vector<std::pair<const std::string*, KeyHashes*>> toRead;
  for (const auto& [key, count] : uses) toRead.emplace_back(&key, &shared[key]);
  std::atomic<bool> stopped{false};
  const auto stop = [&] {
    if (!stopped && cancelled()) stopped = true;
    return stopped.load();
  };
  inParallel(toRead.size(), [&](std::size_t i) {
    if (!stop()) *toRead[i].second = preview.read(*toRead[i].first);
  });
  std::vector<std::optional<std::size_t>> counts(lists.size());
  inParallel(lists.size(), [&](std::size_t i) {
    if (stop()) return;
    std::map<std::string, KeyHashes> own;
    std::vector<const KeyHashes*> keys;
    for (const std::string& key : lists[i]) {
      const auto found = shared.find(key);
      const KeyHashes* hashes = found != shared.end() ? &found->second : nullptr;
      if (!hashes) hashes = &own.try_emplace(key, preview.read(key)).first->second;
      if (!hashes->ofTrack.empty()) keys.push_back(hashes);
    }
    if (!stop()) counts[i] = preview.groups(lists[i], keys);
  });
  return counts;
}

}  // namespace kestrel
