
#include "tests/app/playlist_windows_world.h"
#include "ui/models/styled_text.h"
#include "ui/qt/bindings.h"

namespace kestrel::testing {

constexpr const char* affected = "Playlists that hold tracks that are not kept";

class ReplaylistWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void showsReplacesAndTakesBack() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    // The file of the track in "Missing" is gone, its keeper's is there: all the more to replace.
    QCOMPARE(rows(outline), (QStringList{"+Folder||", "+⚠ Inner|2|1", "+Twin|2|1", "+Mix|4|3",
                                         "+Twin|1|1", "+Missing|1|1"}));
    outline->setCurrentItem(item(outline, "Mix"));
    QCOMPARE(rows(named<QTableView>(window, "Entries to be replaced")).value(1),
             QStringLiteral("3|Two — Band\nMPEG audio file|Two — Band\nMPEG audio file|"
                            "Most Played: 9 over 1 plays"));

    for (const char* name : {"Mix", "Folder", "Twin", "Missing"}) uncheck(outline, name);
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

  void replacesInBothOfTwoNamesakes() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
    world.press(window, "OK");
    QVERIFY(!WindowWorld::dialog<QMessageBox>());
    QCOMPARE(world.onDisk(), QStringList({"Folder/Inner: 4 4", "Folder/Twin: 4 7",
                                          "Folder:", "Missing: 6", "Mix: 2 7 4 2", "Twin: 2"}));
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
  }

  void groupsWithTwoKeepersAreLeftOutAndListed() {
    WindowWorld world;
    const auto members = world.delegate.groups().members(world.groupOf(1));
    QVERIFY(world.delegate.setTicks(members, true));
    QDialog* window = world.open(world.replaylist);
    QVERIFY(!qobject_cast<QMessageBox*>(window));
    QCOMPARE(rows(named<QTreeWidget>(window, affected)),
             (QStringList{"+Folder||", "+⚠ Inner|2|1", "+Twin|2|1", "+Mix|4|1", "+Missing|1|1"}));
    const QString notes = named<QLabel>(window, "Warnings and what is left out")->text();
    QVERIFY2(notes.contains("1 group is left out, because more than one track of the group is "
                            "kept. Left out: \"One\"."),
             qPrintable(notes));
  }

  void takesWhatIsChosenWhole() {
    WindowWorld world;
    // What is selected in the tables does not matter by itself.
    world.process.textSorter.window.bigArrayController.setSelection(std::vector<std::size_t>{0});
    world.scope = {std::vector{world.groupOf(5)}, {world.groupOf(1)}, true};
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    QCOMPARE(rows(outline), (QStringList{"+Mix|4|2", "+Twin|1|1"}));
    world.press(window, "Those the filter shows (1)");
    QCOMPARE(rows(outline), QStringList("+Missing|1|1"));
    world.press(window, "All groups (3)");
    QCOMPARE(rows(outline).size(), 6);
    world.press(window, "Cancel");
    world.scope.takeSelected = false;
    window = world.open(world.replaylist);
    QVERIFY(button(window, "Those the filter shows (1)")->isChecked());
    world.press(window, "The selected ones (1)");
    world.press(window, "Cancel");
    // A choice that finds nothing leaves nothing of the one before.
    world.scope = {{}, {-1}, false};
    window = world.open(world.replaylist);
    world.press(window, "The selected ones (1)");
    QCOMPARE(rows(named<QTreeWidget>(window, affected)), QStringList());
    QVERIFY(!button(window, "OK")->isEnabled());
  }

  void looksAgainWhenTheLibraryChanged() {
    WindowWorld world;
    QDialog* window = world.open(world.replaylist);
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
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    const auto chosen = [&] { return named<QLabel>(window, "What is chosen")->text(); };
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
    QVERIFY(!button(window, "OK")->isEnabled());
    world.press(window, "Check All");
    QTRY_VERIFY(chosen().startsWith("5 of 5 playlists chosen; entries to be replaced: 7"));
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
    QVERIFY(world.becomesIdle());
    QVERIFY2(world.revealer.shown.isEmpty(), "a single click does nothing");
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
    QCOMPARE(htmlOf(text),
             QStringLiteral("a&lt;b&gt;<br>ü😀 <span style=\"font-weight:bold;\">bold</span> end"));
    text.centre();
    QVERIFY(htmlOf(text).startsWith("<div align=\"center\">"));
  }
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::ReplaylistWindowTest)
#include "replaylist_window_test.moc"
