#include "dupes/keeper_rules.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "dupes/measured_rules.h"
#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/message.h"
#include "foundation/text_helpers.h"
#include "platform/random.h"

namespace kestrel {
namespace {

using Candidates = std::span<const ResultTrack* const>;
using enum KeeperRule;
using enum KeeperWish;
using enum TrackKey;

/// Those that are not measured.
constexpr std::array valueRules = {
    KeeperRuleInfo{oldestDateAdded, Message::literal("Oldest Date Added"), realAddDate, lowest},
    KeeperRuleInfo{mostPlayed, Message::literal("Most Played"), tPlayCount, highest},
    KeeperRuleInfo{mostRecentlyPlayed, Message::literal("Most Recently Played"), realPlayDate,
                   highest},
    KeeperRuleInfo{highestBitRate, Message::literal("Highest Bit Rate"), tBit, highest},
    KeeperRuleInfo{folderLocation, Message::literal("Folder Location"), tLoc, lastInFolder},
    KeeperRuleInfo{newestDateAdded, Message::literal("Newest Date Added"), realAddDate, highest},
    KeeperRuleInfo{leastPlayed, Message::literal("Least Played"), tPlayCount, lowest},
    KeeperRuleInfo{leastRecentlyPlayed, Message::literal("Least Recently Played"), realPlayDate,
                   lowest},
    KeeperRuleInfo{lowestBitRate, Message::literal("Lowest Bit Rate"), tBit, lowest},
    KeeperRuleInfo{shortestFileName, Message::literal("Shortest File Name"), tFileName, shortest},
    KeeperRuleInfo{singleArbitrary, Message::literal("Single Arbitrary"), tName, any},
    KeeperRuleInfo{oldestDateModified, Message::literal("Oldest Date Modified"), realModDate,
                   lowest},
    KeeperRuleInfo{newestDateModified, Message::literal("Newest Date Modified"), realModDate,
                   highest},
    KeeperRuleInfo{largestFileSize, Message::literal("Largest File Size"), realSize, highest},
    KeeperRuleInfo{smallestFileSize, Message::literal("Smallest File Size"), realSize, lowest},
};

/// By the keys that rules look at.
constexpr std::pair<TrackKey, KeeperAttribute> attributes[] = {
    {realAddDate, {Message::literal("Date Added"), tAddDate}},
    {tPlayCount, {Message::literal("Plays"), tPlayCount}},
    {realPlayDate, {Message::literal("Last Played"), tPlayDate}},
    {tBit, {Message::literal("Bit Rate"), tBit}},
    {tLoc, {Message::literal("Location"), tLoc}},
    {tFileName, {Message::literal("File Name"), tFileName}},
    {tName, {Message::literal("Single Arbitrary"), tName}},
    {realModDate, {Message::literal("Date Modified"), tModDate}},
    {realSize, {Message::literal("Size"), tSize}},
    {tKind, {Message::literal("Kind"), tKind}},
    {realRating, {Message::literal("Rating"), realRating}},
    {tAlbum, {Message::literal("Album"), tAlbum}},
};

constexpr const KeeperAttribute* attributeOf(TrackKey key) {
  for (const auto& [known, attribute] : attributes)
    if (known == key) return &attribute;
  return nullptr;
}

/// Numbers find their rules, and no rule is without an attribute.
const auto& rules() {
  static const std::vector<KeeperRuleInfo> all = [] {
    std::vector<KeeperRuleInfo> result(valueRules.begin(), valueRules.end());
    for (const MeasuredRule& measure : measuredRules()) result.push_back(measure.info);
    for (std::size_t i = 0; i < result.size(); ++i)
      if (result[i].rule != static_cast<KeeperRule>(i + 1) || !attributeOf(result[i].key))
        throw std::logic_error("The tables of keeper rules do not fit together.");
    return result;
  }();
  return all;
}

/// Values under one key are all numbers or all texts. Date texts order as the dates do.
int compare(const Value& a, const Value& b) noexcept {
  if (a.isText()) return a.text().compare(b.text());
  return a.number() < b.number() ? -1 : a.number() > b.number() ? 1 : 0;
}

/// Fills in a pick that compared `values`, of which the one at `best` decided.
void decide(Pick& pick, const ResultTrack* keeper, std::vector<Value> values, std::size_t best) {
  pick.keeper = keeper;
  pick.opinion = true;
  pick.deciding = std::move(values[best]);
  values.erase(values.begin() + static_cast<std::ptrdiff_t>(best));
  pick.tied = static_cast<std::size_t>(std::count(values.begin(), values.end(), pick.deciding));
  pick.others = std::move(values);
}

/// The last of a stable sort that ends with the wanted extreme: the latest of the best.
void pickExtreme(Candidates candidates, TrackKey key, KeeperWish wish, Pick& pick) {
  const int sign = wish == highest ? 1 : -1;
  std::vector<Value> values;
  values.reserve(candidates.size());
  std::size_t best = 0;
  for (const ResultTrack* track : candidates) {
    values.push_back(track->value(key));
    if (compare(values.back(), values[best]) * sign >= 0) best = values.size() - 1;
  }
  decide(pick, candidates[best], std::move(values), best);
}

void pickInFolder(Candidates candidates, const std::string& folder, Pick& pick) {
  std::size_t inFolder = 0;
  for (const ResultTrack* track : candidates) {
    if (!track->record->location().starts_with(folder)) continue;
    pick.keeper = track;
    ++inFolder;
  }
  if (!inFolder) return;
  pick.opinion = true;
  pick.deciding = folder;
  pick.tied = inFolder - 1;
}

/// Names longer than this are passed over, except the first candidate's.
constexpr std::int32_t longestName = 1000;

void pickShortestName(Candidates candidates, Pick& pick) {
  std::vector<Value> lengths;
  lengths.reserve(candidates.size());
  std::optional<std::size_t> best;
  const ResultTrack* keeper = nullptr;
  std::int32_t minimum = longestName;
  for (const ResultTrack* track : candidates) {
    if (track->record->availability() == FileAvailability::cloud) {
      ++pick.cloudTracks;
      continue;
    }
    const auto length = static_cast<std::int32_t>(utf16Length(track->record->fileName()));
    lengths.emplace_back(length);
    // The first of all candidates is taken whatever its length; equal lengths are taken on
    // purpose, so that here too the later one of a tie wins.
    if (track != candidates.front() && length > minimum) continue;
    minimum = length;
    keeper = track;
    best = lengths.size() - 1;
  }
  if (best) decide(pick, keeper, std::move(lengths), *best);
}

void pickMeasured(Candidates candidates, KeeperRule rule, const KeeperOptions& options,
                  Pick& pick) {
  std::vector<Value> scores;
  const ResultTrack* keeper = nullptr;
  std::size_t best = 0;
  for (const ResultTrack* track : candidates) {
    const auto score = measuredRule(rule)->score(*track, options);
    if (!score) continue;
    scores.emplace_back(*score);
    if (keeper && *score < scores[best].number()) continue;
    keeper = track;
    best = scores.size() - 1;
  }
  if (keeper) decide(pick, keeper, std::move(scores), best);
}

const ResultTrack* randomMember(Candidates candidates, Random& random) {
  return candidates[random.below(candidates.size())];
}

}  // namespace

std::span<const KeeperRuleInfo> keeperRules() noexcept { return rules(); }

const KeeperRuleInfo& keeperRuleInfo(KeeperRule rule) noexcept {
  return rules()[static_cast<std::size_t>(rule) - 1];
}

const KeeperAttribute& keeperAttribute(KeeperRule rule) noexcept {
  return *attributeOf(keeperRuleInfo(rule).key);
}

bool needsFacts(KeeperRule rule) noexcept {
  const MeasuredRule* measure = measuredRule(rule);
  return measure && measure->needsFacts;
}

std::optional<KeeperRule> keeperRule(std::int64_t number) noexcept {
  if (number < 1 || number > static_cast<std::int64_t>(rules().size())) return std::nullopt;
  return static_cast<KeeperRule>(number);
}

std::optional<KeeperRule> keeperRule(std::string_view option) noexcept {
  const auto number = numberFromDecimal(option);
  if (!number || option.starts_with('0') || *number > rules().size()) return std::nullopt;
  return keeperRule(static_cast<std::int64_t>(*number));
}

std::string keeperRuleWord(KeeperRule rule) {
  std::string word = lowercase(keeperRuleInfo(rule).name);
  std::replace(word.begin(), word.end(), ' ', '-');
  return word;
}

std::optional<KeeperRule> keeperRuleNamed(std::string_view text) {
  if (const auto rule = keeperRule(text)) return rule;
  const std::string word = lowercase(text);
  for (const KeeperRuleInfo& info : rules())
    if (keeperRuleWord(info.rule) == word) return info.rule;
  return std::nullopt;
}

namespace {

/// What a rule says, without the help of chance where it has no opinion.
Pick opinionOf(Candidates candidates, std::optional<KeeperRule> rule, const KeeperOptions& options,
               Random& random) {
  Pick pick;
  pick.rule = rule;
  pick.candidates = candidates.size();
  if (rule) {
    const KeeperRuleInfo& info = keeperRuleInfo(*rule);
    switch (info.wish) {
      case highest:
      case lowest:
        pickExtreme(candidates, info.key, info.wish, pick);
        break;
      case lastInFolder:
        pickInFolder(candidates, options.folder, pick);
        break;
      case shortest:
        pickShortestName(candidates, pick);
        break;
      case any:
        pick.keeper = randomMember(candidates, random);
        pick.opinion = true;
        pick.random = true;
        break;
      case measured:
        pickMeasured(candidates, *rule, options, pick);
        break;
    }
  }
  return pick;
}

Pick withChance(Pick pick, Candidates candidates, const KeeperOptions& options, Random& random) {
  if (!pick.keeper && !options.alwaysUnCheck) {
    pick.keeper = randomMember(candidates, random);
    pick.random = true;
  }
  return pick;
}

}  // namespace

Pick chooseKeeper(Candidates candidates, std::optional<KeeperRule> rule,
                  const KeeperOptions& options, Random& random) {
  return withChance(opinionOf(candidates, rule, options, random), candidates, options, random);
}

Pick chooseKeeper(Candidates candidates, std::optional<KeeperRule> rule,
                  std::span<const KeeperRule> chain, const KeeperOptions& options, Random& random) {
  if (chain.empty()) return chooseKeeper(candidates, rule, options, random);
  std::vector<const ResultTrack*> left(candidates.begin(), candidates.end());
  std::vector<Pick> picks;
  std::optional<std::size_t> decided;  // the last that had an opinion
  for (std::size_t i = 0; i <= chain.size() && (!decided || left.size() > 1); ++i) {
    const auto next = i == 0 ? rule : std::optional(chain[i - 1]);
    const Pick& pick = picks.emplace_back(opinionOf(left, next, options, random));
    if (!pick.opinion) continue;
    decided = picks.size() - 1;
    if (pick.random) break;
    const auto best = keeperScore(*next, *pick.keeper, options);
    std::erase_if(left, [&](const ResultTrack* track) {
      return track != pick.keeper && (!best || keeperScore(*next, *track, options) != best);
    });
  }
  if (!decided) {
    Pick last = withChance(std::move(picks.back()), left, options, random);
    picks.pop_back();
    last.before = std::move(picks);
    return last;
  }
  Pick result = std::move(picks[*decided]);
  picks.resize(*decided);
  result.before = std::move(picks);
  return result;
}

}  // namespace kestrel
