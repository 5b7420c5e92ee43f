// The windows that change a library: cleaning up, replacing, moving and adding files, and the
// history that takes it back.

#include <QSet>
#include <latch>

#include "app/controller/result_changes.h"
#include "app/entry_table.h"
#include "tests/app/playlist_windows_world.h"
#include "tests/app/window_tests.h"
#include "tools/make_library/audio_files.h"
#include "ui/launch.h"
#include "ui/models/styled_text.h"
#include "ui/qt/bindings.h"
#include "ui/qt/confirmation_panel.h"
#include "ui/qt/path_text.h"

namespace kestrel::testing {

constexpr const char* affected = "Playlists that hold tracks that are not kept";

class ChangeWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void deletesWhatIsChecked() {
    WindowWorld world({playlist("Rep", 0xA1, {1, 2, 1, 3, 2, 1}), playlist("Other", 0xA2, {7, 7}),
                       folder("Folder", 0xF0), folder("Deep", 0xF1).in(0xF0),
                       playlist("Hidden", 0xA3, {7, 7}).in(0xF1)});
    QDialog* window = world.open(world.commands.cleanUp);
    auto* outline = named<QTreeWidget>(window, "Playlists that list a track more than once");
    // What is too deep for the outline stands in a section of its own.
    const QStringList deep{"+In folders within folders||", "+Deep / Hidden|2|1"};
    QCOMPARE(rows(outline), (QStringList{"+Rep|6|3", "+Other|2|1"} + deep));
    outline->setCurrentItem(item(outline, "In folders within folders"));
    QVERIFY2(!button(window, "Reveal")->isEnabled(), "it is no folder of the library");
    outline->setCurrentItem(item(outline, "Rep"));
    QCOMPARE(
        listed(window, "Entries to be deleted"),
        (QStringList{"+3|One — Band\nMPEG audio file\n…/Media/1.mp3|The same track at 1 stays",
                     "+5|One — Band\nMPEG audio file\n…/Media/2.mp3|The same track at 2 stays",
                     "+6|One — Band\nMPEG audio file\n…/Media/1.mp3|The same track at 1 stays"}));
    // An entry can be left out by itself.
    auto* entries = named<QTableView>(window, "Entries to be deleted");
    entries->selectRow(1);
    QTest::keyClick(entries, Qt::Key_Space);
    QCOMPARE(rows(outline), (QStringList{"+Rep|6|2 of 3", "+Other|2|1"} + deep));
    QVERIFY(button(window, "Delete 4 Repeats"));
    uncheck(outline, "Other");
    QTRY_VERIFY(button(window, "Delete 3 Repeats"));
    world.press(window, "Delete 3 Repeats");
    QVERIFY(world.onDisk().contains("Rep: 1 2 3 2"));
    QVERIFY(world.onDisk().contains("Deep/Hidden: 7"));
    QVERIFY2(world.onDisk().contains("Other: 7 7"), "not checked");
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
  }

  void stopsBeforeTheNextPlaylist() {
    WindowWorld world({playlist("A", 0xA1, {1, 1}), playlist("B", 0xA2, {3, 3})});
    QDialog* window = world.open(world.commands.cleanUp);
    std::latch held(1);
    world.worker.post([&held] { held.wait(); });
    QTest::mouseClick(button(window, "Delete 2 Repeats"), Qt::LeftButton);
    QVERIFY2(!button(window, "Delete 2 Repeats"), "the decision is made");
    // Escape asks to stop, as the button does, and leaves the window to tell what was done.
    QTest::keyClick(window, Qt::Key_Escape);
    const bool isStopping = !button(window, "Stop")->isEnabled();
    held.count_down();
    QVERIFY(world.becomesIdle());
    QVERIFY(isStopping && window->isVisible());
    QCOMPARE(world.onDisk(), world.before);
    QCOMPARE(listed(window, "What was done"),
             (QStringList{"A|– Stopped before it|", "B|– Stopped before it|"}));
    QVERIFY(!button(window, "Undo"));
  }

  void putsUnreadableHistoriesAsideOnRequest() {
    WindowWorld world({playlist("A", 0xA1, {1, 1})});
    const std::string file = world.disk.write("data/Kestrel/history.sqlite", "no database at all");
    QDialog* window = world.open(world.commands.cleanUp);
    world.press(window, "Delete 1 Repeat");
    auto* question = WindowWorld::dialog<QMessageBox>();
    QVERIFY(question && question->informativeText().contains(toQt(file)));
    QCOMPARE(world.onDisk(), world.before);
    world.press(question, "Put It Aside and Begin Anew");
    QTRY_VERIFY(button(window, "Delete 1 Repeat") &&
                button(window, "Delete 1 Repeat")->isEnabled());
    world.press(window, "Delete 1 Repeat");
    QCOMPARE(world.onDisk(), QStringList("A: 1"));
  }

  void undoesOnePlaylistAndAsksAboutDifferences() {
    WindowWorld world(
        {playlist("A", 0xA1, {1, 1}), playlist("B", 0xA2, {3, 3}), playlist("C", 0xA3, {7, 7})});
    QDialog* window = world.open(world.commands.history);
    QCOMPARE(told(window, "Selected run"), "Nothing has been changed in this library yet.");
    world.press(window, "Close");
    window = world.open(world.commands.cleanUp);
    world.press(window, "Delete 3 Repeats");
    world.press(window, "Close");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1", "B: 3", "C: 7"}));

    window = world.open(world.commands.history);
    auto* changes = named<QTreeWidget>(window, "What the run changed");
    QCOMPARE(rows(changes),
             (QStringList{"A|As the run left it", "B|As the run left it", "C|As the run left it"}));
    QCOMPARE(listed(window, "Entries before and after"),
             QStringList("2|One — Band\nMPEG audio file\n…/Media/1.mp3|(deleted)"));
    world.press(window, "Undo This Playlist");
    world.press(WindowWorld::dialog<ConfirmationPanel>(), "Cancel");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1", "B: 3", "C: 7"}));
    world.press(window, "Undo This Playlist");
    world.press(WindowWorld::dialog<ConfirmationPanel>(), "Take Back");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1 1", "B: 3", "C: 7"}));
    auto* runs = named<QTreeWidget>(window, "Runs, latest first");
    QCOMPARE(rows(runs).size(), 2);

    // Another program works on B; the rest can still be taken back.
    std::string changed = TemporaryFolder::read(world.path);
    changed.replace(changed.find("<string>B</string>"), 18, "<string>Bee</string>");
    world.disk.write("Library.xml", changed);
    for (const int row : {0, 1}) runs->setCurrentItem(runs->topLevelItem(row));
    QVERIFY(world.becomesIdle());
    QCOMPARE(rows(changes),
             (QStringList{"A|Taken back", "B|⚠ Changed since: it is now called \"Bee\"",
                          "C|As the run left it"}));
    world.press(window, "Undo Run");
    auto* question = WindowWorld::dialog<QMessageBox>();
    QVERIFY(question && question->informativeText().contains("“B”: it is now called \"Bee\"."));
    QCOMPARE(world.onDisk(), (QStringList{"A: 1 1", "Bee: 3", "C: 7"}));
    world.press(question, "Take Back the Rest");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1 1", "Bee: 3", "C: 7 7"}));
  }

  void additionsToAPlaylistAreInTheHistory() {
    WindowWorld world({playlist("P", 0xA1, {1})});
    world.delegate.fillTargetMenu();
    world.delegate.targetPlaylistChosen();
    QCOMPARE(world.preferences.textArray(settings::copyToPlaylist),
             (std::vector<std::string>{"161", ""}));
    std::size_t added = 0;
    const auto add = [&](std::vector<std::uint32_t> rows) {
      added = 0;
      return world.delegate.addToTargetPlaylist(rows, [&](std::size_t count) { added = count; }) &&
             world.becomesIdle();
    };
    QVERIFY(add({0, 1}));
    QCOMPARE(added, 2U);
    QCOMPARE(world.onDisk(), QStringList("P: 1 1 2"));
    const auto lines = world.log.lines();
    QCOMPARE(std::count(lines.begin(), lines.end(), "--> LIBRARY UPDATED"), 1);
    QVERIFY2(world.clock.now() == Moment(), "a document that is written is not waited for");
    const auto runs = changesOf(*world.delegate.application()).runs();
    QCOMPARE(runs.size(), 1U);
    QCOMPARE(runs[0].kind, RunKind::addToPlaylist);

    world.disk.write("Library.xml", TemporaryFolder::read(world.path) + "\n");
    QVERIFY(add({0}));
    QCOMPARE(added, 0U);
    QCOMPARE(world.onDisk(), QStringList("P: 1 1 2"));
    const auto& alert = world.delegate.alerts.alert();
    QVERIFY(alert && toQt(alert->informativeText).contains("Library.xml"));
  }

  void brokenOffRunsAreShownAsSuch() {
    WindowWorld world({playlist("A", 0xA1, {1, 1})});
    world.press(world.open(world.commands.history), "Close");  // makes the history
    const LibraryIdentity library = world.delegate.application()->library().identity();
    const int ended = inChild([&] {
      History history(world.disk / "data/Kestrel/history.sqlite", world.clock);
      std::vector<PlaylistChange> changes(1);
      changes[0].name = "A";
      changes[0].oldPlaylist = 0xA1;
      changes[0].oldEntries = {1, 1};
      changes[0].newEntries = {1};
      history.begin(RunKind::cleanUp, library, {changes, {}, {}});
    });
    QCOMPARE(ended, 0);
    QDialog* window = world.open(world.commands.history);
    QVERIFY(
        listed(window, "Runs, latest first").value(0).endsWith("Clean up playlists|⚠ Broke off"));
    QVERIFY(told(window, "Selected run").contains("ended in the middle of it"));
    QCOMPARE(listed(window, "What the run changed"), QStringList("A|Not changed by the run"));
    QVERIFY(!button(window, "Undo Run")->isEnabled());
  }

  void entriesAreComparedByWhatChanged() {
    const struct {
      const char *before, *after, *expected;  // "=" as it was, ">" replaced, "-" deleted, "+" added
    } cases[] = {{"123", "143", "1=1 2>4 3=3"},
                 {"121312", "123", "1=1 2=2 1-0 3=3 1-0 2-0"},
                 {"12", "1212", "1=1 2=2 0+1 0+2"},
                 {"12", "345", "1>3 2>4 0+5"},
                 {"11", "", "1-0 1-0"}};
    const auto ids = [](const std::string& digits) {
      std::vector<std::uint64_t> list;
      for (const char digit : digits) list.push_back(static_cast<std::uint64_t>(digit - '0'));
      return list;
    };
    for (const auto& [before, after, expected] : cases) {
      QStringList texts;
      for (const EntryRow& row : comparedRows(ids(before), ids(after)))
        texts << QString::number(row.before) + "=>-+"[static_cast<int>(row.change)] +
                     QString::number(row.after);
      QCOMPARE(texts.join(' '), QLatin1String(expected));
    }
  }

  void addingTellsOfEachFileAndTakesBack() {
    WindowWorld world;
    const auto known = [] { return TextSorter::groomedTracksDictionary()->size(); };
    const auto audio = [&](const char* name) {
      return world.disk.write(name, make_library::makeAudio("mp3", 500, 32, 440).bytes);
    };
    QDialog* window = world.open(
        world.commands.addFiles,
        {audio("new.mp3"), world.disk / "none.mp3", world.disk.write("text.mp3", "text")});
    const QStringList done = listed(window, "What was done");
    QCOMPARE(done.size(), 3);
    // What was not done comes first.
    QVERIFY2(done[0].contains("none.mp3|– Left as it was|there is no such file"),
             qPrintable(done[0]));
    QVERIFY2(done[1].contains("text.mp3|✗ Failed"), qPrintable(done[1]));
    QVERIFY2(done[2].contains("new.mp3|✓ Added"), qPrintable(done[2]));
    QCOMPARE(known(), 7U);
    world.press(window, "Close");
    QCOMPARE(known(), 8U);

    window = world.open(world.commands.addFiles, {audio("other.mp3")});
    world.press(window, "Undo");
    QVERIFY(std::filesystem::exists(world.disk / "other.mp3"));
    world.press(window, "Close");
    QCOMPARE(known(), 8U);
    QCOMPARE(world.onDisk(), world.before);
  }

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
    world.press(window, "Undo Run");
    if (QWidget* question = WindowWorld::dialog<QWidget>(); question && question != window)
      world.press(question, "Take Back");
    QCOMPARE(there(), "123467");
    QVERIFY(!world.delegate.lastRun());
    world.press(window, "Close");
    QVERIFY(world.becomesIdle());
    QCOMPARE(availability(), FileAvailability::reachable);
    QVERIFY2(table.size() == 6, "the table shows at once what has come back");

    // With the playlists: the one run is taken back after the other.
    window = world.open(world.trash);
    world.press(window, "Repair playlists too");
    world.press(window, "Move 2 Files, Repair 6 Entries");
    QCOMPARE(there(), "2467");
    QVERIFY(world.onDisk().contains("Mix: 2 7 4 2"));
    world.press(window, "Undo");
    QCOMPARE(there(), "123467");
    QCOMPARE(world.onDisk(), world.before);
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
    QVERIFY(listed(window, "Copies").value(0).contains("One · goes with it: 1 play"));
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
      QVERIFY2(lost.contains("\"Mix\" of another library here, Other.xml, lists 3 of these files."),
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
    world.press(window, "The 1 selected");
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
    world.press(window, "The 1 selected");
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
const WindowTest<ChangeWindowsTest> changeWindows("change_windows");

/// What all of them have in common, and the one that replaces.
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
    QCOMPARE(listed(window, "What was done"), QStringList("Mix|✓ 3 entries changed|"));
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
    QCOMPARE(told(window, "Selected playlist"), "\"Inner\": 0 of 2 entries replaced, 1 deleted");
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
    QCOMPARE(listed(window, affected),
             (QStringList{"+In folders within folders||", "+Deep / Far|2|1"}));
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
    QVERIFY(told(window, "Warnings and what is left out").contains("Left out: \"One\"."));
  }

  void takesWhatIsChosenWhole() {
    WindowWorld world;
    // What is selected in the tables does not matter by itself.
    world.process.textSorter.window.bigArrayController.setSelection(std::vector<std::size_t>{0});
    world.scope = {std::vector{world.groupOf(5)}, {world.groupOf(1)}, true};
    QDialog* window = world.open(world.replaylist);
    auto* outline = named<QTreeWidget>(window, affected);
    QCOMPARE(rows(outline), (QStringList{"+Mix|4|2", "+Twin|1|1"}));
    world.press(window, "The 1 shown");
    QCOMPARE(rows(outline), QStringList("+Missing|1|1"));
    world.press(window, "All 3 groups");
    QCOMPARE(rows(outline).size(), 6);
    world.press(window, "Cancel");
    world.scope.takeSelected = false;
    window = world.open(world.replaylist);
    QVERIFY(button(window, "The 1 shown")->isChecked());
    world.press(window, "The 1 selected");
    world.press(window, "Cancel");
    // A choice that finds nothing leaves nothing of the one before.
    world.scope = {{}, {-1}, false};
    window = world.open(world.replaylist);
    world.press(window, "The 1 selected");
    QCOMPARE(listed(window, affected), QStringList());
    QVERIFY(!button(window, "Replace Entries")->isEnabled());
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

#include "change_windows_test.moc"
