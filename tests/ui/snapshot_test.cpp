#include <algorithm>
#include <gtest/gtest.h>

#include "tests/ui/library_harness.h"
#include "ui/launch.h"

namespace kestrel::testing {
namespace {

using Lines = std::vector<std::string>;

/// Ten items, three of them videos and one of which nothing says where it is.
std::string tenItems() {
  std::string tracks;
  for (int i = 1; i <= 6; ++i)
    tracks += song(i, "A" + std::to_string(i), "/m/" + std::to_string(i));
  for (int i = 7; i <= 9; ++i)
    tracks += song(i, "A" + std::to_string(i), "/m/" + std::to_string(i), flag("Movie"));
  return tracks + "<key>10</key><dict>" + number("Track ID", 10) + text("Persistent ID", "AA") +
         "</dict>";
}

/// Lets it be written down how the progress display changes.
std::vector<Observers::Subscription> watch(MainWindowReferences& window, Lines& lines) {
  std::vector<Observers::Subscription> subscriptions;
  subscriptions.push_back(window.mainLaunchProgressStatus.observers.add(
      [&] { lines.push_back(window.mainLaunchProgressStatus.text()); }));
  subscriptions.push_back(window.mainLaunchProgressWindow.observers.add(
      [&] { lines.push_back(window.mainLaunchProgressWindow.isOpen() ? "open" : "closed"); }));
  return subscriptions;
}

TEST(Snapshot, TakesSongsAndCountsEveryItem) {
  LibraryHarness library;
  library.document(tenItems(), playlist("Mine", "B1", {}, {1, 1, 99}));
  Lines seen;
  const auto watching = watch(library.window(), seen);
  TextSorter::buildLibrary();
  EXPECT_TRUE(seen.empty()) << "what the user sees waits for the main queue";
  EXPECT_FALSE(library.preferences.boolean(settings::trackLibraryInitialized));
  library.mainQueue.drain();

  EXPECT_EQ(TextSorter::groomedTracksDictionary()->size(), 6U);
  const ProgressBar& bar = library.window().mainLaunchProgressBar;
  EXPECT_EQ(bar.advances(), 10U);
  EXPECT_TRUE(bar.isHidden());
  EXPECT_EQ(bar.maximum(), 0);
  EXPECT_EQ(seen, Lines{"Itemizing music library..."});
  EXPECT_TRUE(library.preferences.boolean(settings::trackLibraryInitialized));
  ASSERT_EQ(TextSorter::storedPlaylistArray()->size(), 1U);
  EXPECT_EQ(TextSorter::storedPlaylistArray()->front().items,
            (std::vector<std::uint64_t>{0xA1, 0xA1}));
  TextSorter::refreshPlaylists();
  const Lines lines = library.log.lines();
  EXPECT_EQ(
      Lines(lines.end() - 3, lines.end()),
      (Lines{"**ITLibrary initialized",
             "--> Note: Any \"synchronousReadWriteURLForMediaItem\" errors below imply dead tracks",
             "** START LIB INIT **"}));
}

TEST(Snapshot, ReadsTheLibraryAgainAndForgetsNothing) {
  LibraryHarness library;
  library.preferences.set(settings::keeperMode, std::int64_t{1});
  library.document(song(3, "B", "/m/3", text("Name", "the later one counts")) +
                   song(1, "A", "/m/1", text("Name", "old") + text("Artist", "Ann")) +
                   song(2, "B", "/m/2", text("Name", "leaves")));
  TextSorter::buildLibrary();
  const auto before = TextSorter::groomedTracksDictionary();
  EXPECT_EQ(library.value("A", "tCheckbox"), Value(false));

  library.preferences.set(settings::keeperMode, std::int64_t{0});
  library.document(song(1, "A", "/m/1", text("Name", "new")) + song(3, "C", "/m/3"));
  library.mainQueue.drain();
  Lines seen;
  const auto watching = watch(library.window(), seen);
  TextSorter::buildLibrary();
  library.mainQueue.drain();
  EXPECT_EQ(seen, (Lines{"One moment...", "open", "Re-itemizing music library...", "closed"}));
  EXPECT_EQ(library.value("A", "tName"), Value("new"));
  EXPECT_EQ(library.value("A", "tArtist"), Value("")) << "the whole record is replaced";
  EXPECT_EQ(library.value("A", "tCheckbox"), Value(true));
  EXPECT_EQ(library.value("B", "tName"), Value("leaves")) << "a song that left the library stays";
  EXPECT_EQ(TextSorter::groomedTracksDictionary()->size(), 3U);
  EXPECT_EQ(TextSorter::groomedTracksDictionary()->carriedOver(), 1U);
  EXPECT_EQ(before->find("A")->value("tName"), Value("old"))
      << "what a table shows does not change";

  TextSorter::buildLibrary();
  EXPECT_EQ(library.value("B", "tName"), Value("leaves")) << "nor does it go later";
  EXPECT_EQ(TextSorter::groomedTracksDictionary()->carriedOver(), 1U);
}

TEST(Snapshot, SurvivesALibraryThatCannotBeRead) {
  LibraryHarness library;  // there is no document
  TextSorter::buildLibrary();
  library.mainQueue.drain();
  EXPECT_TRUE(TextSorter::groomedTracksDictionary()->empty());
  EXPECT_TRUE(TextSorter::storedPlaylistArray()->empty());
  EXPECT_TRUE(library.preferences.boolean(settings::trackLibraryInitialized));

  LibraryHarness later;
  later.document(song(1, "A", "/m/1"), playlist("Mine", "B1"));
  TextSorter::buildLibrary();
  later.files.put(later.path, "<plist><dict><key>Tracks");
  TextSorter::buildLibrary();
  EXPECT_EQ(TextSorter::groomedTracksDictionary()->size(), 1U);
  EXPECT_EQ(TextSorter::storedPlaylistArray()->size(), 1U);
  const auto lines = later.log.lines();
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.find(later.path + ", line 1") != std::string::npos;
  })) << "the log says why";
}

}  // namespace
}  // namespace kestrel::testing
