#include "ui/launch.h"

#include <gtest/gtest.h>

#include "tests/ui/library_harness.h"
#include "ui/library_files.h"

namespace kestrel::testing {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::seconds;

TEST(Launch, FindsTheFoldersThePlaylistsAndWhetherThereAreCloudItems) {
  for (const bool cloud : {false, true}) {
    LibraryHarness library;
    Preferences application;
    application.set("media-folder-bookmark", "file://localhost/My%20Music/");
    application.set("library-bookmark", "file:///home/Library.xml");
    library.process.with.applicationPreferences = &application;
    library.files.put("/My Music/a.mp3", "");
    library.document(song(1, "A1", "/My Music/a.mp3") + (cloud ? song(2, "A2", "") : ""),
                     playlist("Mine", "B1"));
    TextSorter::initPlaylistsAtLaunch();

    const TextSorterState& state = library.process.textSorter;
    EXPECT_EQ(state.pathToMediaFolder, "/My Music");
    EXPECT_EQ(state.pathToMusicLibrary, "/home/Library.xml");
    EXPECT_EQ(library.preferences.text(settings::filterFolderLoc), "/My Music");
    EXPECT_EQ(library.preferences.value(settings::hasRemoteTracks), PreferenceValue(cloud));
    EXPECT_EQ(state.storedPlaylists->size(), 1U);
    EXPECT_EQ(library.log.lines().front(),
              "--> Designated Music Media folder: /My Music/ - AVAILABLE");
    const ProgressBar& bar = state.window.mainLaunchProgressBar;
    EXPECT_TRUE(bar.isIndeterminate() && bar.isAnimating() && !bar.isHidden());
    EXPECT_EQ(state.window.mainLaunchProgressStatus.text(), "One moment...");
    EXPECT_EQ(state.window.mainLaunchProgressWindow.over(), &state.window.mainWindow)
        << "the sheet stays open for the snapshot";
  }
}

TEST(Launch, GoesOnWithoutFoldersAndWithoutALibrary) {
  Preferences application;
  application.set("media-folder-bookmark", "not a bookmark");
  for (const Preferences* settings : {static_cast<const Preferences*>(&application), {}}) {
    LibraryHarness library;
    library.process.with.applicationPreferences = settings;
    library.preferences.set(settings::hasRemoteTracks, true);
    library.preferences.registerDefault(settings::filterFolderLoc, "/earlier");
    TextSorter::initPlaylistsAtLaunch();
    EXPECT_EQ(library.log.lines().front(), "--> Designated Music Media folder: / - UNAVAILABLE");
    EXPECT_EQ(library.preferences.value(settings::filterFolderLoc), PreferenceValue(std::string()));
    EXPECT_FALSE(library.preferences.boolean(settings::hasRemoteTracks));
    EXPECT_TRUE(library.process.textSorter.storedPlaylists->empty());
  }
}

TEST(Launch, ARefreshIsTakenByTheMainQueue) {
  LibraryHarness library;
  library.document(song(1, "A1", "/a"));
  TextSorter::refreshLibrary();
  EXPECT_EQ(TextSorter::groomedTracksDictionary(), nullptr);
  library.mainQueue.drain();
  EXPECT_EQ(TextSorter::groomedTracksDictionary()->size(), 1U);
  EXPECT_EQ(TextSorter::storedLib(), library.process.library);
  EXPECT_EQ(library.log.lines().back(), "RELOAD LIB");
}

TEST(Waiting, EndsWhenTheDocumentIsNewerThanTheChangeAndNotOlderThanTheDatabase) {
  using Date = std::optional<int>;  // in seconds; nothing: there is no file
  struct Case {
    int now;  ///< the time of the change
    Date before, after, database;
    int waits;
  };
  for (const auto& [now, before, after, database, waits] :
       {Case{100, 98, 103, 103, 0}, Case{100, 98, 103, 102, 0}, Case{100, 98, 103, {}, 0},
        Case{100, 98, {}, 103, 0}, Case{100, {}, {}, {}, 0}, Case{100, 98, 98, 98, 40},
        Case{100, 98, 98, {}, 40}, Case{100, 98, 97, 96, 40}, Case{100, 98, 103, 104, 40},
        Case{100, 50, 50, 50, 40}, Case{100, {}, 98, 98, 40},
        // Dates in steps of two seconds, and the second change within such a step.
        Case{100, 50, 100, 100, 0}, Case{101, 50, 100, 100, 0}, Case{101, 100, 100, 100, 0},
        // The disk's clock is behind, or ahead.
        Case{100, 10, 20, 20, 0}, Case{100, 200, 300, 300, 0}}) {
    LibraryHarness library;
    const auto put = [&library](const char* path, Date date) {
      library.files.remove(path);
      if (date) library.files.put(path, "", Moment(seconds(*date)));
    };
    library.clock.set(Moment(seconds(now)));
    put("/L.xml", before);
    const Moment reference = TextSorter::dateBeforeChange("/L.xml");
    put("/L.xml", after);
    put("/L.itl", database);
    TextSorter::waitForItunesToUpdate(reference, "/L.xml", "/L.itl");
    Lines expected(static_cast<std::size_t>(waits), "wait...");
    expected.emplace_back("--> LIBRARY UPDATED");
    EXPECT_EQ(library.log.lines(), expected) << now << ' ' << after.value_or(-99);
    EXPECT_EQ(library.clock.now(), Moment(seconds(now + waits)));
  }
}

TEST(Waiting, LooksAgainEverySecond) {
  /// Writes the database after two seconds and the document after four.
  struct WritingClock final : Clock {
    explicit WritingClock(MemoryFiles& f) : files(f) {}
    [[nodiscard]] Moment now() const override { return time; }
    void sleepFor(std::chrono::nanoseconds duration) override {
      time += duration;
      if (time == Moment(seconds(2))) files.put("/L.itl", "", time);
      if (time == Moment(seconds(4))) files.put("/L.xml", "", time);
    }
    MemoryFiles& files;
    Moment time;
  };
  LibraryHarness library;
  WritingClock clock(library.files);
  Collaborators with = library.process.with;
  const Process process({with.openLibrary, with.preferences, with.mainQueue, with.log, clock,
                         with.random, with.files});
  library.files.put("/L.xml", "", Moment());
  TextSorter::waitForItunesToUpdate(Moment(), "/L.xml", "/L.itl");
  EXPECT_EQ(clock.now(), Moment(seconds(4)));
}

}  // namespace
}  // namespace kestrel::testing
