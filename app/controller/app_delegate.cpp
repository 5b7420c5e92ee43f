#include "app/controller/app_delegate.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "app/controller/criteria.h"
#include "app/controller/result_changes.h"
#include "dupes/group_filter.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/file_url.h"
#include "musicapp/library_identity.h"
#include "platform/log.h"
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

AppDelegate::AppDelegate(Process& process, TaskQueue& worker, Opener opener)
    : process_(process), worker_(worker), opener_(std::move(opener)) {
  recentLibraries_ = process_.with.preferences.textArray(recentLibrariesSetting);
  for (std::string& address : recentLibraries_)
    if (address.starts_with('/')) address = fileUrlOfPath(address);
  // What the menu shows before there is a library.
  process_.state<PlaylistWindowReferences>().mainPlaylistPopup.addItem({});
  playlists_.awakeFromNib();
  process_.takeSnapshot = [this] { takeSnapshot(); };
  process_.getDupesAtLaunch = [this] { whenIdle([this] { findDuplicates(); }); };
}

void AppDelegate::begin(Activity activity) {
  activity_ = activity;
  stopLearning();
  observers.notify();
}

void AppDelegate::end() {
  activity_ = Activity::idle;
  auto actions = std::exchange(whenIdle_, {});
  for (auto& action : actions) whenIdle(std::move(action));
  if (!isBusy() && std::exchange(keeperPassWanted_, false)) startKeeperPass();
  observers.notify();
  learn();
}

void AppDelegate::whenIdle(std::function<void()> action) {
  if (isBusy())
    whenIdle_.push_back(std::move(action));
  else
    action();
}

void AppDelegate::start(Activity activity, std::function<void()> work,
                        std::function<void(Failure)> done) {
  // Whatever was stopped before, this one goes on.
  if (activity != Activity::search)
    process_.with.preferences.set(settings::cancelGetDupes, std::int64_t{0});
  begin(activity);
  worker_.post([this, work = std::move(work), done = std::move(done)] {
    Failure failure;
    try {
      work();
    } catch (const HistoryError& error) {
      failure = {error.message, error.unreadable ? error.file : std::string()};
    } catch (const std::bad_alloc&) {
      failure = {Message::tr("There is not enough memory. Close other programs and try again."),
                 {}};
    } catch (const std::exception& error) {
      failure = {messageOf(error), {}};
    }
    process_.with.mainQueue.post([done, failure = std::move(failure)] { done(failure); });
  });
}

void AppDelegate::fail(const Message& message, const Message& problem) {
  process_.with.log.line(message.english() + ": " + problem.english());
  alerts.show({message, problem, {Message::tr("OK")}});
}

bool AppDelegate::run(std::function<void()> work, std::function<void()> done,
                      std::function<void(const TaskFailure&)> failed) {
  if (isBusy()) return false;
  start(Activity::other, std::move(work),
        [this, done = std::move(done), failed = std::move(failed)](const Failure& failure) {
          end();
          if (!failure)
            done();
          else if (failed)
            failed(*failure);
          else
            fail(Message::tr("That did not work."), failure->problem);
        });
  return true;
}

bool AppDelegate::ask(std::function<void()> question, std::function<void()> answered) {
  if (isBusy() || !application_) return false;
  worker_.post([this, question = std::move(question), answered = std::move(answered)] {
    try {
      question();
      process_.with.mainQueue.post(answered);
    } catch (const std::exception& error) {
      process_.with.log.line(error.what());
    }
  });
  return true;
}

void AppDelegate::closeLaunchSheet() {
  MainWindowReferences& window = process_.textSorter.window;
  window.mainLaunchProgressBar.stopAnimation();
  window.mainLaunchProgressBar.setHidden(true);
  window.mainLaunchProgressWindow.close();
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
            closeLaunchSheet();
            const bool isStopped = process_.with.preferences.integer(settings::cancelGetDupes) == 1;
            end();
            if (!isStopped) fail(Message::tr("The library could not be opened."), failure->problem);
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

void AppDelegate::fillPlaylistMenu() {
  playlists_.fillPlaylistPopup();
  libraryObservers.notify();
}

void AppDelegate::refreshPlaylistMenu() {
  playlists_.refreshPopup();
  // The refresh replaces the stored playlists on the worker, which must not be read meanwhile. It
  // reports no end, but a task that is posted after it does.
  process_.with.mainQueue.post([this] {
    whenIdle([this] {
      start(
          Activity::other, [] {},
          [this](const Failure&) {
            end();
            libraryObservers.notify();
          });
    });
  });
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
    end();
    if (failure) {
      closeLaunchSheet();
      fail(Message::tr("The library could not be read."), failure->problem);
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
    end();
    if (!failure) {
      fillPlaylistMenu();
      if (searches) whenIdle([this] { findDuplicates(); });
    } else if (!isStopped) {
      fail(Message::tr("The library could not be read again."), failure->problem);
    }
  });
}

void AppDelegate::countMissing() {
  MissingFiles missing;
  std::size_t count = 0;
  if (const auto tracks = TextSorter::groomedTracksDictionary()) {
    missing = missingFiles(*tracks);
    count = tracks->size();
  }
  process_.with.mainQueue.post(
      [this, missing = std::move(missing), count, notes = application_->library().notes()] {
        missing_ = missing;
        trackCount_ = count;
        notes_ = notes;
      });
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

bool AppDelegate::choosesPart() const {
  return canSearch() && playlists_.returnSelectedPopupItem().ptype != "0";
}

bool AppDelegate::findFilesIn(const std::string& folder,
                              std::function<void(const FoundElsewhere&)> found) {
  if (!application_) return false;
  const auto result = std::make_shared<FoundElsewhere>();
  const auto search = [this, folder, result] {
    // Maps are for locations as the library has them.
    const auto plain = opener_(libraryPath_, {});
    *result = findElsewhere(*plain, maps_, folder, process_.with.files);
  };
  return run(search, [result, found = std::move(found)] { found(*result); });
}

bool AppDelegate::keepMaps(const std::vector<MapSuggestion>& suggestions) {
  if (isBusy() || !application_) return false;
  std::vector<PathMaps::Map> maps = maps_.list();
  for (const MapSuggestion& suggestion : suggestions) maps.push_back(suggestion.map);
  kestrel::keepMaps(process_.with.preferences, libraryPath_, PathMaps(std::move(maps)));
  return openLibrary(libraryPath_);
}

bool AppDelegate::compareWithoutFiles() {
  if (isBusy() || !application_) return false;
  process_.textSorter.withoutFiles = true;
  return renew();
}

bool AppDelegate::compareWithFiles() {
  if (isBusy() || !application_) return false;
  process_.textSorter.withoutFiles = false;
  return renew();
}

bool AppDelegate::comparesWithoutFiles() const { return process_.textSorter.withoutFiles; }

void AppDelegate::refreshIfDue() {
  if (refreshDue_) whenIdle([this] { refresh(); });
}

bool AppDelegate::refreshPlaylists() {
  if (isBusy() || !application_) return false;
  const auto work = [application = application_] { application->library().reload(); };
  return run(work, [this] { refreshPlaylistMenu(); });
}

void AppDelegate::playlistChosen() {
  process_.with.preferences.set(settings::selectedPlaylistPid, playlists_.getPIDFromList());
  libraryObservers.notify();
}

void AppDelegate::choosePlaylist(std::string_view decpid) {
  const auto& entries = playlists_.playlistsArray();
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const auto& entry) {
    return entry && entry->decpid == decpid;
  });
  if (found == entries.end()) return;
  process_.state<PlaylistWindowReferences>().mainPlaylistPopup.selectItem(
      static_cast<std::size_t>(found - entries.begin()));
  playlistChosen();
}

Message AppDelegate::chosenPlaylistName() const {
  return canSearch() ? shownName(playlists_.returnSelectedPopupItem()) : Message();
}

void AppDelegate::fillTargetMenu() {
  process_.state<PlaylistWindowReferences>().selectionToHookPlaylistPopup.removeAllItems();
  playlists_.buildUserPopup();
}

void AppDelegate::targetPlaylistChosen() {
  Preferences& preferences = process_.with.preferences;
  const auto& popup = process_.state<PlaylistWindowReferences>().selectionToHookPlaylistPopup;
  std::vector<std::string> stored = preferences.textArray(settings::copyToPlaylist);
  stored.resize(2);
  if (popup.selectedIndex())
    stored[0] = playlists_.selPlaylistsArray()[*popup.selectedIndex()]->decpid;
  preferences.set(settings::copyToPlaylist, std::move(stored));
}

bool AppDelegate::addToTargetPlaylist(std::vector<std::uint32_t> rows,
                                      std::function<void(std::size_t)> done) {
  const auto target = numberFromHex(playlists_.pidFromSelectedPopup());
  if (isBusy() || !target || rows.empty()) return false;
  std::vector<std::uint64_t> tracks = tracksOf(rows);
  const std::size_t count = tracks.size();
  const auto add = [application = application_, tracks = std::move(tracks), target] {
    const Plan plan = changesOf(*application).additionPlan(*target, tracks);
    const ApplyReport report = applyToLibrary(plan, *application, {});
    if (report.count(Outcome::Kind::done) == 1) return;
    Message problem = report.problem;
    if (!report.outcomes.empty()) problem = joined(problem, report.outcomes.front().reason);
    if (!plan.leftOut.empty()) problem = joined(problem, plan.leftOut.front().reason);
    throw LibraryError(addressText(plan.library.uri), {},
                       Message::tr("The tracks could not be added: %1").arg(std::move(problem)),
                       Message::tr("The library is as it was."));
  };
  return run(add, [this, done = std::move(done), count] {
    refreshPlaylistMenu();
    done(count);
  });
}

bool AppDelegate::reveal(std::uint32_t row, const std::string& playlist) {
  return revealTrack(std::string(content()[row].record->value(TrackKey::hexpid).text()), playlist);
}

bool AppDelegate::revealTrack(const std::string& track, const std::string& playlist) {
  const auto id = numberFromHex(track);
  if (isBusy() || !application_ || !id) return false;
  const command::RevealTrack command{*id, numberFromHex(playlist)};
  const auto result = std::make_shared<CommandResult>();
  const auto failed = [this](const Message& problem) {
    fail(Message::tr("The track could not be shown."), problem);
  };
  return run([this, command, result] { *result = application_->run(command); },
             [result, failed] {
               if (result->failed()) failed(result->failure->message);
             },
             [failed](const TaskFailure& failure) { failed(failure.problem); });
}

bool AppDelegate::canSearch() const {
  const auto index = process_.state<PlaylistWindowReferences>().mainPlaylistPopup.selectedIndex();
  return application_ && index && *index < playlists_.playlistsArray().size();
}

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
    if (!failure) leaveOutNotDuplicates(*known);
    searchEnded(failure.has_value());
    if (failure) fail(Message::tr("The search did not end."), failure->problem);
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
                     decisions = decisions_, decided] {
    TextSorter::filterArray(groups_.numbers());
    *decided = groups_;
    if (decisions) decided->applyPicks(decisions->known().picks, keeper);
    decided->count(keeper);
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
