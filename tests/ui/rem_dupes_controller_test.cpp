#include "ui/rem_dupes_controller.h"

#include <gtest/gtest.h>

#include "tests/cleanup/playlist_builders.h"
#include "ui/uncalled_operations.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Lines = std::vector<std::string>;

Lines logged(const TestProcess& test, std::string_view start) {
  Lines lines;
  for (const std::string& line : test.log.lines())
    if (line.starts_with(start)) lines.push_back(line);
  return lines;
}

TEST(RemDupesController, ShowsWhatAScanFindsAndKeepsItWhenTheNextFindsNothing) {
  WindowProcess test(
      playlists({folder("F", 1), playlist("a", 2, {5, 5}).in(1), playlist("b", 3, {5, 5})}));
  RemDupesWindowReferences& window = RemDupesController::state().window;
  test.watch(window.remdupesProgressStatus, window.remdupesProgressSpinner);
  test.watch(window.remdupesTreeController.observers, "outline");

  RemDupesController::beginRemDupes();
  EXPECT_EQ(test.mainQueue.waiting(), 0U);  // all of it is background work
  EXPECT_EQ(test.run(), (Lines{"status: Fetching playlists...", "spinner on", "outline", "outline",
                               "spinner off", "status: "}));
  EXPECT_EQ(outlineText(window.remdupesTreeController.content()), "F(a) b");
  EXPECT_TRUE(window.remdupesTreeController.isExpanded());
  EXPECT_EQ(logged(test, "+ + +"), (Lines{"+ + + PLAYLIST: a", "+ + + PLAYLIST: b"}));
  EXPECT_EQ(RemDupesController::storedJustFolders().size(), 1U);
  EXPECT_EQ(outlineText(RemDupesController::getFolders("1")), "a");
  EXPECT_TRUE(RemDupesController::getFolders("1").at(0).Child);  // empty, but there
  for (const char* none : {"01", "2", "0", "", "x"})
    EXPECT_TRUE(RemDupesController::getFolders(none).empty()) << none;

  // The next scan reads the library again, and one that cannot be read has no playlists.
  for (const bool unreadable : {false, true}) {
    test.changing->onDisk = playlists({});
    test.changing->unreadable = unreadable;
    RemDupesController::beginRemDupes();
    EXPECT_EQ(test.run(), (Lines{"status: Fetching playlists...", "spinner on",
                                 "status: No results.", "spinner off"}));
    EXPECT_EQ(outlineText(window.remdupesTreeController.content()), "F(a) b");
    EXPECT_EQ(outlineText(RemDupesController::storedPlaylistArray()), "F(a) b");
    EXPECT_EQ(RemDupesController::childPlaylists().size(), 1U);
    EXPECT_TRUE(RemDupesController::storedJustFolders().empty());
    EXPECT_TRUE(RemDupesController::state().lastScan.affected.empty());
  }
  EXPECT_EQ(logged(test, "Library.xml").size(), 1U);

  test.changing->unreadable = false;
  // What breaks a scan off does not end the program, but is kept until the next one.
  for (const bool isShort : {true, false}) {
    test.changing->memoryIsShort = isShort;
    RemDupesController::beginRemDupes();
    test.run();
    EXPECT_EQ(RemDupesController::state().failure != nullptr, isShort);
  }
}

TEST(RemDupesController, RevealsTheFirstSelectedPlaylist) {
  WindowProcess test(playlists({playlist("a", 0xAB, {5, 5}), playlist("b", 3, {5, 5})}));
  test.process.with.backgroundQueue = nullptr;  // a program without one scans at once
  RemDupesController::beginRemDupes();
  test.mainQueue.drain();
  RemDupesController::doubleClickedAction();
  EXPECT_TRUE(test.application.commands.empty());
  RemDupesController::state().window.remdupesTreeController.setSelection({{0}, {1}});
  RemDupesController::doubleClickedAction();
  EXPECT_EQ(test.application.commands, std::vector<Command>{command::RevealPlaylist{0xAB}});
  EXPECT_EQ(test.log.lines().back(), "(null)");
}

}  // namespace
}  // namespace kestrel
