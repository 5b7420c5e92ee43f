#include "decisions/keeper_picks.h"

#include <utility>

namespace kestrel {

Message explain(const GroupPick& pick) {
  if (pick.state == PickState::none) return {};
  if (pick.state == PickState::undecided)
    return Message::tr("picks contradict each other: undecided, all are kept");
  if (pick.keepers.empty()) return Message::tr("left without a keeper by hand");
  if (pick.newMembers == 0) return Message::tr("picked by hand");
  return Message::tr("picked by hand; %Ln copies are new since",
                     "picked by hand; %Ln copy is new since",
                     static_cast<std::int64_t>(pick.newMembers));
}

std::vector<std::uint32_t> KeeperPicks::counting(const TrackIDs& members) const {
  std::vector<std::uint32_t> numbers;
  index_.forEachTouched(members, [&](std::uint32_t number, std::size_t known) {
    const TrackIDs& keepers = picks_[number].keepers;
    if (known >= 2 && (keepers.empty() || !common(keepers, members).empty()))
      numbers.push_back(number);
  });
  return numbers;
}

GroupPick KeeperPicks::keepersFor(std::span<const std::uint64_t> members) const {
  GroupPick found;
  if (empty()) return found;
  const TrackIDs group = trackIDs(members);
  TrackIDs known;
  for (const std::uint32_t number : counting(group)) {
    const KeeperPick& pick = picks_[number];
    const TrackIDs keepers = common(pick.keepers, group);
    // A pick may not know another's keeper and so say nothing against it.
    const bool contradicts = found.picks > 0 && keepers != found.keepers;
    if (contradicts) found.state = PickState::undecided;
    if (found.picks++ == 0) found.state = PickState::holds;
    found.keepers.insert(found.keepers.end(), keepers.begin(), keepers.end());
    found.keepers = trackIDs(found.keepers);
    const TrackIDs knownHere = common(pick.members, group);
    known.insert(known.end(), knownHere.begin(), knownHere.end());
  }
  if (found.picks > 0) found.newMembers = group.size() - trackIDs(known).size();
  return found;
}

void KeeperPicks::forget(const TrackIDs& members) {
  for (const std::uint32_t number : counting(members)) {
    index_.remove(number, picks_[number].members);
    picks_[number] = {};
    --size_;
  }
}

void KeeperPicks::set(std::span<const std::uint64_t> keepers,
                      std::span<const std::uint64_t> members) {
  KeeperPick pick{trackIDs(keepers), trackIDs(members)};
  pick.members.insert(pick.members.end(), pick.keepers.begin(), pick.keepers.end());
  pick.members = trackIDs(pick.members);
  if (pick.members.size() < 2) return;
  forget(pick.members);
  index_.add(static_cast<std::uint32_t>(picks_.size()), pick.members);
  picks_.push_back(std::move(pick));
  ++size_;
}

std::size_t KeeperPicks::clear(std::span<const std::uint64_t> members) {
  const std::size_t before = size_;
  forget(trackIDs(members));
  return before - size_;
}

std::vector<KeeperPick> KeeperPicks::list() const {
  std::vector<KeeperPick> list;
  for (const KeeperPick& pick : picks_)
    if (!pick.members.empty()) list.push_back(pick);
  return list;
}

}  // namespace kestrel
