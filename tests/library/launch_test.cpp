#include "library/launch.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "tests/library/library_harness.h"

namespace kestrel::testing {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::seconds;

TEST(Launch, FindsTheFoldersThePlaylistsAndWhetherThereAreCloudItems) {
  for (const bool cloud : {false, true}) {
    LibraryHarness library;
    InMemoryPreferences application;
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
  LibraryHarness library;
  InMemoryPreferences application;
  application.set("media-folder-bookmark", "not a bookmark");
  for (const Preferences* settings : {static_cast<const Preferences*>(&application), {}}) {
    library.process.with.applicationPreferences = settings;
    library.preferences.set(settings::hasRemoteTracks, true);
    library.preferences.registerDefault(settings::filterFolderLoc, "/earlier");
    TextSorter::initPlaylistsAtLaunch();
    EXPECT_EQ(library.log.lines().front(), "--> Designated Music Media folder: / - UNAVAILABLE");
    EXPECT_EQ(library.preferences.value(settings::filterFolderLoc), PreferenceValue(std::string()));
    EXPECT_FALSE(library.preferences.boolean(settings::hasRemoteTracks));
    ASSERT_NE(library.process.textSorter.storedPlaylists, nullptr);
    EXPECT_TRUE(library.process.textSorter.storedPlaylists->empty());
  }
  library.preferences.set(settings::filterFolderLoc, "/chosen");
  TextSorter::initPlaylistsAtLaunch();
  EXPECT_EQ(library.preferences.text(settings::filterFolderLoc), "/chosen");
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

/// Writes files while others sleep.
struct WritingClock final : Clock {
  [[nodiscard]] Moment now() const override { return Moment(); }
  void sleepFor(std::chrono::nanoseconds duration) override {
    slept += duration;
    if (onSleep) onSleep();
  }
  std::function<void()> onSleep;
  std::chrono::nanoseconds slept{};
};

TEST(Waiting, EndsWhenTheDocumentIsNewerThanTheReferenceAndNotOlderThanTheDatabase) {
  struct Case {
    std::optional<int> document, database;  ///< seconds after the reference; nothing: no file
    int waits;
  };
  for (const auto& [document, database, waits] :
       {Case{5, 5, 0}, Case{5, 4, 0}, Case{5, -9, 0}, Case{5, {}, 0}, Case{{}, 5, 0},
        Case{{}, {}, 0}, Case{0, 0, 40}, Case{0, {}, 40}, Case{-1, -2, 40}, Case{5, 6, 40}}) {
    LibraryHarness library;
    const Moment reference{seconds(1'000'000)};
    if (document) library.files.put("/L.xml", "", reference + seconds(*document));
    if (database) library.files.put("/L.itl", "", reference + seconds(*database));
    TextSorter::waitForItunesToUpdate(reference, "/L.xml", "/L.itl");
    Lines expected(static_cast<std::size_t>(waits), "wait...");
    expected.emplace_back("--> LIBRARY UPDATED");
    EXPECT_EQ(library.log.lines(), expected) << document.value_or(-99) << database.value_or(-99);
    EXPECT_EQ(library.clock.now(), Moment(seconds(waits)));
  }
}

TEST(Waiting, LooksAgainEverySecond) {
  MemoryFiles files;
  InMemoryPreferences preferences;
  ManualQueue queue;
  MemoryLog log;
  WritingClock clock;
  SeededRandom random{1};
  const Process process({{}, preferences, queue, log, clock, random, files});
  const Moment reference{seconds(1'000'000)};
  files.put("/L.xml", "", reference);
  files.put("/L.itl", "", reference);
  clock.onSleep = [&] {
    if (clock.slept == seconds(2)) files.put("/L.itl", "", reference + seconds(2));
    if (clock.slept == seconds(4)) files.put("/L.xml", "", reference + seconds(2));
  };
  TextSorter::waitForItunesToUpdate(reference, "/L.xml", "/L.itl");
  EXPECT_EQ(clock.slept, seconds(4));
}

TEST(Launch, KnowsTheProgramsOwnFolderAndDoesNotMakeIt) {
  LibraryHarness library;
  EXPECT_EQ(TextSorter::applicationDataDirectory(), "/home/user/.local/share/Kestrel");
  EXPECT_FALSE(library.files.exists("/home/user/.local/share/Kestrel"));
  library.files.support.reset();
  EXPECT_EQ(TextSorter::applicationDataDirectory(), std::nullopt);
}

}  // namespace
}  // namespace kestrel::testing
