// The windows that add files to a library and move them to the trash.

#include "tests/app/playlist_windows_world.h"
#include "tools/make_library/audio_files.h"
#include "ui/snapshot.h"

namespace kestrel::testing {

class FileWindowsTest : public QObject {
  Q_OBJECT

 private:
  static std::size_t known() { return TextSorter::groomedTracksDictionary()->size(); }

 private Q_SLOTS:
  void addingTellsOfEachFileAndTakesBack() {
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

  void theTrashTakesWhatIsNotHeldBack() {
    WindowWorld world;
    const auto there = [&] {
      QString tracks;
      for (int track = 1; track <= 7; ++track)
        if (std::filesystem::exists(world.disk / WindowWorld::fileName(track)))
          tracks += QString::number(track);
      return tracks;
    };
    // Of one group, whole: whichever of its copies is selected.
    world.scope = {{}, {world.groupOf(1)}, true};
    QDialog* window = world.open(world.trash);
    const auto question = [&] { return named<QLabel>(window, "Question")->text(); };
    QCOMPARE(question(), QStringLiteral("Move 1 file (1 KB) to the trash?"));
    world.press(window, "All groups (3)");
    QCOMPARE(question(), QStringLiteral("Move 2 files (2 KB) to the trash?"));
    world.press(window, "Cancel");
    world.scope = {};

    window = world.open(world.trash);
    QCOMPARE(named<QLabel>(window, "Question")->text(),
             QStringLiteral("Move 2 files (2 KB) to the trash?"));
    const QStringList files = rows(named<QTreeWidget>(window, "Files"));
    QCOMPARE(files.filter("Held back (1): its file is missing").size(), 1);
    QVERIFY2(files.contains("1.mp3|1 KB|2.mp3"), qPrintable(files.join('\n')));
    world.press(window, "Move to Trash");
    QCOMPARE(there(), QStringLiteral("2467"));
    world.press(window, "Undo");
    QCOMPARE(there(), QStringLiteral("123467"));
  }

  void aTrackThatIsListedTwiceIsNoDuplicateOfItself() {
    WindowWorld world({playlist("Twice", 0xA1, {2, 1, 2, 7, 7})});
    world.delegate.choosePlaylist("161");
    QVERIFY(world.delegate.findDuplicates() && world.becomesIdle());
    QCOMPARE(world.delegate.summary().tracks, 5U);
    QCOMPARE(world.delegate.summary().toActOn, 1U);
    QDialog* window = world.open(world.trash);
    const QStringList files = rows(named<QTreeWidget>(window, "Files"));
    QVERIFY2(files == (QStringList{"To the trash (1)||", "1.mp3|1 KB|2.mp3"}),
             qPrintable(files.join('\n')));
    QVERIFY(named<QLabel>(window, "What was searched")->text().contains("Twice"));
  }

  void whatWentToTheTrashLeavesTheTables() {
    WindowWorld world;
    const auto& table = world.process.textSorter.window.bigArrayController;
    const auto availability = [] {
      return TextSorter::groomedTracksDictionary()->find("1")->availability();
    };
    QCOMPARE(table.size(), 6U);
    QDialog* window = world.open(world.trash);
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

QTEST_MAIN(kestrel::testing::FileWindowsTest)
#include "file_windows_test.moc"
