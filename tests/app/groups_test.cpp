// The result in groups, and what the user decides about them.

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeWidget>
#include <algorithm>
#include <memory>
#include <set>

#include "app/choices/left_out_sheet.h"
#include "app/controller/group_orders.h"
#include "app/result/group_comparison.h"
#include "app/result/track_player.h"
#include "foundation/dates.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"
#include "ui/qt/look.h"

namespace kestrel::testing {
namespace {

/// Plays nothing, and tells what it was asked.
class SilentBackend final : public AudioBackend {
 public:
  explicit SilentBackend(QStringList& asked) : asked_(asked) {}
  QString unavailable() override { return why; }
  void play(const QString& path, qint64 position) override {
    asked_ << QStringLiteral("%1 at %2").arg(path).arg(position);
  }
  void pause() override { asked_ << "pause"; }
  void resume() override { asked_ << "resume"; }
  void stop() override { asked_ << "stop"; }
  [[nodiscard]] qint64 position() const override { return at; }

  QString why;
  qint64 at = 0;

 private:
  QStringList& asked_;
};

}  // namespace

class GroupsTest : public QObject {
  Q_OBJECT

 private:
  static QAction* action(Running& kestrel, const QString& text) {
    for (QAction* one : kestrel.window().findChildren<QAction*>())
      if (QString(one->text()).remove('&').startsWith(text)) return one;
    qFatal("There is no %s", qPrintable(text));
  }
  /// The first heading whose group has as many copies.
  static int headingWith(Running& kestrel, std::size_t copies) {
    ResultTableModel& rows = kestrel.rows();
    for (int row = 0; row < rows.rowCount(); ++row)
      if (rows.isHeading(row) &&
          kestrel.delegate().groups().facts(rows.groupAt(row)).copies == copies)
        return row;
    qFatal("There is no group of %d", int(copies));
  }
  static std::multiset<std::string> keptPaths(Running& kestrel) {
    std::multiset<std::string> kept;
    const auto content = kestrel.delegate().content();
    for (std::uint32_t row = 0; row < content.size(); ++row)
      if (kestrel.delegate().groups().isKeeper(row))
        kept.emplace(content[row].record->value(TrackKey::hexpid).text());
    return kept;
  }

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void groupsFoldUnderTheirHeadings() {
    Searched kestrel(library_, true);
    ResultTableModel& rows = kestrel.rows();
    ReviewTableView& table = kestrel.table();
    const int all = rows.rowCount();
    const auto groups = int(kestrel.delegate().summary().groups);
    QVERIFY(rows.isHeading(0) && !rows.isHeading(1));
    const GroupHeading heading = rows.heading(0);
    QVERIFY(!heading.title.isEmpty() && heading.copies.contains("cop"));
    const auto spoken = [&](int column) {
      return rows.index(0, column).data(Qt::AccessibleTextRole).toString();
    };
    QVERIFY(spoken(0).startsWith("Group: ") && spoken(3).contains(heading.title));
    for (int column = 0; column < rows.columnCount(); ++column)
      QVERIFY(!rows.index(1, column).data(Qt::AccessibleTextRole).toString().isEmpty());
    QVERIFY(rows.index(1, 2).data(Qt::AccessibleDescriptionRole).toString().startsWith("Copy 1"));

    // From a track, Left folds its group, and the keys stay with it.
    const int count =
        rows.headingOf(1) == 0 ? int(kestrel.delegate().groups().facts(rows.groupAt(0)).copies) : 0;
    kestrel.click(2, columnOf("tName"));
    kestrel.key(Qt::Key_Left);
    QVERIFY(rows.isFolded(0));
    QCOMPARE(rows.rowCount(), all - count);
    QCOMPARE(table.currentIndex().row(), 0);
    // A heading stands for its group.
    QCOMPARE(table.selectedCount(), std::size_t(count));
    QVERIFY(spoken(0).startsWith("Group, folded: "));
    kestrel.key(Qt::Key_Right);
    QCOMPARE(rows.rowCount(), all);
    kestrel.key(Qt::Key_Right);
    QCOMPARE(table.currentIndex().row(), 1);

    // All of them, with everything selected before and after.
    kestrel.key(Qt::Key_A, Qt::ControlModifier);
    const auto selected = table.selectedRows();
    QCOMPARE(selected.size(), kestrel.delegate().summary().tracks);
    auto* fold = kestrel.find<QToolButton>("Fold All");
    fold->click();
    QCOMPARE(rows.rowCount(), groups);
    QCOMPARE(table.selectedRows(), selected);
    QCOMPARE(fold->text(), "Unfold All");
    // What is looked for unfolds its group.
    const int row = rows.rowOfContent(5);
    QVERIFY(row >= 0 && rows.contentRow(row) == 5 && !rows.isHeading(row));
    fold->click();
    fold->click();
    QCOMPARE(rows.rowCount(), all);
  }

  void groupsAreOrderedAndFilteredWhole() {
    Searched kestrel(library_, true);
    ResultTableModel& rows = kestrel.rows();
    const int all = rows.rowCount();
    const auto found = rows.shownGroups();
    auto* order = kestrel.find<QComboBox>("Order of the groups");
    const auto choose = [&](GroupOrder wanted) {
      Q_EMIT order->activated(int(wanted));
      QVERIFY(kestrel.becomesIdle());
      QCOMPARE(rows.rowCount(), all);
      QCOMPARE(order->currentIndex(), int(wanted));
    };
    const auto facts = [&](std::int32_t group) { return kestrel.delegate().groups().facts(group); };
    choose(GroupOrder::freed);
    const auto byFreed = rows.shownGroups();
    QVERIFY(byFreed != found);
    QVERIFY(std::ranges::is_sorted(byFreed, std::greater(),
                                   [&](auto one) { return facts(one).freed; }));
    choose(GroupOrder::copies);
    QVERIFY(std::ranges::is_sorted(rows.shownGroups(), std::greater(),
                                   [&](auto one) { return facts(one).copies; }));
    choose(GroupOrder::playlists);
    // Rows are selected where they stand.
    const int track = rows.isHeading(4) ? 5 : 4;
    kestrel.click(track, columnOf("tName"));
    QCOMPARE(kestrel.table().selectedRows(), std::vector{rows.contentRow(track)});
    // A column sorts tracks, whatever their group; and the way back.
    kestrel.clickHeader("tAlbum");
    QVERIFY(!rows.isGrouped());
    QCOMPARE(rows.rowCount(), int(kestrel.delegate().summary().tracks));
    QCOMPARE(order->currentIndex(), -1);
    choose(GroupOrder::found);
    QCOMPARE(rows.shownGroups(), found);

    const QString word = rows.heading(0).title;
    kestrel.find<QLineEdit>("Filter the table by words")->setText(word);
    QTRY_VERIFY(rows.isFiltered() && !rows.isFiltering());
    QVERIFY(rows.rowCount() < all && rows.isHeading(0));
    QCOMPARE(rows.heading(0).title, word);
    kestrel.table().selectAll();
    QCOMPARE(kestrel.table().selectedCount(), rows.shownTracks());
  }

  void ticksAreUndoneAndRedone() {
    Searched kestrel(library_, true);
    QAction* undo = action(kestrel, "Undo");
    QAction* redo = action(kestrel, "Redo");
    QVERIFY(!undo->isEnabled() && !redo->isEnabled());
    const auto first = kestrel.ticks();
    kestrel.table().selectAll();
    kestrel.key(Qt::Key_Space);
    const int other = kestrel.ticks()[kestrel.rows().contentRow(2)] ? 1 : 2;
    kestrel.click(other, columnOf("tName"));
    kestrel.key(Qt::Key_K);
    const auto second = kestrel.ticks();
    kestrel.table().scrollToTop();
    kestrel.clickBox(other == 1 ? 2 : 1);
    const auto third = kestrel.ticks();
    QVERIFY(second != first && third != second);
    const ResultSummary summary = kestrel.delegate().summary();
    undo->trigger();
    QCOMPARE(kestrel.ticks(), second);
    undo->trigger();
    undo->trigger();
    QCOMPARE(kestrel.ticks(), first);
    QVERIFY(kestrel.delegate().groups().picked().empty() && !undo->isEnabled());
    for (int i = 0; i < 3; ++i) redo->trigger();
    QCOMPARE(kestrel.ticks(), third);
    QCOMPARE(kestrel.delegate().summary(), summary);
    // What was no pick goes back to what the rules say by then.
    for (int i = 0; i < 3; ++i) undo->trigger();
    redo->trigger();
    kestrel.preferences().set(settings::filterMatrixButton, std::int64_t{6});
    kestrel.delegate().rulesChanged();
    QVERIFY(kestrel.becomesIdle());
    undo->trigger();
    QVERIFY(kestrel.becomesIdle());
    const auto undone = kestrel.ticks();
    kestrel.delegate().rulesChanged();
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.ticks(), undone);
  }

  void undoOutlivesSearches() {
    Searched kestrel(library_, true);
    const auto first = kestrel.ticks();
    const auto picked = [&] { return kestrel.delegate().groups().pickedCount(); };
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
      kestrel.key(key, modifiers);
      QVERIFY(kestrel.becomesIdle());
    };
    kestrel.click(1, columnOf("tName"));
    kestrel.key(Qt::Key_K);
    kestrel.click(2, columnOf("tName"));
    kestrel.key(Qt::Key_K);
    const auto second = kestrel.ticks();
    QCOMPARE(picked(), 1U);
    kestrel.delegate().clearPicks();
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(picked(), 0U);
    kestrel.search();
    kestrel.search();
    press(Qt::Key_Z);
    QCOMPARE(picked(), 1U);
    QCOMPARE(kestrel.ticks(), second);
    press(Qt::Key_Z);
    press(Qt::Key_Z);
    QCOMPARE(picked(), 0U);
    QCOMPARE(kestrel.ticks(), first);
    for (int i = 0; i < 2; ++i) press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(kestrel.ticks(), second);
    // Groups that are no duplicates, too, and what was ticked before them.
    const std::size_t groups = kestrel.delegate().summary().groups;
    action(kestrel, "Not Duplicates")->trigger();
    QCOMPARE(kestrel.delegate().summary().groups, groups - 1);
    QVERIFY2(picked() == 0, "the group is not in the table");
    press(Qt::Key_Z);
    QCOMPARE(kestrel.delegate().summary().groups, groups);
    QCOMPARE(kestrel.ticks(), second);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(kestrel.delegate().summary().groups, groups - 1);
    // A key that comes while the step before it is being put back is not lost on another one.
    QAction* undo = action(kestrel, "Undo");
    undo->trigger();
    QVERIFY(kestrel.delegate().isBusy() && !undo->isEnabled());
    QVERIFY(kestrel.becomesIdle());
    QVERIFY(undo->isEnabled());
    QCOMPARE(kestrel.ticks(), second);
    // Another library is another matter.
    kestrel.open(home_.write("Other/Library.xml", TemporaryFolder::read(library_.toStdString())));
    QVERIFY(!undo->isEnabled());
  }

  void picksOutliveRulesSearchesAndRestarts() {
    auto running = std::make_unique<Searched>(library_, true);
    const auto pick = [](Running& kestrel) {
      const int heading = headingWith(kestrel, 2);
      const int other = kestrel.delegate().groups().isKeeper(kestrel.rows().contentRow(heading + 1))
                            ? heading + 2
                            : heading + 1;
      kestrel.click(other, columnOf("tName"));
      kestrel.key(Qt::Key_K);
      return std::string(kestrel.rows().track(other).record->value(TrackKey::hexpid).text());
    };
    const std::string picked = pick(*running);
    const auto shown = [](Running& kestrel) {
      return kestrel.window().findChild<QLabel*>("decidedByHand")->text();
    };
    const auto holds = [&](Running& kestrel) {
      QVERIFY2(keptPaths(kestrel).contains(picked), "the pick is gone");
      QVERIFY2(shown(kestrel).startsWith("1 pick of yours kept"), qPrintable(shown(kestrel)));
      const auto& rows = kestrel.rows();
      int pins = 0;
      for (int row = 0; row < rows.rowCount(); ++row)
        if (!rows.isHeading(row) && rows.keepMark(row).picked) ++pins;
      QCOMPARE(pins, 1);
    };
    holds(*running);
    running->preferences().set(settings::filterMatrixButton, std::int64_t{6});
    running->delegate().rulesChanged();
    QVERIFY(running->becomesIdle());
    holds(*running);
    running->search();
    holds(*running);
    running.reset();
    Searched next(library_, true);
    holds(next);
    // The rules decide again; and that is undone, too.
    const auto before = next.ticks();
    Q_EMIT next.window().findChild<QLabel*>("decidedByHand")->linkActivated("clear");
    QVERIFY(next.becomesIdle());
    QVERIFY(shown(next).isEmpty() && next.delegate().groups().picked().empty());
    action(next, "Undo")->trigger();
    QVERIFY(next.becomesIdle());
    QCOMPARE(next.ticks(), before);
    holds(next);
  }

  void groupsThatAreNoDuplicatesStayAway() {
    Searched kestrel(library_, true);
    const std::size_t groups = kestrel.delegate().summary().groups;
    const QString title = kestrel.rows().heading(0).title;
    kestrel.click(1, columnOf("tName"));
    action(kestrel, "Not Duplicates")->trigger();
    QCOMPARE(kestrel.delegate().summary().groups, groups - 1);
    QVERIFY(kestrel.rows().heading(0).title != title);
    kestrel.search();
    QCOMPARE(kestrel.delegate().summary().groups, groups - 1);
    QVERIFY(kestrel.window().findChild<QLabel*>("decidedByHand")->text().contains("1 group left"));
    kestrel.click(1, columnOf("tName"));
    action(kestrel, "Not Duplicates")->trigger();
    QCOMPARE(kestrel.delegate().summary().groups, groups - 2);
    action(kestrel, "Undo")->trigger();
    QTRY_COMPARE(kestrel.delegate().summary().groups, groups - 1);
    QVERIFY(kestrel.becomesIdle());
    Q_EMIT kestrel.window().findChild<QLabel*>("decidedByHand")->linkActivated("show");
    auto* sheet = kestrel.window().findChild<LeftOutSheet*>();
    auto* list = sheet->findChild<QTreeWidget*>();
    QCOMPARE(list->topLevelItemCount(), 1);
    QCOMPARE(list->topLevelItem(0)->text(0).toLower(), title.toLower());
    auto* again = sheet->findChild<PrimaryButton*>();
    QVERIFY(!again->isEnabled());
    list->topLevelItem(0)->setCheckState(0, Qt::Checked);
    QCOMPARE(again->text().remove('&'), "Show 1 Group Again");
    again->click();
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.delegate().summary().groups, groups);
  }

  void copiesAreComparedFieldByField() {
    Searched kestrel(library_, true);
    const auto content = kestrel.delegate().content();
    ShortDateTimeFormatter dates;
    for (const std::int32_t group : kestrel.rows().shownGroups()) {
      std::vector<const ResultTrack*> copies;
      for (const std::uint32_t row : kestrel.delegate().groups().members(group))
        copies.push_back(&content[row]);
      const GroupComparison compared = compareCopies(copies, dates);
      for (const ComparedField& field : compared.differing) {
        QVERIFY(QSet<QString>(field.values.begin(), field.values.end()).size() > 1);
        if (field.title == "Bit Rate")
          for (std::size_t i = 0; i < copies.size(); ++i)
            for (std::size_t k = 0; k < copies.size(); ++k)
              if (field.better[i])
                QVERIFY(copies[i]->value(TrackKey::tBit).number() >=
                        copies[k]->value(TrackKey::tBit).number());
      }
    }
  }

  void playingGoesOverToAnotherCopyAtTheSamePlace() {
    QStringList asked;
    auto owned = std::make_unique<SilentBackend>(asked);
    SilentBackend& backend = *owned;
    TrackPlayer player(std::move(owned));
    const QSignalSpy problems(&player, &TrackPlayer::problem);
    player.switchTo("/b.mp3");
    player.toggle("/a.mp3");
    backend.at = 42000;
    player.switchTo("/b.mp3");
    player.toggle("/b.mp3");
    player.switchTo("/a.mp3");
    QVERIFY(!player.isPlaying("/b.mp3") && player.isAtHand("/b.mp3"));
    player.toggle("/b.mp3");
    QCOMPARE(asked, QStringList({"/a.mp3 at 0", "/b.mp3 at 42000", "pause", "resume"}));
    QCOMPARE(problems.size(), 0);
    backend.failed({});
    backend.failed("again");
    QVERIFY(!player.isAtHand("/b.mp3"));
    backend.why = "There is no sound device.";
    player.toggle("/a.mp3");
    player.toggle({});
    QCOMPARE(problems.size(), 3);
    QVERIFY(problems[0][0].toString().contains("“b.mp3” cannot be played"));
    QCOMPARE(problems[1][0].toString(), backend.why);
    QCOMPARE(asked.size(), 4);
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<GroupsTest> groupsTest("groups");

}  // namespace kestrel::testing

#include "groups_test.moc"
