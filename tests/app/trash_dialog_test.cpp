#include "app/trash_dialog.h"

#include "tests/app/playlist_windows_world.h"

namespace kestrel::testing {

class TrashDialogTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void movesWhatIsNotHeldBack() {
    WindowWorld world;
    const auto there = [&] {
      QString tracks;
      for (int track = 1; track <= 7; ++track)
        if (std::filesystem::exists(world.disk / WindowWorld::fileName(track)))
          tracks += QString::number(track);
      return tracks;
    };
    // Of some rows: a keeper among them is no candidate.
    const auto content = world.process.textSorter.window.bigArrayController.content();
    std::vector<std::uint32_t> chosen;
    for (std::uint32_t row = 0; row < content.size(); ++row)
      if (content[row].record->item().persistentID <= 2) chosen.push_back(row);
    QDialog* window = world.open(world.commands.trashTracks, chosen);
    QCOMPARE(named<QLabel>(window, "Question")->text(),
             QStringLiteral("Move 1 file (1 KB) to the trash?"));
    world.press(window, "Cancel");

    window = world.open(world.commands.trash);
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
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::TrashDialogTest)
#include "trash_dialog_test.moc"
