// The controller's part that is about what the user decides by hand: ticks, and which groups are no
// duplicates.

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "app/controller/app_delegate.h"
#include "decisions/apply_decisions.h"
#include "foundation/library_error.h"
#include "platform/queues.h"
#include "ui/process.h"

namespace kestrel {

void AppDelegate::changeDecisions(std::function<void(Decisions&)> edit) {
  if (!decisions_) return;
  worker_.post([this, decisions = decisions_, edit = std::move(edit)] {
    try {
      decisions->change(edit);
    } catch (const std::exception& error) {
      process_.with.mainQueue.post([this, decisions, problem = messageOf(error)] {
        // Once is enough: the user goes on ticking.
        if (decisions == decisions_ && !std::exchange(toldOfDecisions_, true))
          fail(Message::tr("Your picks cannot be kept for later."), problem);
      });
    }
  });
}

void AppDelegate::keepPicks(std::span<const GroupState> states) {
  std::vector<std::pair<PickState, KeeperPick>> picks;
  for (const GroupState& state : states) {
    KeeperPick& pick = picks.emplace_back(state.picked, KeeperPick{state.keepers, {}}).second;
    for (const std::uint32_t member : groups_.members(state.group))
      pick.members.push_back(content()[member].record->item().persistentID);
  }
  changeDecisions([picks = std::move(picks)](Decisions& decisions) {
    for (const auto& [state, pick] : picks) {
      if (state == PickState::none)
        decisions.picks.clear(pick.members);
      else
        decisions.picks.set(pick.keepers, pick.members);
    }
  });
}

void AppDelegate::pick(std::vector<std::int32_t> groups, FunctionRef<void()> change) {
  std::vector<GroupState> before;
  before.reserve(groups.size());
  for (const std::int32_t group : groups) before.push_back(groups_.state(group));
  change();
  PickChange made;
  made.pass = pass_;
  for (GroupState& state : before) {
    GroupState after = groups_.state(state.group);
    if (after == state) continue;
    made.before.push_back(std::move(state));
    made.after.push_back(std::move(after));
  }
  if (made.after.empty()) return;
  keepPicks(made.after);
  compareWithKept(groups);
  flagsChanged();
  if (picksChanged) picksChanged(std::move(made));
}

bool AppDelegate::setTicks(std::span<const std::uint32_t> rows, bool ticked) {
  if (isBusy()) return false;
  pick(groups_.groupsOf(rows), [&] { groups_.setFlags(rows, ticked); });
  return true;
}

bool AppDelegate::makeOnlyKeepers(std::span<const std::uint32_t> rows) {
  if (isBusy()) return false;
  pick(groups_.groupsOf(rows), [&] { groups_.makeOnlyKeepers(rows); });
  return true;
}

bool AppDelegate::clearPicks() {
  if (isBusy()) return false;
  PickChange made;
  made.pass = pass_;
  for (const auto& [group, state] : groups_.picked()) {
    made.before.push_back(groups_.state(group));
    made.after.push_back({group, PickState::none, {}});
  }
  if (made.before.empty()) return true;
  keepPicks(made.after);
  // Nothing that came before the pass that follows says what the rules decide.
  ++pass_;
  if (picksChanged) picksChanged(std::move(made));
  rulesChanged();
  return true;
}

bool AppDelegate::putBack(std::span<const GroupState> states, std::uint64_t pass) {
  if (isBusy()) return false;
  bool rulesDecide = false;
  for (const GroupState& state : states) {
    if (state.picked != PickState::none || pass == pass_)
      groups_.putBack(state);
    else
      rulesDecide = true;
  }
  keepPicks(states);
  if (rulesDecide) {
    rulesChanged();
    return true;
  }
  std::vector<std::int32_t> groups;
  for (const GroupState& state : states) groups.push_back(state.group);
  compareWithKept(groups);
  flagsChanged();
  return true;
}

bool AppDelegate::setNotDuplicates(std::span<const std::int32_t> groups) {
  if (isBusy() || groups.empty()) return false;
  std::vector<TrackIDs> tracks;
  for (const std::int32_t group : groups) tracks.push_back(tracksOf(groups_.members(group)));
  changeDecisions([tracks](Decisions& decisions) {
    for (const TrackIDs& group : tracks) decisions.notDuplicates.add(group);
  });
  leftOut_.insert(leftOut_.end(), tracks.begin(), tracks.end());
  const std::unordered_set<std::int32_t> gone(groups.begin(), groups.end());
  takeOutNow([&](const ResultTrack& row) { return gone.contains(row.tGroupID); });
  if (groupsLeftOut) groupsLeftOut(std::move(tracks));
  return true;
}

bool AppDelegate::setDuplicates(std::vector<TrackIDs> groups) {
  if (isBusy()) return false;
  changeDecisions([groups = std::move(groups)](Decisions& decisions) {
    for (const TrackIDs& group : groups) decisions.notDuplicates.remove(group);
  });
  return findDuplicates();
}

void AppDelegate::leaveOutNotDuplicates(const NotDuplicates& known) {
  ArrayController<ResultTrack>& upper = process_.textSorter.window.bigArrayController;
  if (known.empty() || upper.size() == 0) return;
  const std::span<const ResultTrack> before = upper.content();
  std::vector<ResultTrack> rows(before.begin(), before.end());
  const std::vector<std::int32_t> gone = kestrel::leaveOutNotDuplicates(rows, known);
  if (gone.empty()) return;
  const GroupIndex groups(before.size(), [&](std::size_t row) { return before[row].tGroupID; });
  for (const std::int32_t group : gone) leftOut_.push_back(tracksOf(groups.members(group)));
  upper.removeAll();
  upper.add(std::move(rows));
}

}  // namespace kestrel
