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
  std::uint32_t below(std::uint32_t limit) override;

 private:
  std::mt19937_64 engine_;
};

/// Seeded from the system's entropy, different at each run.
class SystemRandom final : public SeededRandom {
 public:
  SystemRandom();
};

}  // namespace kestrel
