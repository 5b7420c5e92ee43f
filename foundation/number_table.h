/// Finds small numbers again: a hash table whose entries stand for things that its caller keeps.
///
/// Open addressing in slots of 8 bytes over hashes that the caller computes. A slot keeps half of
/// the hash, which only saves comparisons: whether a number is the one that is looked for, the
/// caller says. Of the numbers under one hash, what was added first is found first.
/// Not thread-safe, but for readers among themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace kestrel {

class NumberTable {
 public:
  NumberTable() = default;
  /// Room for `most` numbers; more make it grow.
  explicit NumberTable(std::size_t most) { reset(most); }

  /// Empties the table, in time that depends on `most` alone, and makes room for so many numbers.
  void reset(std::size_t most) {
    slots_.assign(slotsFor(most), Slot());
    size_ = 0;
  }
  void add(std::uint64_t hash, std::uint32_t number) {
    if (slotsFor(size_ + 1) > slots_.size()) grow();
    addToSlots({tagOf(hash), number + 1});
    ++size_;
  }
  /// The first number under this hash for which `accept(number)` holds.
  template <typename Accept>
  [[nodiscard]] std::optional<std::uint32_t> find(std::uint64_t hash, Accept&& accept) const {
    if (size_ == 0) return std::nullopt;
    const std::uint32_t tag = tagOf(hash);
    for (std::size_t at = homeOf(tag); slots_[at].number; at = next(at))
      if (slots_[at].tag == tag && accept(slots_[at].number - 1)) return slots_[at].number - 1;
    return std::nullopt;
  }
  /// The number of the thing with this hash for which `equals(number)` holds, else a new number,
  /// which then is `size() - 1`: numbers things by equality, for a caller who does not use `add`.
  template <typename Equals>
  std::uint32_t number(std::uint64_t hash, Equals&& equals) {
    if (const auto found = find(hash, equals)) return *found;
    add(hash, static_cast<std::uint32_t>(size_));
    return static_cast<std::uint32_t>(size_ - 1);
  }
  /// Asks for the memory of a hash that will be looked for a few steps later.
  void prefetch(std::uint64_t hash) const noexcept {
    if (size_ != 0) __builtin_prefetch(&slots_[homeOf(tagOf(hash))]);
  }

  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  /// Bytes taken from the system.
  [[nodiscard]] std::size_t memory() const noexcept { return slots_.capacity() * sizeof(Slot); }

 private:
  struct Slot {
    std::uint32_t tag = 0;
    std::uint32_t number = 0;  ///< plus one; 0 is free
  };

  /// Four fifths are used at most.
  static constexpr std::size_t slotsFor(std::size_t numbers) noexcept {
    return numbers + numbers / 4 + 2;
  }
  /// IDs are random in practice, but a document may number them: mix.
  static constexpr std::uint32_t tagOf(std::uint64_t hash) noexcept {
    return static_cast<std::uint32_t>((hash * 0x9E3779B97F4A7C15U) >> 32);
  }
  [[nodiscard]] std::size_t homeOf(std::uint32_t tag) const noexcept {
    return static_cast<std::size_t>(tag) * slots_.size() >> 32;
  }
  [[nodiscard]] std::size_t next(std::size_t at) const noexcept {
    return at + 1 == slots_.size() ? 0 : at + 1;
  }
  void addToSlots(Slot slot) noexcept {
    std::size_t at = homeOf(slot.tag);
    while (slots_[at].number) at = next(at);
    slots_[at] = slot;
  }
  void grow() {
    std::vector<Slot> full(slotsFor(size_ * 2 + 8));
    full.swap(slots_);
    // From a free slot on and round, so that numbers under one hash stay in their order.
    std::size_t begin = 0;
    while (begin < full.size() && full[begin].number) ++begin;
    for (std::size_t i = 0; i < full.size(); ++i)
      if (const Slot& slot = full[(begin + i) % full.size()]; slot.number) addToSlots(slot);
  }

  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

/// Persistent IDs to small numbers, for passes over millions of playlist entries.
class IdMap {
 public:
  /// Empties the table and makes room for `most` IDs.
  void reset(std::size_t most) {
    table_.reset(most);
    entries_.clear();
  }
  /// False, and nothing is changed, when the ID is there already.
  bool insert(std::uint64_t id, std::uint32_t number) {
    if (find(id)) return false;
    table_.add(id, static_cast<std::uint32_t>(entries_.size()));
    entries_.emplace_back(id, number);
    return true;
  }
  /// nullptr when the ID is not there.
  [[nodiscard]] const std::uint32_t* find(std::uint64_t id) const noexcept {
    const auto entry = table_.find(id, [&](std::uint32_t i) { return entries_[i].first == id; });
    return entry ? &entries_[*entry].second : nullptr;
  }
  [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
  /// Asks for the memory of an ID that will be looked for a few steps later.
  void prefetch(std::uint64_t id) const noexcept { table_.prefetch(id); }

 private:
  NumberTable table_;
  std::vector<std::pair<std::uint64_t, std::uint32_t>> entries_;
};

}  // namespace kestrel
