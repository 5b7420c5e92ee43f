// The widgets that follow the system's own views: where they stand and what they draw.

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "platform/log.h"
#include "tests/app/window_tests.h"
#include "ui/qt/confirmation_panel.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

using Form = ConfirmationPanel::Form;

/// The two buttons, the default one first.
std::pair<QPushButton*, QPushButton*> buttonsOf(const ConfirmationPanel& panel) {
  const auto buttons = panel.findChildren<QPushButton*>();
  return buttons.front()->isDefault() ? std::pair(buttons[0], buttons[1])
                                      : std::pair(buttons[1], buttons[0]);
}

}  // namespace

class OwnWidgetsTest : public QObject {
  Q_OBJECT

 private:
  void panelKeepsItsForm(Form form, bool rightToLeft, int points, const QString& title) {
    ConfirmationPanel panel(
        nullptr, form,
        {"Take back everything that run 3 changed?",
         QString("Playlists that become as they were before. ").repeated(9), title, "Cancel"});
    QFont font = panel.font();
    font.setPointSize(points);
    panel.setFont(font);
    if (rightToLeft) panel.setLayoutDirection(Qt::RightToLeft);
    panel.show();
    const auto [yes, no] = buttonsOf(panel);
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    QVERIFY(yes->hasFocus());
    for (QPushButton* button : {yes, no}) {
      QVERIFY(button->width() >= button->sizeHint().width());
      QVERIFY(button->height() >= button->sizeHint().height());
    }
    for (QLabel* label : panel.findChildren<QLabel*>())
      QVERIFY(label->height() >= label->heightForWidth(label->width()));
    // Both are as wide as each other and abut; the right one's edge is as far from the panel's as
    // the form has it, in whatever unit it is drawn.
    const double unit = panel.width() / 500.0;
    QCOMPARE(qRound(yes->width() / unit), form == Form::playlist ? 132 : 96);
    QVERIFY(qAbs(yes->width() - no->width()) <= 1);
    const int edge = rightToLeft ? yes->x() : panel.width() - yes->geometry().right() - 1;
    QVERIFY(qAbs(edge / unit - 16) < 1);
    QVERIFY(qAbs(rightToLeft ? yes->geometry().right() + 1 - no->x()
                             : no->geometry().right() + 1 - yes->x()) <= 1);
    QVERIFY(qAbs((panel.height() - yes->geometry().bottom() - 1) / unit - 13) < 1);
  }

 private Q_SLOTS:
  void panelsKeepTheirFormAndCutNoText() {
    for (const Form form : {Form::playlist, Form::all})
      for (const bool rightToLeft : {false, true})
        for (const int points : {9, 24})
          for (const char* title : {"Take Back", "Alle Änderungen rückgängig machen"})
            panelKeepsItsForm(form, rightToLeft, points, title);
  }

  void panelsStayWhereTheyWerePut() {
    QWidget window;
    window.setGeometry(100, 80, 700, 500);
    window.show();
    ConfirmationPanel panel(&window, Form::playlist, {"Shall it?", "", "Yes", "No"});
    QCOMPARE(panel.y(), window.mapToGlobal(QPoint()).y());
    QVERIFY(qAbs(panel.geometry().center().x() - window.geometry().center().x()) <= 1);
    panel.move(17, 23);
    panel.show();
    panel.center();
    QCOMPARE(panel.geometry().topLeft(), QPoint(17, 23));
  }

  void panelsAreAnsweredByKeys() {
    using Keys = QList<Qt::Key>;
    for (const auto& [keys, answer] : {std::pair(Keys{Qt::Key_Return}, true),
                                       {Keys{Qt::Key_Escape}, false},
                                       {Keys{Qt::Key_Tab, Qt::Key_Return}, false},
                                       {Keys{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space}, true}}) {
      QWidget window;
      window.show();
      QList<bool> answers;
      ConfirmationPanel::ask(&window, Form::all, {"Shall it?", "It can.", "Yes", "No"},
                             [&](bool yes) { answers << yes; });
      QVERIFY(QTest::qWaitForWindowActive(QApplication::activeModalWidget()));
      for (const Qt::Key key : keys) QTest::keyClick(QApplication::focusWidget(), key);
      QCOMPARE(answers, QList{answer});
    }
  }

  void titlesStandInTheMiddleOfTheirHeaders() {
    QTreeWidget tree;
    tree.setHeader(new TitleHeader(&tree));
    tree.setHeaderLabels({"HHHH", "A title that is far too long for its column HHHH"});
    tree.header()->setMinimumHeight(60);
    tree.header()->resizeSection(0, 100);
    tree.header()->setStretchLastSection(false);
    tree.header()->resizeSection(1, 60);
    tree.resize(300, 200);
    tree.show();
    const QImage image = tree.header()->grab().toImage();
    int first = -1;
    int last = -1;
    for (int y = 3; y < 57; ++y)
      for (int x = 3; x < 50; ++x)
        if (qGray(image.pixel(x, y)) < 150) {
          first = first < 0 ? y : first;
          last = y;
        }
    QVERIFY(first > 0);
    QVERIFY2(qAbs((first + last) / 2 - 30) <= 3, qPrintable(QString("%1 %2").arg(first).arg(last)));
    // What is too long ends within its own section.
    const int behind = tree.header()->sectionViewportPosition(1) + 64;
    for (int y = 3; y < 57; ++y) QVERIFY(qGray(image.pixel(behind, y)) > 150);
  }

  void popUpsLogWhatTheyDrawOnce() {
    PlaylistPopup menu;
    MemoryLog log;
    menu.addItem({"Music", "", {"4", 16, 16}, nullptr, false});
    menu.addItem({"Party", "", {"f", 30, 17}, nullptr, false});
    PlaylistPopupBox box(menu, log);
    box.resize(200, 30);
    box.show();
    const auto linesOfPainting = [&] {
      const std::size_t before = log.lines().size();
      box.grab();
      return log.lines().size() - before;
    };
    linesOfPainting();
    QCOMPARE(linesOfPainting(), 0U);
    menu.selectItem(1);
    QVERIFY(linesOfPainting() > 0);
    QCOMPARE(linesOfPainting(), 0U);
    box.resize(240, 30);
    QVERIFY(linesOfPainting() > 0);
  }
};
const testing::WindowTest<OwnWidgetsTest> ownWidgetsTest("own_widgets");

}  // namespace kestrel

#include "own_widgets_test.moc"
