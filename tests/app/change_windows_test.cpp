// The windows that change playlists and add files, and the history that takes it back.

#include <latch>

#include "app/changes/entry_table.h"
#include "app/controller/result_changes.h"
#include "tests/app/playlist_windows_world.h"
#include "tests/app/window_tests.h"
#include "tools/make_library/audio_files.h"
#include "ui/launch.h"
#include "ui/qt/confirmation_panel.h"

namespace kestrel::testing {

class ChangeWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void deletesWhatIsChecked() {
    WindowWorld world({playlist("Rep", 0xA1, {1, 2, 1, 3, 2, 1}), playlist("Other", 0xA2, {7, 7}),
                       folder("Folder", 0xF0), folder("Deep", 0xF1).in(0xF0),
                       playlist("Hidden", 0xA3, {7, 7}).in(0xF1)});
    QDialog* window = world.open(world.commands.cleanUp);
    auto* outline = named<QTreeWidget>(window, "Playlists that list a track more than once");
    // However deep it is.
    const QStringList deep{"+Folder||", "+Deep||", "+Hidden|2|1"};
    QCOMPARE(rows(outline), deep + (QStringList{"+Rep|6|3", "+Other|2|1"}));
    QCOMPARE(item(outline, "Hidden")->parent(), item(outline, "Deep"));
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
    QCOMPARE(rows(outline), deep + (QStringList{"+Rep|6|2 of 3", "+Other|2|1"}));
    QVERIFY(button(window, "Delete 4 Repeats"));
    uncheck(outline, "Other");
    QTRY_VERIFY(button(window, "Delete 3 Repeats"));
    world.press(window, "Delete 3 Repeats");
    QVERIFY(world.onDisk().contains("Rep: 1 2 3 2"));
    QVERIFY(world.onDisk().contains("Deep/Hidden: 7"));
    QVERIFY2(world.onDisk().contains("Other: 7 7"), "not checked");
    QVERIFY(listed(window, "What was done").contains("Rep|✓ 2 entries deleted|"));
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
  }

  void librariesThatCannotBeWrittenAreToldOfBeforehand() {
    WindowWorld world({playlist("A", 0xA1, {1, 1})});
    std::filesystem::create_hard_link(world.path, world.path + ".other");
    for (const auto* command : {&world.commands.cleanUp, &world.replaylist, &world.remove}) {
      QDialog* window = world.open(*command);
      QString told;
      for (const QLabel* label : window->findChildren<QLabel*>()) told += label->text();
      QVERIFY2(told.contains("⚠ The library cannot be changed: ") && told.contains("hard links"),
               qPrintable(told));
      for (const char* title : {"Delete 1 Repeat", "Replace 1 Entry", "Remove 3 Copies"})
        if (const QAbstractButton* acts = button(window, title))
          QVERIFY2(!acts->isEnabled(), title);
      world.press(window, "Cancel");
    }
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
    world.press(window, "Undo Only This Playlist");
    world.press(WindowWorld::dialog<ConfirmationPanel>(), "Cancel");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1", "B: 3", "C: 7"}));
    world.press(window, "Undo Only This Playlist");
    world.press(WindowWorld::dialog<ConfirmationPanel>(), "Undo");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1 1", "B: 3", "C: 7"}));
    auto* runs = named<QTreeWidget>(window, "Runs, latest first");
    QCOMPARE(rows(runs).size(), 2);

    // Another program works on B; the rest can still be taken back.
    std::string changed = TemporaryFolder::read(world.path);
    changed.replace(changed.find("<string>B</string>"), 18, "<string>Bee</string>");
    world.disk.write("Library.xml", changed);
    for (const int row : {0, 1}) runs->setCurrentItem(runs->topLevelItem(row));
    QVERIFY(world.becomesIdle());
    QCOMPARE(rows(changes), (QStringList{"A|Undone", "B|⚠ Changed since: it is now called “Bee”",
                                         "C|As the run left it"}));
    world.press(window, "Undo");
    auto* question = WindowWorld::dialog<QMessageBox>();
    QVERIFY(question && question->informativeText().contains("“B”: it is now called “Bee”."));
    QCOMPARE(world.onDisk(), (QStringList{"A: 1 1", "Bee: 3", "C: 7"}));
    world.press(question, "Undo the Rest");
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
    QVERIFY(!button(window, "Undo")->isEnabled());
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
};
const WindowTest<ChangeWindowsTest> changeWindows("change_windows");

}  // namespace kestrel::testing

#include "change_windows_test.moc"
