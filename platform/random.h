/// Random choices, such as the keeper of a group that no rule decides.
#pragma once

#include <cstdint>
#include <random>

namespace kestrel {

/// Not thread-safe: each task at a time uses one.
class Random {
 public:
  virtual ~Random() = default;
  /// A number from 0 to `limit` - 1, all equally likely; 0 when `limit` is 0.
  virtual std::uint32_t below(std::uint32_t limit) = 0;
};

/// The same seed gives the same numbers on every machine.
class SeededRandom : public Random {
 public:
  explicit SeededRandom(std::uint64_t seed) : engine_(seed) {}
  std::uint32_t below(std::uint32_t limit) override {
    if (limit == 0) return 0;
    // The standard distributions differ between libraries, so the range is cut down here: numbers
    // from the incomplete last run of `limit` would favour the small results and are drawn again.
    constexpr std::uint64_t largest = std::mt19937_64::max();
    const std::uint64_t whole = largest - largest % limit;
    std::uint64_t number = engine_();
    while (number >= whole) number = engine_();
    return static_cast<std::uint32_t>(number % limit);
  }

 private:
  std::mt19937_64 engine_;
};

/// Seeded from the system's entropy, different at each run.
class SystemRandom final : public SeededRandom {
 public:
  SystemRandom() : SeededRandom(seed(std::random_device())) {}

 private:
  static std::uint64_t seed(std::random_device&& device) {
    return (std::uint64_t{device()} << 32U) | device();
  }
};

}  // namespace kestrel
