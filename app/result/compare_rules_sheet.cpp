#include "app/result/compare_rules_sheet.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/parts/window_task.h"
#include "app/result/rule_outcome_model.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int barHeight = 3;
constexpr int barMargin = 6;

/// A number over a bar that is as long as its share of the column's highest.
class BarDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    const QVariant share = index.data(RuleOutcomeModel::ShareRole);
    if (!share.isValid()) return;
    const QRect cell = option.rect.adjusted(barMargin, 0, -barMargin, 0);
    const int length = static_cast<int>(cell.width() * share.toDouble());
    // On the right as the numbers are, so that the eye compares both at one edge.
    const bool fromRight = option.direction == Qt::LeftToRight;
    const QRect bar(fromRight ? cell.right() - length + 1 : cell.left(),
                    cell.bottom() - barHeight - 1, length, barHeight);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    painter->fillRect(bar, isSelected ? option.palette.color(QPalette::HighlightedText)
                                      : lookColor("accent", QGuiApplication::palette()));
  }
};

}  // namespace

CompareRulesSheet::CompareRulesSheet(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent),
      delegate_(delegate),
      outcomes_(new RuleOutcomeModel(this)),
      sorted_(new QSortFilterProxyModel(this)),
      table_(new QTableView),
      text_(newPlainLabel(tr("About this window"))),
      progress_(new QProgressBar),
      use_(newPrimaryButton([this] { use(); })) {
  setWindowTitle(tr("Compare Rules"));
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  makeTable();
  progress_->setRange(0, 0);
  progress_->setAccessibleName(tr("Progress of comparing"));
  use_->setText(tr("&Use This Rule"));
  QPushButton* close = newButton(tr("&Close"), [this] { reject(); });
  auto* column = new QVBoxLayout(this);
  for (QWidget* part : QList<QWidget*>{text_, progress_}) column->addWidget(part);
  column->addWidget(table_, 1);
  column->addWidget(newRow({nullptr, close, use_}));
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { tell(); });
  connect(table_, &QTableView::doubleClicked, this, [this] { use(); });
  resizeWithinScreen(this, {960, 680});
  tell();
  compare();
}

void CompareRulesSheet::makeTable() {
  sorted_->setSourceModel(outcomes_);
  sorted_->setSortRole(RuleOutcomeModel::SortRole);
  sorted_->setSortLocaleAware(true);
  table_->setModel(sorted_);
  table_->setAccessibleName(tr("Rules and what they would do"));
  table_->setItemDelegate(new BarDelegate(table_));
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setTabKeyNavigation(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 2 * gridStep);
  QHeaderView* header = table_->horizontalHeader();
  header->setHighlightSections(false);
  header->setSectionResizeMode(QHeaderView::Stretch);
  header->setSectionResizeMode(RuleOutcomeModel::rule, QHeaderView::ResizeToContents);
  int widest = 0;
  for (int column = 0; column < sorted_->columnCount(); ++column)
    widest = std::max(widest, header->fontMetrics().horizontalAdvance(
                                  sorted_->headerData(column, Qt::Horizontal).toString()));
  header->setMinimumSectionSize(widest + 2 * gridStep);
  header->setSortIndicator(-1, Qt::AscendingOrder);
  header->setSortIndicatorClearable(true);
  table_->setSortingEnabled(true);
}

void CompareRulesSheet::compare() {
  const std::vector<std::int32_t> groups = delegate_.groups().picked();
  std::unordered_set<std::int32_t> picked(groups.begin(), groups.end());
  runTask<ResultComparison>(
      delegate_, this, tr("The rules could not be compared."),
      [presets = delegate_.presets(), picked = std::move(picked), cancelled = cancelled_] {
        return compareRulesOfResult(presets, picked, *cancelled);
      },
      [this](ResultComparison comparison) {
        progress_->hide();
        outcomes_->show(std::move(comparison));
        const QModelIndex current = sorted_->mapFromSource(
            outcomes_->index(static_cast<int>(outcomes_->comparison().current), 0));
        table_->setCurrentIndex(current);
        table_->setFocus();
        tell();
      },
      [this] { reject(); });
}

int CompareRulesSheet::selected() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  return rows.size() == 1 ? sorted_->mapToSource(rows.front()).row() : -1;
}

void CompareRulesSheet::tell() {
  const ResultComparison& all = outcomes_->comparison();
  const int row = selected();
  use_->setEnabled(row >= 0 && static_cast<std::size_t>(row) != all.current);
  if (all.outcomes.empty()) return text_->setText(tr("Asking every rule…"));
  QString text = toQt(Message::tr(
      "What each rule would do with these %Ln groups, against what is kept now. A group about "
      "which a rule says nothing stays as it is.",
      "What each rule would do with this group, against what is kept now. Where a rule says "
      "nothing it stays as it is.",
      countOf(all.groups)));
  if (all.picked > 0)
    text += QLatin1Char(' ') +
            toQt(Message::tr("%Ln groups stay as you picked them, whatever the rule.",
                             "%Ln group stays as you picked it, whatever the rule.",
                             countOf(all.picked)));
  text_->setText(text);
}

void CompareRulesSheet::use() {
  const int row = selected();
  if (!use_->isEnabled() || row < 0) return;
  const ComparedRule chosen = outcomes_->comparison().rules[static_cast<std::size_t>(row)];
  Preset preset;
  for (const Preset& known : delegate_.presets())
    if (!chosen.preset.empty() && known.name == chosen.preset) preset = known;
  if (preset.keep.empty())
    for (const KeeperRule rule : chosen.rules) preset.keep.push_back(keeperRuleWord(rule));
  delegate_.usePreset(preset);
  accept();
}

void CompareRulesSheet::reject() {
  *cancelled_ = true;
  QDialog::reject();
}

}  // namespace kestrel
