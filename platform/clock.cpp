#include "platform/clock.h"

#include <thread>

namespace kestrel {

Moment SystemClock::now() const {
  return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

void SystemClock::sleepFor(std::chrono::nanoseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace kestrel
