/// Keepers that the user has picked by hand.
///
/// A pick says which tracks stay of a group with these members, by persistent ID, so that it
/// outlives searches, rules and restarts. Groups change from search to search: a pick counts for
/// every group in which one of its keepers stands beside another of its members. It counts there
/// too when the group has got members that the pick does not know, which is said. A pick may also
/// say that no track is kept, so that the group is left alone; it counts where two of its members
/// stand together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decisions/track_ids.h"
#include "foundation/message.h"

namespace kestrel {

struct KeeperPick {
  TrackIDs keepers;  ///< among the members; none: the user keeps none
  TrackIDs members;
  friend bool operator==(const KeeperPick&, const KeeperPick&) = default;
};

enum class PickState : std::uint8_t {
  none,       ///< no pick counts for the group
  holds,      ///< its keepers are picked
  undecided,  ///< picks contradict each other, as where a search joins two groups with a pick each
};

/// What the picks say of one group.
struct GroupPick {
  PickState state = PickState::none;
  TrackIDs keepers;            ///< members of the group that are picked; of all picks if undecided
  std::size_t picks = 0;       ///< that count
  std::size_t newMembers = 0;  ///< of the group that none of these picks knows
};

/// As a sentence without a full stop.
Message explain(const GroupPick& pick);

/// A value; safe to read from several threads. Tracks that no library has stay.
class KeeperPicks {
 public:
  /// `members` in any order, repeats allowed. Time grows with their number and that of the picks
  /// which know them.
  [[nodiscard]] GroupPick keepersFor(std::span<const std::uint64_t> members) const;
  /// Picks these of a group; they count as its members too. What counted for the group before is
  /// forgotten. With fewer than two members nothing is picked.
  void set(std::span<const std::uint64_t> keepers, std::span<const std::uint64_t> members);
  /// Forgets what counts for the group; how many picks that were.
  std::size_t clear(std::span<const std::uint64_t> members);

  /// In the order in which they were picked.
  [[nodiscard]] std::vector<KeeperPick> list() const;
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
  friend bool operator==(const KeeperPicks& a, const KeeperPicks& b) {
    return a.list() == b.list();
  }

 private:
  [[nodiscard]] std::vector<std::uint32_t> counting(const TrackIDs& members) const;
  void forget(const TrackIDs& members);

  std::vector<KeeperPick> picks_;  ///< those that were forgotten are empty
  SetsByTrack index_;
  std::size_t size_ = 0;
};

}  // namespace kestrel
