// From a result to a library without duplicates: the steps along the window's bottom, what is
// counted everywhere meanwhile, and the bar that takes it back.

#include <QAction>
#include <QCheckBox>
#include <QPushButton>

#include "app/changes/finish_bar.h"
#include "app/changes/run_bar.h"
#include "app/controller/app_delegate.h"
#include "app/libraries/library_button.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"

namespace kestrel::testing {

class FinishTest : public QObject {
  Q_OBJECT

 private:
  /// A step's title and amount.
  static QString step(Running& kestrel, int number) {
    const auto steps = kestrel.window().findChild<FinishBar*>()->findChildren<FinishStep*>();
    return steps[number]->text() + ": " + steps[number]->accessibleDescription();
  }
  static void press(Running& kestrel, int number) {
    kestrel.window().findChild<FinishBar*>()->findChildren<FinishStep*>()[number]->click();
  }
  /// The button of the dialog on top whose text begins so, as soon as it can be pressed.
  static QPushButton* acting(const QString& start) {
    QPushButton* found = nullptr;
    const bool there = QTest::qWaitFor([&] {
      if (QWidget* dialog = QApplication::activeModalWidget())
        for (auto* button : dialog->findChildren<QPushButton*>())
          if (button->isVisible() && button->isEnabled() &&
              QString(button->text()).remove('&').startsWith(start))
            found = button;
      return found != nullptr;
    });
    if (!there) qFatal("Nothing says %s", qPrintable(start));
    return found;
  }
  static int numberIn(const QString& text) {
    for (const QString& word : QString(text).remove('&').split(' '))
      if (word.toInt() > 0) return word.toInt();
    return 0;
  }
  static QString songs(Running& kestrel) {
    return kestrel.window().findChild<LibraryButton*>()->accessibleDescription();
  }
  static void carryOut(Running& kestrel, QPushButton* button) {
    QWidget* dialog = button->window();
    button->click();
    QTRY_VERIFY(kestrel.delegate().lastRun() && kestrel.delegate().lastRun()->run);
    QVERIFY(kestrel.becomesIdle());
    dialog->close();
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QVERIFY(kestrel.becomesIdle());
  }

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void groupsAreCountedTheSameEverywhere() {
    Searched kestrel(library_, true);
    const auto agree = [&] {
      const QString groups = QString::number(kestrel.delegate().summary().groups);
      QVERIFY(step(kestrel, 0).startsWith("Review " + groups + " groups: "));
      QTRY_COMPARE(kestrel.find<QCheckBox>("Name")->accessibleDescription(), groups + " groups");
    };
    agree();
    // Who keeps both copies, or none, has decided.
    ResultTableModel& rows = kestrel.rows();
    int heading = 0;
    while (!rows.isHeading(heading) ||
           kestrel.delegate().groups().facts(rows.groupAt(heading)).copies != 2)
      ++heading;
    kestrel.table().scrollTo(rows.index(heading, 0), QAbstractItemView::PositionAtTop);
    const ResultSummary before = kestrel.delegate().summary();
    for (const int row : {heading + 1, heading + 2})
      if (!rows.track(row).tCheckbox) kestrel.clickBox(row);
    QCOMPARE(kestrel.delegate().summary().manyKeepers, before.manyKeepers + 1);
    QCOMPARE(kestrel.delegate().summary().open, before.open);
    QCOMPARE(step(kestrel, 0).contains("undecided"), before.open > 0);
    QVERIFY(step(kestrel, 0).contains("1 pick of yours"));
    for (const int row : {heading + 1, heading + 2}) kestrel.clickBox(row);
    QCOMPARE(kestrel.delegate().summary().withoutKeeper, before.withoutKeeper + 1);
    QCOMPARE(kestrel.delegate().summary().open, before.open);

    kestrel.click(heading + 1, columnOf("tName"));
    for (QAction* one : kestrel.window().findChildren<QAction*>())
      if (QString(one->text()).remove('&').startsWith("Not Duplicates")) one->trigger();
    QCOMPARE(kestrel.delegate().summary().groups, before.groups - 1);
    QVERIFY(!step(kestrel, 0).contains("pick"));
    agree();
  }

  void stepsSayWhatTheirDialogsDoAndTheBarTakesItBack() {
    Searched kestrel(library_, true);
    const ResultSummary summary = kestrel.delegate().summary();
    const std::size_t tracks = *kestrel.delegate().trackCount();
    QTRY_VERIFY(step(kestrel, 1).contains(" entries in "));
    const int entries = numberIn(step(kestrel, 1));
    press(kestrel, 1);
    QPushButton* repairs = acting("Replace ");
    // What is not safe is left until the user wants it, and is not counted.
    QCOMPARE(numberIn(repairs->text()), entries);
    carryOut(kestrel, repairs);
    QTRY_VERIFY2(step(kestrel, 1).contains(" stay: "), qPrintable(step(kestrel, 1)));

    const auto takesBack = [&] {
      auto* bar = kestrel.window().findChild<RunBar*>();
      QVERIFY(bar->isVisible());
      QPushButton* undo = nullptr;
      for (auto* button : bar->findChildren<QPushButton*>())
        if (QString(button->text()).remove('&') == "Undo") undo = button;
      QTRY_VERIFY(undo->isEnabled());
      undo->click();
      QTRY_VERIFY(kestrel.delegate().lastRun() && !kestrel.delegate().lastRun()->run);
      QVERIFY(kestrel.becomesIdle());
      QVERIFY2(bar->isVisible() && !undo->isEnabled(), "it says that it was taken back");
    };
    takesBack();
    QTRY_VERIFY2(numberIn(step(kestrel, 1)) == entries, qPrintable(step(kestrel, 1)));

    QVERIFY2(songs(kestrel).startsWith(QString::number(tracks) + " songs"),
             qPrintable(songs(kestrel)));
    press(kestrel, 2);
    QPushButton* removes = acting("Remove ");
    const int copies = numberIn(removes->text());
    QCOMPARE(numberIn(step(kestrel, 2)), copies);
    QVERIFY2(copies > 0 && copies < int(summary.toActOn), "what is kept of some is in the cloud");
    carryOut(kestrel, removes);
    QTRY_VERIFY2(songs(kestrel).startsWith(QString::number(int(tracks) - copies) + " songs"),
                 qPrintable(songs(kestrel)));
    QVERIFY(kestrel.delegate().summary().toActOn + std::size_t(copies) == summary.toActOn);
    takesBack();
    QTRY_VERIFY2(songs(kestrel).startsWith(QString::number(tracks) + " songs"),
                 qPrintable(songs(kestrel)));
    QTRY_COMPARE(kestrel.delegate().summary().groups, summary.groups);
    QVERIFY(kestrel.becomesIdle());
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<FinishTest> finishTest("finish");

}  // namespace kestrel::testing

#include "finish_test.moc"
