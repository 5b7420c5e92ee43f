#include "app/changes/repair_list.h"

#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/launch.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

RepairList::RepairList(std::function<void(LeftAsTheyAre)> changed)
    : changed_(std::move(changed)),
      playlists_(newList({tr("Playlist"), tr("To Change")}, tr("Playlists that list copies"))),
      title_(newPlainLabel(tr("Selected playlist"))),
      entries_(new EntryModel({tr("At"), tr("Now"), tr("Then"), tr("Remark")}, {},
                              [this](const EntryRow& row) {
                                const PlannedPlaylist* planned = highlighted();
                                if (!planned) return;
                                LeftAsTheyAre left = offer_->left();
                                left.setEntry(*planned, row.position, !row.isTaken);
                                changed_(std::move(left));
                              })),
      table_(newEntryTable(entries_, tr("Entries that get the kept copy"))) {
  connect(playlists_, &QTreeWidget::currentItemChanged, this, &RepairList::loadEntries);
  connect(playlists_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
    const auto row = static_cast<std::size_t>(playlists_->indexOfTopLevelItem(item));
    if (row >= offer_->repairs().size()) return;
    LeftAsTheyAre left = offer_->left();
    left.setPlaylist(offer_->repairs()[row], item->checkState(0) != Qt::Checked);
    changed_(std::move(left));
  });
  QSplitter* sides = newSplitter(Qt::Horizontal, {playlists_, newColumn({title_, table_}, table_)});
  sides->setStretchFactor(0, 1);
  sides->setStretchFactor(1, 2);
  sides->setSizes({280, 560});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(sides);
}

const PlannedPlaylist* RepairList::highlighted() const {
  const int row = playlists_->indexOfTopLevelItem(playlists_->currentItem());
  if (!offer_ || row < 0 || static_cast<std::size_t>(row) >= offer_->repairs().size())
    return nullptr;
  return &offer_->repairs()[static_cast<std::size_t>(row)];
}

std::vector<EntryRow> RepairList::rowsOf(const PlannedPlaylist& planned) const {
  std::vector<EntryRow> rows = replacedRows(planned);
  std::erase_if(rows, [&](const EntryRow& row) {
    const OfferedCopy* copy = offer_->copyOf(row.before);
    return !copy || !copy->isTaken;
  });
  const bool whole = offer_->left().hasPlaylist(planned);
  for (EntryRow& row : rows) {
    row.isTaken = !whole && !offer_->left().hasEntry(planned, row.position);
    const OfferedCopy& copy = *offer_->copyOf(row.before);
    if (copy.goes()) continue;
    row.isWarning = false;
    row.remark = row.isTaken ? tr("Its copy stays: %1").arg(toQt(goesOnListing(copy)))
                             : tr("Left as it is, so its copy stays");
  }
  return rows;
}

void RepairList::showCounts(QTreeWidgetItem* item, const PlannedPlaylist& planned) {
  const std::vector<EntryRow> rows = rowsOf(planned);
  const auto changing =
      static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [&](const EntryRow& row) {
        return row.isTaken && offer_->copyOf(row.before)->goes();
      }));
  item->setText(1, changing == rows.size()
                       ? numberText(changing)
                       : tr("%1 of %2").arg(numberText(changing), numberText(rows.size())));
  item->setCheckState(0, offer_->left().hasPlaylist(planned) ? Qt::Unchecked : Qt::Checked);
}

void RepairList::load(const RemovalOffer& offer) {
  const PlannedPlaylist* before = highlighted();
  const std::uint64_t wanted = before ? before->playlist : 0;
  constexpr int playlistRole = Qt::UserRole + 1;
  offer_ = &offer;
  const std::vector<PlannedPlaylist>& repairs = offer.repairs();
  const QSignalBlocker blocker(playlists_);
  const auto count = static_cast<int>(repairs.size());
  bool isSame = playlists_->topLevelItemCount() == count;
  for (int i = 0; i < count && isSame; ++i)
    isSame = playlists_->topLevelItem(i)->data(0, playlistRole).toULongLong() ==
             repairs[static_cast<std::size_t>(i)].playlist;
  if (!isSame) {
    playlists_->clear();
    QTreeWidgetItem* current = nullptr;
    for (const PlannedPlaylist& planned : repairs) {
      const QString folder = toQt(planned.folderName);
      auto* item = new QTreeWidgetItem(
          playlists_, {folder.isEmpty() ? toQt(planned.name)
                                        : folder + QStringLiteral(" / ") + toQt(planned.name)});
      item->setToolTip(0, item->text(0));
      item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
      item->setData(0, playlistRole, qulonglong(planned.playlist));
      if (!current || planned.playlist == wanted) current = item;
    }
    playlists_->setCurrentItem(current);
    playlists_->header()->setStretchLastSection(false);
    playlists_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    playlists_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  }
  for (int i = 0; i < count; ++i)
    showCounts(playlists_->topLevelItem(i), repairs[static_cast<std::size_t>(i)]);
  loadEntries();
}

void RepairList::loadEntries() {
  const PlannedPlaylist* planned = highlighted();
  title_->setText(planned ? tr("“%1”").arg(toQt(planned->name)) : QString());
  std::vector<EntryRow> rows;
  if (planned) rows = rowsOf(*planned);
  if (rows == entries_->rows()) return;
  // The keys stay where they are.
  const int at = table_->currentIndex().row();
  entries_->setRows(std::move(rows), TextSorter::groomedTracksDictionary());
  if (at >= 0 && at < entries_->rowCount()) table_->selectRow(at);
}

}  // namespace kestrel
