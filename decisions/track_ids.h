/// Sets of tracks, as what a user decides about groups is kept: by persistent ID.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace kestrel {

/// Ascending, each once.
using TrackIDs = std::vector<std::uint64_t>;

/// In any order, repeats allowed.
inline TrackIDs trackIDs(std::span<const std::uint64_t> tracks) {
  TrackIDs ids(tracks.begin(), tracks.end());
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

inline bool holds(const TrackIDs& ids, std::uint64_t track) {
  return std::binary_search(ids.begin(), ids.end(), track);
}

/// The tracks that both have.
inline TrackIDs common(const TrackIDs& a, const TrackIDs& b) {
  TrackIDs both;
  std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
  return both;
}

/// Which of many numbered sets hold a track. A set's number is used once; a set that is taken out
/// leaves its number empty.
class SetsByTrack {
 public:
  void add(std::uint32_t number, const TrackIDs& ids) {
    for (const std::uint64_t id : ids) sets_[id].push_back(number);
  }
  void remove(std::uint32_t number, const TrackIDs& ids) {
    for (const std::uint64_t id : ids) std::erase(sets_[id], number);
  }
  [[nodiscard]] std::span<const std::uint32_t> of(std::uint64_t track) const {
    const auto found = sets_.find(track);
    return found == sets_.end() ? std::span<const std::uint32_t>() : found->second;
  }
  /// Calls `visit(number, how many of `ids` the set holds)` for each set that holds at least one,
  /// ascending by number.
  template <typename Visit>
  void forEachTouched(const TrackIDs& ids, Visit&& visit) const {
    std::vector<std::uint32_t> touched;
    for (const std::uint64_t id : ids) {
      const auto sets = of(id);
      touched.insert(touched.end(), sets.begin(), sets.end());
    }
    std::sort(touched.begin(), touched.end());
    for (std::size_t begin = 0, end = 0; begin < touched.size(); begin = end) {
      while (end < touched.size() && touched[end] == touched[begin]) ++end;
      visit(touched[begin], end - begin);
    }
  }

 private:
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> sets_;
};

}  // namespace kestrel
