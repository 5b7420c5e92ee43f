#include "decisions/apply_decisions.h"

#include <algorithm>

namespace kestrel {

std::vector<std::int32_t> leaveOutNotDuplicates(std::vector<ResultTrack>& rows,
                                                const NotDuplicates& notDuplicates) {
  std::vector<std::int32_t> leftOut;
  if (notDuplicates.empty() || rows.empty()) return leftOut;
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; });
  std::vector<std::uint64_t> members;
  for (const std::int32_t group : groups.numbers()) {
    members.clear();
    for (const std::uint32_t row : groups.members(group))
      members.push_back(rows[row].record->item().persistentID);
    if (notDuplicates.covers(members)) leftOut.push_back(group);
  }
  if (leftOut.empty()) return leftOut;
  std::sort(leftOut.begin(), leftOut.end());
  std::erase_if(rows, [&](const ResultTrack& row) {
    return std::binary_search(leftOut.begin(), leftOut.end(), row.tGroupID);
  });
  std::int32_t run = 0;
  std::int32_t previous = -1;
  for (ResultTrack& row : rows) {
    if (row.tGroupID != previous) ++run;
    previous = row.tGroupID;
    row.dupeSort = run;
  }
  return leftOut;
}

AppliedPicks applyPicks(std::span<ResultTrack* const> rows, const GroupIndex& groups,
                        const KeeperPicks& picks, bool nonKeeperValue,
                        FunctionRef<void(std::int32_t group, const GroupPick&)> applied) {
  AppliedPicks result;
  if (picks.empty()) return result;
  std::vector<std::uint64_t> members;
  for (const std::int32_t group : groups.numbers()) {
    members.clear();
    for (const std::uint32_t row : groups.members(group))
      members.push_back(rows[row]->record->item().persistentID);
    const GroupPick pick = picks.keepersFor(members);
    if (pick.state == PickState::none) continue;
    const bool decided = pick.state == PickState::holds;
    ++(decided ? result.picked : result.undecided);
    bool changed = false;
    for (const std::uint32_t row : groups.members(group)) {
      const bool keeps = !decided || holds(pick.keepers, rows[row]->record->item().persistentID);
      const bool flag = keeps != nonKeeperValue;
      changed = changed || rows[row]->tCheckbox != flag;
      rows[row]->tCheckbox = flag;
    }
    result.changed += changed ? 1 : 0;
    applied(group, pick);
  }
  return result;
}

}  // namespace kestrel
