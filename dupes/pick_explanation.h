/// Says why a track is kept.
///
/// What is to be said is worked out as data first and put into a sentence in one place, so that a
/// translation replaces sentences and nothing else.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dupes/group_filter.h"
#include "foundation/message.h"

namespace kestrel {

/// What a pick comes down to. Without an opinion of the rule, the pick is random or nobody.
enum class PickReason : std::uint8_t {
  better,         ///< the only candidate with the best value
  tie,            ///< the last of several with the best value
  inFolder,       ///< the only one in the folder, or the last of several
  arbitrary,      ///< the rule asks for chance
  noneInFolder,   ///< no opinion
  onlyCloud,      ///< no opinion
  onlyLongNames,  ///< no opinion: the only names are too long to be considered
  noRule,         ///< no opinion: there is no such rule
};

/// What the values of a rule count.
enum class PickUnit : std::uint8_t { none, plays, kbps, characters, bytes };

/// The pieces of the sentence; values are for people, without units.
struct PickExplanation {
  PickReason reason = PickReason::noRule;
  Message rule;                 ///< its name; empty when there is none
  Message value;                ///< that decided, or the folder
  std::int64_t number = 0;      ///< the same, where it has a unit
  std::vector<Message> others;  ///< the different worse values, in table order
  PickUnit unit = PickUnit::none;
  std::size_t tied = 0;         ///< how many share the deciding value, the keeper included
  std::size_t cloudTracks = 0;  ///< not considered
  bool random = false;
  bool nobody = false;
};

PickExplanation explanation(const Pick& pick);

/// One sentence without a full stop: "Most Played: 41 over 12 and 0 plays", "Most Played: tie at 9
/// plays: the last in the table", "Single Arbitrary: chosen at random".
Message explain(const Pick& pick);
/// The same for a group: why no rule was asked, or the pick, and what narrowed the choice.
Message explain(const GroupDecision& decision);

}  // namespace kestrel
