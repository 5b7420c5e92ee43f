/// From a 64-bit key (an ID, a hash) to the numbers that have it, in ascending order.
///
/// Made for a million keys that are filled in once: a sorted array of 16 bytes a key. What is added
/// after the first search goes into a small table beside it. Unlike in a NumberTable, any number of
/// keys may be equal, as in a library whose tracks all lack a field, without each making the next
/// slower. Not thread-safe.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kestrel {

class NumberLookup {
 public:
  void reserve(std::size_t count) { filled_.reserve(count); }
  void add(std::uint64_t key, std::uint32_t number) {
    if (sorted_)
      later_[key].push_back(number);
    else
      filled_.emplace_back(key, number);
  }
  /// The first number of that key that `accept` takes.
  template <typename Accept>
  std::optional<std::uint32_t> find(std::uint64_t key, Accept&& accept) {
    if (!std::exchange(sorted_, true) && !std::is_sorted(filled_.begin(), filled_.end()))
      std::sort(filled_.begin(), filled_.end());
    auto at = std::lower_bound(filled_.begin(), filled_.end(), std::pair(key, std::uint32_t{0}));
    for (; at != filled_.end() && at->first == key; ++at)
      if (accept(at->second)) return at->second;
    if (const auto later = later_.find(key); later != later_.end())
      for (const std::uint32_t number : later->second)
        if (accept(number)) return number;
    return std::nullopt;
  }

 private:
  std::vector<std::pair<std::uint64_t, std::uint32_t>> filled_;
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> later_;
  bool sorted_ = false;
};

}  // namespace kestrel
