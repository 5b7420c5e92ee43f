#include "platform/random.h"

#include <limits>

namespace kestrel {

std::uint32_t SeededRandom::below(std::uint32_t limit) {
  if (limit == 0) return 0;
  // The standard distributions differ between libraries, so the range is cut down here: numbers
  // from the incomplete last run of `limit` would favour the small results and are drawn again.
  constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t whole = largest - largest % limit;
  std::uint64_t number = engine_();
  while (number >= whole) number = engine_();
  return static_cast<std::uint32_t>(number % limit);
}

SystemRandom::SystemRandom()
    : SeededRandom([] {
        std::random_device device;
        return (std::uint64_t{device()} << 32U) | device();
      }()) {}

}  // namespace kestrel
