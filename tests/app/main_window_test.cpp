// The main window as its users work with it: real widgets, real files, no screen.

#include <QAbstractButton>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <latch>
#include <memory>
#include <set>

#include "app/controller/criteria.h"
#include "app/libraries/files_elsewhere_bar.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/text.h"

namespace kestrel::testing {

class MainWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void aNewcomerFindsDuplicatesWithTheMouseAlone() {
    Running kestrel;
    kestrel.find<QPushButton>("Try the Demo Library");
    kestrel.open(library_);
    QTest::mouseClick(kestrel.find<QPushButton>("Find Duplicates"), Qt::LeftButton);
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.delegate().situation(), Situation::result);
    QVERIFY(kestrel.table().isVisible());
    QCOMPARE(kestrel.window().focusWidget(), &kestrel.table());
    const ResultSummary& summary = kestrel.delegate().summary();
    QVERIFY(summary.groups > 5);
    QCOMPARE(kestrel.rows().shownTracks(), summary.tracks);
    QCOMPARE(std::size_t(kestrel.rows().rowCount()), summary.tracks + summary.groups);
    QVERIFY(kestrel.find<QLabel>("Result")->text().startsWith(
        QString("%1 tracks in %2 groups").arg(summary.tracks).arg(summary.groups)));
    kestrel.click(0, columnOf("tName"));
    QTRY_VERIFY(kestrel.find<QLabel>("Why it is kept")->text().contains("Oldest Date Added"));
  }

  void aChangedRuleChangesTheKeepers() {
    Searched kestrel(library_);
    const auto before = kestrel.ticks();
    auto* rule = kestrel.find<QComboBox>("Rule that decides which copy is kept");
    rule->setCurrentIndex(rule->findText("Newest Date Added"));
    QTRY_COMPARE(kestrel.preferences().integer(settings::filterMatrixButton), 6);
    QVERIFY(kestrel.becomesIdle());
    QVERIFY(kestrel.ticks() != before);
    QCOMPARE(kestrel.preferences().integer(settings::filterMatrixButton), 6);
    // Another meaning of the ticks: every one changes, and no keeper does.
    const auto keepers = kestrel.ticks();
    const std::size_t toActOn = kestrel.delegate().summary().toActOn;
    kestrel.delegate().setKeeperMode(1);
    auto inverted = keepers;
    inverted.flip();
    QCOMPARE(kestrel.ticks(), inverted);
    QCOMPARE(kestrel.delegate().summary().toActOn, toActOn);
  }

  void ticking() {
    Searched kestrel(library_);
    kestrel.click(3, columnOf("tName"));
    const auto selected = kestrel.table().selectedRows();
    const bool before = kestrel.rows().track(0).tCheckbox;
    const QSignalSpy changes(&kestrel.rows(), &QAbstractItemModel::dataChanged);
    const QImage picture = kestrel.table().grab().toImage();
    kestrel.clickBox(0);
    QCOMPARE(kestrel.rows().track(0).tCheckbox, !before);
    QVERIFY(!changes.isEmpty() && kestrel.table().grab().toImage() != picture);
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

  void pressesBesideTheTextsLeaveTheSelection() {
    Searched kestrel(library_);
    auto& table = kestrel.table();
    // Room on the right and at the bottom.
    kestrel.window().resize(1600, 3000);
    for (int column = 1; column < kestrel.rows().columnCount(); ++column)
      table.setColumnShown(column, column == columnOf("tName"));
    const auto place = [&](QPoint cell) {
      const QRect beside = table.visualRect(kestrel.rows().index(std::max(cell.x(), 0), 0));
      const int x = cell.y() == 0    ? beside.right() - 3
                    : cell.y() == -1 ? table.horizontalHeader()->length() + 20
                                     : table.columnViewportPosition(cell.y()) + 20;
      const int y = cell.x() >= 0 ? beside.center().y() : table.viewport()->height() - 5;
      return QPoint(x, y);
    };
    QVERIFY(!table.indexAt(place({-1, 0})).isValid() && !table.indexAt(place({2, -1})).isValid());
    const int name = columnOf("tName");
    const struct {
      const char* what;
      QPoint from, to;  // row and column; -1 is below the rows, or beside the columns
      Qt::MouseButton button = Qt::LeftButton;
    } cases[] = {{"beside the box, of a selected row", {2, 0}, {2, 0}},
                 {"beside the box, of another", {5, 0}, {5, 0}},
                 {"below the boxes", {-1, 0}, {-1, 0}},
                 {"beside the columns", {2, -1}, {2, -1}},
                 {"in the corner", {-1, -1}, {-1, -1}},
                 {"another button", {5, 0}, {5, 0}, Qt::RightButton},
                 {"a drag into the names", {0, 0}, {4, name}}};
    const auto ticks = kestrel.ticks();
    for (const auto& [what, from, to, button] : cases) {
      kestrel.click(1, name);
      for (int more = 0; more < 2; ++more) kestrel.key(Qt::Key_Down, Qt::ShiftModifier);
      const auto selected = table.selectedRows();
      QCOMPARE(selected.size(), 3U);
      QWidget* seen = table.viewport();
      QTest::mousePress(seen, button, {}, place(from));
      if (to != from)
        for (const QPoint& at : {place(from) + QPoint(30, 10), place(to)}) {
          QMouseEvent move(QEvent::MouseMove, at, seen->mapToGlobal(at), Qt::NoButton, button, {});
          QApplication::sendEvent(seen, &move);
        }
      QTest::mouseRelease(seen, button, {}, place(to));
      QVERIFY2(table.selectedRows() == selected, what);
      QVERIFY2(kestrel.ticks() == ticks, what);
      // The next press selects as ever.
      kestrel.click(4, name);
      QCOMPARE(table.selectedRows(), std::vector{kestrel.rows().contentRow(4)});
    }
  }

  void manyTicksAreOneChangeAndRefusedOnesAreTold() {
    Searched kestrel(library_);
    int sums = 0;
    const Observers::Subscription heard = kestrel.delegate().summaryObservers.add([&] { ++sums; });
    kestrel.table().selectAll();
    kestrel.window().showSelection();
    kestrel.key(Qt::Key_Space);
    const auto before = kestrel.ticks();
    const std::size_t groups = kestrel.delegate().summary().groups;
    QCOMPARE(std::size_t(std::count(before.begin(), before.end(), true)), groups);
    QCOMPARE(kestrel.delegate().groups().picked().size(), groups);
    QCOMPARE(sums, 1);

    auto* status = kestrel.window().statusBar();
    kestrel.click(1, columnOf("tName"));
    kestrel.window().showSelection();
    kestrel.lower().selectAll();
    std::latch go(1);
    QVERIFY(kestrel.delegate().run([&] { go.wait(); }, [] {}));
    for (ReviewTableView* table : {&kestrel.table(), &kestrel.lower()})
      for (const Qt::Key key : {Qt::Key_Space, Qt::Key_K}) {
        status->clearMessage();
        QTest::keyClick(table, key);
        QVERIFY(status->currentMessage().contains("while a task is running"));
      }
    go.count_down();
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.ticks(), before);
  }

  void sorting() {
    auto running = std::make_unique<Searched>(library_);
    Running& kestrel = *running;
    const auto stripes = [&] {
      return kestrel.rows().index(1, 1).data(ResultTableModel::RowBackgroundRole).value<QColor>();
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
    Searched next(library_);
    QCOMPARE(QString::fromStdString(next.rows().controller().sortOrder().front().key), "tName");
  }

  void filtering() {
    Searched kestrel(library_);
    const int all = kestrel.rows().rowCount();
    const QString word = kestrel.text(all / 2, "tArtist").section(' ', 0, 0);
    QVERIFY(!word.isEmpty());
    // The info pane tells of what is selected in what is seen.
    kestrel.table().setCurrentIndex(kestrel.rows().index(all / 2, 1));
    const auto told = [&] { return kestrel.find<QLabel>("Selected track")->text(); };
    QTRY_VERIFY(told().startsWith(kestrel.text(all / 2, "tName")));
    auto* words = kestrel.find<QLineEdit>("Filter the table by words");
    words->setText(kestrel.text(0, "tName"));
    QTRY_VERIFY(kestrel.rows().isFiltered() && !kestrel.rows().isFiltering());
    QTRY_VERIFY(told().startsWith(kestrel.text(0, "tName")));
    // What was hidden is not selected, then or later: no command may take it.
    QVERIFY(kestrel.rows().controller().selection().empty());
    words->clear();
    QTRY_COMPARE(kestrel.rows().rowCount(), all);
    QVERIFY(kestrel.table().selectedRows().empty());
    kestrel.key(Qt::Key_F, Qt::ControlModifier);
    QTRY_VERIFY(words->hasFocus());
    words->insert(word.toUpper());
    QTRY_VERIFY(!kestrel.rows().isFiltering());
    const int some = kestrel.rows().rowCount();
    QVERIFY(some > 0 && some < all);
    QVERIFY(kestrel.rows().index(0, 1).data(ResultTableModel::RowBackgroundRole).isNull());
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
    QTest::keyClick(words, Qt::Key_Escape);
    QTRY_COMPARE(kestrel.rows().rowCount(), all);
    QCOMPARE(kestrel.table().selectedRows(), std::vector<std::uint32_t>{row});
  }

  void escapeStopsASearch() {
    Running kestrel;
    kestrel.preferences().set(settings::filterMatrixButton, std::int64_t{5});
    QTest::keyClick(&kestrel.window(), Qt::Key_Escape);
    QCOMPARE(kestrel.preferences().integer(settings::cancelGetDupes), 1);
    kestrel.open(library_);
    std::latch go(1);
    kestrel.worker().post([&] { go.wait(); });
    QVERIFY(kestrel.delegate().findDuplicates());
    QCOMPARE(kestrel.preferences().integer(settings::cancelGetDupes), 0);
    QVERIFY(!kestrel.delegate().findDuplicates() && !kestrel.delegate().openLibrary("/none"));
    QTest::keyClick(kestrel.find<QComboBox>("Rule that decides which copy is kept"),
                    Qt::Key_Escape);
    QTest::keyClick(&kestrel.window(), Qt::Key_Escape);
    go.count_down();
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.delegate().situation(), Situation::stopped);
  }

  void columnsCanBeArrangedButForTheCheckBox() {
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

  void theSelectionWindow() {
    Searched kestrel(library_);
    kestrel.click(2, columnOf("tName"));
    QTest::keyClick(&kestrel.table(), Qt::Key_Down, Qt::ShiftModifier);
    kestrel.window().showSelection();
    auto* lower = &kestrel.lower();
    QVERIFY(lower != &kestrel.table());
    QCOMPARE(lower->rows().rowCount(), 2);
    QCOMPARE(lower->selectedRows(), std::vector{1U});
    const auto before = kestrel.ticks();
    Running::click(*lower, 1, columnOf("tName"));
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

    // It has the keys of its menu: they mean the table of the window that they are pressed in.
    std::vector<ActionScope> trashed;
    int replaylisted = 0;
    PlaylistCommands commands;
    commands.trash = [&](const ActionScope& scope) { trashed.push_back(scope); };
    commands.replaylist = [&](const ActionScope&) { ++replaylisted; };
    kestrel.window().setPlaylistCommands(commands);
    kestrel.click(6, columnOf("tName"));
    lower->selectRow(1);
    auto* clipboard = QGuiApplication::clipboard();
    for (auto [table, row] : {std::pair(lower, 3), std::pair(&kestrel.table(), 6)}) {
      table->window()->activateWindow();
      QTRY_COMPARE(QApplication::activeWindow(), table->window());
      const TrackRecord& record = *kestrel.rows().track(row).record;
      QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
      QCOMPARE(clipboard->text().section('\t', 0, 0), kestrel.text(row, "tName"));
      QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
      QCOMPARE(clipboard->text().toStdString(), record.location());
      QTest::keyClick(table, Qt::Key_Delete);
      QCOMPARE(trashed.back().selected, std::vector{kestrel.rows().track(row).tGroupID});
      QVERIFY(trashed.back().takeSelected);
      QTest::keyClick(table, Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
    }
    QCOMPARE(trashed.size(), 2U);
    QCOMPARE(replaylisted, 2);
    lower->window()->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), lower->window());
    // Esc is the main window's key, and the filter its field.
    QTest::keyClick(lower, Qt::Key_Escape);
    QCOMPARE(kestrel.preferences().integer(settings::cancelGetDupes), 0);
    QTest::keyClick(lower, Qt::Key_F, Qt::ControlModifier);
    QTRY_VERIFY(kestrel.find<QLineEdit>("Filter the table by words")->hasFocus());
  }

  void actionsAreAboutGroups() {
    Searched kestrel(library_);
    std::vector<ActionScope> scopes;
    PlaylistCommands commands;
    commands.replaylist = [&](const ActionScope& scope) { scopes.push_back(scope); };
    kestrel.window().setPlaylistCommands(commands);
    const auto groupAt = [&](int row) { return kestrel.rows().track(row).tGroupID; };
    const auto replaylistSelection = [&] {
      kestrel.key(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
    };
    replaylistSelection();
    QVERIFY(scopes.empty());
    kestrel.key(Qt::Key_R, Qt::ControlModifier);
    QVERIFY(!scopes.back().shown && scopes.back().selected.empty());
    // Each group once, however many of its copies are selected.
    kestrel.click(0, columnOf("tName"));
    QTest::keyClick(&kestrel.table(), Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(groupAt(0), groupAt(1));
    replaylistSelection();
    QCOMPARE(scopes.back().selected, std::vector{groupAt(0)});
    QVERIFY(scopes.back().takeSelected);
    // What the filter shows.
    const std::int32_t group = groupAt(0);
    auto* words = kestrel.find<QLineEdit>("Filter the table by words");
    words->setText(kestrel.text(0, "tName"));
    QTRY_VERIFY(kestrel.rows().isFiltered() && !kestrel.rows().isFiltering());
    std::set<std::int32_t> shown;
    for (int row = 0; row < kestrel.rows().rowCount(); ++row) shown.insert(groupAt(row));
    kestrel.key(Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(scopes.back().shown, std::vector(shown.begin(), shown.end()));
    QVERIFY(shown.contains(group) && !scopes.back().takeSelected);
    words->clear();
    QTRY_VERIFY(!kestrel.rows().isFiltered());
    // What the Selection window lists, all of it, and not only what is selected there.
    kestrel.table().selectAll();
    kestrel.window().showSelection();
    kestrel.click(2, columnOf("tName"));
    replaylistSelection();
    QCOMPARE(scopes.back().selected.size(), kestrel.delegate().summary().groups);
  }

  void groupsWithoutAKeeperAreFound() {
    Searched kestrel(library_);
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
    std::vector<std::uint32_t> members;
    for (int row = 0; row < count; ++row)
      if (std::ranges::count(without, kestrel.rows().track(row).tGroupID) != 0)
        members.push_back(kestrel.rows().contentRow(row));
    QVERIFY(kestrel.delegate().setTicks(members, false));
    QCOMPARE(kestrel.delegate().summary().withoutKeeper, 2U);
    QCOMPARE(next(), without[0]);
    const QRect seen = kestrel.table().visualRect(kestrel.table().currentIndex());
    QVERIFY(kestrel.table().viewport()->rect().contains(seen));
    QCOMPARE(next(), without[1]);
    QCOMPARE(next(), without[0]);
  }

  void theInfoPaneAsksTheMusicApplicationOnceATrack() {
    auto text = QByteArray::fromStdString(TemporaryFolder::read(library_.toStdString()));
    text.replace("<key>Apple Music</key><true/>", "");
    text.replace("<key>Track Type</key>", "<key>Matched</key><true/><key>Track Type</key>");
    Searched kestrel(home_.write("Cloud/Library.xml", text.toStdString()));
    const auto status = [&] {
      QString shown;
      for (const QLabel* label : kestrel.window().findChildren<QLabel*>())
        if (label->accessibleName() == "What the music application says") shown = label->text();
      return shown;
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
    QTRY_COMPARE(status(), QString("In the cloud: Matched"));
  }

  void whatIsArrangedIsKeptBeforeTheWindowCloses() {
    {
      // What a window without a library keeps must not press its parts together in the next one.
      Running empty;
      QTest::qWait(1200);
    }
    Searched kestrel(library_);
    const auto isKept = [&](const char* setting) {
      return QTest::qWaitFor([&] { return !kestrel.preferences().text(setting).empty(); }, 5000);
    };
    const auto forget = [&](const char* setting) {
      QTest::qWait(1200);
      kestrel.preferences().set(setting, std::string());
    };
    forget("windowGeometry");
    kestrel.window().move(kestrel.window().pos() + QPoint(40, 30));
    QVERIFY(isKept("windowGeometry"));
    QVERIFY(kestrel.find<QWidget>("Comparison of the copies")->height() >= 140);
    QVERIFY(kestrel.find<QTabBar>("Decisions and playlists")->parentWidget()->width() >= 240);
    // Of a window without a library, whose left side is hidden, the sharing says nothing.
    const std::string sharing = kestrel.preferences().text("windowSides");
    QVERIFY(!sharing.empty());
    kestrel.find<QTabBar>("Decisions and playlists")->parentWidget()->hide();
    forget("windowGeometry");
    kestrel.window().move(kestrel.window().pos() + QPoint(8, 8));
    QVERIFY(isKept("windowGeometry"));
    QCOMPARE(kestrel.preferences().text("windowSides"), sharing);
    forget("upperTableColumns");
    kestrel.table().horizontalHeader()->moveSection(2, 3);
    QVERIFY(isKept("upperTableColumns"));
  }

  void theComparePaneIsNeverEmptyBesideAResult() {
    Searched kestrel(library_, true);
    const auto compared = [&] { return kestrel.find<QLabel>("Selected track")->text(); };
    kestrel.click(1, columnOf("tName"));
    QTRY_VERIFY(compared().startsWith(kestrel.text(1, "tName")));
    const QString first = compared();
    const int last = kestrel.rows().rowCount() - 1;
    kestrel.table().selectInMiddle(last);
    QTRY_VERIFY(compared().startsWith(kestrel.text(last, "tName")));
    kestrel.table().selectionModel()->clear();
    QTRY_COMPARE(compared(), first);
    // Of a field that is yes in all copies its name is told, and no bare tick.
    for (int row = 0; row <= last; ++row) {
      kestrel.table().selectInMiddle(row);
      QTest::qWait(100);
      for (const QLabel* label : kestrel.window().findChildren<QLabel*>())
        if (label->accessibleName() == "The same in all copies")
          QVERIFY(!label->text().contains(QStringLiteral("\u2713")));
    }
  }

  void keysAreListedBesideWhatTheyDo() {
    Searched kestrel(library_);
    kestrel.clickBox(0);
    for (QAction* action : kestrel.window().findChildren<QAction*>())
      if (action->text().remove('&') == "Keys and Symbols") action->trigger();
    QStringList told;
    for (const QWidget* dialog : QApplication::topLevelWidgets())
      if (dialog->isVisible() && dialog->windowTitle() == "Keys and Symbols")
        for (const QLabel* label : dialog->findChildren<QLabel*>()) told << label->text();
    // Not what would be undone just now.
    QVERIFY(told.contains("Undo"));
    QVERIFY(told.contains("Repair Playlists"));
  }

  void playlistsScopeTheSearch() {
    auto running = std::make_unique<Running>();
    Running& kestrel = *running;
    kestrel.open(library_);
    auto* popup = kestrel.window().findChild<PlaylistPopupBox*>();
    auto* outline = kestrel.window().findChild<PlaylistOutlineView*>();
    // Taking the focus chooses nothing.
    kestrel.window().findChild<QTabWidget*>()->setCurrentIndex(1);
    outline->setFocus();
    QTRY_VERIFY(outline->hasFocus());
    QCOMPARE(popup->currentText(), "Whole library");
    const int last = popup->count() - 1;
    popup->setCurrentIndex(last);
    Q_EMIT popup->activated(last);
    QCOMPARE(toQt(kestrel.delegate().chosenPlaylistName()), popup->itemText(last));
    // A search in less than the whole library says so.
    const auto summary = [&] { return kestrel.find<QLabel>("Result")->text(); };
    kestrel.search();
    QVERIFY2(summary().startsWith("Only in “" + popup->itemText(last) + "”: "),
             qPrintable(summary()));
    QVERIFY(outline->currentItem());
    QCOMPARE(outline->currentItem()->text(0), popup->itemText(last));
    QTest::keyClick(&kestrel.window(), Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_COMPARE(popup->currentText(), "Whole library");
    kestrel.search();
    QVERIFY(!summary().contains("Only in"));

    // A click in the outline chooses, as do its keys.
    const auto click = [&](QTreeWidgetItem* item) {
      outline->scrollToItem(item);
      QTest::mouseClick(outline->viewport(), Qt::LeftButton, {},
                        outline->visualItemRect(item).center());
      return popup->currentText() == item->text(0);
    };
    QVERIFY(click(outline->topLevelItem(1)));
    QTest::keyClick(outline, Qt::Key_Up);
    QCOMPARE(popup->currentText(), outline->topLevelItem(0)->text(0));
    // What is shown only is chosen by the first click on it, or by Return.
    for (const bool byKey : {false, true}) {
      const auto& records = kestrel.delegate().playlists().playlistsArray();
      kestrel.window().revealPlaylist(records[std::size_t(last - byKey)]->decpid);
      QVERIFY(outline->currentItem()->text(0) != popup->currentText());
      if (byKey) QTest::keyClick(outline, Qt::Key_Return);
      QVERIFY(byKey ? outline->currentItem()->text(0) == popup->currentText()
                    : click(outline->currentItem()));
    }

    // Reading again keeps the rows as they are, and the next run begins with the same choice.
    QTreeWidgetItem* folder = nullptr;
    for (QTreeWidgetItemIterator it(outline); *it && !folder; ++it)
      if ((*it)->childCount() > 0) folder = *it;
    QVERIFY(folder);
    const QString opened = folder->text(0);
    folder->setExpanded(true);
    QVERIFY(click(folder->child(0)));
    const QString chosen = folder->child(0)->text(0);
    QVERIFY(kestrel.delegate().refresh());
    QVERIFY(kestrel.becomesIdle());
    QTRY_VERIFY(outline->currentItem() && outline->currentItem()->text(0) == chosen);
    QVERIFY(outline->findItems(opened, Qt::MatchExactly).front()->isExpanded());
    QVERIFY(outline->selectedItems().contains(outline->currentItem()));
    running.reset();
    Running next;
    next.open(library_);
    outline = next.window().findChild<PlaylistOutlineView*>();
    QTRY_VERIFY(outline->currentItem() && outline->currentItem()->text(0) == chosen);
  }

  void filesThatAreElsewhereAreFound() {
    QString text = QString::fromStdString(TemporaryFolder::read(library_.toStdString()));
    text.replace(home_.path("Music"), "/C:/Users/ann/Music");
    const QString moved = home_.write("Moved.xml", text.toStdString());
    const auto bar = [](Running& kestrel) {
      return kestrel.window().findChild<FilesElsewhereBar*>();
    };
    {
      Running kestrel;
      kestrel.open(library_);
      QVERIFY(!bar(kestrel)->isVisible());
      kestrel.open(moved);
      QVERIFY(bar(kestrel)->isVisible());
      bar(kestrel)->lookIn(home_.path("Music"));
      QMessageBox* box = nullptr;
      QTRY_VERIFY((box = kestrel.window().findChild<QMessageBox*>()));
      QVERIFY2(box->informativeText()
                   .remove(QChar(0x200B))
                   .endsWith(": C:/Users/ann/Music → " + home_.path("Music")),
               qPrintable(box->informativeText()));
      QTest::mouseClick(kestrel.find<QPushButton>("Use These Files"), Qt::LeftButton);
      QVERIFY(kestrel.becomesIdle());
      QVERIFY(!bar(kestrel)->isVisible());
    }
    Running next;
    next.open(moved);
    QVERIFY2(!bar(next)->isVisible(), "is remembered");
    next.search();
    const auto rows = next.delegate().content();
    QVERIFY(std::any_of(rows.begin(), rows.end(), [&](const ResultTrack& row) {
      return row.record->location().starts_with(home_.path("Music").toStdString());
    }));
  }

  void theDesktopsAppearanceComesBack() {
    QApplication::setStyle("windows");
    Running kestrel;
    const auto choose = [&](const QString& title) {
      for (auto* menu : kestrel.window().findChildren<QMenu*>())
        for (QAction* action : menu->actions())
          if (action->text().remove('&') == title) action->trigger();
      QCoreApplication::processEvents();  // windows are told later
      return std::pair(QApplication::style()->name() == "windows",
                       kestrel.table().palette().color(QPalette::Base).lightness() > 128);
    };
    QCOMPARE(choose("Dark"), std::pair(false, false));
    QCOMPARE(choose("Light"), std::pair(false, true));
    QCOMPARE(choose("Dark"), std::pair(false, false));
    QCOMPARE(choose("Like the Desktop"), std::pair(true, true));
    QVERIFY(!kestrel.preferences().contains("appearance"));
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<MainWindowTest> mainWindowTest("main_window");

}  // namespace kestrel::testing

#include "main_window_test.moc"
