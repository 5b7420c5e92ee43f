// What the windows that change playlists have in common, and the one that replaces.

#include <QSet>
#include <latch>

#include "tests/app/playlist_windows_world.h"
#include "tests/app/window_tests.h"
#include "ui/models/styled_text.h"
#include "ui/qt/bindings.h"

namespace kestrel::testing {

class PlaylistWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void sayWhyTheyShowNothing() {
    WindowWorld world({playlist("Kept", 0xA1, {2, 4, 7})});
    for (const auto& [command, state] : {std::pair(&world.replaylist, "State of the survey"),
                                         std::pair(&world.commands.cleanUp, "State of the scan")}) {
      QDialog* window = world.open(*command);
      QCOMPARE(told(window, state), "No results.");
      for (const char* title : {"Replace Entries", "Delete Repeats"})
        if (QAbstractButton* acts = button(window, title)) QVERIFY(!acts->isEnabled());
      world.press(window, "Cancel");
    }
    // To the scans a library that cannot be read has no playlists; users are told the reason.
    std::filesystem::remove(world.path);
    for (const auto* command : {&world.replaylist, &world.commands.cleanUp}) {
      auto* alert = world.open<QMessageBox>(*command);
      QVERIFY(alert);
      QCOMPARE(alert->text(), "The playlists could not be looked through.");
      QVERIFY(alert->informativeText().contains("Library.xml"));
      world.press(alert, "OK");
      QTRY_VERIFY(!WindowWorld::dialog());
    }
  }

  void nameAllTheyHoldTakeKeysAndMayCloseAtAnyTime() {
    WindowWorld world;
    for (const auto* command : {&world.replaylist, &world.commands.cleanUp, &world.trash,
                                &world.remove, &world.commands.history}) {
      QDialog* window = world.open(*command);
      QCOMPARE(nameless(window), QStringList());
      QStringList titles;
      for (auto* titled : window->findChildren<QAbstractButton*>())
        if (titled->isVisible()) titles << titled->text();
      QCOMPARE(sameMnemonics(titles), QStringList());
      QSet<QWidget*> reached;
      for (QWidget* at = window->nextInFocusChain(); !reached.contains(at);
           at = at->nextInFocusChain())
        reached << at;
      for (auto* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
        QVERIFY(reached.contains(widget));
        if (auto* pushed = qobject_cast<QPushButton*>(widget))
          QVERIFY2(pushed->text().contains('&'), qPrintable(pushed->text()));
      }
      window->close();
      QVERIFY(world.becomesIdle());
      (*command)();
      QTRY_VERIFY(WindowWorld::dialog());
      QTest::keyClick(WindowWorld::dialog(), Qt::Key_Escape);
      QVERIFY(world.becomesIdle());
      QVERIFY(!WindowWorld::dialog());
    }
  }

  void showsReplacesAndTakesBack() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    // The file of the track in "Missing" is gone, its keeper's is there: all the more to replace.
    QCOMPARE(rows(outline), (QStringList{"+Folder||", "+⚠ Inner|2|1", "+Twin|2|1", "+Mix|4|3",
                                         "+Twin|1|1", "+Missing|1|1"}));
    outline->setCurrentItem(item(outline, "Mix"));
    QCOMPARE(listed(window, "Entries to be replaced").value(1),
             "+3|Two — Band\nMPEG audio file\n…/Media/3.mp3|"
             "Two — Band\nMPEG audio file\n…/Media/4.mp3|Most Played: 9 over 1 plays");

    for (const char* name : {"Mix", "Folder", "Twin", "Missing"}) uncheck(outline, name);
    QTRY_VERIFY(button(window, "Replace Entries") &&
                !button(window, "Replace Entries")->isEnabled());
    item(outline, "Mix")->setCheckState(0, Qt::Checked);
    QTRY_VERIFY(button(window, "Replace 3 Entries"));
    world.press(window, "Replace 3 Entries");
    QStringList after = world.before;
    QCOMPARE(world.onDisk(), after.replaceInStrings("Mix: 1 7 3 1", "Mix: 2 7 4 2"));
    const QString out = "|– Left out|you left it out";
    QCOMPARE(listed(window, "What was done"),
             (QStringList{"Inner" + out, "Twin" + out, "Twin" + out, "Missing" + out,
                          "Mix|✓ 3 entries changed|"}));
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
    world.press(window, "Close");
    QVERIFY(!WindowWorld::dialog());
  }

  void whatIsDeletedIsCalledSo() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    world.press(window, "Drop the Repeat");
    auto* outline = named<QTreeWidget>(window, affected);
    outline->setCurrentItem(item(outline, "Inner"));
    QCOMPARE(told(window, "Selected playlist"), "“Inner”: 0 of 2 entries replaced, 1 deleted");
    world.press(window, "Replace 5 and Delete 2 Entries");
    QVERIFY(world.onDisk().contains("Folder/Inner: 4"));
    QVERIFY(listed(window, "What was done").contains("Inner|✓ 0 replaced, 1 deleted|"));
    QCOMPARE(toQt(world.delegate.lastRun()->summary),
             "Replaced 5 entries and deleted 2 repeats in 5 playlists.");
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
  }

  void listsInFoldersWithinFoldersAreRepairedToo() {
    WindowWorld world({folder("Outer", 0xF0), folder("Deep", 0xF1).in(0xF0),
                       playlist("Far", 0xA1, {1, 7}).in(0xF1), playlist("Near", 0xA2, {3})});
    world.scope = {{}, {world.groupOf(1)}, true};
    QDialog* window = world.open(world.replaylist);
    QCOMPARE(listed(window, affected), (QStringList{"+Outer||", "+Deep||", "+Far|2|1"}));
    QVERIFY(!named<QLabel>(window, "Warnings and what is left out")->isVisible());
    world.press(window, "Replace 1 Entry");
    QVERIFY(world.onDisk().contains("Deep/Far: 2 7"));
  }

  void groupsWithTwoKeepersAreLeftOutAndListed() {
    WindowWorld world;
    const auto members = world.delegate.groups().members(world.groupOf(1));
    QVERIFY(world.delegate.setTicks(members, true));
    QDialog* window = world.open(world.replaylist);
    QVERIFY(!qobject_cast<QMessageBox*>(window));
    QCOMPARE(listed(window, affected),
             (QStringList{"+Folder||", "+⚠ Inner|2|1", "+Twin|2|1", "+Mix|4|1", "+Missing|1|1"}));
    QVERIFY(told(window, "Warnings and what is left out").contains("Left out: “One”."));
  }

  void takesWhatIsChosenWhole() {
    WindowWorld world;
    // What is selected in the tables does not matter by itself.
    world.process.textSorter.window.bigArrayController.setSelection(std::vector<std::size_t>{0});
    world.scope = {std::vector{world.groupOf(5)}, {world.groupOf(1)}, true};
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    QCOMPARE(rows(outline), (QStringList{"+Mix|4|2", "+Twin|1|1"}));
    world.press(window, "The shown group");
    QCOMPARE(rows(outline), QStringList("+Missing|1|1"));
    world.press(window, "All 3 groups");
    QCOMPARE(rows(outline).size(), 6);
    world.press(window, "Cancel");
    world.scope.takeSelected = false;
    window = world.open(world.replaylist);
    QVERIFY2(button(window, "All 3 groups")->isChecked(), "a filter is a way to look at them");
    world.press(window, "The selected group");
    world.press(window, "Cancel");
    // A choice that finds nothing leaves nothing of the one before.
    world.scope = {{}, {-1}, false};
    window = world.open(world.replaylist);
    world.press(window, "The selected group");
    QCOMPARE(listed(window, affected), QStringList());
    QVERIFY(!button(window, "Replace Entries")->isEnabled());
  }

  void theLastChoiceOfGroupsCounts() {
    WindowWorld world;
    world.scope = {{}, {world.groupOf(1)}, false};
    for (const auto* command : {&world.replaylist, &world.remove}) {
      QDialog* window = world.open(*command);
      // Both are asked for before the first one is answered.
      std::latch held(1);
      world.worker.post([&held] { held.wait(); });
      for (const char* choice : {"The selected group", "All 3 groups", "The selected group"})
        QTest::mouseClick(button(window, choice), Qt::LeftButton);
      QTest::qWait(20);
      const char* acts = command == &world.remove ? "Remove 1 Copy" : "Replace 3 Entries";
      QVERIFY(!button(window, acts));
      held.count_down();
      QVERIFY(world.becomesIdle());
      QVERIFY2(button(window, acts) && button(window, acts)->isEnabled(), acts);
      world.press(window, "Cancel");
    }
  }

  void looksAgainWhenTheLibraryChanged() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    for (const char* name : {"Twin", "Folder"}) uncheck(outline, name);
    world.disk.write("Library.xml", TemporaryFolder::read(world.path) + "\n");
    QTRY_VERIFY(button(window, "Replace 4 Entries"));
    world.press(window, "Replace 4 Entries");
    auto* alert = WindowWorld::dialog<QMessageBox>();
    QVERIFY(alert && alert->text() == "Nothing was changed.");
    QVERIFY(!alert->informativeText().isEmpty());
    world.press(alert, "OK");
    QCOMPARE(world.onDisk(), world.before);
    for (const char* name : {"Twin", "Folder"}) uncheck(outline, name);
    QTRY_VERIFY(button(window, "Replace 4 Entries") &&
                button(window, "Replace 4 Entries")->isEnabled());
    world.press(window, "Replace 4 Entries");
    QVERIFY(world.onDisk().contains("Mix: 2 7 4 2"));
  }

  void foldersAreCheckedWithWhatTheyHold() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    const auto chosen = [&] { return told(window, "What is chosen"); };
    QVERIFY(chosen().startsWith("5 of 5 playlists chosen"));
    outline->setFocus();
    outline->setCurrentItem(item(outline, "Folder"));
    QTest::keyClick(outline, Qt::Key_Space);
    QTRY_VERIFY(chosen().startsWith("3 of 5 playlists chosen"));
    item(outline, "Inner")->setCheckState(0, Qt::Checked);
    QCOMPARE(item(outline, "Folder")->checkState(0), Qt::PartiallyChecked);
    QTRY_VERIFY(chosen().startsWith("4 of 5 playlists chosen"));
    world.press(window, "Check None");
    QTRY_VERIFY(chosen().startsWith("0 of 5 playlists chosen"));
    QVERIFY(!button(window, "Replace Entries")->isEnabled());
    world.press(window, "Check All");
    QTRY_VERIFY(button(window, "Replace 7 Entries"));
    // What is highlighted is told more about, and not what is taken.
    outline->setCurrentItem(item(outline, "Folder"));
    QCOMPARE(told(window, "Selected playlist"), "Select one playlist to see what changes in it.");
    world.press(window, "Show Playlist");
    world.worker.waitUntilIdle();
    QCOMPARE(world.revealer.shown, QStringList("F0"));
  }

  void tracksPanelRevealsByItsHalves() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    outline->setCurrentItem(item(outline, "Inner"));
    world.press(window, "Show Tracks");
    QVERIFY(button(window, "Hide Tracks"));
    auto* pairs = named<QTableView>(window, "Non-keepers and their keepers");
    QVERIFY(pairs->isVisible());
    QCOMPARE(rows(pairs), QStringList("Two - 0:00, Plays: 1|Two - 0:00, Plays: 9"));
    const auto click = [&](int x) { return QPoint(x, pairs->rowViewportPosition(0) + 5); };
    QTest::mouseClick(pairs->viewport(), Qt::LeftButton, {}, click(5));
    QTest::mouseDClick(pairs->viewport(), Qt::LeftButton, {}, click(5) + QPoint(0, 400));
    QVERIFY(world.becomesIdle());
    QVERIFY2(world.revealer.shown.isEmpty(), "a single click does nothing, nor one below the rows");
    const int width = pairs->viewport()->width();
    for (const int x : {(width - 1) / 2, (width + 1) / 2}) {  // the middle is the keeper's
      QTest::mouseDClick(pairs->viewport(), Qt::LeftButton, {}, click(x));
      QVERIFY(world.becomesIdle());
    }
    // The non-keeper is shown in its playlist, by the outline too.
    QCOMPARE(world.revealer.shown, (QStringList{"A2", "3.mp3", "4.mp3"}));
    // The same from the keyboard.
    pairs->setCurrentIndex(pairs->model()->index(0, 0));
    QTest::keyClick(pairs, Qt::Key_Return, Qt::ShiftModifier);
    QVERIFY(world.becomesIdle());
    QCOMPARE(world.revealer.shown.mid(3), QStringList("4.mp3"));
    // Where there is no file, the reason is said.
    outline->setCurrentItem(item(outline, "Missing"));
    QTest::mouseDClick(pairs->viewport(), Qt::LeftButton, {}, click(5));
    QVERIFY(world.becomesIdle());
    auto* alert = WindowWorld::dialog<QMessageBox>();
    QVERIFY(alert && alert->informativeText().contains("missing"));
    QVERIFY(world.revealer.shown.contains("A5"));
    world.press(alert, "OK");
    outline->setCurrentItem(item(outline, "Inner"));

    // The log tells of each cell that comes into sight.
    const auto told = [&] {
      pairs->grab();
      const auto lines = world.log.lines();
      return std::count(lines.begin(), lines.end(), "COLUMN");
    };
    const auto before = told();
    QCOMPARE(told(), before);
    outline->setCurrentItem(item(outline, "Mix"));
    QVERIFY(world.becomesIdle());
    const auto cells = pairs->model()->rowCount() * 2;
    QVERIFY(cells > 2);
    QCOMPARE(told(), before + cells);
  }

  void styledTextsBecomeMarkup() {
    StyledText text{"a<b>\rü😀 bold end", {}};
    text.makeBold(9, 4);
    QCOMPARE(htmlOf(text), "a&lt;b&gt;<br>ü😀 <span style=\"font-weight:bold;\">bold</span> end");
    text.centre();
    QVERIFY(htmlOf(text).startsWith("<div align=\"center\">"));
  }
};
const WindowTest<PlaylistWindowsTest> playlistWindows("playlist_windows");

}  // namespace kestrel::testing

#include "playlist_windows_test.moc"
