/// Numbers things by equality: the first of its kind gets the next number, its equals get the same.
///
/// Open addressing in slots of 8 bytes over hashes that the caller computes; the things themselves
/// stay with the caller. The part of the hash that a slot keeps only saves comparisons: a number is
/// handed out again only when the caller says that the things are equal.
#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrel {

class IdTable {
 public:
  /// Room for `most` different things; numbering more is an error of the caller's.
  explicit IdTable(std::size_t most)
      : slots_(std::bit_ceil(most + most / 2 + 1)), mask_(slots_.size() - 1) {}

  /// Asks for the memory of a hash that will be looked for a few steps later.
  void prefetch(std::uint64_t hash) const noexcept { __builtin_prefetch(&slots_[hash & mask_]); }

  /// The number of the thing with this hash for which `equals(number)` holds, else a new number,
  /// which then is `size() - 1`.
  template <typename Equals>
  std::uint32_t number(std::uint64_t hash, Equals&& equals) {
    const auto tag = static_cast<std::uint32_t>(hash >> 32);
    for (std::size_t at = hash & mask_;; at = (at + 1) & mask_) {
      Slot& slot = slots_[at];
      if (!slot.number) {
        slot = {tag, ++size_};
        return size_ - 1;
      }
      if (slot.tag == tag && equals(slot.number - 1)) return slot.number - 1;
    }
  }

  /// The number that is most likely the one of a thing with this hash, if there is any.
  [[nodiscard]] std::optional<std::uint32_t> candidate(std::uint64_t hash) const noexcept {
    const auto tag = static_cast<std::uint32_t>(hash >> 32);
    for (std::size_t at = hash & mask_; slots_[at].number; at = (at + 1) & mask_)
      if (slots_[at].tag == tag) return slots_[at].number - 1;
    return std::nullopt;
  }

  [[nodiscard]] std::uint32_t size() const noexcept { return size_; }

 private:
  struct Slot {
    std::uint32_t tag = 0;
    std::uint32_t number = 0;  ///< plus one; 0 is free
  };
  std::vector<Slot> slots_;
  std::size_t mask_;
  std::uint32_t size_ = 0;
};

}  // namespace kestrel
