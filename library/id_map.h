/// Persistent IDs to small numbers, for passes over millions of playlist entries.
///
/// Open addressing in slots of 16 bytes. Emptying it is free, so that one table serves playlist
/// after playlist. Not thread-safe.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kestrel {

class IdMap {
 public:
  /// Empties the table and makes room for `most` IDs.
  void reset(std::size_t most) {
    const std::size_t slots = std::bit_ceil(most + most / 2 + 2);
    if (slots > slots_.size()) {
      slots_.assign(slots, Slot());
      round_ = 0;
    }
    // A slot of an earlier round is free; rounds begin again long before they could be confused.
    if (++round_ == 0) {
      slots_.assign(slots_.size(), Slot());
      round_ = 1;
    }
    size_ = 0;
  }

  /// False, and nothing is changed, when the ID is there already.
  bool insert(std::uint64_t id, std::uint32_t number) {
    if ((size_ + 1) * 4 > slots_.size() * 3) grow();
    Slot& slot = slots_[slotOf(id)];
    if (slot.round == round_) return false;
    slot = {id, number, round_};
    ++size_;
    return true;
  }

  /// nullptr when the ID is not there.
  [[nodiscard]] const std::uint32_t* find(std::uint64_t id) const noexcept {
    if (size_ == 0) return nullptr;
    const Slot& slot = slots_[slotOf(id)];
    return slot.round == round_ ? &slot.number : nullptr;
  }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  /// Asks for the memory of an ID that will be looked for a few steps later.
  void prefetch(std::uint64_t id) const noexcept {
    if (size_ != 0) __builtin_prefetch(&slots_[homeOf(id)]);
  }

 private:
  struct Slot {
    std::uint64_t id = 0;
    std::uint32_t number = 0;
    std::uint32_t round = 0;
  };

  [[nodiscard]] std::size_t homeOf(std::uint64_t id) const noexcept {
    // IDs are random in practice, but a document may number them: mix.
    return (id * 0x9E3779B97F4A7C15U) >> (64 - std::bit_width(slots_.size() - 1));
  }
  [[nodiscard]] std::size_t slotOf(std::uint64_t id) const noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = homeOf(id);
    while (slots_[at].round == round_ && slots_[at].id != id) at = (at + 1) & mask;
    return at;
  }
  void grow() {
    std::vector<Slot> full(std::bit_ceil(slots_.size() * 2 + 2));
    full.swap(slots_);
    const std::uint32_t round = std::exchange(round_, 1);
    for (const Slot& slot : full)
      if (slot.round == round && round != 0) slots_[slotOf(slot.id)] = {slot.id, slot.number, 1};
  }

  std::vector<Slot> slots_;
  std::uint32_t round_ = 0;
  std::size_t size_ = 0;
};

}  // namespace kestrel
