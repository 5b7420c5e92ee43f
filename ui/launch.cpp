#include "ui/launch.h"

#include <utility>

#include "foundation/library_error.h"
#include "library/snapshot.h"
#include "musicapp/file_url.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/library_files.h"
#include "ui/process.h"

namespace kestrel::TextSorter {
namespace {

/// Empty for a bookmark that does not resolve. A folder's path has no slash at its end.
std::string pathForBookmark(std::string_view bookmark) {
  std::string path;
  if (const auto url = urlForBookmark(bookmark)) pathOfFileUrl(*url, path);
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

bool hasRemoteItems(MediaLibrary& library) {
  bool found = false;
  library.allMediaItems()->forEach(
      [&found](const MediaItem& item) { found |= item.locationType == LocationType::remote; });
  return found;
}

void showCounting(std::size_t items, bool rebuild) {
  process().with.mainQueue.post([items, rebuild] {
    MainWindowReferences& window = process().textSorter.window;
    ProgressBar& bar = window.mainLaunchProgressBar;
    bar.stopAnimation();
    bar.setIndeterminate(false);
    bar.setMaximum(static_cast<float>(items));
    window.mainLaunchProgressStatus.setText(rebuild ? Message::tr("Re-itemizing music library...")
                                                    : Message::tr("Itemizing music library..."));
  });
}

void endProgressDisplay() {
  process().with.mainQueue.post([] {
    MainWindowReferences& window = process().textSorter.window;
    ProgressBar& bar = window.mainLaunchProgressBar;
    bar.setHidden(true);
    bar.setMinimum(0);
    bar.setMaximum(0);
    bar.setValue(0);
    window.mainLaunchProgressWindow.close();
    process().with.preferences.set(settings::trackLibraryInitialized, true);
  });
}

void refillPlaylists(MediaLibrary* library) {
  process().textSorter.storedPlaylists =
      library ? library->allPlaylists() : std::make_shared<const std::vector<Playlist>>();
}

/// The library, read anew for a re-build. A library that has become unreadable stays as it was.
std::shared_ptr<MediaLibrary> libraryForSnapshot(bool rebuild) {
  const bool openedBefore = process().libraryOpened;
  auto library = myLibrary();
  if (!library || !rebuild || !openedBefore) return library;
  try {
    library->reload();
  } catch (const LibraryError& error) {
    process().with.log.line(error.what());
  }
  return library;
}

}  // namespace

void initPlaylistsAtLaunch() {
  Process& process = kestrel::process();
  Preferences& preferences = process.with.preferences;
  TextSorterState& state = process.textSorter;

  state.window.showWaitingSheet();
  if (const Preferences* application = process.with.applicationPreferences) {
    state.pathToMediaFolder += pathForBookmark(application->text("media-folder-bookmark"));
    state.pathToMusicLibrary += pathForBookmark(application->text("library-bookmark"));
  }
  preferences.registerDefault(settings::filterFolderLoc, state.pathToMediaFolder);
  process.with.log.line("--> Designated Music Media folder: " + state.pathToMediaFolder + "/ - " +
                        std::string(fileAvailable(state.pathToMediaFolder)));
  const auto library = myLibrary();
  preferences.set(settings::hasRemoteTracks, library && hasRemoteItems(*library));
  refillPlaylists(library.get());
}

void refreshLibrary() {
  process().with.mainQueue.post([] {
    if (const auto& take = process().takeSnapshot)
      take();
    else
      buildLibrary();
  });
}

void buildLibrary() {
  Process& process = kestrel::process();
  Preferences& preferences = process.with.preferences;
  TaskQueue& mainQueue = process.with.mainQueue;

  const bool rebuild = preferences.boolean(settings::completedLaunch);
  if (rebuild) mainQueue.post([] { kestrel::process().textSorter.window.showWaitingSheet(); });
  const auto library = libraryForSnapshot(rebuild);
  refillPlaylists(library.get());
  const auto items = library ? library->allMediaItems() : std::make_shared<const MediaItems>();
  const bool checkbox = preferences.integer(settings::keeperMode) == 0;
  preferences.set(settings::trackLibraryInitialized, false);
  showCounting(items->size(), rebuild);
  preferences.set(settings::completedLaunch, true);
  ProgressBar& bar = process.textSorter.window.mainLaunchProgressBar;
  auto& tracks = process.textSorter.groomedTracks;
  tracks = takeSnapshot(
      items, process.with.files, process.with.log, checkbox, tracks.get(),
      [&] { mainQueue.postAdvance(bar, 1.0); }, process.textSorter.withoutFiles);

  endProgressDisplay();
  if (!rebuild && preferences.boolean(settings::getDupesAtStartup))
    mainQueue.post([] {
      if (const auto& search = kestrel::process().getDupesAtLaunch) search();
    });
}

std::shared_ptr<MediaLibrary> myLibrary() {
  Process& process = kestrel::process();
  if (process.libraryOpened) return process.library;
  process.libraryOpened = true;
  try {
    if (process.with.openLibrary) process.library = process.with.openLibrary();
    if (process.library) process.with.log.line("**ITLibrary initialized");
  } catch (const LibraryError& error) {
    process.with.log.line(error.what());
  }
  return process.library;
}

std::shared_ptr<const TrackStore> groomedTracksDictionary() {
  return process().textSorter.groomedTracks;
}

std::shared_ptr<const std::vector<Playlist>> storedPlaylistArray() {
  return process().textSorter.storedPlaylists;
}

void refreshPlaylists() {
  process().with.log.line("** START LIB INIT **");
  refillPlaylists(myLibrary().get());
}

std::shared_ptr<MediaLibrary> storedLib() {
  process().with.log.line("RELOAD LIB");
  return myLibrary();
}

}  // namespace kestrel::TextSorter
