/// What lives as long as the program: the collaborators and each class's shared containers.
///
/// There is no other global state. A program makes one Process, every test makes a fresh one;
/// while it lives, `process()` finds it.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <typeindex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/dates.h"
#include "library/result_track.h"
#include "platform/queues.h"
#include "ui/models/array_controller.h"
#include "ui/models/view_models.h"

namespace kestrel {

class Clock;
class FileService;
class Log;
class MediaLibrary;
class MusicApplication;
class Preferences;
class Random;
class ScriptRunner;
struct Playlist;

/// The parts of the main window that class-level operations drive.
struct MainWindowReferences {
  Window mainWindow;
  Sheet mainLaunchProgressWindow;
  ProgressBar mainLaunchProgressBar;
  StatusText mainLaunchProgressStatus;
  ProgressBar mainProgressBar;
  StatusText mainProgressStatus;
  ProgressBar mainProgressSpinner;
  StatusText mainProgressSpinnerStatus;
  ArrayController<ResultTrack> bigArrayController;
  ArrayController<ResultTrack> lilArrayController;

  /// Opens the launch progress over the main window, with a bar that runs without an end.
  void showWaitingSheet();
};

/// The containers of the class TextSorter, empty at first. One task at a time may use them; the
/// application controller sees to that.
struct TextSorterState {
  std::shared_ptr<const TrackStore> groomedTracks;  ///< nullptr before the first snapshot
  std::shared_ptr<const std::vector<Playlist>> storedPlaylists;
  bool withoutFiles = false;  ///< snapshots take files for there without looking
  std::string pathToMediaFolder;
  std::string pathToMusicLibrary;
  std::vector<std::string> storedCriteria;
  std::string finalGroupCountAsText;
  /// On the main queue before a search fills the upper table; may be empty.
  std::function<void()> beforeRows;
  MainWindowReferences window;
};

/// References to what the operations work with; the program or the test owns them.
struct Collaborators {
  /// Opens the music library anew. May throw LibraryError.
  std::function<std::shared_ptr<MediaLibrary>()> openLibrary;
  Preferences& preferences;
  TaskQueue& mainQueue;
  Log& log;
  Clock& clock;
  Random& random;
  FileService& files;
  /// Where surveys and scans run; nullptr: on the calling thread.
  TaskQueue* backgroundQueue = nullptr;
  /// nullptr when there is none.
  MusicApplication* application = nullptr;
  /// How the application is sent script texts, if it is one that takes them.
  ScriptRunner* scripts = nullptr;
  /// The music application's own settings, read only: "media-folder-bookmark" and
  /// "library-bookmark" as file URLs.
  const Preferences* applicationPreferences = nullptr;
};

class Process {
 public:
  explicit Process(Collaborators collaborators);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  Collaborators with;
  TextSorterState textSorter;
  /// The opened library; nullptr until first asked for, and when it cannot be opened.
  std::shared_ptr<MediaLibrary> library;
  bool libraryOpened = false;
  /// What the application controller does when a snapshot asks for a search.
  std::function<void()> getDupesAtLaunch;
  /// How the application controller takes a new snapshot when one is asked for, on the main queue:
  /// with its worker, so that no window waits. Without it the asked snapshot is taken there and
  /// then.
  std::function<void()> takeSnapshot;

  /// The containers of a class that stands above this folder: made empty on first use, kept as
  /// long as the process. One object for each type. Callable from any thread.
  template <typename State>
  State& state() {
    return *static_cast<State*>(
        stateOf(typeid(State), [] { return std::shared_ptr<void>(std::make_shared<State>()); }));
  }

 private:
  void* stateOf(std::type_index type, std::shared_ptr<void> (*make)());

  std::mutex statesMutex_;
  std::unordered_map<std::type_index, std::shared_ptr<void>> states_;
  Process* previous_;
};

/// The process of the program or test at hand. One must be alive.
Process& process();

/// For texts of windows, in the user's locale and zone; made on first use. On the main thread.
inline ShortDateTimeFormatter& shortDates() { return process().state<ShortDateTimeFormatter>(); }

/// Runs a task on the background queue; what it throws is kept in `failure`, which must live as
/// long as the process, for work that is posted after it. Without such a queue it is run at once,
/// and what it throws passes through.
void runInBackground(std::function<void()> task, std::exception_ptr& failure);

/// Reveals a playlist in the music application, by its hexadecimal ID: behind what else asks the
/// application something, which takes one question at a time.
void revealInBackground(std::string hexpid, std::exception_ptr& failure);

/// A task of the main queue that changes the window in a class's containers.
template <typename State, typename Change>
void postToWindow(Change change) {
  process().with.mainQueue.post(
      [change = std::move(change)] { change(process().state<State>().window); });
}

}  // namespace kestrel
