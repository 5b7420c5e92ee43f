#include "bench/memory_watch.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace kestrel::bench {

std::size_t anonymousMemory() {
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (!file) return 0;
  unsigned long size = 0, resident = 0, fileBacked = 0;
  const int fields = std::fscanf(file, "%lu %lu %lu", &size, &resident, &fileBacked);
  std::fclose(file);
  return fields == 3 ? (resident - fileBacked) * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))
                     : 0;
}

MemoryWatch::MemoryWatch()
    : thread_([this](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
          peak_ = std::max(peak_.load(), anonymousMemory());
          std::this_thread::sleep_for(std::chrono::milliseconds(3));
        }
      }) {}

}  // namespace kestrel::bench
