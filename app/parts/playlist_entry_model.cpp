#include "app/parts/playlist_entry_model.h"

#include <QGuiApplication>
#include <utility>

#include "ui/qt/look.h"
#include "ui/qt/text.h"

namespace kestrel {

void PlaylistEntryModel::show(std::shared_ptr<const TrackStore> tracks,
                              std::vector<std::uint64_t> entries) {
  beginResetModel();
  tracks_ = std::move(tracks);
  entries_ = std::move(entries);
  times_.clear();
  times_.reserve(entries_.size());
  for (const std::uint64_t entry : entries_) ++times_[entry];
  endResetModel();
}

const TrackRecord* PlaylistEntryModel::track(int row) const {
  return tracks_ ? tracks_->find(entries_[static_cast<std::size_t>(row)]) : nullptr;
}

std::uint32_t PlaylistEntryModel::timesOf(int row) const {
  return times_.at(entries_[static_cast<std::size_t>(row)]);
}

int PlaylistEntryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int PlaylistEntryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int{columns};
}

QVariant PlaylistEntryModel::data(const QModelIndex& index, int role) const {
  const std::uint32_t times = timesOf(index.row());
  if (role == Qt::TextAlignmentRole && index.column() == position)
    return int{Qt::AlignRight | Qt::AlignVCenter};
  if (role == Qt::ForegroundRole) {
    const QPalette palette = QGuiApplication::palette();
    if (times > 1 && index.column() == name) return lookColor("accent", palette);
    return lookColor(index.column() == name ? "labelText" : "grayText", palette);
  }
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const TrackRecord* record = track(index.row());
  const auto text = [&](TrackKey key) { return toQt(record->value(key).text()); };
  QString shown;
  if (index.column() == position)
    shown = numberText(static_cast<std::size_t>(index.row()) + 1);
  else if (!record)
    shown = index.column() == name ? tr("not a song") : QString();
  else
    shown = text(index.column() == name ? TrackKey::tName : TrackKey::tArtist);
  if (times < 2 || index.column() != name) return shown;
  const QString repeated =
      toQt(Message::tr("listed %Ln times", "listed %Ln time", std::int64_t{times}));
  return role == Qt::ToolTipRole ? shown + QStringLiteral(" – ") + repeated
                                 : QStringLiteral("%1×  %2").arg(times).arg(shown);
}

QVariant PlaylistEntryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == position ? QString() : section == name ? tr("Name") : tr("Artist");
}

}  // namespace kestrel
