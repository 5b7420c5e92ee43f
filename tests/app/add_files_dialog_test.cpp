#include "app/add_files_dialog.h"

#include "library/snapshot.h"
#include "tests/app/playlist_windows_world.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {

class AddFilesDialogTest : public QObject {
  Q_OBJECT

 private:
  static std::size_t known() { return TextSorter::groomedTracksDictionary()->size(); }

 private Q_SLOTS:
  void tellsOfEachFileAndTakesBack() {
    WindowWorld world;
    const auto audio = [&](const char* name) {
      return world.disk.write(name, make_library::makeAudio("mp3", 500, 32, 440).bytes);
    };
    QDialog* window = world.open(
        world.commands.addFiles,
        {audio("new.mp3"), world.disk / "none.mp3", world.disk.write("text.mp3", "text")});
    const QStringList done = rows(named<QTreeWidget>(window, "What was done"));
    QCOMPARE(done.size(), 3);
    QVERIFY2(done[0].contains("new.mp3|✓ Added"), qPrintable(done[0]));
    QVERIFY2(done[1].contains("none.mp3|– Left as it was|there is no such file"),
             qPrintable(done[1]));
    QVERIFY2(done[2].contains("text.mp3|✗ Failed"), qPrintable(done[2]));
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

  void whatWentToTheTrashLeavesTheTables() {
    WindowWorld world;
    const auto& table = world.process.textSorter.window.bigArrayController;
    const auto availability = [] {
      return TextSorter::groomedTracksDictionary()->find("1")->availability();
    };
    QCOMPARE(table.size(), 6U);
    QDialog* window = world.open(world.commands.trash);
    world.press(window, "Move to Trash");
    QCOMPARE(table.size(), 2U);
    QCOMPARE(world.delegate.summary().groups, 1U);
    world.press(window, "Close");
    QCOMPARE(availability(), FileAvailability::missing);

    window = world.open(world.commands.history);
    world.press(window, "Undo Run");
    if (QWidget* question = WindowWorld::dialog<QWidget>(); question && question != window)
      world.press(question, "Take Back");
    QVERIFY(named<QLabel>(window, "What was taken back")->text().contains("Search again"));
    world.press(window, "Close");
    QCOMPARE(availability(), FileAvailability::reachable);
    QCOMPARE(table.size(), 2U);
  }
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::AddFilesDialogTest)
#include "add_files_dialog_test.moc"
