// The dialogs that move files of copies to the trash, and that take copies out of the library.

#include <QRegularExpression>

#include "app/controller/result_changes.h"
#include "tests/app/playlist_windows_world.h"
#include "tests/app/window_tests.h"
#include "ui/launch.h"
#include "ui/qt/path_text.h"

namespace kestrel::testing {

class RemovalWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theTrashTakesWhatIsNotHeldBack() {
    WindowWorld world;
    const auto there = [&] {
      QString tracks;
      for (int track = 1; track <= 7; ++track)
        if (std::filesystem::exists(world.disk / WindowWorld::fileName(track)))
          tracks += QString::number(track);
      return tracks;
    };
    const auto& table = world.process.textSorter.window.bigArrayController;
    const auto availability = [] {
      return TextSorter::groomedTracksDictionary()->find("1")->availability();
    };
    // Of one group, whole: whichever of its copies is selected.
    world.scope = {{}, {world.groupOf(1)}, true};
    QDialog* window = world.open(world.trash);
    QCOMPARE(told(window, "Question"), "Move 1 file to the trash?");
    world.press(window, "All 3 groups");
    QCOMPARE(told(window, "Question"), "Move 2 files to the trash?");
    world.press(window, "Cancel");
    world.scope = {};

    window = world.open(world.trash);
    QCOMPARE(listed(window, "Copies"),
             (QStringList{"+…/Media/1.mp3\nOne|…/Media/2.mp3|1 KB",
                          "+…/Media/3.mp3\nTwo|…/Media/4.mp3|1 KB",
                          "…/Media/5.mp3\nstays: its file is missing|…/Media/6.mp3|Zero KB"}));
    QCOMPARE(told(window, "Playlists"), "6 entries in 4 playlists still point at these files.");
    world.press(window, "Move 2 Files to the Trash");
    QCOMPARE(there(), "2467");
    // What went there leaves the tables.
    QCOMPARE(table.size(), 2U);
    QCOMPARE(world.delegate.summary().groups, 1U);
    world.press(window, "Close");
    QCOMPARE(availability(), FileAvailability::missing);

    window = world.open(world.commands.history);
    QVERIFY(world.delegate.lastRun());
    world.press(window, "Undo");
    if (QWidget* question = WindowWorld::dialog<QWidget>(); question && question != window)
      world.press(question, "Undo");
    QCOMPARE(there(), "123467");
    QVERIFY(!world.delegate.lastRun());
    world.press(window, "Close");
    QVERIFY(world.becomesIdle());
    QCOMPARE(availability(), FileAvailability::reachable);
    QVERIFY2(table.size() == 6, "the table shows at once what has come back");

    // With the playlists, in one run.
    window = world.open(world.trash);
    world.press(window, "Repair playlists too");
    world.press(window, "Move 2 Files, Repair 6 Entries");
    QCOMPARE(there(), "2467");
    QVERIFY(world.onDisk().contains("Mix: 2 7 4 2"));
    const auto runs = changesOf(*world.delegate.application()).runs();
    QCOMPARE(runs.size(), 3U);
    QCOMPARE(runs[0].playlists + runs[0].files, 6U);
    world.press(window, "Undo");
    QCOMPARE(there(), "123467");
    QCOMPARE(world.onDisk(), world.before);
    world.press(window, "Close");
    window = world.open(world.commands.history);
    QVERIFY(listed(window, "Runs, latest first")
                .value(1)
                .endsWith("Move to trash, repair playlists|↶ Undone"));
  }

  void playlistsAndEntriesCanBeLeftAsTheyAre() {
    WindowWorld world;
    world.scope = {{}, {world.groupOf(3)}, false};
    QDialog* window = world.open(world.remove);
    world.press(window, "Show Entries");
    auto* playlists = named<QTreeWidget>(window, "Playlists that list copies");
    QCOMPARE(rows(playlists), (QStringList{"+Mix|3", "+Folder / Inner|1", "+Twin|1",
                                           "+Folder / Twin|1", "+Missing|1"}));
    // What goes on listing a copy keeps it in the library.
    uncheck(playlists, "Mix");
    QTRY_VERIFY(button(window, "Remove 1 Copy"));
    QCOMPARE(rows(playlists), (QStringList{"-Mix|0 of 3", "+Folder / Inner|0 of 1", "+Twin|0 of 1",
                                           "+Folder / Twin|0 of 1", "+Missing|1"}));
    QVERIFY(listed(window, "Copies").value(0).contains("stays: the playlist “Mix” still lists it"));
    // One entry by itself, by the keyboard.
    item(playlists, "Mix")->setCheckState(0, Qt::Checked);
    QTRY_VERIFY(button(window, "Remove 3 Copies"));
    playlists->setCurrentItem(item(playlists, "Mix"));
    auto* entries = named<QTableView>(window, "Entries that get the kept copy");
    entries->selectRow(1);
    QTest::keyClick(entries, Qt::Key_Space);
    QTRY_VERIFY(button(window, "Remove 2 Copies"));
    QVERIFY(listed(window, "Entries that get the kept copy").value(1).startsWith("-3|"));
    QCOMPARE(entries->currentIndex().row(), 1);
    QCOMPARE(rows(playlists), (QStringList{"+Mix|2 of 3", "+Folder / Inner|0 of 1", "+Twin|1",
                                           "+Folder / Twin|0 of 1", "+Missing|1"}));
    // It stays so whatever else is looked at.
    world.press(window, "The selected group");
    QVERIFY(!button(window, "Remove Copies")->isEnabled());
    world.press(window, "All 3 groups");
    world.press(window, "Remove 2 Copies");
    QStringList after = world.before;
    after.replaceInStrings("Mix: 1 7 3 1", "Mix: 2 7 3 2");
    after.replaceInStrings(QRegularExpression("Twin: 1$"), "Twin: 2");
    QCOMPARE(world.onDisk(), after.replaceInStrings("Missing: 5", "Missing: 6"));
    QVERIFY(std::filesystem::exists(world.disk / WindowWorld::fileName(3)));
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
    world.press(window, "Close");

    world.scope = {};
    window = world.open(world.trash);
    QVERIFY2(!button(window, "Show Entries"), "nothing is done to them");
    world.press(window, "Repair playlists too");
    world.press(window, "Show Entries");
    playlists = named<QTreeWidget>(window, "Playlists that list copies");
    uncheck(playlists, "Inner");
    QTRY_VERIFY(button(window, "Move 1 File, Repair 3 Entries"));
    world.press(window, "Repair playlists too");
    QVERIFY(button(window, "Move 2 Files to the Trash"));
    world.press(window, "Repair playlists too");
    world.press(window, "Move 1 File, Repair 3 Entries");
    QVERIFY(world.onDisk().contains("Mix: 2 7 3 2") &&
            world.onDisk().contains("Folder/Inner: 3 4"));
    QVERIFY(std::filesystem::exists(world.disk / WindowWorld::fileName(3)));
    QVERIFY(!std::filesystem::exists(world.disk / WindowWorld::fileName(1)));
  }

  void whatDoesNotComeBackIsSaid() {
    WindowWorld world;
    QDialog* window = world.open(world.trash);
    world.press(window, "Move 2 Files to the Trash");
    world.press(window, "Close");
    world.disk.write(WindowWorld::fileName(1), "another one");
    window = world.open(world.commands.history);
    world.press(window, "Undo");
    auto* question = WindowWorld::dialog<QMessageBox>();
    QVERIFY(question);
    world.press(question, "Undo the Rest");
    QDialog* sheet = WindowWorld::dialog();
    QVERIFY(sheet && sheet != window);
    QCOMPARE(told(sheet, "Summary"), "1 of 2 changes were undone.");
    const QStringList stays = listed(sheet, "What was not undone");
    QVERIFY(stays.size() == 1 && stays[0].contains("1.mp3|"));
    QVERIFY(!told(sheet, "What to do").isEmpty());
    QCOMPARE(nameless(sheet), QStringList());
    world.press(sheet, "Close");
    QCOMPARE(WindowWorld::dialog(), window);
    QVERIFY(std::filesystem::exists(world.disk / WindowWorld::fileName(3)));
  }

  void removesCopiesWithTheirFilesAndEntries() {
    WindowWorld world;
    QDialog* window = world.open(world.remove);
    QCOMPARE(told(window, "Question"), "Remove 3 copies from the library?");
    QCOMPARE(told(window, "Playlists"),
             "7 entries in 5 playlists get the kept copies. 1 playlist lists one already.");
    auto* copies = named<QTableView>(window, "Copies");
    copies->selectRow(0);
    QTest::keyClick(copies, Qt::Key_Space);
    QTRY_VERIFY(button(window, "Remove 2 Copies"));
    world.press(window, "Drop the Repeat");
    world.press(window, "Remove 2 Copies");
    QStringList after = world.before;
    after.replaceInStrings("Mix: 1 7 3 1", "Mix: 1 7 4 1");
    after.replaceInStrings("Inner: 3 4", "Inner: 4");
    after.replaceInStrings("Twin: 3 7", "Twin: 4 7");
    QCOMPARE(world.onDisk(), after.replaceInStrings("Missing: 5", "Missing: 6"));
    QVERIFY(!std::filesystem::exists(world.disk / WindowWorld::fileName(3)));
    QVERIFY(std::filesystem::exists(world.disk / WindowWorld::fileName(1)));
    // Each copy once: also those that stay, and why.
    QCOMPARE(told(window, "Where the files are").remove(QChar(0x200b)),
             "“…” stands for " + toQt(world.disk / "Media"));
    const QStringList done = listed(window, "What was done");
    QCOMPARE(done.first(), "…/1.mp3|– Left as it was|you left it out");
    QCOMPARE(done.mid(done.size() - 2), (QStringList{"…/3.mp3|✓ Removed, 1 KB to the trash|",
                                                     "…/5.mp3|✓ Removed; its file was missing "
                                                     "already|"}));
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
    QVERIFY(std::filesystem::exists(world.disk / WindowWorld::fileName(3)));
    world.press(window, "Close");
    QVERIFY(world.becomesIdle());
    QCOMPARE(world.delegate.summary().groups, 3U);
  }

  void whatGoesAndIsLostIsSaidBeforehand() {
    WindowWorld world;
    QDialog* window = world.open(world.remove);
    // Of each pair the copy that goes was played once.
    QCOMPARE(told(window, "What is lost"),
             "What goes with them and the kept copies lack: 3 plays.");
    QVERIFY(listed(window, "Copies").value(0).contains("goes with the copy: 1 play"));
    QVERIFY(listed(window, "Copies")
                .join('\n')
                .contains("its file is missing already; only the entry leaves the library"));
    world.press(window, "Check None");
    QTRY_VERIFY(!named<QLabel>(window, "What is lost")->isVisible());
    world.press(window, "Cancel");
    // In the trash no play is lost: the track stays in the library.
    window = world.open(world.trash);
    QVERIFY(!named<QLabel>(window, "What is lost")->isVisible());
  }

  void playlistsOfOtherLibrariesAreNamed() {
    WindowWorld world;
    world.disk.write("home/Music/Other.xml", TemporaryFolder::read(world.path));
    for (const auto* command : {&world.remove, &world.trash}) {
      QDialog* window = world.open(*command);
      const QString lost = told(window, "What is lost");
      QVERIFY2(lost.contains("“Mix” of another library here, Other.xml, lists 3 of these files."),
               qPrintable(lost));
      QVERIFY(!lost.contains("Looking into"));
      world.press(window, "Cancel");
    }
  }

  void vetoesOutliveAnotherChoiceOfGroups() {
    WindowWorld world;
    world.scope = {{}, {world.groupOf(3)}, false};
    QDialog* window = world.open(world.remove);
    auto* copies = named<QTableView>(window, "Copies");
    copies->selectRow(0);
    QTest::keyClick(copies, Qt::Key_Space);
    QTRY_VERIFY(button(window, "Remove 2 Copies"));
    const QStringList chosen = listed(window, "Copies");
    world.press(window, "The selected group");
    QVERIFY(button(window, "Remove 1 Copy"));
    world.press(window, "All 3 groups");
    QCOMPARE(listed(window, "Copies"), chosen);
    QVERIFY(button(window, "Remove 2 Copies"));
    world.press(window, "Cancel");

    window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    uncheck(outline, "Missing");
    outline->setCurrentItem(item(outline, "Mix"));
    auto* entries = named<QTableView>(window, "Entries to be replaced");
    entries->selectRow(1);
    QTest::keyClick(entries, Qt::Key_Space);
    QTRY_VERIFY(button(window, "Replace 5 Entries"));
    world.press(window, "The selected group");
    QCOMPARE(rows(outline),
             (QStringList{"+Folder||", "+⚠ Inner|2|1", "+Twin|2|1", "+Mix|4|0 of 1"}));
    world.press(window, "All 3 groups");
    QVERIFY(button(window, "Replace 5 Entries"));
    QVERIFY(rows(outline).contains("-Missing|1|1"));
    world.press(window, "Replace 5 Entries");
    QStringList after = world.before;
    after.replaceInStrings("Mix: 1 7 3 1", "Mix: 2 7 3 2");
    after.replaceInStrings("Inner: 3 4", "Inner: 4 4");
    after.replaceInStrings("Twin: 3 7", "Twin: 4 7");
    QCOMPARE(world.onDisk(), after.replaceInStrings("Twin: 1", "Twin: 2"));
  }

  void whatIsNotSafeGoesOnlyWhenAskedFor() {
    WindowWorld world;
    world.disk.write("Media/1.mp3", "no sound at all");
    QDialog* window = world.open(world.trash);
    QCOMPARE(listed(window, "Copies").value(1),
             "-…/Media/1.mp3\nstays: it cannot be read as audio|…/Media/2.mp3|15 bytes");
    world.press(window, "Check None");
    world.press(window, "Check All");
    QTRY_VERIFY(button(window, "Move 1 File to the Trash"));
    auto* copies = named<QTableView>(window, "Copies");
    copies->selectAll();
    copies->setCurrentIndex(copies->model()->index(1, 0));
    copies->selectRow(1);
    QTest::keyClick(copies, Qt::Key_Space);
    QTRY_VERIFY(button(window, "Move 2 Files to the Trash"));
    world.press(window, "Move 2 Files to the Trash");
    QVERIFY(!std::filesystem::exists(world.disk / WindowWorld::fileName(1)));
  }

  void pathsAreShownFromWhereTheyDiffer() {
    const struct {
      const char *path, *other, *shown, *differs;
    } cases[] = {{"/m/a/b/1.mp3", "/m/a/b/2.mp3", "…/b/1.mp3", "1.mp3"},
                 {"/m/a/b/1.mp3", "/m/a/c/1.mp3", "…/a/b/1.mp3", "b/1.mp3"},
                 {"/m/a/b", "/m/a/b/2.mp3", "…/a/b", "b"},
                 {"/m/a/x.mp3", "/m/a/x.mp3", "…/a/x.mp3", "x.mp3"},
                 {"/m/x.mp3", "/n/x.mp3", "/m/x.mp3", "m/x.mp3"},
                 {"x.mp3", "/n/x.mp3", "x.mp3", "x.mp3"}};
    for (const auto& [path, other, shown, differs] : cases) {
      QCOMPARE(pathFrom(path, other), QString::fromUtf8(shown));
      QCOMPARE(pathFrom(path, other).mid(differenceIn(path, other)), QLatin1String(differs));
    }
  }
};
const WindowTest<RemovalWindowsTest> removalWindows("removal_windows");

}  // namespace kestrel::testing

#include "removal_windows_test.moc"
