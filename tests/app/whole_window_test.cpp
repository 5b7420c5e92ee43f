// The main window as a whole: its pages, how it is reached, and how much it bears.

#include <QAbstractButton>
#include <QCheckBox>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTabBar>
#include <functional>
#include <random>

#include "app/controller/criteria.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"

namespace kestrel::testing {

class WholeWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void whatTheEmptyPageSays() {
    Running kestrel;
    kestrel.open(library_);
    const auto says = [&](const QString& text) {
      for (QLabel* label : kestrel.window().findChildren<QLabel*>())
        if (label->isVisibleTo(&kestrel.window()) && label->text().contains(text)) return true;
      return false;
    };
    const auto search = [&](const std::vector<std::string>& criteria) {
      kestrel.preferences().set(settings::criteria, criteria);
      QVERIFY(kestrel.delegate().findDuplicates());
      QVERIFY(kestrel.becomesIdle());
    };
    QVERIFY(says("Ready to search the whole library"));
    QCOMPARE(kestrel.window().focusWidget()->property("text"), "Find Duplicates");
    search({"tName", "tArtist", "tFileName", "realSize", "tComments", "hexpid"});
    QVERIFY(
        says("No duplicates by name, artist, file name, size, comments and hexpid in the whole "
             "library."));
    QVERIFY(says("Try fewer criteria."));
    // After a search, choosing another playlist searches that, and leaves the keys where they are.
    auto* popup = kestrel.find<QComboBox>("Playlist to search");
    const auto chooseNext = [&] {
      const QString before = popup->currentText();
      popup->setFocus();
      QTest::keyClick(popup, Qt::Key_Down);
      QVERIFY(popup->currentText() != before);
      QCOMPARE(kestrel.window().focusWidget(), popup);
    };
    chooseNext();
    QTRY_VERIFY(says("in " + popup->currentText() + "."));
    QVERIFY(kestrel.becomesIdle());
    search({});
    QVERIFY(says("Nothing to match by"));
    search({"tName", "Filename"});
    QVERIFY(says("“Filename” finds nothing"));
    QTest::mouseClick(kestrel.find<QPushButton>("Use File Name Instead"), Qt::LeftButton);
    QVERIFY(kestrel.becomesIdle());
    QVERIFY(kestrel.delegate().situation() != Situation::filenameOnly);
    kestrel.open(library_);
    chooseNext();
    QVERIFY(says("Ready to search " + popup->currentText()));

    // A document may list no playlist at all.
    std::string text = TemporaryFolder::read(library_.toStdString());
    const std::size_t playlists = text.find("<key>Playlists</key>");
    text.erase(playlists, text.rfind("</array>") + 8 - playlists);
    kestrel.open(home_.write("Tracks.xml", text));
    QVERIFY(says("This library has no playlists"));
    QVERIFY(!kestrel.delegate().findDuplicates());
    QVERIFY(!kestrel.find<QAbstractButton>("Find Duplicates")->isEnabled());
  }

  void whatCannotBeOpenedIsShown() {
    Running kestrel;
    const QString broken =
        home_.write("Broken.xml", "<plist version=\"1.0\"><dict><key>Tracks</key>\n<oops>");
    QVERIFY(!home_.write("Texts/text.txt", "no audio").isEmpty());
    for (const QString& path : {broken, home_.path("none.xml"), home_.path("Texts")}) {
      kestrel.open(path);
      auto* box = kestrel.window().findChild<QMessageBox*>();
      QVERIFY2(box && box->isVisible(), qPrintable(path));
      QVERIFY(box->informativeText().contains(path));
      QTest::keyClick(box, Qt::Key_Escape);
      QTRY_VERIFY(!kestrel.window().findChild<QMessageBox*>());
    }
    kestrel.find<QPushButton>("Try the Demo Library");
  }

  void settingsThatCannotBeKeptAreToldOnce() {
    QFile inTheWay(qEnvironmentVariable("XDG_CONFIG_HOME"));
    QVERIFY(QDir().mkpath(QFileInfo(inTheWay).path()) && inTheWay.open(QIODevice::WriteOnly));
    Running kestrel;
    for (const int told : {1, 0}) {
      kestrel.preferences().set("appearance", std::to_string(told));
      QTest::qWait(50);
      auto* box = kestrel.window().findChild<QMessageBox*>();
      QCOMPARE(box ? 1 : 0, told);
      if (!box) continue;
      QVERIFY(box->informativeText().contains("settings.ini"));
      QTest::keyClick(box, Qt::Key_Escape);
      QTRY_VERIFY(!kestrel.window().findChild<QMessageBox*>());
    }
  }

  void draggedDocumentsOpen() {
    Running kestrel;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(library_)});
    const auto isTaken = [&] {
      QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
      QApplication::sendEvent(&kestrel.window(), &enter);
      return enter.isAccepted();
    };
    const auto drop = [&] {
      QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
      QApplication::sendEvent(&kestrel.window(), &event);
      return event.isAccepted();
    };
    {
      QMessageBox question(&kestrel.window());
      question.open();
      QVERIFY(!isTaken() && !drop());
    }
    QVERIFY(isTaken());
    // What is dropped while a task runs waits for its end.
    QVERIFY(kestrel.delegate().run([] {}, [] {}));
    QVERIFY(!isTaken() && drop());
    QTRY_COMPARE(kestrel.delegate().situation(), Situation::notSearched);
    QVERIFY(kestrel.becomesIdle());
  }

  void everythingHasANameAndNoTwoMnemonicsAreTheSame() {
    Running kestrel;
    const auto meetAll = [&] {
      QStringList texts;
      for (const QAction* action : kestrel.window().menuBar()->actions()) texts << action->text();
      for (QWidget* widget : kestrel.window().findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&kestrel.window())) continue;
        if (const auto* button = qobject_cast<QAbstractButton*>(widget)) texts << button->text();
        if (const auto* label = qobject_cast<QLabel*>(widget); label && label->buddy())
          texts << label->text();
        if (const auto* tabs = qobject_cast<QTabBar*>(widget))
          for (int i = 0; i < tabs->count(); ++i) texts << tabs->tabText(i);
      }
      QVERIFY(texts.size() > 8);
      QCOMPARE(sameMnemonics(texts), QStringList());
      QCOMPARE(nameless(&kestrel.window()), QStringList());
    };
    meetAll();
    kestrel.open(library_);
    meetAll();
    kestrel.search();
    meetAll();
    QCOMPARE(sameMnemonicsInMenus(kestrel.window()), QStringList());
  }

  void aMillionRowsArePaintedAndSelectedAtOnce() {
    Searched kestrel(library_);
    auto& rows = kestrel.rows().controller();
    rows.add(std::vector<ResultTrack>(1000000, rows.content().front()));
    // How much a view does shows in how many cells it asks about.
    struct Counting : QStyledItemDelegate {
      using QStyledItemDelegate::QStyledItemDelegate;
      void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& cell) const override {
        ++cells;
        QStyledItemDelegate::initStyleOption(option, cell);
      }
      mutable int cells = 0;
    };
    auto* counting = new Counting(&kestrel.table());
    kestrel.table().setItemDelegate(counting);
    kestrel.table().selectInMiddle(700000);
    const QRect seen = kestrel.table().visualRect(kestrel.rows().index(700000, columnOf("tName")));
    QVERIFY(qAbs(seen.center().y() - kestrel.table().viewport()->height() / 2) < seen.height());
    kestrel.table().reloadFlags();
    kestrel.table().selectAll();
    kestrel.table().grab();
    QVERIFY(counting->cells > 0 && counting->cells < 5000);
    rows.removeAll();
  }

  void anythingInAnyOrder() {
    Running kestrel;
    kestrel.open(library_);
    std::mt19937 random(20);
    const auto below = [&](std::size_t limit) { return static_cast<int>(random() % limit); };
    const std::vector<Qt::Key> keys = {Qt::Key_Down, Qt::Key_Up,    Qt::Key_PageDown,
                                       Qt::Key_Home, Qt::Key_End,   Qt::Key_Space,
                                       Qt::Key_K,    Qt::Key_Escape};
    const auto words = [&] { return kestrel.find<QLineEdit>("Filter the table by words"); };
    const auto press = [&] { kestrel.key(keys[random() % keys.size()]); };
    const auto clickRow = [&](auto click) {
      if (const auto rows = std::size_t(kestrel.rows().rowCount())) click(below(rows));
    };
    const std::vector<std::function<void()>> actions = {
        [&] { kestrel.delegate().findDuplicates(); },
        [&] {
          auto* rule = kestrel.find<QComboBox>("Rule that decides which copy is kept");
          rule->setCurrentIndex(rule->findText(below(2) ? "Most Played" : "Single Arbitrary"));
        },
        [&] { kestrel.find<QCheckBox>("Album")->click(); },
        [&] { kestrel.clickHeader(tableColumns()[std::size_t(1 + below(12))].identifier); },
        [&] { words()->setText(QString("aeiou").mid(below(6))); },
        [&] { kestrel.window().showSelection(); },
        [&] { below(8) == 0 && kestrel.delegate().refresh(); },
        [&] { kestrel.delegate().setKeeperMode(below(2)); },
        [&] { clickRow([&](int row) { kestrel.clickBox(row); }); },
        [&] { clickRow([&](int row) { kestrel.click(row, 1 + below(4)); }); },
        [&] { kestrel.table().selectAll(); },
        press,
        press,
    };
    for (int step = 0; step < 500; ++step) {
      actions[random() % actions.size()]();
      if (below(3) == 0) QTest::qWait(1);
      if (below(40) == 0) QVERIFY(kestrel.becomesIdle());
    }
    QVERIFY(kestrel.becomesIdle());
    words()->clear();
    kestrel.search();
    QTRY_COMPARE(kestrel.rows().shownTracks(), kestrel.delegate().summary().tracks);
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<WholeWindowTest> wholeWindowTest("whole_window");

}  // namespace kestrel::testing

#include "whole_window_test.moc"
