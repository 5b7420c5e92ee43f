#include "app/cleanup_window.h"

#include <latch>

#include "tests/app/playlist_windows_world.h"

namespace kestrel::testing {

class CleanupWindowTest : public QObject {
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
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::CleanupWindowTest)
#include "cleanup_window_test.moc"
