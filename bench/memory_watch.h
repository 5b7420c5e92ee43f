/// Anonymous memory of this process: what no file backs. Mapped files do not count.
#pragma once

#include <atomic>
#include <cstddef>
#include <thread>

namespace kestrel::bench {

/// Bytes at this moment.
std::size_t anonymousMemory();

/// Looks every few milliseconds while it lives.
class MemoryWatch {
 public:
  MemoryWatch();
  [[nodiscard]] std::size_t peak() const { return peak_; }

 private:
  std::atomic<std::size_t> peak_{0};
  std::jthread thread_;
};

}  // namespace kestrel::bench
