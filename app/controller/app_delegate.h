/// The application controller: answers the user's commands with the operations of the system.
///
/// It knows no widgets; windows call it, and observe it and the models that operations drive. All
/// calls come from the main thread. One task at a time runs on the worker: a command that needs
/// the tracks while another does is refused, and says so by returning false.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/controller/files_elsewhere.h"
#include "app/controller/group_knowledge.h"
#include "app/controller/group_picks.h"
#include "app/controller/result_groups.h"
#include "foundation/message.h"
#include "library/missing_files.h"
#include "musicapp/load_watch.h"
#include "musicapp/music_application.h"
#include "ui/models/alert.h"
#include "ui/models/observers.h"
#include "ui/playlist_menus.h"

namespace kestrel {

class Preferences;
class Process;
class TaskQueue;
class TrackSounds;
struct Outcome;

/// What was changed last in the library at hand.
struct LastRun {
  std::optional<std::int64_t> run;  ///< by its number in the history; nothing for an undo
  Message summary;
};

/// What came of listening to copies.
struct HeardSounds {
  std::vector<Message>
      faults;                 ///< why others were not compared, each once, with how many there are
  std::size_t compared = 0;   ///< copies, with what is kept of their groups
  std::size_t different = 0;  ///< of them, those that do not sound like it
  bool stopped = false;
};

enum class Activity : std::uint8_t {
  idle,
  opening,
  snapshot,
  search,
  keeperPass,
  listening,
  other
};

/// Why a task did not end well, and what to do.
struct TaskFailure {
  Message problem;
  std::string unreadableHistory = {};  ///< the file, when the history itself is what failed
  std::string closedAddress = {};      ///< of the library, when it asks for another password
};

/// What there is to see instead of a result.
enum class Situation : std::uint8_t {
  noLibrary,
  notSearched,   ///< a library is open
  noDuplicates,  ///< the last search found none
  filenameOnly,  ///< nor could it: a criterion was the literal "Filename"
  stopped,       ///< the user stopped the last search
  result,
};

class AppDelegate {
 public:
  /// Opens a library with its path maps, on the worker. Throws LibraryError or FileError.
  using Opener = std::function<std::shared_ptr<MusicApplication>(const std::string& path,
                                                                 const PathMaps& maps)>;

  AppDelegate(Process& process, TaskQueue& worker, Opener opener);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  // Commands. False when another task is running.

  /// Closes the library at hand, if any, and starts with another one as at launch. One that cannot
  /// be read is told of, unless the user has stopped the reading.
  bool openLibrary(const std::string& path);
  /// Reads library and playlists again. What the tables show stays.
  bool refresh();
  /// The same for a user who wants to see the library as it is now: where the upper table shows a
  /// result, the search is repeated.
  bool renew();
  /// Asks whether another program has changed the library since it was read, unless a task runs
  /// or it is being asked: false then. `answered` follows on the main queue if no task runs, the
  /// observers before it if the answer is another one.
  bool lookForChanges(std::function<void(bool changed)> answered);
  /// What a server asks for that is at this address, until the program ends. To be said while no
  /// task is running.
  void setPassword(const std::string& address, const std::string& password) {
    passwords_[address] = password;
  }
  /// In place of an alert: a library that was to be opened asks for a password, or for another one.
  std::function<void(const std::string& address, const Message& reason)> passwordWanted;
  /// The same when it is due and no task is running.
  void refreshIfDue();
  /// Searches with the saved criteria, then runs the keeper pass. False also without a playlist.
  bool findDuplicates();
  /// Whether a search has been begun in the library at hand, and how long the last one took.
  [[nodiscard]] bool hasSearched() const noexcept { return hasSearched_; }
  [[nodiscard]] std::chrono::milliseconds lastSearchTime() const noexcept { return searchTime_; }
  /// Runs a task on the worker that reads or changes the library; `done` follows on the main
  /// queue, when other tasks are allowed again. Where `work` throws, `failed` follows in its place;
  /// without one it is shown as an alert.
  bool run(std::function<void()> work, std::function<void()> done,
           std::function<void(const TaskFailure&)> failed = {});
  /// Runs a question to the music application on the worker without counting as a task: windows
  /// stay as they are, and tasks may be started and then follow it. For what takes next to no time
  /// and changes nothing. `answered` follows on the main queue; what `question` throws is logged
  /// and `answered` left out.
  bool ask(std::function<void()> question, std::function<void()> answered);

  /// Reads the playlists again, and nothing else.
  bool refreshPlaylists();
  /// Adds the tracks of these rows to the playlist that is chosen in the target pop-up, as a run in
  /// the history, each once; `done` gets how many there were. A run that failed is shown as an
  /// alert.
  bool addToTargetPlaylist(std::vector<std::uint32_t> rows, std::function<void(std::size_t)> done);
  /// Has the music application show a row's track: in the library, or in the playlist with this
  /// hexadecimal persistent ID. Why it cannot is shown as an alert.
  bool reveal(std::uint32_t row, const std::string& playlist = {});

  /// The same of a track by its hexadecimal persistent ID.
  bool revealTrack(const std::string& track, const std::string& playlist = {});

  /// Replaces the criterion that finds nothing by the one that compares names of files.
  void useFileNames();

  /// Asks a running search, or the reading of a library, to stop. Allowed at any time, and then
  /// harmless.
  void cancel();
  /// A setting of the keeper pass has changed: runs it again, after the running task if need be.
  void rulesChanged();
  /// Changes what a tick means, and every tick, so that the keepers stay the same.
  void setKeeperMode(int mode);
  /// Calls `action` at once when no task is running, else when it has ended. For what must not
  /// happen while a task reads the tables, such as sorting.
  void whenIdle(std::function<void()> action);
  /// As above, for what is about the library that is open now: with another one open by then,
  /// `otherwise` is called in its place.
  void whenIdleHere(std::function<void()> action, std::function<void()> otherwise);

  /// What is searched from now on. Unknown ones are ignored.
  void choosePlaylist(std::string_view decpid);
  /// The same of what the user has chosen in the main pop-up, or in the target one.
  void playlistChosen();
  void targetPlaylistChosen();
  /// Fills the target pop-up, which only its users pay for.
  void fillTargetMenu();

  // Files that are not where the library says.

  /// As the last snapshot saw them.
  [[nodiscard]] const MissingFiles& missing() const noexcept { return missing_; }
  /// Searches a folder for files that are missing; `found` follows with what path maps into it
  /// would find. Changes nothing.
  bool findFilesIn(const std::string& folder, std::function<void(const FoundElsewhere&)> found);
  /// Keeps these maps for the library beside those it has, and opens it anew with all of them.
  bool keepMaps(const std::vector<MapSuggestion>& suggestions);
  /// Compares as if all files were there until a library is opened, and reads the tracks again.
  bool compareWithoutFiles();
  /// Ends that, and reads the tracks again.
  bool compareWithFiles();
  [[nodiscard]] bool comparesWithoutFiles() const;

  // Rows of the upper table, by position in its content. False while a task is running. Changes of
  // very many rows are a task themselves.

  bool setTicks(std::span<const std::uint32_t> rows, bool ticked);
  bool makeOnlyKeeper(std::uint32_t row) { return makeOnlyKeepers({&row, 1}); }
  /// Each the only keeper of its group.
  bool makeOnlyKeepers(std::span<const std::uint32_t> rows);

  // Picks: a group with a tick that the user has changed keeps it in later searches, under other
  // rules and after a restart. False while a task is running.

  /// Has the rules decide again about all groups of the table that the user has picked.
  bool clearPicks();
  /// Makes groups what they were before a change, or after it; also when they have been searched
  /// anew since.
  bool putBack(const SharedPickChange& change, bool after);
  /// Told after every change that the user has made, but not of `putBack`.
  std::function<void(SharedPickChange)> picksChanged;

  // Rules under names, kept with the library. One whose name is taken takes its place.

  [[nodiscard]] const std::vector<Preset>& presets() const noexcept { return presets_; }
  /// The rules that are chosen now.
  void savePreset(const std::string& name);
  void removePreset(const std::string& name);
  void renamePreset(const std::string& name, const std::string& newName);
  /// Chooses its rules, as the user does in the window. False where none of them is known.
  bool usePreset(const Preset& preset);

  // What the copies of groups sound like.

  /// Listens to the files of these groups' copies, of all groups for none, and compares them with
  /// what is kept; `cancel` stops it, and what was heard stays. `done` follows in either case.
  bool compareSounds(std::vector<std::int32_t> groups,
                     std::function<void(const HeardSounds&)> done);
  /// Whether any group's have been compared since tracks were read.
  [[nodiscard]] bool knowsSounds() const noexcept { return sounds_ != nullptr; }
  /// nullptr where nothing was listened to. Not to be asked while something is.
  [[nodiscard]] std::shared_ptr<const TrackSounds> sounds() const noexcept { return sounds_; }

  /// Takes these groups out of the table, as `takeOut` does, and leaves them out of later searches
  /// until a track joins them.
  bool setNotDuplicates(std::span<const std::int32_t> groups);
  /// The same for groups of these tracks, and searches again.
  bool setNotDuplicates(std::vector<TrackIDs> groups);
  /// Takes that back for groups of these tracks, and searches again.
  bool setDuplicates(std::vector<TrackIDs> groups);
  /// Told with the groups' tracks after the first `setNotDuplicates`.
  std::function<void(std::vector<TrackIDs>)> groupsLeftOut;
  /// The groups that the last search has left out so.
  [[nodiscard]] const std::vector<TrackIDs>& leftOut() const noexcept { return leftOut_; }
  /// Takes rows out of both tables, and with them what is left of a group when that is one row
  /// only; ticks and order of the others stay. When tasks allow it, if one is running.
  void takeOut(std::function<bool(const ResultTrack&)> isGone);
  /// A run, or its undoing, has removed these files or tracks: takes out their rows, and has the
  /// library read again when it is convenient (`refreshIfDue`).
  void removed(const std::vector<Outcome>& outcomes);
  void setRefreshDue() noexcept { refreshDue_ = true; }
  /// Tracks have come back that the tables do not show: after the refresh that is due now, what was
  /// searched last is searched again.
  void setSearchDue() noexcept;
  /// Nothing, once it was taken back.
  [[nodiscard]] const std::optional<LastRun>& lastRun() const noexcept { return lastRun_; }
  void setLastRun(std::optional<LastRun> run);
  /// This run was taken back, by whatever window.
  void takenBack(std::int64_t run);
  /// Puts these rows into the lower table, in this order.
  void showSelection(std::span<const std::uint32_t> rows);
  /// The same as `setTicks`, of rows of the lower table's content.
  bool setTicksInSelection(std::span<const std::uint32_t> rows, bool ticked);
  [[nodiscard]] std::uint32_t upperRowOf(std::uint32_t lowerRow) const {
    return selectionSource_[lowerRow];
  }

  // State.

  [[nodiscard]] Activity activity() const noexcept { return activity_; }
  [[nodiscard]] bool isBusy() const noexcept { return activity_ != Activity::idle; }
  [[nodiscard]] Situation situation() const noexcept { return situation_; }
  [[nodiscard]] const std::string& libraryPath() const noexcept { return libraryPath_; }
  /// The one that is being opened, or was last.
  [[nodiscard]] const std::string& openingPath() const noexcept { return openingPath_; }
  /// Empty without one. While a library is opened, also on the worker.
  [[nodiscard]] std::string passwordOf(const std::string& address) const;
  /// Whether another program has, as far as it has been looked for.
  [[nodiscard]] bool hasLibraryChanged() const noexcept { return hasChanged_; }
  /// What people are to know of the last reading.
  [[nodiscard]] const std::vector<Message>& notes() const noexcept { return notes_; }
  /// How many songs the last snapshot has; nothing before the first one of a library.
  [[nodiscard]] std::optional<std::size_t> trackCount() const noexcept { return trackCount_; }
  /// nullptr without a library.
  [[nodiscard]] MusicApplication* application() const noexcept { return application_.get(); }
  /// The rows of the upper table, in the order in which they came.
  [[nodiscard]] std::span<const ResultTrack> content() const;
  [[nodiscard]] const ResultSummary& summary() const noexcept { return groups_.summary(); }
  [[nodiscard]] const ResultGroups& groups() const noexcept { return groups_; }
  /// What has been learnt about them in the background; nullptr: nothing yet.
  [[nodiscard]] const GroupKnowledge* knowledge() const noexcept { return knowledge_.get(); }
  [[nodiscard]] std::shared_ptr<const GroupKnowledge> knowledgeInHand() const noexcept {
    return knowledge_;
  }
  /// Their addresses, latest first.
  [[nodiscard]] const std::vector<std::string>& recentLibraries() const noexcept {
    return recentLibraries_;
  }
  [[nodiscard]] KSPlaylistController& playlists() noexcept { return playlists_; }
  /// Whether there is a playlist to search; some libraries list none, not even all songs.
  [[nodiscard]] bool canSearch() const;
  /// The name of the playlist that a search works in; empty without one.
  [[nodiscard]] Message chosenPlaylistName() const;
  /// Whether that is less than the whole library.
  [[nodiscard]] bool choosesPart() const;
  /// The same of the last search, whatever has been chosen since.
  [[nodiscard]] const Message& searchedPlaylistName() const noexcept {
    return searchedPlaylistName_;
  }
  /// Whether that was less than the whole library.
  [[nodiscard]] bool searchedPart() const noexcept { return searchedPart_; }
  /// The tracks of rows of the upper table's content, each once.
  [[nodiscard]] std::vector<std::uint64_t> tracksOf(std::span<const std::uint32_t> rows) const;
  /// The playlists that hold a row's track, the library itself left out. None while a task runs.
  [[nodiscard]] std::vector<PlaylistRecord> playlistsHolding(std::uint32_t row) const;
  /// The same of several rows, for each of them, in one pass over the playlists.
  [[nodiscard]] std::vector<std::vector<PlaylistRecord>> playlistsHoldingEach(
      std::span<const std::uint32_t> rows) const;
  /// Why a row's group has the keeper that it has, as a sentence without a full stop.
  [[nodiscard]] Message keptBecause(std::uint32_t row) const;
  /// The same of a group by its number; for tasks on the worker too.
  [[nodiscard]] Message reasonOf(std::int32_t group) const;
  [[nodiscard]] Process& process() const noexcept { return process_; }

  AlertPanel alerts;
  Observers observers;         ///< activity, situation or library
  Observers libraryObservers;  ///< tracks or playlists were read
  Observers summaryObservers;  ///< also when a single tick has changed
  Observers runObservers;      ///< the last run
  Observers presetObservers;   ///< the presets, or which is chosen
  Observers knowledgeObservers;
  Observers flagObservers;  ///< keeper flags of many rows; the arrangement is the same

 private:
  using Failure = std::optional<TaskFailure>;
  /// Rows or groups, of which a change is not felt; more are for the worker.
  static constexpr std::size_t mostAtOnce = 5'000;
  /// A look at the result by the worker, which does not count as a task: any task stops it.
  struct Learning {
    std::mutex atRows;  ///< held while it looks
    std::atomic<bool> cancelled = false;
  };

  void learn();
  void stopLearning();
  /// The same; then the rows may go.
  void waitForLearning();
  void forgetKnowledge();
  /// Has rows tell how many rules agree.
  void showAgreements();
  /// From the worker; nullptr: it was stopped.
  void finishLearning(const std::shared_ptr<Learning>& learning,
                      std::shared_ptr<const GroupKnowledge> known, bool isLast);

  void begin(Activity activity);
  void end();
  /// Runs `work` on the worker, then `done` with what went wrong on the main queue.
  void start(Activity activity, std::function<void()> work, std::function<void(Failure)> done);
  /// The same within a task that has begun.
  void post(std::function<void()> work, std::function<void(Failure)> done);
  void fail(const Message& message, const Message& problem);
  void clearResult();
  void closeLibrary();
  void closeLaunchSheet();
  void launch();
  void takeSnapshot();
  struct RowsLeft {
    std::vector<ResultTrack> rows;
    ResultGroups groups;                 ///< of these rows
    std::vector<std::uint32_t> newRows;  ///< by former row; empty: none is gone
  };
  [[nodiscard]] RowsLeft rowsWithout(const std::function<bool(const ResultTrack&)>& isGone) const;
  void takeOutNow(const std::function<bool(const ResultTrack&)>& isGone,
                  const std::function<void()>& then = {});
  void replaceRows(RowsLeft& left);
  void searchEnded(bool failed);
  void startKeeperPass();
  /// Progress of reading files as the second progress bar shows it; stopped by `cancel`.
  LoadWatch watchFiles(const Message& what);
  /// After the keepers of these groups have changed.
  void compareWithKept(std::span<const GroupState> groups);
  /// Changes groups, of so many rows, and calls `done`: at once, or on the worker where that would
  /// be felt.
  void editGroups(std::size_t rows, std::function<void(ResultGroups&)> edit,
                  std::function<void()> done);
  /// The same with the groups of these rows by a command of the user.
  void pick(std::vector<std::uint32_t> rows, std::function<void(ResultGroups&)> change);
  /// Has the library's decisions follow one side of a change, on the worker.
  void keepPicks(const SharedPickChange& change, bool after);
  void changeDecisions(std::function<void(Decisions&)> edit);
  void changePresets(std::function<void(Decisions&)> edit);
  /// Ends the search, without these.
  void leaveOutNotDuplicates(const std::shared_ptr<const NotDuplicates>& known);
  void flagsChanged();
  void copyFlagsToSelection();
  void recallLibraries();
  void remember(const std::string& path);
  void fillPlaylistMenu();
  void refreshPlaylistMenu();
  void countMissing();

  Process& process_;
  TaskQueue& worker_;
  Opener opener_;
  std::shared_ptr<MusicApplication> application_;
  std::shared_ptr<Preferences> applicationPreferences_;
  std::string libraryPath_, openingPath_;
  std::map<std::string, std::string> passwords_;  ///< by address
  bool hasChanged_ = false;
  std::vector<Message> notes_;
  PathMaps maps_;  ///< as kept for the library
  MissingFiles missing_;
  std::optional<std::size_t> trackCount_;
  Message searchedPlaylistName_;
  bool searchedPart_ = false;
  std::vector<std::string> recentLibraries_;
  KSPlaylistController playlists_;
  Activity activity_ = Activity::idle;
  Situation situation_ = Situation::noLibrary;
  bool keeperPassWanted_ = false;
  bool isLooking_ = false;     ///< for changes of the library
  bool refreshAsked_ = false;  ///< the task has begun, its snapshot is on its way
  bool hasSearched_ = false;
  std::chrono::steady_clock::time_point searchBegan_;
  std::chrono::milliseconds searchTime_{0};
  bool searchDue_ = false;           ///< once it is refreshed
  bool searchAfterOpening_ = false;  ///< it is opened anew for a search that found no files
  std::optional<LastRun> lastRun_;
  bool refreshDue_ = false;  ///< files or tracks have come or gone since the last snapshot
  std::vector<std::function<void()>> whenIdle_;
  ResultGroups groups_;
  std::shared_ptr<KeptDecisions> decisions_;  ///< for tasks of the worker; nullptr without any
  std::vector<Preset> presets_;               ///< of them, for windows
  bool toldOfDecisions_ = false;              ///< that they cannot be kept
  std::uint64_t pass_ = 0;                    ///< keeper passes so far
  std::uint64_t search_ = 0;                  ///< searches with a result so far
  std::vector<TrackIDs> leftOut_;
  std::shared_ptr<TrackSounds> sounds_;  ///< as far as they were asked for; nullptr: none
  std::shared_ptr<Learning> learning_;   ///< nullptr while nothing is being learnt
  std::shared_ptr<const GroupKnowledge> knowledge_;
  bool knowledgeDue_ = false;
  FilterSettings passSettings_;
  std::vector<std::uint32_t> selectionSource_;  ///< by position in the lower table's content
};

}  // namespace kestrel
