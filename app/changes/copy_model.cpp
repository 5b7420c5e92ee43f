#include "app/changes/copy_model.h"

#include <QPoint>
#include <utility>

#include "ui/qt/lines_delegate.h"
#include "ui/qt/path_text.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

using State = OfferedCopy::State;

const std::string& comparedWith(const OfferedCopy& one) {
  return one.keeperPath.empty() ? one.path : one.keeperPath;
}

}  // namespace

CopyModel::CopyModel(std::function<void()> changed) : changed_(std::move(changed)) {}

void CopyModel::show(RemovalOffer offer) {
  beginResetModel();
  offer_ = std::move(offer);
  endResetModel();
}

void CopyModel::edit(FunctionRef<void(RemovalOffer&)> change) {
  change(offer_);
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
}

int CopyModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(offer_.copies().size());
}

int CopyModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns;
}

QString CopyModel::reason(const OfferedCopy& one) {
  if (one.isTaken && !one.goes()) return tr("stays: %1").arg(toQt(goesOnListing(one)));
  // Of what has no file the name stands above already.
  if (one.reason.empty()) {
    return one.path.empty() ? QString() : toQt(one.name);
  }
  const QString reason = toQt(one.reason);
  if (one.fileIsGone) return tr("its file is missing already; only the entry leaves the library");
  if (one.fileStays) return tr("its file stays: %1").arg(reason);
  return one.isTaken ? tr("⚠ %1").arg(reason) : tr("stays: %1").arg(reason);
}

QString CopyModel::lossOf(const OfferedCopy& one) {
  return one.loss.empty() || !one.goes()
             ? QString()
             : QLatin1Char('\n') + tr("goes with the copy: %1").arg(toQt(one.loss));
}

QString CopyModel::text(const OfferedCopy& one, Column column) const {
  switch (column) {
    case copy:
      return (one.path.empty() ? toQt(one.name) : pathFrom(one.path, comparedWith(one))) +
             QLatin1Char('\n') + reason(one);
    case kept:
      if (!one.hasKeeper) return {};
      return (one.keeperPath.empty() ? tr("☁ only in the cloud")
                                     : pathFrom(one.keeperPath, one.path)) +
             lossOf(one);
    default:
      return one.path.empty() || one.fileStays ? QString() : sizeText(one.size);
  }
}

QVariant CopyModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const OfferedCopy& one = offer_.copies()[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<Column>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      return text(one, column);
    case Qt::ToolTipRole:
      if (column == copy)
        return (one.path.empty() ? toQt(one.name) : pathToQt(one.path)) + QLatin1Char('\n') +
               reason(one);
      return column == kept && !one.keeperPath.empty() ? pathToQt(one.keeperPath) + lossOf(one)
                                                       : text(one, column);
    case LinesDelegate::StandOutRole:
      if (column == copy && one.goes()) {
        const auto begin = one.path.empty() ? 0 : differenceIn(one.path, comparedWith(one));
        const auto end = text(one, copy).indexOf(QLatin1Char('\n'));
        return QVariant::fromValue(
            QList<QPoint>{{static_cast<int>(begin), static_cast<int>(end - begin)}});
      }
      return {};
    case LinesDelegate::QuietRole:
      return !one.goes() || column != copy;
    case Qt::CheckStateRole:
      if (column != copy || one.state == State::stays) return {};
      return one.isTaken ? Qt::Checked : Qt::Unchecked;
    case Qt::TextAlignmentRole:
      return int((column == size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant CopyModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole)
    return int((section == size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case copy:
      return tr("Copy");
    case kept:
      return tr("Kept in its place");
    default:
      return tr("Size");
  }
}

Qt::ItemFlags CopyModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  if (index.isValid() && index.column() == copy &&
      offer_.copies()[static_cast<std::size_t>(index.row())].state != State::stays)
    flags |= Qt::ItemIsUserCheckable;
  return flags;
}

bool CopyModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !index.isValid()) return false;
  offer_.take(static_cast<std::size_t>(index.row()), value.toInt() == Qt::Checked);
  Q_EMIT dataChanged(index.siblingAtColumn(copy), index.siblingAtColumn(size));
  changed_();
  return true;
}

}  // namespace kestrel
