/// Groups that may be no duplicates after all, and why. A doubt changes nothing about a group.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "dupes/grouping.h"
#include "foundation/message.h"
#include "library/track_store.h"
#include "sound/likeness.h"

namespace kestrel {

enum class DoubtKind : std::uint8_t {
  version,        ///< a word such as "live" that some members have and others have not
  albumAndTime,   ///< from different albums, with different playing times
  timesFarApart,  ///< for the kind of match
  sound,          ///< some sound different from what is kept
  soundInPart,    ///< or only in part as it
};
/// The word for it in files and for other programs.
std::string_view nameOf(DoubtKind kind) noexcept;

struct Doubt {
  DoubtKind kind = DoubtKind::version;
  std::string_view version = {};  ///< the sort of version, in English, such as "live"
  std::int64_t seconds = 0;       ///< between the shortest and the longest member
  Likeness sound = {};            ///< of what sounds least like what is kept
  friend bool operator==(const Doubt&, const Doubt&) = default;
};

/// As a clause: "not all are live", "different albums, and 12 seconds apart".
Message explain(const Doubt& doubt);

/// The sorts of versions that a text names, each as a bit. Words count as whole words, letter case
/// and accents do not; common forms of English, German, French, Spanish, Italian and Portuguese.
std::uint32_t versionsIn(std::string_view text);

/// Finds doubts; remembers the last texts, so that each thread needs one of its own.
class DoubtFinder {
 public:
  explicit DoubtFinder(const GroupingOptions& grouping) : grouping_(grouping) {}
  /// Of the members of a group. `leastAlike`: how that sounds which is least like what is kept;
  /// says nothing where that is unknown.
  std::vector<Doubt> doubtsOf(std::span<const TrackRecord* const> members,
                              const Likeness& leastAlike = {});

 private:
  std::uint32_t versionsOf(const TrackRecord& record);

  struct Seen {
    Text text;
    std::uint32_t versions = 0;
  };
  GroupingOptions grouping_;
  Seen album_;
};

}  // namespace kestrel
