// The controller's part that opens libraries and reads them again.

#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "foundation/library_error.h"
#include "musicapp/file_url.h"
#include "musicapp/library_identity.h"
#include "platform/files.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/replaylist_control.h"

namespace kestrel {
namespace {

/// Addresses (LibraryIdentity), latest first; earlier versions wrote paths.
constexpr std::string_view recentLibrariesSetting = "recentLibraries";
/// What the first of them calls itself.
constexpr std::string_view recentLibraryIDSetting = "recentLibraryID";

/// The music application's own settings, as far as the launch asks for them.
std::shared_ptr<Preferences> settingsOf(MusicApplication& application) {
  auto preferences = std::make_shared<Preferences>();
  MediaLibrary& library = application.library();
  if (const std::string folder = library.mediaFolder(); !folder.empty())
    preferences->set("media-folder-bookmark",
                     folder.starts_with("file:") ? folder : fileUrlOfPath(folder));
  if (const std::string file = library.libraryFile(); !file.empty())
    preferences->set("library-bookmark", fileUrlOfPath(file));
  return preferences;
}

}  // namespace

void AppDelegate::recallLibraries() {
  recentLibraries_ = process_.with.preferences.textArray(recentLibrariesSetting);
  for (std::string& address : recentLibraries_)
    if (address.starts_with('/')) address = fileUrlOfPath(address);
}

void AppDelegate::closeLaunchSheet() {
  MainWindowReferences& window = process_.textSorter.window;
  window.mainLaunchProgressBar.stopAnimation();
  window.mainLaunchProgressBar.setHidden(true);
  window.mainLaunchProgressWindow.close();
}

void AppDelegate::closeLibrary() {
  TextSorterState& state = process_.textSorter;
  clearResult();
  state.groomedTracks = nullptr;
  state.storedPlaylists = nullptr;
  state.pathToMediaFolder.clear();
  state.pathToMusicLibrary.clear();
  state.storedCriteria.clear();
  state.finalGroupCountAsText.clear();
  process_.library = nullptr;
  process_.libraryOpened = false;
  state.withoutFiles = false;
  missing_ = {};
  trackCount_.reset();
  hasChanged_ = false;
  notes_.clear();
  process_.state<ReplaylistState>().storedLib = nullptr;
  refreshDue_ = searchDue_ = hasSearched_ = false;
  setLastRun({});
  process_.with.application = nullptr;
  process_.with.applicationPreferences = nullptr;
  application_ = nullptr;
  decisions_ = nullptr;
  sounds_ = nullptr;
  presets_.clear();
  libraryPath_.clear();
  situation_ = Situation::noLibrary;
}

bool AppDelegate::openLibrary(const std::string& path) {
  if (isBusy()) return false;
  openingPath_ = path;
  process_.textSorter.window.showWaitingSheet();
  // The library at hand stays until the other one is known to be readable.
  auto opened = std::make_shared<std::shared_ptr<MusicApplication>>();
  const PathMaps maps = keptMaps(process_.with.preferences, path);
  const auto decisions = std::make_shared<std::shared_ptr<KeptDecisions>>();
  const auto problem = std::make_shared<Message>();
  const auto open = [this, path, opened, maps, decisions, problem] {
    *opened = opener_(path, maps);
    *decisions = std::make_shared<KeptDecisions>(
        DecisionsFile(process_.with.files, (*opened)->library().identity()));
    try {
      (*decisions)->load();
    } catch (const std::exception& error) {
      *problem = messageOf(error);
    }
  };
  start(Activity::opening, open,
        [this, path, opened, maps, decisions, problem](const Failure& failure) {
          if (failure) {
            searchAfterOpening_ = false;
            closeLaunchSheet();
            const bool isStopped = process_.with.preferences.integer(settings::cancelGetDupes) == 1;
            end();
            passwords_.erase(path);
            if (isStopped) return;
            if (passwordWanted && !failure->closedAddress.empty())
              passwordWanted(failure->closedAddress, failure->problem);
            else
              fail(Message::tr("The library could not be opened."), failure->problem);
            return;
          }
          closeLibrary();
          // The next snapshot is the first one of a library.
          process_.with.preferences.set(settings::completedLaunch, false);
          application_ = *opened;
          process_.textSorter.window.mainLaunchProgressBar.setValue(0);
          maps_ = maps;
          decisions_ = *decisions;
          presets_ = decisions_->known().presets;
          presetObservers.notify();
          toldOfDecisions_ = !problem->empty();
          if (toldOfDecisions_) fail(Message::tr("Your picks could not be read."), *problem);
          remember(path);
          situation_ = Situation::notSearched;
          launch();
        });
  return true;
}

void AppDelegate::remember(const std::string& path) {
  constexpr std::size_t most = 8;
  Preferences& preferences = process_.with.preferences;
  const LibraryIdentity identity = application_->library().identity();
  std::string former = recentLibraries_.empty() ? std::string() : recentLibraries_.front();
  if (former != identity.uri) {
    const bool isMoved = !identity.id.empty() &&
                         identity.id == preferences.text(recentLibraryIDSetting) &&
                         !process_.with.files.exists(addressText(former));
    if (isMoved) {
      std::erase(recentLibraries_, former);
    } else {
      // Playlists that were chosen in another library mean nothing in this one.
      preferences.remove(settings::selectedPlaylistPid);
      preferences.remove(settings::copyToPlaylist);
    }
  }
  libraryPath_ = path;
  std::erase(recentLibraries_, identity.uri);
  recentLibraries_.insert(recentLibraries_.begin(), identity.uri);
  if (recentLibraries_.size() > most) recentLibraries_.resize(most);
  preferences.set(recentLibrariesSetting, recentLibraries_);
  preferences.set(recentLibraryIDSetting, identity.id);
}

void AppDelegate::launch() {
  process_.with.openLibrary = [application = application_] {
    return std::shared_ptr<MediaLibrary>(application, &application->library());
  };
  process_.with.application = application_.get();
  applicationPreferences_ = settingsOf(*application_);
  process_.with.applicationPreferences = applicationPreferences_.get();
  TextSorter::initPlaylistsAtLaunch();
  fillPlaylistMenu();
  const auto work = [this] {
    TextSorter::buildLibrary();
    countMissing();
  };
  start(Activity::snapshot, work, [this](const Failure& failure) {
    const bool searches = std::exchange(searchAfterOpening_, false);
    end();
    if (failure) {
      closeLaunchSheet();
      fail(Message::tr("The library could not be read."), failure->problem);
    } else if (searches) {
      whenIdle([this] { findDuplicates(); });
    }
  });
}

bool AppDelegate::refresh() {
  if (isBusy() || !application_) return false;
  refreshAsked_ = true;
  begin(Activity::snapshot);
  process_.textSorter.window.showWaitingSheet();
  TextSorter::refreshLibrary();
  return true;
}

bool AppDelegate::renew() {
  if (isBusy() || !application_) return false;
  searchDue_ = searchDue_ || situation_ == Situation::result;
  return refresh();
}

void AppDelegate::takeSnapshot() {
  if (!std::exchange(refreshAsked_, false)) {
    // Asked for by an operation: with all that belongs to it, after the running task.
    whenIdle([this] { refresh(); });
    return;
  }
  refreshDue_ = false;
  const auto work = [this, application = application_] {
    application->library().reload();
    process_.with.mainQueue.post(
        [this] { process_.textSorter.window.mainLaunchProgressBar.setValue(0); });
    TextSorter::buildLibrary();
    countMissing();
  };
  start(Activity::snapshot, work, [this](const Failure& failure) {
    if (failure) closeLaunchSheet();
    const bool isStopped = process_.with.preferences.integer(settings::cancelGetDupes) == 1;
    const bool searches = std::exchange(searchDue_, false);
    if (!failure) hasChanged_ = false;
    // Files may be others now; what was heard of those that are not is in the cache.
    sounds_ = nullptr;
    end();
    if (!failure) {
      fillPlaylistMenu();
      if (searches) whenIdle([this] { findDuplicates(); });
    } else if (!isStopped) {
      fail(Message::tr("The library could not be read again."), failure->problem);
    }
  });
}

void AppDelegate::refreshIfDue() {
  if (refreshDue_) whenIdle([this] { refresh(); });
}

bool AppDelegate::lookForChanges(std::function<void(bool)> answered) {
  if (isBusy() || !application_ || std::exchange(isLooking_, true)) return false;
  const auto changed = std::make_shared<bool>(false);
  const auto look = [application = application_, changed] {
    *changed = application->library().hasChanged();
  };
  const auto tell = [this, application = application_, changed, answered = std::move(answered)] {
    isLooking_ = false;
    // Meanwhile it may have been read again, or another one.
    if (isBusy() || application_ != application) return;
    if (std::exchange(hasChanged_, *changed) != *changed) observers.notify();
    answered(*changed);
  };
  return ask(look, tell);
}

std::string AppDelegate::passwordOf(const std::string& address) const {
  const auto found = passwords_.find(address);
  return found == passwords_.end() ? std::string() : found->second;
}

}  // namespace kestrel
