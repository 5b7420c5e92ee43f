// The controller's part that listens to files.

#include <algorithm>
#include <map>
#include <utility>

#include "app/controller/app_delegate.h"
#include "dupes/track_sounds.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/process.h"

namespace kestrel {
namespace {

/// More at a time would hold up the window.
constexpr std::size_t mostHeardAtOnce = 100;

HeardSounds heard(std::span<const std::vector<ResultTrack*>> groups) {
  HeardSounds result;
  std::map<SoundFault, std::int64_t> faults;
  for (const auto& group : groups)
    for (const ResultTrack* row : group) {
      if (const SoundFault fault = row->sound.ownFault(); fault != SoundFault::none)
        ++faults[fault];
      if (row->sound.kind == Likeness::Kind::unknown) continue;
      ++result.compared;
      if (!row->sound.soundsSame()) ++result.different;
    }
  for (const auto& [fault, count] : faults)
    result.faults.push_back(
        Message::tr("%Ln copies: %1", "%Ln copy: %1", count).arg(shortText(fault)));
  return result;
}

}  // namespace

LoadWatch AppDelegate::watchFiles(const Message& what) {
  MainWindowReferences& window = process_.textSorter.window;
  LoadWatch watch;
  watch.cancelled = [&cancel = process_.with.preferences.liveInteger(settings::cancelGetDupes)] {
    return cancel.load(std::memory_order_relaxed) == 1;
  };
  watch.progress = [this, &window, what](std::size_t done, std::size_t total) {
    process_.with.mainQueue.post([&window, what, done, total] {
      window.mainProgressSpinner.setMaximum(static_cast<double>(total));
      window.mainProgressSpinner.setValue(static_cast<double>(done));
      window.mainProgressSpinner.setHidden(false);
      window.mainProgressSpinnerStatus.setText(Message(what).arg(done).arg(total));
    });
  };
  return watch;
}

bool AppDelegate::compareSounds(std::vector<std::int32_t> groups,
                                std::function<void(const HeardSounds&)> done) {
  if (isBusy() || situation_ != Situation::result) return false;
  waitForLearning();
  const auto members = groups.empty() ? groups_.membersOfAll() : groups_.membersOf(groups);
  if (!sounds_) sounds_ = std::make_shared<TrackSounds>();
  const auto result = std::make_shared<HeardSounds>();
  const auto listen = [this, members, result, sounds = sounds_,
                       keeper = keeperValueBy(process_.with.preferences),
                       watch = watchFiles(Message::tr("Listening to files: %1 of %2"))] {
    std::vector<const TrackRecord*> tracks;
    for (const auto& group : members)
      for (const ResultTrack* row : group) tracks.push_back(row->record);
    SoundCache cache(process_.with.files, process_.with.log);
    const bool whole = sounds->listen(tracks, cache, watch);
    compareToKeepers(members, keeper, *sounds);
    *result = heard(members);
    result->stopped = !whole;
  };
  start(Activity::listening, listen,
        [this, result, done = std::move(done)](const Failure& failure) {
          MainWindowReferences& window = process_.textSorter.window;
          window.mainProgressSpinner.setHidden(true);
          window.mainProgressSpinnerStatus.setText({});
          knowledgeDue_ = true;
          end();
          flagsChanged();
          if (failure)
            return fail(Message::tr("The sound could not be compared."), failure->problem);
          done(*result);
        });
  return true;
}

void AppDelegate::compareWithKept(std::span<const GroupState> states) {
  if (!sounds_) return;
  waitForLearning();
  const bool keeper = keeperValueBy(process_.with.preferences);
  std::vector<std::int32_t> groups;
  for (const GroupState& state : states) groups.push_back(state.group);
  const auto compare = [members = groups_.membersOf(groups), keeper, sounds = sounds_] {
    compareToKeepers(members, keeper, *sounds);
  };
  knowledgeDue_ = true;
  if (groups.size() > mostHeardAtOnce) {
    whenIdle([this, compare] { run(compare, [this] { flagsChanged(); }); });
    return;
  }
  compare();
  learn();
}

}  // namespace kestrel
