#include "app/controller/group_orders.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace kestrel {
namespace {

/// In how many playlists an entry would be replaced.
void countPlaylists(std::vector<std::uint64_t>& keys, const ResultGroups& groups,
                    std::span<const ResultTrack> rows, const std::vector<Playlist>& playlists) {
  std::unordered_map<std::uint64_t, std::int32_t> groupOfTrack;
  for (std::uint32_t row = 0; row < rows.size(); ++row)
    if (!groups.isKeeper(row))
      groupOfTrack.emplace(rows[row].record->item().persistentID, rows[row].tGroupID);
  std::vector<std::size_t> lastCounted(keys.size());
  for (std::size_t number = 1; number <= playlists.size(); ++number) {
    const Playlist& playlist = playlists[number - 1];
    if (playlist.isMaster || playlist.distinguishedKind != 0) continue;
    for (const std::uint64_t track : playlist.items) {
      const auto found = groupOfTrack.find(track);
      if (found == groupOfTrack.end()) continue;
      const auto group = static_cast<std::size_t>(found->second);
      if (std::exchange(lastCounted[group], number) != number) ++keys[group];
    }
  }
}

/// Shares of rules, in thousandths.
std::uint64_t disagreement(const GroupAgreement& agreement) {
  constexpr std::uint64_t all = 1000;
  return agreement.of == 0 ? 0 : 1 + all - all * agreement.agree / agreement.of;
}

}  // namespace

std::vector<std::uint64_t> groupKeys(GroupOrder order, const ResultGroups& groups,
                                     std::span<const ResultTrack> rows,
                                     const std::vector<Playlist>* playlists,
                                     const GroupKnowledge* knowledge) {
  std::vector<std::uint64_t> keys;
  if (order == GroupOrder::found) return keys;
  std::int32_t highest = -1;
  for (const ResultTrack& row : rows) highest = std::max(highest, row.tGroupID);
  keys.resize(static_cast<std::size_t>(highest + 1));
  if (order == GroupOrder::playlists) {
    if (playlists) countPlaylists(keys, groups, rows, *playlists);
    return keys;
  }
  for (std::size_t number = 0; number < keys.size(); ++number) {
    const auto group = static_cast<std::int32_t>(number);
    if (groups.members(group).empty()) continue;
    if (order == GroupOrder::doubt || order == GroupOrder::disagreement) {
      if (!knowledge) continue;
      const bool byDoubt = order == GroupOrder::doubt;
      if (byDoubt || !groups.isPicked(group))
        keys[number] = byDoubt ? knowledge->doubtsOf(group).size()
                               : disagreement(knowledge->agreementOf(group));
      continue;
    }
    const GroupFacts facts = groups.facts(group);
    keys[number] = order == GroupOrder::copies ? facts.copies : facts.freed;
  }
  return keys;
}

}  // namespace kestrel
