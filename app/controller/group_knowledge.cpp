#include "app/controller/group_knowledge.h"

#include <unordered_set>
#include <utility>

#include "dupes/group_index.h"
#include "dupes/track_sounds.h"

namespace kestrel {
namespace {

constexpr std::size_t groupsBetweenQuestions = 256;

GroupIndex groupsOf(std::span<const ResultTrack> rows) {
  return {rows.size(), [&](std::size_t row) { return rows[row].tGroupID; }};
}

}  // namespace

bool GroupKnowledge::findDoubts(const ResultInView& result, FunctionRef<bool()> cancelled) {
  doubts_.clear();
  const GroupIndex groups = groupsOf(result.rows);
  DoubtFinder finder(result.grouping);
  std::vector<const TrackRecord*> members;
  std::vector<const ResultTrack*> rows;
  std::size_t looked = 0;
  for (const std::int32_t group : groups.numbers()) {
    if (looked++ % groupsBetweenQuestions == 0 && cancelled()) return false;
    members.clear();
    rows.clear();
    for (const std::uint32_t row : groups.members(group)) {
      rows.push_back(&result.rows[row]);
      members.push_back(rows.back()->record);
    }
    if (auto doubts = finder.doubtsOf(members, leastAlike(rows)); !doubts.empty())
      doubts_.emplace(group, std::move(doubts));
  }
  return true;
}

bool GroupKnowledge::findAgreements(const ResultInView& result, FunctionRef<bool()> cancelled) {
  agreements_.clear();
  if (!result.facts) return true;
  const GroupIndex groups = groupsOf(result.rows);
  std::vector<const ResultTrack*> rows;
  rows.reserve(result.rows.size());
  for (const ResultTrack& row : result.rows) rows.push_back(&row);
  const std::unordered_set<std::int32_t> picked(result.picked.begin(), result.picked.end());
  FilterSettings settings = result.settings;
  settings.keeper.facts = result.facts;
  const RuleComparison comparison = compareRules(
      rows, groups, everyRule(), settings, *result.facts,
      [&](const ResultTrack& row) {
        return result.kept[static_cast<std::size_t>(&row - result.rows.data())];
      },
      [&](std::int32_t group) { return picked.contains(group); }, cancelled);
  if (cancelled()) return false;
  for (const GroupAgreement& agreement : comparison.groups) {
    const auto place = static_cast<std::size_t>(agreement.group);
    if (place >= agreements_.size()) agreements_.resize(place + 1);
    agreements_[place] = agreement;
  }
  facts_ = result.facts;
  return true;
}

std::span<const Doubt> GroupKnowledge::doubtsOf(std::int32_t group) const {
  const auto found = doubts_.find(group);
  return found == doubts_.end() ? std::span<const Doubt>() : found->second;
}

GroupAgreement GroupKnowledge::agreementOf(std::int32_t group) const {
  const auto place = static_cast<std::size_t>(group);
  return group >= 0 && place < agreements_.size() ? agreements_[place]
                                                  : GroupAgreement{group, 0, 0};
}

}  // namespace kestrel
