// Cleaning playlists up, and the history that takes it back.

#include <latch>
#include <sys/wait.h>
#include <unistd.h>

#include "app/entry_table.h"
#include "app/history_changes.h"
#include "tests/app/playlist_windows_world.h"
#include "ui/qt/confirmation_panel.h"

namespace kestrel::testing {

class CleanupAndHistoryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void deletesWhatIsChecked() {
    WindowWorld world({playlist("Rep", 0xA1, {1, 2, 1, 3, 2, 1}), playlist("Other", 0xA2, {7, 7}),
                       folder("Folder", 0xF0), folder("Deep", 0xF1).in(0xF0),
                       playlist("Hidden", 0xA3, {7, 7}).in(0xF1)});
    QDialog* window = world.open(world.commands.cleanUp);
    auto* outline = named<QTreeWidget>(window, "Playlists that list a track more than once");
    QCOMPARE(rows(outline), (QStringList{"+Rep|6|3", "+Other|2|1"}));
    outline->setCurrentItem(item(outline, "Rep"));
    QCOMPARE(rows(named<QTableView>(window, "Entries to be deleted")),
             (QStringList{"3|One — Band\nMPEG audio file|The same track at 1 stays",
                          "5|One — Band\nMPEG audio file|The same track at 2 stays",
                          "6|One — Band\nMPEG audio file|The same track at 1 stays"}));
    QVERIFY(named<QLabel>(window, "What is left out")->text().contains("\"Hidden\""));
    uncheck(outline, "Other");
    world.press(window, "OK");
    QVERIFY(world.onDisk().contains("Rep: 1 2 3"));
    QVERIFY2(world.onDisk().contains("Other: 7 7"), "not checked");
    world.press(window, "Undo");
    QCOMPARE(world.onDisk(), world.before);
  }

  void stopsBeforeTheNextPlaylist() {
    WindowWorld world({playlist("A", 0xA1, {1, 1}), playlist("B", 0xA2, {3, 3})});
    QDialog* window = world.open(world.commands.cleanUp);
    std::latch held(1);
    world.worker.post([&held] { held.wait(); });
    QTest::mouseClick(button(window, "OK"), Qt::LeftButton);
    QVERIFY2(!button(window, "OK"), "the decision is made");
    // Escape asks to stop, as the button does, and leaves the window to tell what was done.
    QTest::keyClick(window, Qt::Key_Escape);
    const bool isStopping = !button(window, "Stop")->isEnabled();
    held.count_down();
    QVERIFY(world.becomesIdle());
    QVERIFY(isStopping && window->isVisible());
    QCOMPARE(world.onDisk(), world.before);
    QCOMPARE(rows(named<QTreeWidget>(window, "What was done")),
             (QStringList{"A|– Stopped before it|", "B|– Stopped before it|"}));
    QVERIFY(!button(window, "Undo"));
  }

  void aScanThatFindsNothingLeavesNothingOfTheOneBefore() {
    WindowWorld world({playlist("A", 0xA1, {1, 1})});
    QDialog* window = world.open(world.commands.cleanUp);
    auto* outline = named<QTreeWidget>(window, "Playlists that list a track more than once");
    QCOMPARE(rows(outline), QStringList("+A|2|1"));
    // Another program cleans up meanwhile.
    std::string text = TemporaryFolder::read(world.path);
    const std::size_t list = text.find("<string>A</string>");
    const std::size_t first = text.find("<dict>", text.find("Playlist Items", list));
    text.erase(first, text.find("</dict>", first) + 7 - first);
    world.disk.write("Library.xml", text);
    QCOMPARE(world.onDisk(), QStringList("A: 1"));
    world.press(window, "OK");
    world.press(WindowWorld::dialog<QMessageBox>(), "OK");
    QCOMPARE(named<QLabel>(window, "State of the scan")->text(), QStringLiteral("No results."));
    QCOMPARE(rows(outline), QStringList());
    QVERIFY(!button(window, "OK")->isEnabled());
  }

  void putsUnreadableHistoriesAsideOnRequest() {
    WindowWorld world({playlist("A", 0xA1, {1, 1})});
    const std::string file = world.disk.write("data/Kestrel/history.sqlite", "no database at all");
    QDialog* window = world.open(world.commands.cleanUp);
    world.press(window, "OK");
    auto* question = WindowWorld::dialog<QMessageBox>();
    QVERIFY(question && question->informativeText().contains(toQt(file)));
    QCOMPARE(world.onDisk(), world.before);
    world.press(question, "Put It Aside and Begin Anew");
    QTRY_VERIFY(button(window, "OK") && button(window, "OK")->isEnabled());
    world.press(window, "OK");
    QCOMPARE(world.onDisk(), QStringList("A: 1"));
  }

  void undoesOnePlaylistAndAsksAboutDifferences() {
    WindowWorld world(
        {playlist("A", 0xA1, {1, 1}), playlist("B", 0xA2, {3, 3}), playlist("C", 0xA3, {7, 7})});
    QDialog* window = world.open(world.commands.history);
    QCOMPARE(named<QLabel>(window, "Selected run")->text(),
             QStringLiteral("Nothing has been changed in this library yet."));
    world.press(window, "Close");
    window = world.open(world.commands.cleanUp);
    world.press(window, "OK");
    world.press(window, "Close");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1", "B: 3", "C: 7"}));

    window = world.open(world.commands.history);
    auto* changes = named<QTreeWidget>(window, "What the run changed");
    QCOMPARE(rows(changes),
             (QStringList{"A|As the run left it", "B|As the run left it", "C|As the run left it"}));
    QCOMPARE(rows(named<QTableView>(window, "Entries before and after")),
             QStringList("2|One — Band\nMPEG audio file|(deleted)"));
    world.press(window, "Undo This Playlist");
    world.press(WindowWorld::dialog<ConfirmationPanel>(), "Cancel");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1", "B: 3", "C: 7"}));
    world.press(window, "Undo This Playlist");
    world.press(WindowWorld::dialog<ConfirmationPanel>(), "Take Back");
    QCOMPARE(world.onDisk(), (QStringList{"A: 1 1", "B: 3", "C: 7"}));
    auto* runs = named<QTreeWidget>(window, "Runs, latest first");
    QCOMPARE(rows(runs).size(), 2);

    // Somebody works on B; the rest can still be taken back.
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
    QVERIFY2(world.clock.now() == Moment(), "nobody waits for a document that is written");
    const auto runs = runsOf(*world.delegate.application());
    QCOMPARE(runs.size(), 1U);
    QCOMPARE(runs[0].kind, RunKind::addToPlaylist);
    undoInLibrary(runs[0].id, *world.delegate.application(), {});
    QCOMPARE(world.onDisk(), world.before);

    world.disk.write("Library.xml", TemporaryFolder::read(world.path) + "\n");
    QVERIFY(add({0}));
    QCOMPARE(added, 0U);
    const auto& alert = world.delegate.alerts.alert();
    QVERIFY(alert && toQt(alert->informativeText).contains("Library.xml"));
    QCOMPARE(world.onDisk(), world.before);
  }

  void brokenOffRunsAreShownAsSuch() {
    WindowWorld world({playlist("A", 0xA1, {1, 1})});
    world.press(world.open(world.commands.history), "Close");  // makes the history
    const LibraryIdentity library = world.delegate.application()->library().identity();
    const pid_t child = ::fork();
    if (child == 0) {
      History history(world.disk / "data/Kestrel/history.sqlite", world.clock);
      std::vector<PlaylistChange> changes(1);
      changes[0].name = "A";
      changes[0].oldPlaylist = 0xA1;
      changes[0].oldEntries = {1, 1};
      changes[0].newEntries = {1};
      history.begin(RunKind::cleanUp, library, {changes, {}, {}});
      ::_exit(0);
    }
    QCOMPARE(::waitpid(child, nullptr, 0), child);
    QDialog* window = world.open(world.commands.history);
    QVERIFY(rows(named<QTreeWidget>(window, "Runs, latest first"))
                .value(0)
                .endsWith("Clean-up|⚠ Broke off"));
    QVERIFY(named<QLabel>(window, "Selected run")->text().contains("ended in the middle of it"));
    QCOMPARE(rows(named<QTreeWidget>(window, "What the run changed")),
             QStringList("A|Not changed by the run"));
    QVERIFY(!button(window, "Undo Run")->isEnabled());
  }

  void entriesAreComparedByWhatChanged() {
    const struct {
      const char *before, *after, *expected;
    } cases[] = {{"123", "143", "1=1 2>4 3=3"},
                 {"121312", "123", "1=1 2=2 1- 3=3 1- 2-"},
                 {"12", "1212", "1=1 2=2 1+ 2+"},
                 {"12", "345", "1>3 2>4 5+"},
                 {"11", "", "1- 1-"}};
    const auto ids = [](const std::string& digits) {
      std::vector<std::uint64_t> list;
      for (const char digit : digits) list.push_back(static_cast<std::uint64_t>(digit - '0'));
      return list;
    };
    for (const auto& [before, after, expected] : cases) {
      QStringList texts;
      for (const EntryRow& row : comparedRows(ids(before), ids(after))) {
        const QString from = row.before ? QString::number(row.before) : QString();
        const QString to = row.after ? QString::number(row.after) : QString();
        const bool replaced = row.change == EntryRow::Change::replaced;
        texts << (row.change == EntryRow::Change::deleted ? from + '-'
                  : row.change == EntryRow::Change::added ? to + '+'
                                                          : from + (replaced ? '>' : '=') + to);
      }
      QCOMPARE(texts.join(' '), QLatin1String(expected));
    }
  }
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::CleanupAndHistoryTest)
#include "cleanup_and_history_test.moc"
