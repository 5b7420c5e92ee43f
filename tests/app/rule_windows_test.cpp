// The sheet that compares the rules, and the presets.

#include <QDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QToolButton>
#include <set>

#include "app/choices/preset_menu.h"
#include "app/result/compare_rules_sheet.h"
#include "app/result/rule_outcome_model.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"

namespace kestrel::testing {

class RuleWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void theSheetSaysWhatARuleThenDoes() {
    Searched kestrel(library_);
    const std::vector<bool> before = kestrel.ticks();
    const auto* sheet = openSheet(kestrel);
    const RuleOutcomeModel& model = modelOf(sheet);
    QCOMPARE(model.comparison().rules.size(), keeperRules().size());
    QCOMPARE(model.comparison().groups, kestrel.delegate().summary().groups);
    // What is chosen changes nothing.
    const std::size_t current = model.comparison().current;
    QCOMPARE(model.comparison().rules[current].rules.front(), KeeperRule::oldestDateAdded);
    QCOMPARE(model.comparison().outcomes[current].changedGroups, 0U);
    QVERIFY(!find<QPushButton>(sheet, "Use This Rule")->isEnabled());

    // Sorted by a number, the highest first, and another one used.
    auto* table = sheet->findChild<QTableView*>();
    table->sortByColumn(RuleOutcomeModel::changed, Qt::DescendingOrder);
    const auto number = [&](int row) {
      return table->model()
          ->index(row, RuleOutcomeModel::changed)
          .data(RuleOutcomeModel::SortRole)
          .toLongLong();
    };
    QVERIFY(number(0) > 0 && number(0) >= number(1));
    QCOMPARE(table->model()->index(0, RuleOutcomeModel::changed).data(RuleOutcomeModel::ShareRole),
             1.0);
    const auto changed = static_cast<std::size_t>(number(0));
    table->selectRow(0);
    const QString name = table->model()->index(0, 0).data().toString();
    QTest::mouseClick(find<QPushButton>(sheet, "Use This Rule"), Qt::LeftButton);
    QVERIFY(kestrel.becomesIdle());
    QCOMPARE(kestrel.find<QComboBox>("Rule that decides which copy is kept")->currentText(), name);
    // As many groups keep another copy as was said.
    const std::vector<bool> after = kestrel.ticks();
    std::set<std::int32_t> groups;
    for (std::size_t row = 0; row < after.size(); ++row)
      if (after[row] != before[row]) groups.insert(kestrel.delegate().content()[row].tGroupID);
    QCOMPARE(groups.size(), changed);
  }

  void picksStayAndClosingStops() {
    Searched kestrel(library_);
    const std::vector<std::uint32_t> rows{0};
    QVERIFY(kestrel.delegate().setTicks(rows, !kestrel.rows().track(0).tCheckbox));
    auto* sheet = openSheet(kestrel);
    QCOMPARE(modelOf(sheet).comparison().picked, 1U);
    QCOMPARE(nameless(sheet), QStringList());
    QTest::keyClick(sheet, Qt::Key_Escape);
    QTRY_VERIFY(!kestrel.window().findChild<CompareRulesSheet*>());
    // Closed while it is being compared.
    auto* closed = new CompareRulesSheet(kestrel.delegate(), &kestrel.window());
    closed->open();
    QTest::keyClick(closed, Qt::Key_Escape);
    QVERIFY(kestrel.becomesIdle());
  }

  void presetsAreSavedChosenRenamedAndRemoved() {
    const auto menu = [](Running& kestrel) {
      auto* found = kestrel.window().findChild<PresetMenu*>();
      Q_EMIT found->aboutToShow();
      return found;
    };
    const auto titles = [&](Running& kestrel) {
      QStringList texts;
      for (const QAction* action : menu(kestrel)->actions())
        if (!action->isSeparator()) texts << action->text();
      return texts;
    };
    const QStringList commands{"&Save These Rules as Preset…", "Re&name", "&Remove"};
    const auto answer = [](Running& kestrel, const QString& name) {
      auto* dialog = kestrel.window().findChild<QInputDialog*>();
      QVERIFY(dialog);
      dialog->setTextValue(name);
      dialog->accept();
      QTRY_VERIFY(!kestrel.window().findChild<QInputDialog*>());
      kestrel.worker().waitUntilIdle();
    };
    {
      Searched kestrel(library_);
      QCOMPARE(titles(kestrel), commands.mid(0, 1));
      kestrel.preferences().set(settings::filterMatrixButton, std::int64_t{4});
      kestrel.preferences().set(settings::keeperChain, std::vector<std::string>{"2"});
      menu(kestrel)->actions().front()->trigger();
      answer(kestrel, "  Loud & often ");
      QCOMPARE(titles(kestrel), (QStringList{"Loud && often"} + commands));
      // It is among the rules that are compared, and marked as what is in use.
      auto* sheet = openSheet(kestrel);
      QCOMPARE(modelOf(sheet).comparison().rules.back().preset, "Loud & often");
      QCOMPARE(modelOf(sheet).comparison().current, keeperRules().size());
      sheet->reject();
    }
    Searched kestrel(library_);
    // Kept with the library; chosen in the box of the first rule as well.
    auto* rule = kestrel.find<QComboBox>("Rule that decides which copy is kept");
    const int place = rule->findText("Loud & often");
    QVERIFY(place > 0);
    kestrel.preferences().set(settings::keeperChain, std::vector<std::string>{});
    rule->setCurrentIndex(rule->findText("Most Played"));
    QTRY_COMPARE(kestrel.preferences().integer(settings::filterMatrixButton), 2);
    rule = kestrel.find<QComboBox>("Rule that decides which copy is kept");
    rule->setCurrentIndex(place);
    QTRY_COMPARE(kestrel.preferences().integer(settings::filterMatrixButton), 4);
    QCOMPARE(kestrel.preferences().textArray(settings::keeperChain), std::vector<std::string>{"2"});
    QVERIFY(kestrel.becomesIdle());

    const auto submenu = [&](int number) {
      return menu(kestrel)->actions()[menu(kestrel)->actions().size() - 2 + number]->menu();
    };
    submenu(0)->actions().front()->trigger();
    answer(kestrel, "Other");
    QCOMPARE(titles(kestrel).front(), "Other");
    submenu(1)->actions().front()->trigger();
    auto* question = kestrel.window().findChild<QMessageBox*>();
    QVERIFY(question && question->text().contains("Other"));
    question->buttons().front()->click();
    QTRY_COMPARE(titles(kestrel), commands.mid(0, 1));
  }

 private:
  template <typename Widget>
  static Widget* find(const QWidget* in, const char* title) {
    for (Widget* widget : in->findChildren<Widget*>())
      if (widget->text().remove('&') == QLatin1String(title)) return widget;
    qFatal("There is no %s", title);
  }
  static CompareRulesSheet* openSheet(Running& kestrel) {
    QTest::mouseClick(kestrel.find<QToolButton>("Compare rules…"), Qt::LeftButton);
    auto* sheet = kestrel.window().findChild<CompareRulesSheet*>();
    if (!sheet || !kestrel.becomesIdle()) qFatal("no sheet");
    QTest::qWait(20);
    return sheet;
  }
  static const RuleOutcomeModel& modelOf(const CompareRulesSheet* sheet) {
    return *sheet->findChild<RuleOutcomeModel*>();
  }
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<RuleWindowsTest> ruleWindows("rule_windows");

}  // namespace kestrel::testing

#include "rule_windows_test.moc"
