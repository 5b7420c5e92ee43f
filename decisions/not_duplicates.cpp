#include "decisions/not_duplicates.h"

#include <unordered_set>
#include <utility>

namespace kestrel {

void NotDuplicates::addSet(TrackIDs set) {
  index_.add(static_cast<std::uint32_t>(sets_.size()), set);
  sets_.push_back(std::move(set));
  ++size_;
}

void NotDuplicates::removeSet(std::uint32_t number) {
  index_.remove(number, sets_[number]);
  sets_[number].clear();
  --size_;
}

void NotDuplicates::add(std::span<const std::uint64_t> tracks) {
  TrackIDs set = trackIDs(tracks);
  if (set.size() < 2 || covers(set)) return;
  // Sets that the new one holds whole say nothing more.
  std::vector<std::uint32_t> held;
  index_.forEachTouched(set, [&](std::uint32_t number, std::size_t known) {
    if (known == sets_[number].size()) held.push_back(number);
  });
  for (const std::uint32_t number : held) removeSet(number);
  addSet(std::move(set));
}

bool NotDuplicates::remove(std::span<const std::uint64_t> tracks) {
  const TrackIDs group = trackIDs(tracks);
  std::vector<std::uint32_t> touched;
  index_.forEachTouched(group, [&](std::uint32_t number, std::size_t known) {
    if (known >= 2) touched.push_back(number);
  });
  for (const std::uint32_t number : touched) {
    const TrackIDs set = std::move(sets_[number]);
    index_.remove(number, set);
    sets_[number].clear();
    --size_;
    TrackIDs others;
    for (const std::uint64_t id : set)
      if (!holds(group, id)) others.push_back(id);
    if (others.empty()) continue;
    // What stays are the pairs of the others, among themselves and with each that was taken back.
    for (const std::uint64_t id : common(group, set)) {
      TrackIDs left = others;
      left.push_back(id);
      addSet(trackIDs(left));
    }
  }
  return !touched.empty();
}

bool NotDuplicates::covers(std::span<const std::uint64_t> tracks) const {
  if (empty()) return false;
  const TrackIDs group = trackIDs(tracks);
  if (group.size() < 2) return false;
  bool whole = false;
  std::size_t pairs = 0;  // known ones, those of several sets more than once
  index_.forEachTouched(group, [&](std::uint32_t, std::size_t known) {
    whole = whole || known == group.size();
    pairs += known * (known - 1) / 2;
  });
  if (whole) return true;
  if (pairs < group.size() * (group.size() - 1) / 2) return false;
  std::unordered_set<std::uint64_t> partners;
  for (const std::uint64_t id : group) {
    partners.clear();
    for (const std::uint32_t number : index_.of(id))
      for (const std::uint64_t partner : common(sets_[number], group)) partners.insert(partner);
    if (partners.size() < group.size()) return false;
  }
  return true;
}

std::vector<TrackIDs> NotDuplicates::list() const {
  std::vector<TrackIDs> list;
  for (const TrackIDs& set : sets_)
    if (!set.empty()) list.push_back(set);
  return list;
}

}  // namespace kestrel
