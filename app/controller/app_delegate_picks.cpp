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

void AppDelegate::keepPicks(const SharedPickChange& change, bool after) {
  changeDecisions([change, after](Decisions& decisions) {
    const std::vector<GroupState>& states = after ? change->after : change->before;
    for (std::size_t i = 0; i < states.size(); ++i) {
      if (states[i].picked == PickState::none)
        decisions.picks.clear(change->members[i]);
      else
        decisions.picks.set(states[i].keepers, change->members[i]);
    }
  });
}

void AppDelegate::editGroups(std::size_t rows, std::function<void(ResultGroups&)> edit,
                             std::function<void()> done) {
  if (rows <= mostAtOnce) {
    edit(groups_);
    return done();
  }
  StatusText& status = process_.textSorter.window.mainProgressSpinnerStatus;
  status.setText(Message::tr("Changing ticks…"));
  const auto edited = std::make_shared<ResultGroups>();
  start(
      Activity::other,
      [this, edited, edit = std::move(edit)] {
        *edited = groups_;
        edit(*edited);
      },
      [this, edited, done = std::move(done), &status](const Failure& failure) {
        status.setText({});
        if (!failure) {
          groups_ = std::move(*edited);
          done();
        } else {
          // Some of the flags are changed by now.
          rulesChanged();
        }
        end();
        if (failure) fail(Message::tr("The ticks could not be changed."), failure->problem);
      });
}

void AppDelegate::pick(std::vector<std::uint32_t> rows, std::function<void(ResultGroups&)> change) {
  const auto made = std::make_shared<PickChange>();
  made->pass = pass_;
  made->search = search_;
  const std::size_t size = rows.size();
  const auto edit = [made, rows = std::move(rows),
                     change = std::move(change)](ResultGroups& groups) {
    std::vector<GroupState> before;
    for (const std::int32_t group : groups.groupsOf(rows)) before.push_back(groups.state(group));
    change(groups);
    for (GroupState& state : before) {
      GroupState after = groups.state(state.group);
      if (after == state) continue;
      made->members.push_back(groups.tracksOf(state.group));
      made->before.push_back(std::move(state));
      made->after.push_back(std::move(after));
    }
  };
  editGroups(size, edit, [this, made] {
    if (made->after.empty()) return;
    keepPicks(made, true);
    compareWithKept(made->after);
    flagsChanged();
    if (picksChanged) picksChanged(made);
  });
}

bool AppDelegate::setTicks(std::span<const std::uint32_t> rows, bool ticked) {
  if (isBusy()) return false;
  const std::vector<std::uint32_t> all(rows.begin(), rows.end());
  pick(all, [all, ticked](ResultGroups& groups) { groups.setFlags(all, ticked); });
  return true;
}

bool AppDelegate::makeOnlyKeepers(std::span<const std::uint32_t> rows) {
  if (isBusy()) return false;
  const std::vector<std::uint32_t> all(rows.begin(), rows.end());
  pick(all, [all](ResultGroups& groups) { groups.makeOnlyKeepers(all); });
  return true;
}

bool AppDelegate::clearPicks() {
  if (isBusy()) return false;
  if (groups_.pickedCount() == 0) return true;
  const auto made = std::make_shared<PickChange>();
  made->pass = pass_;
  made->search = search_;
  const auto note = [made](const ResultGroups& groups) {
    for (const std::int32_t group : groups.picked()) {
      made->before.push_back(groups.state(group));
      made->after.push_back({group, PickState::none, {}});
      made->members.push_back(groups.tracksOf(group));
    }
  };
  editGroups(groups_.pickedCount(), note, [this, made] {
    keepPicks(made, true);
    // Nothing that came before the pass that follows says what the rules decide.
    ++pass_;
    if (picksChanged) picksChanged(made);
    rulesChanged();
  });
  return true;
}

bool AppDelegate::putBack(const SharedPickChange& change, bool after) {
  if (isBusy()) return false;
  keepPicks(change, after);
  if (change->search != search_) {
    rulesChanged();
    return true;
  }
  const bool samePass = change->pass == pass_;
  const auto& states = after ? change->after : change->before;
  const auto put = [change, after, samePass](ResultGroups& groups) {
    for (const GroupState& state : after ? change->after : change->before)
      if (state.picked != PickState::none || samePass) groups.putBack(state);
  };
  const bool rulesDecide =
      !samePass && std::any_of(states.begin(), states.end(), [](const GroupState& state) {
        return state.picked == PickState::none;
      });
  editGroups(states.size(), put, [this, change, after, rulesDecide] {
    if (rulesDecide) return rulesChanged();
    compareWithKept(after ? change->after : change->before);
    flagsChanged();
  });
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
  takeOutNow([gone](const ResultTrack& row) { return gone.contains(row.tGroupID); },
             [this, tracks = std::move(tracks)] {
               if (groupsLeftOut) groupsLeftOut(tracks);
             });
  return true;
}

bool AppDelegate::setNotDuplicates(std::vector<TrackIDs> groups) {
  if (isBusy()) return false;
  changeDecisions([groups = std::move(groups)](Decisions& decisions) {
    for (const TrackIDs& group : groups) decisions.notDuplicates.add(group);
  });
  return findDuplicates();
}

bool AppDelegate::setDuplicates(std::vector<TrackIDs> groups) {
  if (isBusy()) return false;
  changeDecisions([groups = std::move(groups)](Decisions& decisions) {
    for (const TrackIDs& group : groups) decisions.notDuplicates.remove(group);
  });
  return findDuplicates();
}

void AppDelegate::leaveOutNotDuplicates(const std::shared_ptr<const NotDuplicates>& known) {
  if (known->empty() || content().empty()) return searchEnded(false);
  const auto rows = std::make_shared<std::vector<ResultTrack>>();
  const auto leftOut = std::make_shared<std::vector<TrackIDs>>();
  const auto find = [this, known, rows, leftOut] {
    const std::span<const ResultTrack> before = content();
    rows->assign(before.begin(), before.end());
    const std::vector<std::int32_t> gone = kestrel::leaveOutNotDuplicates(*rows, *known);
    if (gone.empty()) return;
    const GroupIndex groups(before.size(), [&](std::size_t row) { return before[row].tGroupID; });
    for (const std::int32_t group : gone) leftOut->push_back(tracksOf(groups.members(group)));
  };
  post(find, [this, rows, leftOut](const Failure& failure) {
    if (!failure && !leftOut->empty()) {
      ArrayController<ResultTrack>& upper = process_.textSorter.window.bigArrayController;
      leftOut_ = *leftOut;
      upper.removeAll();
      upper.add(std::move(*rows));
    }
    searchEnded(failure.has_value());
    if (failure) fail(Message::tr("The search did not end."), failure->problem);
  });
}

}  // namespace kestrel
