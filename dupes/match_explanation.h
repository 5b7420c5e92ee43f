/// Why the members of a group matched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dupes/grouping.h"
#include "foundation/message.h"

namespace kestrel {

/// One of the criteria.
struct MatchedField {
  std::string criterion;
  std::vector<std::string> values;  ///< the different ones as they are compared, in member order
};

/// A further criterion that would tell members apart.
struct SplittingField {
  std::string criterion;
  std::size_t values = 0;  ///< different ones among the members, 2 or more
};

struct MatchExplanation {
  std::vector<MatchedField> fields;   ///< in the order of joining
  std::string key;                    ///< what they have in common
  bool onlyJoins = false;             ///< their fields differ, and are equal only joined together
  LooseSet loose = 0;                 ///< what was passed over
  const TrackRecord* seed = nullptr;  ///< from whose playing time others were measured, if at all
  std::int64_t seedSeconds = 0;
  std::vector<SplittingField> splitting;  ///< in the order of the table of keys
};

/// Of a group that `groupTracks` has formed. `seed`: its first member there, nullptr when that is
/// not known.
MatchExplanation explainMatch(const TrackStore& store, std::span<const TrackRecord* const> members,
                              std::span<const std::string> criteria, const GroupingOptions& options,
                              const TrackRecord* seed);

/// In sentences: the fields, then what else there is to say. `nameOf`: what a field is called; by
/// its key text at first.
std::vector<Message> explain(
    const MatchExplanation& match,
    FunctionRef<Message(const std::string&)> nameOf = [](const std::string& key) {
      return Message::verbatim(key);
    });

}  // namespace kestrel
