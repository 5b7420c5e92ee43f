/// What a user has decided, applied to the rows of a search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decisions/keeper_picks.h"
#include "decisions/not_duplicates.h"
#include "dupes/group_index.h"
#include "foundation/function_ref.h"
#include "library/result_track.h"

namespace kestrel {

/// Takes the groups out of the rows that are no duplicates, and numbers `dupeSort` anew; groups
/// keep their numbers. Returns those of the groups that are left out, ascending.
std::vector<std::int32_t> leaveOutNotDuplicates(std::vector<ResultTrack>& rows,
                                                const NotDuplicates& notDuplicates);

/// Of a table, counted in groups.
struct AppliedPicks {
  std::size_t picked = 0;     ///< with a pick that holds
  std::size_t undecided = 0;  ///< with picks that contradict each other
  std::size_t changed = 0;    ///< of both, those whose keepers were others before
};

/// Sets the keeper flag (`tCheckbox`) of the members of all groups for which there is a pick: of
/// non-keepers to `nonKeeperValue`. In an undecided group all are kept. To be called after the
/// keeper pass; other groups are left as they are. Tells of each group that has a pick.
AppliedPicks applyPicks(std::span<ResultTrack* const> rows, const GroupIndex& groups,
                        const KeeperPicks& picks, bool nonKeeperValue,
                        FunctionRef<void(std::int32_t group, const GroupPick&)> applied);

}  // namespace kestrel
