/// Finding the entries of a list that satisfy a condition. An operation that neither program needs.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <future>
#include <iterator>
#include <ranges>
#include <thread>
#include <vector>

namespace kestrel::TextManipulator {

/// Indexes, ascending, of the entries for which `predicate(entry)` is true. Long lists are divided
/// between threads, so the predicate must be free of side effects; what it throws is passed on.
template <std::ranges::random_access_range List,
          std::predicate<std::ranges::range_reference_t<const List>> Condition>
std::vector<std::size_t> indexesFromArray(const List& list, const Condition& predicate) {
  constexpr std::size_t worthAThread = 16384;
  const auto size = static_cast<std::size_t>(std::ranges::size(list));
  const auto search = [&](std::size_t from, std::size_t end) {
    std::vector<std::size_t> found;
    const auto first = std::ranges::begin(list);
    for (std::size_t i = from; i < end; ++i)
      if (predicate(first[static_cast<std::ranges::range_difference_t<const List>>(i)]))
        found.push_back(i);
    return found;
  };

  const std::size_t parts = std::clamp<std::size_t>(
      size / worthAThread, 1, std::max(1U, std::thread::hardware_concurrency()));
  std::vector<std::future<std::vector<std::size_t>>> others;
  for (std::size_t part = 1; part < parts; ++part)
    others.push_back(
        std::async(std::launch::async, search, size * part / parts, size * (part + 1) / parts));
  std::vector<std::size_t> indexes = search(0, size / parts);
  for (auto& other : others) {
    const std::vector<std::size_t> found = other.get();
    indexes.insert(indexes.end(), found.begin(), found.end());
  }
  return indexes;
}

}  // namespace kestrel::TextManipulator
