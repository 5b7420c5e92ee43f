/// Decides who is kept in a dupe group.
///
/// Tracks whose files are missing are set aside, the rest may be narrowed to a wanted file type and
/// bit rate, and the keeper rule picks among what is left. Nothing here reads settings or touches a
/// window.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dupes/keeper_rules.h"
#include "foundation/message.h"

namespace kestrel {

/// The file types that the user chooses among, in English, as the setting "thisFileType" holds
/// them. Only the first two characters of a choice count, and most of them are looked for in the
/// kind of a track.
std::vector<std::string_view> fileTypeChoices();

struct FilterSettings {
  std::string rule;             ///< as text, for the choice of the keeper
  std::int64_t ruleNumber = 0;  ///< the same as a number, for sparing cloud tracks
  KeeperOptions keeper;
  std::optional<std::string> fileType{};  ///< nothing: any, and the bit rate does not count either
  std::optional<std::string>
      bitRate{};                    ///< such as "256 kbps"; only what precedes the space counts
  std::vector<KeeperRule> chain{};  ///< what decides after the rule, one after the other
};

enum class GroupOutcome : std::uint8_t {
  ruleAsked,     ///< see the pick
  tooFewTracks,  ///< fewer than two with a file: those are kept, no rule is asked
  noWantedType,  ///< none is kept
};

enum class MemberFlag : std::uint8_t { unchanged, keeper, nonKeeper };

/// What happened to a group, and why.
struct GroupDecision {
  GroupOutcome outcome = GroupOutcome::tooFewTracks;
  std::size_t missingFiles = 0;       ///< members set aside
  bool narrowedByType = false;        ///< the candidates are those of the wanted type
  bool narrowedByBitRate = false;     ///< and of those the ones with the wanted bit rate
  bool typeNotFound = false;          ///< no member has the wanted type
  bool bitRateNotFound = false;       ///< no candidate has the wanted bit rate: it does not count
  std::size_t sparedCloudTracks = 0;  ///< kept beside the keeper
  Pick pick;                          ///< points to the members
  std::vector<MemberFlag> flags;      ///< one for each member
};

using TrackFilter = std::function<bool(const ResultTrack&)>;

/// Decides any number of groups by the same settings.
class GroupFilter {
 public:
  explicit GroupFilter(FilterSettings settings);
  /// `members` in table order.
  [[nodiscard]] GroupDecision decide(std::span<const ResultTrack* const> members,
                                     Random& random) const;
  /// Those of the members among which the rule would choose; none where it would not be asked.
  [[nodiscard]] std::vector<const ResultTrack*> candidates(
      std::span<const ResultTrack* const> members) const;

 private:
  /// Notes in the decision what was narrowed.
  [[nodiscard]] std::vector<const ResultTrack*> narrowed(
      const std::vector<const ResultTrack*>& present, GroupDecision& decision) const;

  FilterSettings settings_;
  std::optional<KeeperRule> rule_;
  TrackFilter fileType_, bitRate_;  ///< empty when they do not count
};

}  // namespace kestrel
