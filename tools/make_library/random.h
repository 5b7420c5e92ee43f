/// The generator's own source of chance.
///
/// A library must come out the same, byte for byte, on every machine and with every compiler;
/// the standard distributions promise no such thing. A stream is named by seed, subject and
/// index, so anything can be made again later without having kept it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace kestrel::make_library {

/// Which subject a random stream belongs to, so that changing one leaves the others alone.
enum class Stream : std::uint64_t {
  artist = 1,
  album,
  song,
  songFile,
  plan,
  track,
  playlist,
  persistentId,
  mediaFile,
  cover
};

class Random {
 public:
  Random(std::uint64_t seed, Stream stream, std::uint64_t index = 0)
      : state_(mix(mix(seed + kStep * static_cast<std::uint64_t>(stream)) + index * kStep)) {}

  std::uint64_t next() { return mix(state_ += kStep); }

  /// 0 .. limit-1; 0 when `limit` is 0.
  std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(((next() >> 32) * limit) >> 32);
  }

  /// Both ends included.
  std::uint32_t between(std::uint32_t low, std::uint32_t high) {
    return low + below(high - low + 1);
  }

  bool chance(std::uint32_t perMille) { return below(1000) < perMille; }

  /// 0 .. limit-1 with small numbers far likelier: a few artists fill most of a library.
  std::uint32_t popular(std::uint32_t limit) {
    const std::uint64_t uniform = next() >> 32;
    return static_cast<std::uint32_t>((((uniform * uniform) >> 32) * limit) >> 32);
  }

  template <typename List>
  decltype(auto) pick(const List& list) {
    return list[below(static_cast<std::uint32_t>(std::size(list)))];
  }

 private:
  static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15U;

  static constexpr std::uint64_t mix(std::uint64_t bits) {
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31);
  }

  std::uint64_t state_;
};

}  // namespace kestrel::make_library
