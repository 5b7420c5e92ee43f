// The controller's part that searches, and has the rules choose keepers.

#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "dupes/group_filter.h"
#include "dupes/track_sounds.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {

bool AppDelegate::findDuplicates() {
  if (isBusy() || !canSearch()) return false;
  Preferences& preferences = process_.with.preferences;
  // What the menu shows is searched. A stored choice that is gone stays: it may come back.
  const PlaylistRecord playlist = playlists_.returnSelectedPopupItem();
  searchedPlaylistName_ = shownName(playlist);
  searchedPart_ = playlist.ptype != "0";
  // Rows of an earlier search are seen until there are others.
  const bool hadResult = situation_ == Situation::result;
  if (!hadResult) clearResult();
  process_.textSorter.beforeRows = [this, hadResult] {
    if (hadResult) clearResult();
  };
  if (!hadResult) situation_ = Situation::notSearched;
  hasSearched_ = true;
  searchBegan_ = std::chrono::steady_clock::now();
  preferences.set(settings::cancelGetDupes, std::int64_t{0});
  const auto known = std::make_shared<NotDuplicates>();
  const auto search = [criteria = searchCriteria(preferences), pid = playlist.decpid,
                       decisions = decisions_, known] {
    if (decisions) *known = decisions->known().notDuplicates;
    TextSorter::getDupeGroupsWithCriteria(criteria, pid);
  };
  start(Activity::search, search, [this, known](const Failure& failure) {
    if (!failure) return leaveOutNotDuplicates(known);
    searchEnded(true);
    fail(Message::tr("The search did not end."), failure->problem);
  });
  return true;
}

void AppDelegate::searchEnded(bool failed) {
  MainWindowReferences& window = process_.textSorter.window;
  const auto& criteria = process_.textSorter.storedCriteria;
  searchTime_ = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - searchBegan_);
  // A cancelled search leaves its progress display as it is. That tells more than
  // the setting, which may have come too late to stop anything.
  if (failed || window.mainProgressBar.isAnimating()) {
    window.mainProgressBar.stopAnimation();
    window.mainProgressBar.setIndeterminate(false);
    window.mainProgressBar.setHidden(true);
    window.mainProgressStatus.setText({});
    clearResult();
    situation_ = Situation::stopped;
  } else if (window.bigArrayController.size() != 0) {
    situation_ = Situation::result;
    groups_ = ResultGroups(rowsOf(window.bigArrayController));
    ++search_;
    keeperPassWanted_ = true;
  } else {
    situation_ = std::find(criteria.begin(), criteria.end(), filenameLiteral) != criteria.end()
                     ? Situation::filenameOnly
                     : Situation::noDuplicates;
  }
  end();
  if (!isBusy()) flagsChanged();
}

void AppDelegate::clearResult() {
  MainWindowReferences& window = process_.textSorter.window;
  forgetKnowledge();
  groups_ = {};
  leftOut_.clear();
  selectionSource_.clear();
  window.lilArrayController.removeAll();
  window.bigArrayController.removeAll();
  // Else the next rows would be arranged by the user's column first, and then by their groups.
  window.bigArrayController.setSortOrder({});
  summaryObservers.notify();
}

void AppDelegate::useFileNames() {
  setCriterion(process_.with.preferences, filenameLiteral, false);
  setCriterion(process_.with.preferences, trackKeyName(TrackKey::tFileName), true);
}

void AppDelegate::cancel() {
  process_.with.preferences.set(settings::cancelGetDupes, true);
  stopLearning();
}

void AppDelegate::rulesChanged() {
  keeperPassWanted_ = true;
  whenIdle([this] {
    if (std::exchange(keeperPassWanted_, false)) startKeeperPass();
  });
}

void AppDelegate::startKeeperPass() {
  if (situation_ != Situation::result) return;
  passSettings_ = filterSettings(process_.with.preferences);
  const auto decided = std::make_shared<ResultGroups>();
  const auto pass = [this, keeper = keeperValueBy(process_.with.preferences),
                     decisions = decisions_, decided, sounds = sounds_,
                     watch = watchFiles(Message::tr("Reading files for the rule: %1 of %2"))] {
    readFilesForRules(content(), watch);
    TextSorter::filterArray(groups_.numbers());
    *decided = groups_;
    if (decisions) decided->applyPicks(decisions->known().picks, keeper);
    decided->count(keeper);
    if (sounds) compareToKeepers(decided->membersOfAll(), keeper, *sounds);
  };
  start(Activity::keeperPass, pass, [this, decided](const Failure& failure) {
    if (!failure) groups_ = std::move(*decided);
    ++pass_;
    knowledgeDue_ = true;
    process_.textSorter.window.mainProgressSpinnerStatus.setText({});
    end();
    flagsChanged();
    if (failure) fail(Message::tr("The keepers could not be chosen."), failure->problem);
  });
}

}  // namespace kestrel
