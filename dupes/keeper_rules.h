/// Keeper selection: which member of a dupe group stays.
///
/// Most rules order the candidates by one key and take the last, so that among equals the track
/// that stood last in the table wins. Rules can be chained: what the first leaves equal goes to the
/// next. Nothing here reads settings or touches a window.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/result_track.h"

namespace kestrel {

class KeeperFacts;
class Random;

/// Numbered as the setting "filterMatrixButton" numbers them.
enum class KeeperRule : std::uint8_t {
  oldestDateAdded = 1,
  mostPlayed,
  mostRecentlyPlayed,
  highestBitRate,
  folderLocation,
  newestDateAdded,
  leastPlayed,
  leastRecentlyPlayed,
  lowestBitRate,
  shortestFileName,
  singleArbitrary,
  oldestDateModified,
  newestDateModified,
  largestFileSize,
  smallestFileSize,
  losslessFirst,
  highestRating,
  inMostPlaylists,
  mostCompleteTags,
  withCover,
  localBeforeCloud,
  orderOfFolders,
  orderOfKinds,
  albumWithMostTracks,
};

/// Which value under its key a rule wants; some rules go about it in a way of their own.
enum class KeeperWish : std::uint8_t {
  highest,
  lowest,
  lastInFolder,
  shortest,
  any,
  measured,  ///< the highest `keeperScore`, of tracks that have one
};

struct KeeperRuleInfo {
  KeeperRule rule;
  const char* name;  ///< as the user reads it, in English
  TrackKey key;      ///< what the rule looks at
  KeeperWish wish;
};

/// What a rule looks at, for people.
struct KeeperAttribute {
  const char* name;  ///< in English
  TrackKey shown;    ///< the value as it is read, where the rule compares another form
};

/// All rules, by number from 1.
std::span<const KeeperRuleInfo> keeperRules() noexcept;
const KeeperRuleInfo& keeperRuleInfo(KeeperRule rule) noexcept;
const KeeperAttribute& keeperAttribute(KeeperRule rule) noexcept;
/// The rule with this number; nothing outside 1 to their count.
std::optional<KeeperRule> keeperRule(std::int64_t number) noexcept;
/// The rule whose number is written exactly so: "1", "2" ...
std::optional<KeeperRule> keeperRule(std::string_view option) noexcept;
/// The name as it is written on a command line and in files: "highest-bit-rate".
std::string keeperRuleWord(KeeperRule rule);
/// The rule with this word, in either case, or with this number.
std::optional<KeeperRule> keeperRuleNamed(std::string_view text);

struct SampleForm {
  std::int64_t bits = 0, channels = 0;
};

struct KeeperOptions {
  /// For `folderLocation`: a text with which paths begin. Every path begins with an empty one.
  std::string folder;
  /// When a rule has no opinion: no keeper, rather than a random one.
  bool alwaysUnCheck = false;
  /// For `orderOfFolders` and `orderOfKinds`, the preferred first: with what paths begin, and what
  /// kinds contain in either case.
  std::vector<std::string> folders = {}, kinds = {};
  /// For the rules that ask for more than a track says of itself; without, those have no opinion.
  std::shared_ptr<const KeeperFacts> facts = nullptr;
  /// For `withCover`: whether a track has a cover; nothing where that cannot be told.
  std::function<std::optional<bool>(const TrackRecord&)> cover = nullptr;
  /// For `losslessFirst`, where the library does not say it of a lossless track: bits of a sample
  /// and channels, 0 where there are none; nothing where that cannot be told.
  std::function<std::optional<SampleForm>(const TrackRecord&)> samples = nullptr;
};

/// Whether the rule needs `KeeperOptions::facts`.
bool needsFacts(KeeperRule rule) noexcept;

/// How much a rule wants a track: of several the one with the highest number is kept, the last of
/// those in the table. Nothing of a track that the rule does not consider. The arbitrary rule
/// considers none. One exception is not seen here: rule 10 takes the first of all candidates
/// whatever its length.
std::optional<std::int64_t> keeperScore(KeeperRule rule, const ResultTrack& track,
                                        const KeeperOptions& options);

/// Why a track is kept: enough to say it in a sentence, without asking again. Texts in values are
/// borrowed from the tracks' store.
struct Pick {
  const ResultTrack* keeper = nullptr;  ///< nullptr: none
  std::optional<KeeperRule> rule;       ///< nothing when there is no such rule
  bool random = false;                  ///< by the rule, or because it had no opinion
  bool opinion = false;                 ///< the rule picked; with `random`, by chance
  std::size_t candidates = 0;
  /// What decided: the keeper's value under the rule's key, of a file name its length in UTF-16
  /// units, of a folder the folder asked for. Absent without an opinion.
  Value deciding;
  /// The same of the other candidates that the rule considered, in table order; empty for the
  /// rules that compare no values.
  std::vector<Value> others;
  std::size_t tied = 0;         ///< other candidates with the deciding value
  std::size_t cloudTracks = 0;  ///< candidates that the file-name rule never considers
  std::vector<Pick> before{};   ///< of a chain: what its earlier rules came to, in their order
};

/// Picks by `rule` among `candidates` (in table order, one or more).
Pick chooseKeeper(std::span<const ResultTrack* const> candidates, std::optional<KeeperRule> rule,
                  const KeeperOptions& options, Random& random);

/// Picks by `rule`, and while several candidates are as good as its pick or it has none, by the
/// rules of `chain` after it among those. The arbitrary rule ends a chain. The pick is that of the
/// rule which decided. Without a chain the same as above.
Pick chooseKeeper(std::span<const ResultTrack* const> candidates, std::optional<KeeperRule> rule,
                  std::span<const KeeperRule> chain, const KeeperOptions& options, Random& random);

}  // namespace kestrel
