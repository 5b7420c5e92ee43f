/// Work that is divided between the machine's cores.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace kestrel {

/// Calls `work(i)` once for each number below `count`, from several threads, and returns when all
/// is done. `work` must not throw.
template <typename Work>
void withAllCores(std::size_t count, Work&& work) {
  std::atomic<std::size_t> next{0};
  const auto some = [&] {
    for (std::size_t i = 0; (i = next++) < count;) work(i);
  };
  const std::size_t cores = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 8);
  std::vector<std::jthread> others;
  for (std::size_t i = 1; i < std::min(cores, count); ++i) others.emplace_back(some);
  some();
}

}  // namespace kestrel
