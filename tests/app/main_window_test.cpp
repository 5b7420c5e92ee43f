// The main window as its users have it: real widgets, real files in a private home, no screen.

#include "app/main_window.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <latch>
#include <memory>
#include <random>
#include <set>

#include "app/app_delegate.h"
#include "app/program.h"
#include "app/settings.h"
#include "platform/settings.h"
#include "tools/make_library/demo.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

int columnOf(std::string_view identifier) {
  const auto columns = tableColumns();
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (columns[i].identifier == identifier) return static_cast<int>(i);
  return -1;
}

/// A running program.
class Running {
 public:
  Running() {
    window().show();
    QVERIFY2(QTest::qWaitForWindowExposed(&window()), "no window");
  }

  MainWindow& window() { return program_.window(); }
  AppDelegate& delegate() { return program_.delegate(); }
  Preferences& preferences() { return program_.preferences(); }
  WorkerQueue& worker() { return program_.worker(); }
  bool becomesIdle() {
    return QTest::qWaitFor([this] { return !delegate().isBusy(); }, 20000);
  }
  void open(const QString& path) {
    window().openPath(path);
    QVERIFY(becomesIdle());
  }
  void search() {
    QVERIFY(delegate().findDuplicates());
    QVERIFY(becomesIdle());
    QCOMPARE(delegate().situation(), Situation::result);
  }

  /// The visible widget of a sort with this text, mnemonics left out; or accessible name.
  template <typename Widget>
  Widget* find(const QString& text) {
    Widget* found = nullptr;
    const bool there = QTest::qWaitFor([&] {
      for (Widget* widget : window().findChildren<Widget*>())
        if (widget->isVisibleTo(&window()) &&
            (widget->property("text").toString().remove('&') == text ||
             widget->accessibleName() == text))
          found = widget;
      return found != nullptr;
    });
    if (!there) qFatal("There is no %s", qPrintable(text));
    return found;
  }
  ReviewTableView& table() { return *window().findChild<ReviewTableView*>("upperTable"); }
  ResultTableModel& rows() { return table().rows(); }
  std::vector<bool> ticks() {
    std::vector<bool> ticks;
    for (const ResultTrack& track : rows().controller().content()) ticks.push_back(track.tCheckbox);
    return ticks;
  }
  QString text(int row, std::string_view column) {
    return rows().index(row, columnOf(column)).data().toString();
  }
  void click(int row, int column, QPoint offset = {}) {
    const QRect cell = table().visualRect(rows().index(row, column));
    const QPoint at = offset.isNull() ? cell.center() : cell.topLeft() + offset;
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, at);
  }
  void clickBox(int row) {
    QStyleOptionViewItem option;
    option.rect = table().visualRect(rows().index(row, 0));
    option.features = QStyleOptionViewItem::HasCheckIndicator;
    const QRect box =
        table().style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &table());
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, box.center());
  }
  void clickHeader(std::string_view column) {
    QHeaderView* header = table().horizontalHeader();
    const int section = columnOf(column);
    table().scrollTo(rows().index(0, section));
    const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
                    header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&table(), key, modifiers);
  }

 private:
  Program program_;
};

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void init();

  void aNewcomerFindsDuplicatesWithTheMouseAlone();
  void aChangedRuleChangesTheKeepers();
  void ticking();
  void sorting();
  void filtering();
  void escapeStopsASearch();
  void columnsCanBeArrangedButForTheCheckBox();
  void theSelectionWindow();
  void theSelectionIsReplaylisted();
  void groupsWithoutAKeeperAreFound();
  void theInfoPaneAsksTheMusicApplicationOnceATrack();
  void playlistsScopeTheSearch();
  void whatTheEmptyPageSays();
  void whatCannotBeOpenedIsShown();
  void draggedDocumentsOpen();
  void everythingHasAName();
  void noTwoMnemonicsAreTheSame();
  void aMillionRowsArePaintedAndTickedAtOnce();
  void anythingInAnyOrder();

 private:
  QTemporaryDir home_;
  QString library_;
};

void MainWindowTest::initTestCase() {
  QVERIFY(home_.isValid());
  library_ = home_.filePath("Music/Library.xml");
  make_library::Options options;
  options.tracks = 120;
  options.seed = make_library::kDemoSeed;
  options.duplicatePercent = 30;
  make_library::writeDemo(library_.toStdString(), options);
}

void MainWindowTest::init() {
  const QString home = home_.filePath(QTest::currentTestFunction());
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
    qputenv(name, (home + '/' + QString(name).toLower()).toUtf8());
}

void MainWindowTest::aNewcomerFindsDuplicatesWithTheMouseAlone() {
  Running kestrel;
  kestrel.find<QPushButton>("Try the Demo Library");
  QVERIFY(!kestrel.find<QAbstractButton>("Find Duplicates")->isEnabled());
  kestrel.open(library_);
  QTest::mouseClick(kestrel.find<QPushButton>("Find Duplicates"), Qt::LeftButton);
  QVERIFY(kestrel.becomesIdle());
  QCOMPARE(kestrel.delegate().situation(), Situation::result);
  QVERIFY(kestrel.table().isVisible());
  const ResultSummary& summary = kestrel.delegate().summary();
  QVERIFY(summary.groups > 5);
  QCOMPARE(std::size_t(kestrel.rows().rowCount()), summary.tracks);
  QVERIFY(kestrel.find<QLabel>("Result")->text().startsWith(
      QString("%1 tracks in %2 groups").arg(summary.tracks).arg(summary.groups)));
  kestrel.click(0, columnOf("tName"));
  QTRY_VERIFY(kestrel.find<QLabel>("Why it is kept")->text().contains("Oldest Date Added"));
}

void MainWindowTest::aChangedRuleChangesTheKeepers() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  const auto before = kestrel.ticks();
  QTest::mouseClick(kestrel.find<QRadioButton>("Newest Date Added"), Qt::LeftButton, {}, {8, 8});
  QVERIFY(kestrel.becomesIdle());
  QVERIFY(kestrel.ticks() != before);
  QCOMPARE(kestrel.preferences().integer(settings::filterMatrixButton), 6);
  // Another meaning of the ticks: every one changes, and no keeper does.
  const auto keepers = kestrel.ticks();
  const std::size_t toActOn = kestrel.delegate().summary().toActOn;
  kestrel.find<QComboBox>("A tick marks")->setCurrentIndex(1);
  auto inverted = keepers;
  inverted.flip();
  QCOMPARE(kestrel.ticks(), inverted);
  QCOMPARE(kestrel.delegate().summary().toActOn, toActOn);
}

void MainWindowTest::ticking() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  kestrel.click(3, columnOf("tName"));
  const auto selected = kestrel.table().selectedRows();
  const bool before = kestrel.rows().track(0).tCheckbox;
  kestrel.clickBox(0);
  QCOMPARE(kestrel.rows().track(0).tCheckbox, !before);
  QCOMPARE(kestrel.table().selectedRows(), selected);

  const bool third = kestrel.rows().track(3).tCheckbox;
  kestrel.key(Qt::Key_Space);
  QCOMPARE(kestrel.rows().track(3).tCheckbox, !third);
  kestrel.key(Qt::Key_K);
  QVERIFY(kestrel.rows().track(3).tCheckbox);
  const std::int32_t group = kestrel.rows().track(3).tGroupID;
  for (int row = 0; row < kestrel.rows().rowCount(); ++row) {
    const ResultTrack& track = kestrel.rows().track(row);
    if (track.tGroupID == group) QCOMPARE(track.tCheckbox, row == 3);
  }
  kestrel.key(Qt::Key_C, Qt::ControlModifier);
  QVERIFY(QGuiApplication::clipboard()->text().startsWith(kestrel.text(3, "tName")));
}

void MainWindowTest::sorting() {
  auto running = std::make_unique<Running>();
  Running& kestrel = *running;
  kestrel.open(library_);
  kestrel.search();
  const auto stripes = [&] {
    return kestrel.rows().index(0, 1).data(ResultTableModel::RowBackgroundRole).value<QColor>();
  };
  QVERIFY(stripes().isValid());
  kestrel.click(5, columnOf("tName"));
  const auto selected = kestrel.table().selectedRows();
  kestrel.clickHeader("tName");
  kestrel.clickHeader("tName");
  const auto& order = kestrel.rows().controller().sortOrder();
  QCOMPARE(QString::fromStdString(order.front().key), "tName");
  QVERIFY(!order.front().ascending);
  QVERIFY(kestrel.text(0, "tName")
              .localeAwareCompare(kestrel.text(kestrel.rows().rowCount() - 1, "tName")) > 0);
  QCOMPARE(kestrel.table().selectedRows(), selected);
  QCOMPARE(kestrel.preferences().text(settings::sortColumn), "tName");
  QCOMPARE(kestrel.table().horizontalHeader()->sortIndicatorSection(), columnOf("tName"));
  // The next run begins with the same column.
  running.reset();
  Running next;
  next.open(library_);
  next.search();
  QCOMPARE(QString::fromStdString(next.rows().controller().sortOrder().front().key), "tName");
}

void MainWindowTest::filtering() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  const int all = kestrel.rows().rowCount();
  const QString word = kestrel.text(all / 2, "tArtist").section(' ', 0, 0);
  QVERIFY(!word.isEmpty());
  kestrel.key(Qt::Key_F, Qt::ControlModifier);
  auto* field = kestrel.find<QLineEdit>("Filter the table by words");
  QTRY_VERIFY(field->hasFocus());
  field->insert(word.toUpper());
  QTRY_VERIFY(!kestrel.rows().isFiltering());
  const int some = kestrel.rows().rowCount();
  QVERIFY(some > 0 && some < all);
  QVERIFY(!kestrel.rows().index(0, 1).data(ResultTableModel::RowBackgroundRole).isNull());
  // Sorting and ticking concern the rows that are seen.
  kestrel.clickHeader("tName");
  QCOMPARE(kestrel.rows().rowCount(), some);
  const std::uint32_t row = kestrel.rows().contentRow(some - 1);
  const auto before = kestrel.ticks();
  kestrel.table().selectRow(some - 1);
  kestrel.key(Qt::Key_Space);
  auto expected = before;
  expected[row] = !expected[row];
  QCOMPARE(kestrel.ticks(), expected);
  QTest::keyClick(field, Qt::Key_Escape);
  QTRY_COMPARE(kestrel.rows().rowCount(), all);
  QCOMPARE(kestrel.table().selectedRows(), std::vector<std::uint32_t>{row});
}

void MainWindowTest::escapeStopsASearch() {
  Running kestrel;
  QTest::keyClick(&kestrel.window(), Qt::Key_Escape);
  QCOMPARE(kestrel.preferences().integer(settings::cancelGetDupes), 1);
  kestrel.open(library_);
  std::latch go(1);
  kestrel.worker().post([&] { go.wait(); });
  QVERIFY(kestrel.delegate().findDuplicates());
  QCOMPARE(kestrel.preferences().integer(settings::cancelGetDupes), 0);
  QVERIFY(!kestrel.delegate().findDuplicates());
  QTest::keyClick(kestrel.find<QLineEdit>("Folder of the files to keep"), Qt::Key_Escape);
  QTest::keyClick(&kestrel.window(), Qt::Key_Escape);
  go.count_down();
  QVERIFY(kestrel.becomesIdle());
  QCOMPARE(kestrel.delegate().situation(), Situation::stopped);
  for (QProgressBar* bar : kestrel.window().findChildren<QProgressBar*>())
    QVERIFY(!bar->isVisible());
  kestrel.search();
}

void MainWindowTest::columnsCanBeArrangedButForTheCheckBox() {
  const int album = columnOf("tAlbum");
  const int comments = columnOf("tComments");
  {
    Running kestrel;
    QHeaderView* header = kestrel.table().horizontalHeader();
    header->moveSection(header->visualIndex(album), 0);
    QCOMPARE(header->visualIndex(0), 0);
    header->moveSection(0, 3);
    QCOMPARE(header->visualIndex(0), 0);
    header->moveSection(header->visualIndex(album), 1);
    QCOMPARE(header->visualIndex(album), 1);
    QMenu* menu = kestrel.table().makeColumnMenu(&kestrel.window());
    for (QAction* action : menu->actions())
      if (action->text() == "Comments") action->trigger();
    QVERIFY(!header->isSectionHidden(comments));
    kestrel.window().close();
  }
  Running next;
  QHeaderView* header = next.table().horizontalHeader();
  QCOMPARE(header->visualIndex(album), 1);
  QVERIFY(!header->isSectionHidden(comments));
  next.table().resetColumns();
  QVERIFY(header->visualIndex(album) != 1);
  QVERIFY(header->isSectionHidden(comments));
}

void MainWindowTest::theSelectionWindow() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  kestrel.click(2, columnOf("tName"));
  QTest::keyClick(&kestrel.table(), Qt::Key_Down, Qt::ShiftModifier);
  kestrel.window().showSelection();
  auto* lower = kestrel.window().findChild<ReviewTableView*>("lowerTable");
  QVERIFY(lower != &kestrel.table());
  QCOMPARE(lower->rows().rowCount(), 2);
  const auto before = kestrel.ticks();
  QTest::mouseClick(lower->viewport(), Qt::LeftButton, {},
                    lower->visualRect(lower->rows().index(1, columnOf("tName"))).center());
  QTest::keyClick(lower, Qt::Key_Space);
  auto expected = before;
  expected[3] = !expected[3];
  QCOMPARE(kestrel.ticks(), expected);
  QTest::keyClick(lower, Qt::Key_K);
  QVERIFY(kestrel.rows().track(3).tCheckbox);
  QVERIFY(lower->rows().track(1).tCheckbox);
  // A double click shows where the track stands in the result.
  kestrel.table().clearSelection();
  QTest::mouseDClick(lower->viewport(), Qt::LeftButton, {},
                     lower->visualRect(lower->rows().index(1, columnOf("tName"))).center());
  QCOMPARE(kestrel.table().selectedRows(), std::vector<std::uint32_t>{3});
}

void MainWindowTest::theSelectionIsReplaylisted() {
  Running kestrel;
  int opened = 0;
  PlaylistCommands commands;
  commands.replaylistSelection = [&] { ++opened; };
  kestrel.window().setPlaylistCommands(commands);
  kestrel.open(library_);
  kestrel.search();
  const auto listed = [&] {
    std::set<std::int32_t> groups;
    auto& lower = kestrel.window().findChild<ReviewTableView*>("lowerTable")->rows().controller();
    for (const ResultTrack& track : lower.content()) groups.insert(track.tGroupID);
    return std::pair(lower.size(), groups);
  };
  kestrel.key(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  QCOMPARE(opened, 0);
  // A track is replaced by the keeper of its group, so the whole group takes part.
  kestrel.click(0, columnOf("tName"));
  kestrel.key(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  QCOMPARE(opened, 1);
  const std::int32_t group = kestrel.rows().track(0).tGroupID;
  const auto whole = std::pair(kestrel.delegate().groups().members(group).size(), std::set{group});
  QVERIFY(whole.first > 1);
  QCOMPARE(listed(), whole);
  // What the user has put into the Selection window stays as it is there.
  kestrel.click(2, columnOf("tName"));
  kestrel.window().showSelection();
  kestrel.key(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  QCOMPARE(opened, 2);
  QCOMPARE(listed().first, 1U);
}

void MainWindowTest::groupsWithoutAKeeperAreFound() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  const auto next = [&] {
    kestrel.key(Qt::Key_G, Qt::ControlModifier);
    const auto rows = kestrel.table().selectedRows();
    return rows.empty() ? -1 : kestrel.rows().controller().content()[rows.front()].tGroupID;
  };
  const int count = kestrel.rows().rowCount();
  const std::vector<int> without = {kestrel.rows().track(count / 3).tGroupID,
                                    kestrel.rows().track(count - 1).tGroupID};
  QVERIFY(without[0] != without[1]);
  QCOMPARE(next(), -1);
  for (int row = 0; row < count; ++row)
    if (std::ranges::count(without, kestrel.rows().track(row).tGroupID) != 0)
      kestrel.delegate().setTick(kestrel.rows().contentRow(row), false);
  QCOMPARE(kestrel.delegate().summary().withoutKeeper, 2U);
  QCOMPARE(next(), without[0]);
  const QRect seen = kestrel.table().visualRect(kestrel.table().currentIndex());
  QVERIFY(kestrel.table().viewport()->rect().contains(seen));
  QCOMPARE(next(), without[1]);
  QCOMPARE(next(), without[0]);
}

void MainWindowTest::theInfoPaneAsksTheMusicApplicationOnceATrack() {
  const QString path = home_.filePath("Cloud/Library.xml");
  QVERIFY(QDir(home_.path()).mkpath("Cloud"));
  QFile original(library_);
  QVERIFY(original.open(QIODevice::ReadOnly));
  QByteArray text = original.readAll();
  text.replace("<key>Apple Music</key><true/>", "");
  text.replace("<key>Track Type</key>", "<key>Matched</key><true/><key>Track Type</key>");
  QFile changed(path);
  QVERIFY(changed.open(QIODevice::WriteOnly));
  changed.write(text);
  changed.close();

  Running kestrel;
  kestrel.open(path);
  kestrel.search();
  auto* table = kestrel.window().findChild<QTableWidget*>();
  const auto status = [&] {
    for (int row = 0; row < table->rowCount(); ++row)
      if (table->item(row, 0)->text() == "Cloud Status") return table->item(row, 1)->text();
    return QString();
  };
  // While the worker is held up nothing is greyed out, and the user goes on to another track.
  std::latch go(1);
  kestrel.worker().post([&] { go.wait(); });
  kestrel.click(0, columnOf("tName"));
  QTest::qWait(400);
  QVERIFY(!kestrel.delegate().isBusy());
  QCOMPARE(status(), QString());
  kestrel.click(1, columnOf("tName"));
  go.count_down();
  QTRY_COMPARE(status(), QString("Matched"));
}

void MainWindowTest::playlistsScopeTheSearch() {
  Running kestrel;
  kestrel.open(library_);
  auto* popup = kestrel.window().findChild<PlaylistPopupBox*>();
  auto* outline = kestrel.window().findChild<PlaylistOutlineView*>();
  QCOMPARE(popup->currentText(), "Music");
  const int last = popup->count() - 1;
  popup->setCurrentIndex(last);
  emit popup->activated(last);
  const std::string chosen = kestrel.preferences().text(settings::selectedPlaylistPid);
  QCOMPARE(QString::fromStdString(kestrel.delegate().chosenPlaylistName()), popup->itemText(last));
  QVERIFY(outline->currentItem());
  QCOMPARE(outline->currentItem()->text(0), popup->itemText(last));
  // A click in the outline is the same as the pop-up.
  outline->setCurrentItem(outline->topLevelItem(0));
  QVERIFY(kestrel.preferences().text(settings::selectedPlaylistPid) != chosen);
  QCOMPARE(popup->currentText(), outline->topLevelItem(0)->text(0));
  QTest::keyClick(&kestrel.window(), Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
  QTRY_COMPARE(popup->currentText(), "Music");
}

void MainWindowTest::whatTheEmptyPageSays() {
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
  QVERIFY(says("Ready to search Music"));
  search({"tName", "tArtist", "tFileName", "realSize", "tComments", "hexpid"});
  QVERIFY(says("No duplicates by name, artist, file name, size, comments and hexpid in Music."));
  QVERIFY(says("Try fewer criteria."));
  search({});
  QVERIFY(says("Nothing to match by"));
  search({"tName", "Filename"});
  QVERIFY(says("“Filename” finds nothing"));
  QTest::mouseClick(kestrel.find<QPushButton>("Use File Name Instead"), Qt::LeftButton);
  QVERIFY(kestrel.becomesIdle());
  QVERIFY(kestrel.delegate().situation() != Situation::filenameOnly);
}

void MainWindowTest::whatCannotBeOpenedIsShown() {
  Running kestrel;
  const QString broken = home_.filePath("Broken.xml");
  QFile file(broken);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("<plist version=\"1.0\"><dict><key>Tracks</key>\n<oops>");
  file.close();
  for (const QString& path : {broken, home_.filePath("none.xml"), home_.path()}) {
    kestrel.open(path);
    auto* box = kestrel.window().findChild<QMessageBox*>();
    QVERIFY2(box && box->isVisible(), qPrintable(path));
    QVERIFY(box->informativeText().contains(path));
    QTest::keyClick(box, Qt::Key_Escape);
    QTRY_VERIFY(!kestrel.window().findChild<QMessageBox*>());
  }
  kestrel.find<QPushButton>("Try the Demo Library");
}

void MainWindowTest::draggedDocumentsOpen() {
  Running kestrel;
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(library_)});
  QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&kestrel.window(), &enter);
  QVERIFY(enter.isAccepted());
  QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&kestrel.window(), &drop);
  QVERIFY(kestrel.becomesIdle());
  QCOMPARE(kestrel.delegate().situation(), Situation::notSearched);
}

void MainWindowTest::everythingHasAName() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  for (QWidget* widget : kestrel.window().findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisibleTo(&kestrel.window())) continue;
    if (qobject_cast<QLineEdit*>(widget) && qobject_cast<QAbstractSpinBox*>(widget->parent()))
      continue;
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
    QVERIFY(accessible);
    const bool plain = accessible->role() == QAccessible::Client ||
                       accessible->role() == QAccessible::ScrollBar ||
                       accessible->role() == QAccessible::PageTabList ||
                       accessible->role() == QAccessible::Splitter;
    const QByteArray what = QByteArray(widget->metaObject()->className()) + " in " +
                            widget->parent()->metaObject()->className();
    QVERIFY2(plain || !accessible->text(QAccessible::Name).isEmpty(), what.constData());
  }
}

void MainWindowTest::noTwoMnemonicsAreTheSame() {
  Running kestrel;
  QMap<QString, QString> met;
  const auto meet = [&met](const QString& text) {
    const QString key = QKeySequence::mnemonic(text).toString();
    if (key.isEmpty()) return;
    QVERIFY2(!met.contains(key), qPrintable(key + ": " + met[key] + ", " + text));
    met[key] = text;
  };
  const auto meetAll = [&] {
    met.clear();
    for (const QAction* action : kestrel.window().menuBar()->actions()) meet(action->text());
    for (QWidget* widget : kestrel.window().findChildren<QWidget*>()) {
      if (!widget->isVisibleTo(&kestrel.window())) continue;
      if (const auto* button = qobject_cast<QAbstractButton*>(widget)) meet(button->text());
      if (const auto* label = qobject_cast<QLabel*>(widget); label && label->buddy())
        meet(label->text());
      if (const auto* tabs = qobject_cast<QTabBar*>(widget))
        for (int i = 0; i < tabs->count(); ++i) meet(tabs->tabText(i));
    }
    QVERIFY(met.size() > 8);
  };
  meetAll();
  kestrel.open(library_);
  meetAll();
  kestrel.search();
  meetAll();
  for (const QMenu* menu : kestrel.window().menuBar()->findChildren<QMenu*>()) {
    met.clear();
    for (const QAction* action : menu->actions()) meet(action->text());
  }
}

void MainWindowTest::aMillionRowsArePaintedAndTickedAtOnce() {
  Running kestrel;
  kestrel.open(library_);
  kestrel.search();
  const auto few = kestrel.rows().controller().content();
  std::vector<ResultTrack> many;
  for (int i = 0; i < 1000000; ++i) {
    many.push_back(few[static_cast<std::size_t>(i) % few.size()]);
    many.back().dupeSort = i / 2 + 1;
  }
  // Generous: the machine may be busy, and a view that asked for every row would take far longer.
  constexpr int patience = 4000;
  QElapsedTimer time;
  kestrel.rows().controller().add(std::move(many));
  time.start();
  const QPixmap picture = kestrel.table().grab();
  qInfo("first paint of a million rows: %lld ms", time.elapsed());
  QVERIFY2(time.elapsed() < patience, qPrintable(QString("painted in %1 ms").arg(time.elapsed())));
  time.start();
  kestrel.table().selectInMiddle(700000);
  kestrel.table().reloadFlags();
  kestrel.table().grab();
  QVERIFY2(time.elapsed() < patience, qPrintable(QString("scrolled in %1 ms").arg(time.elapsed())));
  const QRect seen = kestrel.table().visualRect(kestrel.rows().index(700000, 1));
  QVERIFY(qAbs(seen.center().y() - kestrel.table().viewport()->height() / 2) < seen.height());
  time.start();
  kestrel.table().selectAll();
  kestrel.table().grab();
  QVERIFY2(time.elapsed() < patience, qPrintable(QString("selected in %1 ms").arg(time.elapsed())));
  kestrel.rows().controller().removeAll();
}

void MainWindowTest::anythingInAnyOrder() {
  Running kestrel;
  kestrel.open(library_);
  std::mt19937 random(20);
  const auto below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
  const std::vector<Qt::Key> keys = {Qt::Key_Down, Qt::Key_Up,    Qt::Key_PageDown, Qt::Key_Home,
                                     Qt::Key_End,  Qt::Key_Space, Qt::Key_K,        Qt::Key_Escape};
  for (int step = 0; step < 500; ++step) {
    const int rows = kestrel.rows().rowCount();
    switch (below(12)) {
      case 0:
        kestrel.delegate().findDuplicates();
        break;
      case 1:
        kestrel.find<QRadioButton>(below(2) ? "Most Played" : "Single Arbitrary")->click();
        break;
      case 2:
        kestrel.clickHeader(tableColumns()[static_cast<std::size_t>(1 + below(12))].identifier);
        break;
      case 3:
        kestrel.find<QLineEdit>("Filter the table by words")
            ->setText(QString("aeiou").mid(below(6)));
        break;
      case 4:
        kestrel.window().showSelection();
        break;
      case 5:
        if (below(8) == 0) kestrel.delegate().refresh();
        break;
      case 6:
        kestrel.find<QComboBox>("A tick marks")->setCurrentIndex(below(2));
        break;
      case 7:
        if (rows) kestrel.clickBox(below(rows));
        break;
      case 8:
        if (rows) kestrel.click(below(rows), 1 + below(4));
        break;
      case 9:
        kestrel.table().selectAll();
        break;
      default:
        kestrel.key(keys[static_cast<std::size_t>(below(static_cast<int>(keys.size())))]);
        break;
    }
    if (below(3) == 0) QTest::qWait(1);
    if (below(40) == 0) QVERIFY(kestrel.becomesIdle());
  }
  QVERIFY(kestrel.becomesIdle());
  kestrel.find<QLineEdit>("Filter the table by words")->clear();
  kestrel.search();
  QTRY_COMPARE(std::size_t(kestrel.rows().rowCount()), kestrel.delegate().summary().tracks);
}

}  // namespace kestrel

QTEST_MAIN(kestrel::MainWindowTest)
#include "main_window_test.moc"
