/// Tracks of which the user has said that they are no duplicates of each other.
///
/// Remembered by pairs, so that a group which a search makes is left out only when all its pairs
/// are known, and comes back when a member joins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decisions/track_ids.h"

namespace kestrel {

/// A value; safe to read from several threads. Tracks that no library has stay. Pairs are kept as
/// sets of tracks all of whose pairs count, so that a group of n takes n numbers.
class NotDuplicates {
 public:
  /// No two of these are duplicates of each other. In any order, repeats allowed.
  void add(std::span<const std::uint64_t> tracks);
  /// Takes that back for every two of these; whether there was anything to take back.
  bool remove(std::span<const std::uint64_t> tracks);
  /// Whether no two of these are duplicates; false for fewer than two. Time grows with the group
  /// and with the sets that know its members.
  [[nodiscard]] bool covers(std::span<const std::uint64_t> tracks) const;

  /// The sets, in the order in which they were added.
  [[nodiscard]] std::vector<TrackIDs> list() const;
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
  friend bool operator==(const NotDuplicates& a, const NotDuplicates& b) {
    return a.list() == b.list();
  }

 private:
  void addSet(TrackIDs set);
  void removeSet(std::uint32_t number);

  std::vector<TrackIDs> sets_;  ///< those that were taken back are empty
  SetsByTrack index_;
  std::size_t size_ = 0;
};

}  // namespace kestrel
