#include "app/result/result_bar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <memory>

#include "app/choices/left_out_sheet.h"
#include "app/controller/app_delegate.h"
#include "app/controller/group_orders.h"
#include "ui/launch.h"
#include "ui/qt/bindings.h"
#include "ui/qt/result_table_model.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr int barHeight = 40;
const QString clearLink = QStringLiteral("clear");
const QString showLink = QStringLiteral("show");

QString link(const QString& target, const QString& text) {
  return QStringLiteral(" · <a href=\"%1\" style=\"text-decoration:none\">%2</a>")
      .arg(target, text);
}

}  // namespace

ResultBar::ResultBar(AppDelegate& delegate, ResultTableModel& rows)
    : delegate_(delegate),
      rows_(rows),
      decided_(new QLabel),
      doubtful_(new QToolButton),
      order_(new QComboBox),
      fold_(new QToolButton) {
  setMinimumHeight(barHeight);
  decided_->setObjectName(QStringLiteral("decidedByHand"));
  decided_->setTextFormat(Qt::RichText);
  decided_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  decided_->setAccessibleName(tr("Decided by you"));
  // The words may be many; the controls at the end stay.
  decided_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  connect(decided_, &QLabel::linkActivated, this, [this](const QString& target) {
    if (target == clearLink)
      delegate_.clearPicks();
    else
      (new LeftOutSheet(delegate_, window()))->open();
  });

  doubtful_->setObjectName(QStringLiteral("doubtfulGroups"));
  doubtful_->setCheckable(true);
  doubtful_->setAutoRaise(true);
  doubtful_->setFocusPolicy(Qt::TabFocus);
  doubtful_->setToolTip(
      tr("Show only groups that may be no duplicates: the reason stands beside their names"));
  doubtful_->hide();
  connect(doubtful_, &QToolButton::toggled, this, &ResultBar::showDoubtful);

  order_->addItems({tr("Groups as found"), tr("Most space first"), tr("Most copies first"),
                    tr("Most playlists first"), tr("Doubtful first"), tr("Rules disagree first")});
  order_->setPlaceholderText(tr("Sorted by column"));
  order_->setAccessibleName(tr("Order of the groups"));
  order_->setToolTip(
      tr("The order of the groups. A click on the head of a column sorts the tracks "
         "by it, whatever their group."));
  connect(order_, &QComboBox::activated, this, &ResultBar::order);

  fold_->setAutoRaise(true);
  fold_->setFocusPolicy(Qt::TabFocus);
  connect(fold_, &QToolButton::clicked, this, [this] { rows_.setAllFolded(!rows_.isAllFolded()); });

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(12, 4, 12, 4);
  layout->setSpacing(8);
  layout->addWidget(decided_, 1);
  layout->addWidget(doubtful_);
  layout->addWidget(order_);
  layout->addWidget(fold_);
  for (const auto changed : {&QAbstractItemModel::modelReset})
    connect(&rows_, changed, this, [this] { reload(); });
  connect(&rows_, &QAbstractItemModel::rowsInserted, this, [this] { reload(); });
  connect(&rows_, &QAbstractItemModel::rowsRemoved, this, [this] { reload(); });
  observe(this, delegate_.summaryObservers, [this] { reload(); });
  observe(this, delegate_.observers, [this] { reload(); });
  observe(this, delegate_.knowledgeObservers, [this] { reloadDoubtful(); });
  reload();
}

void ResultBar::reload() {
  const bool idle = !delegate_.isBusy();
  // Asked only when nothing changes them meanwhile.
  if (idle) {
    const ResultGroups& groups = delegate_.groups();
    const std::size_t without = groups.pickedWithoutKeeper(), unclear = groups.undecidedPicks();
    const auto picks = countOf(groups.pickedCount() - without - unclear);
    const auto leftOut = static_cast<std::int64_t>(delegate_.leftOut().size());
    QStringList parts;
    QStringList picked;
    if (picks > 0)
      picked << toQt(Message::tr("%Ln picks of yours kept", "%Ln pick of yours kept", picks));
    if (without > 0)
      picked << toQt(Message::tr("%Ln groups in which you keep no copy",
                                 "%Ln group in which you keep no copy", countOf(without)));
    if (unclear > 0)
      picked << toQt(Message::tr("%Ln groups in which your picks differ",
                                 "%Ln group in which your picks differ", countOf(unclear)));
    if (!picked.empty()) parts << picked.join(QStringLiteral(" · ")) + link(clearLink, tr("Clear"));
    if (leftOut > 0)
      parts << toQt(Message::tr("%Ln groups left out as no duplicates",
                                "%Ln group left out as no duplicates", leftOut)) +
                   link(showLink, tr("Show…"));
    decided_->setText(parts.join(QStringLiteral(" &nbsp;&nbsp; ")));
  }
  order_->setEnabled(idle);
  order_->setCurrentIndex(rows_.isGrouped() ? static_cast<int>(rows_.groupOrder()) : -1);
  fold_->setEnabled(rows_.isGrouped());
  fold_->setText(rows_.isAllFolded() ? tr("Unfold All") : tr("Fold All"));
}

void ResultBar::reloadDoubtful() {
  const GroupKnowledge* known = delegate_.knowledge();
  const std::size_t count = known ? known->doubtful() : 0;
  doubtful_->setText(toQt(Message::tr("%Ln doubtful", "%Ln doubtful", countOf(count))));
  doubtful_->setVisible(count > 0);
  // Another search, or nothing is doubtful any more.
  if (count == 0 && doubtful_->isChecked()) return doubtful_->setChecked(false);
  if (doubtful_->isChecked()) showDoubtful(true);
  if (rows_.groupOrder() == GroupOrder::doubt || rows_.groupOrder() == GroupOrder::disagreement)
    order(static_cast<int>(rows_.groupOrder()));
}

void ResultBar::showDoubtful(bool alone) {
  if (!alone) return rows_.setGroupFilter({});
  rows_.setGroupFilter([&delegate = delegate_](std::int32_t group) {
    const GroupKnowledge* known = delegate.knowledge();
    return known && !known->doubtsOf(group).empty();
  });
}

void ResultBar::order(int choice) {
  const auto order = static_cast<GroupOrder>(choice);
  delegate_.whenIdle([this, order] {
    ArrayController<ResultTrack>& rows = rows_.controller();
    const auto keys = std::make_shared<std::vector<std::uint64_t>>();
    const auto arranged = std::make_shared<std::vector<std::uint32_t>>();
    const TableSort byGroup = {{"dupeSort", true, SortMethod::plain}};
    const bool sorts = !rows_.isGrouped();
    const auto playlists = TextSorter::storedPlaylistArray();
    const auto knowledge = delegate_.knowledgeInHand();
    delegate_.run(
        [this, order, keys, arranged, sorts, byGroup, playlists, knowledge,
         content = rows.content()] {
          *keys = groupKeys(order, delegate_.groups(), content, playlists.get(), knowledge.get());
          if (sorts) *arranged = arrangement(content, byGroup);
        },
        [this, order, keys, arranged, sorts, byGroup, &rows] {
          rows_.setGroupOrder(order, std::move(*keys));
          if (sorts && arranged->size() == rows.size())
            rows.setSortOrder(sortKeys(byGroup), std::move(*arranged));
        });
  });
}

}  // namespace kestrel
