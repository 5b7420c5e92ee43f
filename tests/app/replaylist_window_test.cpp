#include "app/replaylist_window.h"

#include <numeric>

#include "models/styled_text.h"
#include "tests/app/playlist_windows_world.h"
#include "ui/qt/styled_label.h"

namespace kestrel::testing {

constexpr const char* affected = "Playlists that hold tracks that are not kept";

class ReplaylistWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void showsReplacesAndTakesBack() {
    WindowWorld world;
    QDialog* window = world.open(world.commands.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    // "Missing" has nothing to replace: the survey leaves groups with missing files out.
    QCOMPARE(rows(outline),
             (QStringList{"+Folder||", "+⚠ Inner|2|1", "+⚠ Twin|2|1", "+Mix|4|3", "+⚠ Twin|1|1"}));
    outline->setCurrentItem(item(outline, "Mix"));
    QCOMPARE(rows(named<QTableView>(window, "Entries to be replaced")).value(1),
             QStringLiteral("3|Two — Band\nMPEG audio file|Two — Band\nMPEG audio file|"
                            "Most Played: 9 over 1 plays"));
    QVERIFY(named<QLabel>(window, "Warnings and what is left out")
                ->text()
                .contains("1 group is left out, because a file of the group is missing."));

    for (const char* name : {"Mix", "Folder", "Twin"}) uncheck(outline, name);
    QTRY_VERIFY(!button(window, "OK")->isEnabled());
    item(outline, "Mix")->setCheckState(0, Qt::Checked);
    QTRY_VERIFY(button(window, "OK")->isEnabled());
    world.press(window, "OK");
    QStringList after = world.before;
    QCOMPARE(world.onDisk(), after.replaceInStrings("Mix: 1 7 3 1", "Mix: 2 7 4 2"));
    QCOMPARE(rows(named<QTreeWidget>(window, "What was done")),
             QStringList("Mix|✓ Done, entries changed: 3|"));
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
    world.press(window, "Close");
    QVERIFY(!WindowWorld::dialog());
  }

  void asksAboutNamesakes() {
    const QStringList leftOut{"Folder/Inner: 4 4", "Folder/Twin: 3 7", "Folder:",
                              "Missing: 5",        "Mix: 2 7 4 2",     "Twin: 1"};
    // Each of the two deletes the other, unless it has gone by then: one is left.
    const QStringList oneLeft{"Folder/Inner: 4 4", "Folder:", "Missing: 5", "Mix: 2 7 4 2",
                              "Twin: 2"};
    for (const auto& [answer, expected] :
         {std::pair("Leave Them Out", leftOut), {"Cancel", {}}, {"Replace and Delete", oneLeft}}) {
      WindowWorld world;
      QDialog* window = world.open(world.commands.replaylist);
      world.press(window, "OK");
      auto* question = WindowWorld::dialog<QMessageBox>();
      QVERIFY(question);
      QVERIFY(
          question->informativeText().contains("Replacing “Folder / Twin” would delete: Twin."));
      QCOMPARE(question->defaultButton()->text(), QStringLiteral("Leave Them Out"));
      world.press(question, answer);
      QCOMPARE(world.onDisk(), expected.isEmpty() ? world.before : expected);
      if (!button(window, "Undo")) continue;
      world.press(window, "Undo");
      QCOMPARE(world.onDisk(), world.before);
    }
  }

  void refusesTwoKeepers() {
    WindowWorld world;
    std::vector<std::uint32_t> all(world.process.textSorter.window.bigArrayController.size());
    std::iota(all.begin(), all.end(), 0U);
    QVERIFY(world.delegate.setTicks(all, true));
    auto* alert = world.open<QMessageBox>(world.commands.replaylist);
    QVERIFY(alert);
    QCOMPARE(alert->text(),
             QStringLiteral("One or more Dupe Groups contain more than one Keeper track."));
    QCOMPARE(alert->informativeText(),
             QStringLiteral("Make sure only one track per Dupe Group is designated as a Keeper."));
    world.press(alert, "OK");
    QTRY_VERIFY(!WindowWorld::dialog());
  }

  void takesTheSelectionOrAll() {
    WindowWorld world;
    auto& table = world.process.textSorter.window.bigArrayController;
    const std::vector<std::size_t> onlyOne = {0, 1};
    table.setSelection(onlyOne);
    QDialog* window = world.open(world.commands.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    const qsizetype selected = rows(outline).size();
    QVERIFY(named<QLabel>(window, "Tracks that take part")->text().contains("2 of its 6"));
    world.press(window, "Take All Tracks");
    QVERIFY2(rows(outline).size() > selected, qPrintable(rows(outline).join('\n')));
    QCOMPARE(table.selection(), onlyOne);
  }

  void looksAgainWhenTheLibraryChanged() {
    WindowWorld world;
    QDialog* window = world.open(world.commands.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    for (const char* name : {"Twin", "Folder"}) uncheck(outline, name);
    world.disk.write("Library.xml", TemporaryFolder::read(world.path) + "\n");
    world.press(window, "OK");
    auto* alert = WindowWorld::dialog<QMessageBox>();
    QVERIFY(alert && alert->text() == QStringLiteral("Nothing was changed."));
    QVERIFY(!alert->informativeText().isEmpty());
    world.press(alert, "OK");
    QCOMPARE(world.onDisk(), world.before);
    for (const char* name : {"Twin", "Folder"}) uncheck(outline, name);
    QTRY_VERIFY(button(window, "OK")->isEnabled());
    world.press(window, "OK");
    QVERIFY(world.onDisk().contains("Mix: 2 7 4 2"));
  }

  void foldersAreCheckedWithWhatTheyHold() {
    WindowWorld world;
    QDialog* window = world.open(world.commands.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    const auto chosen = [&] { return named<QLabel>(window, "What is chosen")->text(); };
    QVERIFY(chosen().startsWith("4 of 4 playlists chosen"));
    outline->setFocus();
    outline->setCurrentItem(item(outline, "Folder"));
    QTest::keyClick(outline, Qt::Key_Space);
    QTRY_VERIFY(chosen().startsWith("2 of 4 playlists chosen"));
    item(outline, "Inner")->setCheckState(0, Qt::Checked);
    QCOMPARE(item(outline, "Folder")->checkState(0), Qt::PartiallyChecked);
    QTRY_VERIFY(chosen().startsWith("3 of 4 playlists chosen"));
    world.press(window, "Check None");
    QTRY_VERIFY(chosen().startsWith("0 of 4 playlists chosen"));
    QVERIFY(!button(window, "OK")->isEnabled());
    world.press(window, "Check All");
    QTRY_VERIFY(chosen().startsWith("4 of 4 playlists chosen; entries to be replaced: 6"));
    // What is highlighted is told more about, and not what is taken.
    outline->setCurrentItem(item(outline, "Folder"));
    QCOMPARE(named<QLabel>(window, "Selected playlist")->text(),
             QStringLiteral("Select one playlist to see what changes in it."));
    world.press(window, "Reveal");
    world.worker.waitUntilIdle();
    QCOMPARE(world.revealer.shown, QStringList("F0"));
  }

  void tracksPanelRevealsByItsHalves() {
    WindowWorld world;
    QDialog* window = world.open(world.commands.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    outline->setCurrentItem(item(outline, "Inner"));
    world.press(window, "Show Tracks");
    QVERIFY(button(window, "Hide Tracks"));
    auto* pairs = named<QTableView>(window, "Non-keepers and their keepers");
    QVERIFY(pairs->isVisible());
    QCOMPARE(rows(pairs), QStringList("Two - 0:00, Plays: 1|Two - 0:00, Plays: 9"));
    const auto click = [&](int x) { return QPoint(x, pairs->rowViewportPosition(0) + 5); };
    QTest::mouseClick(pairs->viewport(), Qt::LeftButton, {}, click(5));
    QVERIFY(world.becomesIdle());
    QVERIFY2(world.revealer.shown.isEmpty(), "a single click does nothing");
    const int width = pairs->viewport()->width();
    for (const int x : {(width - 1) / 2, (width + 1) / 2}) {  // the middle is the keeper's
      QTest::mouseDClick(pairs->viewport(), Qt::LeftButton, {}, click(x));
      QVERIFY(world.becomesIdle());
    }
    QCOMPARE(world.revealer.shown, (QStringList{"3.mp3", "4.mp3"}));
    // The same from the keyboard.
    pairs->setCurrentIndex(pairs->model()->index(0, 0));
    QTest::keyClick(pairs, Qt::Key_Return, Qt::ShiftModifier);
    QVERIFY(world.becomesIdle());
    QCOMPARE(world.revealer.shown.mid(2), QStringList("4.mp3"));

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
    QCOMPARE(htmlOf(text),
             QStringLiteral("a&lt;b&gt;<br>ü😀 <span style=\"font-weight:bold;\">bold</span> end"));
    text.centre();
    QVERIFY(htmlOf(text).startsWith("<div align=\"center\">"));
  }
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::ReplaylistWindowTest)
#include "replaylist_window_test.moc"
