#include "app/choices/left_out_sheet.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/controller/app_delegate.h"
#include "ui/launch.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

enum Column { title, artist, copies, columns };

}  // namespace

LeftOutSheet::LeftOutSheet(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent),
      delegate_(delegate),
      groups_(delegate.leftOut()),
      list_(new QTreeWidget),
      again_(new PrimaryButton(QString())) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Not Duplicates"));
  QLabel* explanation = newPlainLabel(
      tr("Explanation"), tr("You have said that these are no duplicates, so a search leaves them "
                            "out until a track joins them. Tick those that it is to show again."));
  list_->setColumnCount(columns);
  list_->setHeaderLabels({tr("Name"), tr("Artist"), tr("Copies")});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAccessibleName(tr("Groups that are no duplicates"));
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(title, QHeaderView::Stretch);
  list_->header()->setSectionResizeMode(artist, QHeaderView::Stretch);
  list_->header()->setSectionResizeMode(copies, QHeaderView::ResizeToContents);
  addGroups();
  connect(list_, &QTreeWidget::itemChanged, this, [this] { reload(); });
  connect(again_, &QPushButton::clicked, this, &LeftOutSheet::showAgain);
  auto* all = newButton(tr("&Tick All"), [this] {
    for (int row = 0; row < list_->topLevelItemCount(); ++row)
      list_->topLevelItem(row)->setCheckState(title, Qt::Checked);
  });
  auto* close = newButton(tr("Cl&ose"), [this] { reject(); });
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3 * gridStep, 3 * gridStep, 3 * gridStep, 2 * gridStep);
  column->setSpacing(2 * gridStep);
  column->addWidget(explanation);
  column->addWidget(list_, 1);
  column->addWidget(newRow({all, nullptr, close, again_}));
  reload();
  resizeWithinScreen(this, {80 * gridStep, 60 * gridStep});
}

void LeftOutSheet::addGroups() {
  const auto tracks = TextSorter::groomedTracksDictionary();
  QList<QTreeWidgetItem*> items;
  for (const TrackIDs& group : groups_) {
    auto* item = new QTreeWidgetItem;
    for (const std::uint64_t id : group)
      if (const TrackRecord* track = tracks ? tracks->find(id) : nullptr) {
        item->setText(title, toQt(track->value(TrackKey::tName).text()));
        item->setText(artist, toQt(track->value(TrackKey::tArtist).text()));
        break;
      }
    item->setText(copies, numberText(group.size()));
    item->setTextAlignment(copies, Qt::AlignRight | Qt::AlignVCenter);
    item->setCheckState(title, Qt::Unchecked);
    items << item;
  }
  list_->addTopLevelItems(items);
}

void LeftOutSheet::reload() {
  std::int64_t ticked = 0;
  for (int row = 0; row < list_->topLevelItemCount(); ++row)
    ticked += list_->topLevelItem(row)->checkState(title) == Qt::Checked ? 1 : 0;
  again_->setText(toQt(Message::tr("&Show %Ln Groups Again", "&Show %Ln Group Again", ticked)));
  again_->setEnabled(ticked > 0);
}

void LeftOutSheet::showAgain() {
  std::vector<TrackIDs> wanted;
  for (int row = 0; row < list_->topLevelItemCount(); ++row)
    if (list_->topLevelItem(row)->checkState(title) == Qt::Checked)
      wanted.push_back(groups_[static_cast<std::size_t>(row)]);
  delegate_.whenIdle([&delegate = delegate_, wanted] { delegate.setDuplicates(wanted); });
  accept();
}

}  // namespace kestrel
