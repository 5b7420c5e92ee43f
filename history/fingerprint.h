/// A number that stands for values where the values themselves would be too much to keep.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kestrel {

/// A hash in which every bit of what was added, and the order, counts. Fixed for good: plans and
/// the history hold its results.
class Fingerprint {
 public:
  void add(std::uint64_t word) noexcept {
    hash_ ^= word;
    hash_ *= 0x9E3779B97F4A7C15U;
    hash_ ^= hash_ >> 32U;
  }
  void add(std::string_view text) noexcept {
    add(text.size());
    for (const char c : text) add(static_cast<unsigned char>(c));
  }
  void add(std::span<const std::uint64_t> words) noexcept {
    add(words.size());
    for (const std::uint64_t word : words) add(word);
  }
  [[nodiscard]] std::uint64_t value() const noexcept { return hash_; }

 private:
  std::uint64_t hash_ = 0x6A09E667F3BCC908U;
};

}  // namespace kestrel
