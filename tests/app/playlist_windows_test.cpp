// What all windows that change a library have in common.

#include "app/playlist_windows.h"

#include <QAccessible>
#include <QSet>

#include "tests/app/playlist_windows_world.h"

namespace kestrel::testing {

class PlaylistWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void sayWhyTheyShowNothing() {
    WindowWorld world({playlist("Kept", 0xA1, {2, 4, 7})});
    for (const auto& [command, state] : {std::pair(&world.replaylist, "State of the survey"),
                                         std::pair(&world.commands.cleanUp, "State of the scan")}) {
      QDialog* window = world.open(*command);
      QCOMPARE(named<QLabel>(window, state)->text(), QStringLiteral("No results."));
      QVERIFY(!button(window, "OK")->isEnabled());
      world.press(window, "Cancel");
    }
    // To the scans a library that cannot be read has no playlists; users are told the reason.
    std::filesystem::remove(world.path);
    for (const auto* command : {&world.replaylist, &world.commands.cleanUp}) {
      auto* alert = world.open<QMessageBox>(*command);
      QVERIFY(alert);
      QCOMPARE(alert->text(), QStringLiteral("The playlists could not be looked through."));
      QVERIFY(alert->informativeText().contains("Library.xml"));
      world.press(alert, "OK");
      QTRY_VERIFY(!WindowWorld::dialog());
    }
  }

  void nameAllTheyHoldAndTakeKeys() {
    WindowWorld world;
    for (const auto* command :
         {&world.replaylist, &world.commands.cleanUp, &world.trash, &world.commands.history}) {
      QDialog* window = world.open(*command);
      QSet<QWidget*> reached;
      for (QWidget* at = window->nextInFocusChain(); !reached.contains(at);
           at = at->nextInFocusChain())
        reached << at;
      for (auto* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(interface && !interface->text(QAccessible::Name).isEmpty(),
                 widget->metaObject()->className());
        QVERIFY(reached.contains(widget));
        if (auto* pushed = qobject_cast<QPushButton*>(widget))
          QVERIFY2(pushed->text().contains('&'), qPrintable(pushed->text()));
      }
      window->close();
      QVERIFY(world.becomesIdle());
    }
  }

  void mayCloseBeforeTheirTasksEnd() {
    WindowWorld world;
    for (const auto* command :
         {&world.replaylist, &world.commands.cleanUp, &world.trash, &world.commands.history}) {
      (*command)();
      QVERIFY(WindowWorld::dialog());
      QTest::keyClick(WindowWorld::dialog(), Qt::Key_Escape);
      QVERIFY(world.becomesIdle());
      QVERIFY(!WindowWorld::dialog());
    }
    QVERIFY(world.open(world.commands.cleanUp));
  }
};

}  // namespace kestrel::testing

QTEST_MAIN(kestrel::testing::PlaylistWindowsTest)
#include "playlist_windows_test.moc"
