/// The keeper pass: decides group after group and sets the keeper flags of the rows.
#pragma once

#include <cstdint>
#include <span>

#include "dupes/group_filter.h"
#include "foundation/function_ref.h"

namespace kestrel {

/// Decides the groups of a table's rows that have these numbers, in this order, and sets the keeper
/// flag (`tCheckbox`) of their members: of non-keepers to `nonKeeperValue`, of keepers to its
/// opposite. Tells each decision, with the number's place and the members in table order; what it
/// points to is valid as long as the rows. A number that no row has is a group without members.
void setKeepers(
    std::span<ResultTrack* const> rows, std::span<const std::int32_t> numbers,
    FilterSettings settings, bool nonKeeperValue, Random& random,
    FunctionRef<void(std::size_t, std::span<const ResultTrack* const>, const GroupDecision&)>
        decided);

}  // namespace kestrel
