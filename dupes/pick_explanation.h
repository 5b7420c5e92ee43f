/// Why a track is kept, in words.
#pragma once

#include "dupes/group_filter.h"

namespace kestrel {

/// As one sentence without a full stop: "Most Played: 41 over 12 and 0 plays",
/// "Most Played: tie at 9 plays: the last in the table", "Single Arbitrary: chosen at random". Of a
/// chain "Highest Bit Rate: tie at 320 kbps, then Most Played: 41 over 12 plays".
Message explain(const Pick& pick);
/// The same for a group: why no rule was asked, or the pick, and what narrowed the choice.
Message explain(const GroupDecision& decision);

}  // namespace kestrel
