#include "ui/qt/result_table_model.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <array>

#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/qt/bindings.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr std::size_t sliceRows = 4096;
constexpr qint64 sliceMilliseconds = 8;

Qt::Alignment alignment(ColumnAlignment wanted) {
  if (wanted == ColumnAlignment::center) return Qt::AlignCenter;
  return (wanted == ColumnAlignment::right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

}  // namespace

ResultTableModel::ResultTableModel(ArrayController<ResultTrack>& rows,
                                   const ReviewTableDelegate& delegate, ReviewTable table,
                                   Preferences& preferences, Tick tick)
    : rows_(rows),
      delegate_(delegate),
      table_(table),
      preferences_(preferences),
      tick_(std::move(tick)) {
  slices_.setInterval(0);
  connect(&slices_, &QTimer::timeout, this, &ResultTableModel::continueFilter);
  observe(this, rows_.observers, [this] { rowsChanged(); });
}

int ResultTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return static_cast<int>(filtered_ ? visible_.size() : rows_.size());
}

int ResultTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(tableColumns().size());
}

std::size_t ResultTableModel::arrangedRow(int row) const {
  const auto position = static_cast<std::size_t>(row);
  return filtered_ ? visible_[position] : position;
}

int ResultTableModel::rowOfArranged(std::size_t arranged) const {
  if (!filtered_) return static_cast<int>(arranged);
  const auto found = std::lower_bound(visible_.begin(), visible_.end(), arranged);
  if (found == visible_.end() || *found != arranged) return -1;
  return static_cast<int>(found - visible_.begin());
}

int ResultTableModel::rowOfContent(std::uint32_t content) const {
  const auto arranged = std::as_const(rows_).arrangedRows();
  const ResultTrack* wanted = rows_.content().data() + content;
  for (int row = 0; row < rowCount(); ++row)
    if (&arranged[static_cast<std::ptrdiff_t>(arrangedRow(row))] == wanted) return row;
  return -1;
}

const ResultTrack& ResultTableModel::track(int row) const {
  return std::as_const(rows_).arrangedRows()[static_cast<std::ptrdiff_t>(arrangedRow(row))];
}

std::uint32_t ResultTableModel::contentRow(int row) const {
  return static_cast<std::uint32_t>(&track(row) - rows_.content().data());
}

QString ResultTableModel::stateText(const ResultTrack& track) const {
  const RowState state = rowState(track, preferences_.boolean(settings::keeperMode));
  QString text = state.keeper ? tr("◆ Keeper") : tr("Not kept");
  if (state.file == FileAvailability::cloud) text += tr("\n☁ In the cloud: there is no local file");
  if (state.file == FileAvailability::missing) text += tr("\n⚠ The file is missing");
  return text;
}

QString ResultTableModel::symbols(const ResultTrack& track) const {
  const RowState state = rowState(track, preferences_.boolean(settings::keeperMode));
  QString text = state.keeper ? QStringLiteral("◆") : QString();
  if (state.file == FileAvailability::cloud) text += QStringLiteral("☁");
  if (state.file == FileAvailability::missing) text += QStringLiteral("⚠");
  return text;
}

QVariant ResultTableModel::text(const TableColumn& column, const ResultTrack& track) const {
  if (column.content == ColumnContent::checkBox) return symbols(track);
  return toQt(displayedText(column, track, dates_, inUsersWords));
}

QColor ResultTableModel::rowBackground(const ResultTrack& track) const {
  const QPalette palette = QGuiApplication::palette();
  MyNSTableRowView view = delegate_.rowViewForRow();
  if (table_ == ReviewTable::upper) KSMaxDel::didAddRowView(view, track, rows_, filtered_);
  return view.backgroundColor ? toQt(*view.backgroundColor, palette) : QColor();
}

QVariant ResultTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const TableColumn& column = tableColumns()[static_cast<std::size_t>(index.column())];
  const ResultTrack& row = track(index.row());
  const bool isCheckBox = column.content == ColumnContent::checkBox;
  switch (role) {
    case Qt::DisplayRole:
      return text(column, row);
    case Qt::CheckStateRole:
      if (!isCheckBox) return {};
      return row.tCheckbox ? Qt::Checked : Qt::Unchecked;
    case Qt::ForegroundRole:
      return toQt(delegate_.viewForTableColumn(column.identifier, row).textColor,
                  QGuiApplication::palette());
    case RowBackgroundRole:
      return rowBackground(row);
    case TextBackgroundRole:
      return backgroundOf(delegate_.viewForTableColumn(column.identifier, row).textColor,
                          QGuiApplication::palette());
    case Qt::TextAlignmentRole:
      return QVariant(alignment(isCheckBox ? ColumnAlignment::left : column.alignment));
    case Qt::ToolTipRole:
      if (isCheckBox) return stateText(row);
      return text(column, row).toString() + QLatin1Char('\n') + stateText(row);
    case Qt::AccessibleTextRole:
      if (isCheckBox) return stateText(row);
      return text(column, row);
    default:
      return {};
  }
}

bool ResultTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || index.column() != 0) return false;
  return setTicks(std::array{index.row()}, value.toInt() == Qt::Checked);
}

bool ResultTableModel::setTicks(std::span<const int> rows, bool ticked) {
  std::vector<std::uint32_t> contentRows;
  contentRows.reserve(rows.size());
  for (const int row : rows) contentRows.push_back(contentRow(row));
  return tick_(contentRows, ticked);
}

QVariant ResultTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const TableColumn& column = tableColumns()[static_cast<std::size_t>(section)];
  switch (role) {
    case Qt::DisplayRole:
      return column.content == ColumnContent::checkBox ? QStringLiteral("☑")
                                                       : translated(column.title);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
      return column.content == ColumnContent::checkBox ? tr("Ticks") : translated(column.title);
    case Qt::TextAlignmentRole:
      return QVariant(alignment(column.alignment));
    default:
      return {};
  }
}

Qt::ItemFlags ResultTableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  if (index.column() == 0) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

void ResultTableModel::setFilter(const QString& text) {
  filterText_ = text;
  filter_.start(fromQt(text), rows_.content());
  slices_.start();
  continueFilter();
}

void ResultTableModel::continueFilter() {
  QElapsedTimer time;
  time.start();
  while (filter_.work(sliceRows))
    if (time.elapsed() >= sliceMilliseconds) return;
  slices_.stop();
  beginResetModel();
  showFiltered();
  endResetModel();
}

void ResultTableModel::finishFiltering() {
  if (!isFiltering()) return;
  while (filter_.work(sliceRows)) {
  }
  continueFilter();
}

void ResultTableModel::showFiltered() {
  filtered_ = filter_.isActive();
  visible_.clear();
  if (!filtered_) return;
  const ResultTrack* content = rows_.content().data();
  std::uint32_t position = 0;
  for (const ResultTrack& row : std::as_const(rows_).arrangedRows()) {
    if (filter_.matches(static_cast<std::size_t>(&row - content))) visible_.push_back(position);
    ++position;
  }
}

void ResultTableModel::rowsChanged() {
  beginResetModel();
  const bool sameRows = filter_.isActive() && filter_.isDone() && !slices_.isActive() &&
                        filter_.isOver(rows_.content());
  if (sameRows || filterText_.isEmpty()) {
    showFiltered();
  } else {
    filtered_ = true;
    visible_.clear();
    filter_.reset();
    filter_.start(fromQt(filterText_), rows_.content());
    slices_.start();
  }
  endResetModel();
}

void ResultTableModel::flagsChanged(int first, int last) {
  last = std::min(last, rowCount() - 1);
  if (first <= last) Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
}

}  // namespace kestrel
