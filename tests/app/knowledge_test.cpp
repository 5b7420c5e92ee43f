// What the window tells of groups beyond who is in them, and how assistive technology reads it.

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "app/controller/criteria.h"
#include "app/result/compare_pane.h"
#include "app/result/group_headings.h"
#include "dupes/losses.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"
#include "ui/dupe_search.h"

namespace kestrel::testing {

class KnowledgeTest : public QObject {
  Q_OBJECT

 private:
  /// The library with another album for a track.
  [[nodiscard]] QString withAlbum(const std::string& track, const std::string& album) const {
    std::string text = TemporaryFolder::read(library_.toStdString());
    const std::string key = "<key>Album</key><string>";
    const auto begin = text.rfind(key, text.find("<string>" + track + "</string>")) + key.size();
    text.replace(begin, text.find("</string>", begin) - begin, album);
    return home_.write("Music/Other.xml", text);
  }
  static bool isKnown(Running& kestrel) {
    return QTest::qWaitFor(
        [&] {
          const GroupKnowledge* known = kestrel.delegate().knowledge();
          return known && known->facts() != nullptr;
        },
        20000);
  }
  static QStringList badges(const GroupHeading& heading) {
    QStringList texts;
    for (const GroupBadge& badge : heading.badges) texts << badge.text;
    return texts;
  }
  static void choose(Running& kestrel, GroupOrder order) {
    Q_EMIT kestrel.find<QComboBox>("Order of the groups")->activated(int(order));
    QVERIFY(kestrel.becomesIdle());
  }

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void doubtfulGroupsAreMarkedSortedAndFiltered() {
    std::string track;
    std::int32_t group = 0;
    {
      Searched kestrel(library_, true);
      const int last = kestrel.rows().rowCount() - 1;
      track = kestrel.rows().track(last).record->value(TrackKey::hexpid).text();
    }
    Searched kestrel(withAlbum(track, "At the Docks (Live)"), true);
    QVERIFY(isKnown(kestrel));
    ResultTableModel& rows = kestrel.rows();
    const GroupKnowledge& known = *kestrel.delegate().knowledge();
    for (const ResultTrack& row : kestrel.delegate().content())
      if (row.record->value(TrackKey::hexpid).text() == track) group = row.tGroupID;
    QVERIFY(!known.doubtsOf(group).empty());
    QVERIFY(badges(groupHeading(kestrel.delegate(), group, GroupOrder::found))
                .contains("not all are live"));
    auto* doubtful = kestrel.window().findChild<QToolButton*>("doubtfulGroups");
    QTRY_VERIFY(doubtful->isVisible());
    QCOMPARE(doubtful->text(), QStringLiteral("%1 doubtful").arg(known.doubtful()));
    const int all = rows.rowCount();

    choose(kestrel, GroupOrder::doubt);
    const auto sorted = rows.shownGroups();
    QVERIFY(std::is_partitioned(sorted.begin(), sorted.end(), [&](std::int32_t one) {
      return !kestrel.delegate().knowledge()->doubtsOf(one).empty();
    }));
    // Sorting is a task, and what is known survives it.
    QVERIFY(isKnown(kestrel));
    doubtful->click();
    QCOMPARE(rows.shownGroups().size(), known.doubtful());
    for (const std::int32_t one : rows.shownGroups()) QVERIFY(!known.doubtsOf(one).empty());
    // Together with words.
    auto* filter = kestrel.find<QLineEdit>("Filter the table by words");
    filter->setText("docks");
    QTRY_VERIFY(!rows.isFiltering());
    QCOMPARE(rows.shownGroups(), std::vector{group});
    QCOMPARE(rows.shownTracks(), std::size_t(1));
    filter->clear();
    QTRY_VERIFY(!rows.isFiltering());
    QCOMPARE(rows.shownGroups().size(), known.doubtful());
    doubtful->click();
    QCOMPARE(rows.rowCount(), all);
    // Ticks are no reason to look again; another search is.
    doubtful->click();
    kestrel.preferences().set(settings::criteria,
                              std::vector<std::string>{"tName", "tArtist", "tAlbum"});
    kestrel.search();
    QVERIFY(isKnown(kestrel));
    QTRY_COMPARE(rows.isFiltered(), kestrel.delegate().knowledge()->doubtful() > 0);
  }

  void theRulesThatAgreeAreCounted() {
    Searched kestrel(library_, true);
    QVERIFY(isKnown(kestrel));
    const auto agreement = [&](std::int32_t group) {
      return kestrel.delegate().knowledge()->agreementOf(group);
    };
    choose(kestrel, GroupOrder::disagreement);
    QVERIFY(isKnown(kestrel));
    double before = 0;
    std::size_t counted = 0;
    for (const std::int32_t group : kestrel.rows().shownGroups()) {
      const GroupAgreement one = agreement(group);
      QVERIFY(one.agree <= one.of);
      const QStringList told =
          badges(groupHeading(kestrel.delegate(), group, GroupOrder::disagreement));
      const bool tells = std::any_of(told.begin(), told.end(),
                                     [](const QString& text) { return text.contains(" agree"); });
      QCOMPARE(tells, one.of > 0);
      if (one.of == 0) continue;
      ++counted;
      // In thousandths, as they are ordered.
      const double share = 1000 * one.agree / one.of;
      QVERIFY(share >= before);
      before = share;
    }
    QVERIFY(counted > 0);
    // The pane says the same of the group at hand, and nothing once the user has decided.
    kestrel.click(1, columnOf("tName"));
    const QString told = agreementText(agreement(kestrel.rows().groupAt(1)));
    auto* label = kestrel.find<QLabel>("How many rules agree");
    QTRY_VERIFY2(label->text().startsWith(told) && !told.isEmpty(), qPrintable(label->text()));
    kestrel.key(Qt::Key_K);
    QTRY_VERIFY(!label->text().startsWith(told));
  }

  void whatACopyAloneHasIsTheLedgersWord() {
    Searched kestrel(library_, true);
    QVERIFY(isKnown(kestrel));
    const auto& facts = *kestrel.delegate().knowledge()->facts();
    const auto& groups = kestrel.delegate().groups();
    const auto content = kestrel.delegate().content();
    for (const std::int32_t group : kestrel.rows().shownGroups()) {
      std::vector<const ResultTrack*> members;
      for (const std::uint32_t row : groups.members(group)) members.push_back(&content[row]);
      const auto losses = lossesOf(members, facts, [&](const ResultTrack& row) {
        return groups.isKeeper(std::uint32_t(&row - content.data()));
      });
      if (losses.empty()) continue;
      const int row = kestrel.rows().rowOfContent(groups.members(group).front());
      kestrel.table().selectInMiddle(row);
      auto* lacking = kestrel.find<QLabel>("What the kept copy lacks");
      QTRY_VERIFY2(lacking->text().contains(toQt(explain(losses[0]))), qPrintable(lacking->text()));
      auto* fold = kestrel.find<QToolButton>("Why they match");
      auto* why = kestrel.window().findChild<ComparePane*>()->findChild<QLabel*>("whyMatched");
      QVERIFY(!why->isVisible());
      fold->click();
      QVERIFY(why->isVisible() && why->text().contains("Name"));
      return;
    }
    QFAIL("no copy of the library has anything to lose");
  }

  void aGroupLeftWithoutAKeeperStaysSo() {
    auto running = std::make_unique<Searched>(library_, true);
    const int kept = running->delegate().groups().isKeeper(running->rows().contentRow(1)) ? 1 : 2;
    const auto title = running->rows().heading(0).title;
    running->clickBox(kept);
    const auto holds = [&](Running& kestrel) {
      QCOMPARE(kestrel.delegate().summary().withoutKeeper, std::size_t(1));
      QCOMPARE(kestrel.delegate().groups().pickedWithoutKeeper(), std::size_t(1));
      QCOMPARE(kestrel.rows().heading(0).title.toLower(), title.toLower());
      const QString shown = kestrel.window().findChild<QLabel*>("decidedByHand")->text();
      QVERIFY2(shown.startsWith("1 group in which you keep no copy"), qPrintable(shown));
      QVERIFY(kestrel.delegate()
                  .keptBecause(kestrel.rows().contentRow(1))
                  .english()
                  .starts_with("you keep no copy"));
    };
    holds(*running);
    running->search();
    holds(*running);
    running.reset();
    Searched next(library_, true);
    holds(next);
    Q_EMIT next.window().findChild<QLabel*>("decidedByHand")->linkActivated("clear");
    QVERIFY(next.becomesIdle());
    QCOMPARE(next.delegate().summary().withoutKeeper, std::size_t(0));
  }

  void assistiveTechnologySeesATreeOfGroups() {
    Searched kestrel(library_, true);
    QAccessible::setActive(true);
    ReviewTableView& view = kestrel.table();
    ResultTableModel& rows = kestrel.rows();
    QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(&view);
    QCOMPARE(tree->role(), QAccessible::Tree);
    QCOMPARE(tree->text(QAccessible::Name), QStringLiteral("Duplicates"));
    QCOMPARE(tree->childCount(), int(kestrel.delegate().summary().groups));
    std::size_t copies = 0;
    for (int i = 0; i < tree->childCount(); ++i) {
      QAccessibleInterface* group = tree->child(i);
      QCOMPARE(group->role(), QAccessible::TreeItem);
      QVERIFY(group->state().expandable && group->state().expanded && group->parent() == tree);
      QCOMPARE(tree->indexOfChild(group), i);
      QVERIFY(group->text(QAccessible::Name).startsWith("Group: "));
      for (int k = 0; k < group->childCount(); ++k, ++copies) {
        QAccessibleInterface* copy = group->child(k);
        QVERIFY(copy->role() == QAccessible::TreeItem && copy->parent() == group);
        QCOMPARE(group->indexOfChild(copy), k);
        QVERIFY(copy->state().checkable && !copy->state().expandable);
        QVERIFY(copy->text(QAccessible::Name).contains("ept, "));
        QCOMPARE(copy->text(QAccessible::Description),
                 QStringLiteral("Copy %1 of %2").arg(k + 1).arg(group->childCount()));
      }
    }
    QCOMPARE(copies, kestrel.delegate().summary().tracks);

    kestrel.click(2, columnOf("tName"));
    view.setFocus();
    QAccessibleInterface* here = tree->focusChild();
    QVERIFY(here && here->state().focused && here->state().selected);
    const QPoint middle = here->rect().center();
    QCOMPARE(tree->childAt(middle.x(), middle.y()), here);
    const bool ticked = here->state().checked;
    here->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QCOMPARE(here->state().checked, !ticked);
    QAccessibleInterface* group = here->parent();
    group->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    // What was asked before folding is gone.
    group = tree->child(0);
    QVERIFY(rows.isFolded(0) && group->state().collapsed && group->childCount() == 0);
    QVERIFY(group->text(QAccessible::Name).startsWith("Group, folded: "));
    // Sorted by a column there is one level.
    kestrel.clickHeader("tAlbum");
    QCOMPARE(tree->childCount(), rows.rowCount());
    QVERIFY(!tree->child(0)->state().expandable && tree->child(0)->parent() == tree);
    QAccessible::setActive(false);
  }

  void whatFindsNothingSaysWhichFieldKeepsThemApart() {
    std::string tracks, entries;
    for (const std::string id : {"1", "2"}) {
      tracks += "<key>" + id + "</key><dict><key>Track ID</key><integer>" + id +
                "</integer><key>Name</key><string>Needle</string><key>Artist</key><string>Club"
                "</string><key>Album</key><string>No. " +
                id +
                "</string><key>Total Time</key><integer>2000</integer>"
                "<key>Persistent ID</key><string>A" +
                id + "</string><key>Track Type</key><string>File</string></dict>";
      entries += "<dict><key>Track ID</key><integer>" + id + "</integer></dict>";
    }
    Running kestrel;
    kestrel.open(home_.write(
        "Music/Two.xml",
        "<plist version=\"1.0\"><dict><key>Tracks</key><dict>" + tracks +
            "</dict><key>Playlists</key><array><dict><key>Name</key><string>Library</string>"
            "<key>Master</key><true/><key>Playlist Persistent ID</key><string>B1</string>"
            "<key>Playlist Items</key><array>" +
            entries + "</array></dict></array></dict></plist>"));
    kestrel.preferences().set(settings::criteria,
                              std::vector<std::string>{"tName", "tArtist", "tAlbum"});
    QVERIFY(kestrel.delegate().findDuplicates());
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.delegate().situation(), Situation::noDuplicates);
    auto* button = kestrel.find<QPushButton>("Without Album: 1 group");
    for (auto* other : kestrel.window().findChildren<QPushButton*>())
      QVERIFY2(other == button || !other->isVisible() || !other->text().startsWith("Without"),
               qPrintable(other->text()));
    button->click();
    QTRY_COMPARE(kestrel.delegate().situation(), Situation::result);
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(chosenCriteria(kestrel.preferences()), (std::vector<std::string>{"tName", "tArtist"}));
    QCOMPARE(kestrel.delegate().summary().groups, std::size_t(1));
  }

  void datesWithinASentenceAreTheUsers() {
    Running kestrel;
    const auto shown = [](const char* moment) {
      return toQt(Message::tr("%1 over %2").arg(Message::moment(moment)).arg("2024-12-26"));
    };
    using Dates = ShortDateTimeFormatter;
    const std::int64_t at = 1292051699;  // 2010-12-11 07:14:59 UTC
    const std::pair<const char*, std::string> cases[] = {
        {"2010-12-11", Dates({}, "UTC", DateDetail::day).text(at)},
        {"2010-12-11 07:14", Dates({}, "UTC").text(at)},
        {"2010-12-11 07:14:59", Dates({}, "UTC", DateDetail::second).text(at)},
        {"2024-13-01 00:00:00", "2024-13-01 00:00:00"},
        {"never", "never"}};
    for (const auto& [moment, text] : cases)
      QCOMPARE(shown(moment), toQt(text) + " over 2024-12-26");
    QVERIFY2(cases[0].second != cases[1].second && cases[1].second != cases[2].second,
             "each tells more");
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<KnowledgeTest> knowledgeTest("knowledge");

}  // namespace kestrel::testing

#include "knowledge_test.moc"
