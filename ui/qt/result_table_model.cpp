#include "ui/qt/result_table_model.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLocale>
#include <QPalette>
#include <algorithm>
#include <array>

#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr std::size_t sliceRows = 4096;
constexpr qint64 sliceMilliseconds = 8;
constexpr std::string_view groupColumn = "dupeSort";

Qt::Alignment alignment(ColumnAlignment wanted) {
  if (wanted == ColumnAlignment::center) return Qt::AlignCenter;
  return (wanted == ColumnAlignment::right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

}  // namespace

QString shownText(const TableColumn& column, const ResultTrack& track,
                  ShortDateTimeFormatter& dates) {
  if (column.key == TrackKey::tSample) {
    const std::int64_t hertz = track.value(TrackKey::tSample).number();
    return hertz == 0 ? QString()
                      : QLocale().toString(static_cast<double>(hertz) / 1000, 'g', 6) +
                            QStringLiteral(" kHz");
  }
  return toQt(displayedText(column, track, dates, inUsersWords));
}

ResultTableModel::ResultTableModel(ArrayController<ResultTrack>& rows,
                                   const ReviewTableDelegate& delegate, ReviewTable table,
                                   Preferences& preferences, Tick tick)
    : rows_(rows),
      delegate_(delegate),
      table_(table),
      preferences_(preferences),
      tick_(std::move(tick)),
      headingsWanted_(table == ReviewTable::upper) {
  slices_.setInterval(0);
  connect(&slices_, &QTimer::timeout, this, &ResultTableModel::continueFilter);
  observe(this, rows_.observers, [this] { rowsChanged(); });
}

int ResultTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return static_cast<int>(grouped_ ? groups_.size() : shownTracks());
}

int ResultTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(tableColumns().size());
}

std::uint32_t ResultTableModel::shownAt(int row) const {
  const auto position = static_cast<std::size_t>(row);
  if (!grouped_) return static_cast<std::uint32_t>(position);
  const GroupedRows::Place place = groups_.at(position);
  return place.row.value_or(groups_.groups()[place.group].first);
}

std::optional<std::uint32_t> ResultTableModel::shownOf(std::size_t arranged) const {
  if (!filtered_) return static_cast<std::uint32_t>(arranged);
  const auto found = std::lower_bound(visible_.begin(), visible_.end(), arranged);
  if (found == visible_.end() || *found != arranged) return std::nullopt;
  return static_cast<std::uint32_t>(found - visible_.begin());
}

std::vector<std::size_t> ResultTableModel::arrangedRows(
    std::vector<std::pair<int, int>> spans) const {
  std::sort(spans.begin(), spans.end());
  std::vector<std::size_t> found;
  int next = 0;  // rows before it have been seen
  for (auto [first, last] : spans) {
    first = std::max(first, next);
    last = std::min(last, rowCount() - 1);
    next = std::max(next, last + 1);
    if (first > last) continue;
    if (!grouped_) {
      for (int row = first; row <= last; ++row)
        found.push_back(arrangedOf(static_cast<std::uint32_t>(row)));
      continue;
    }
    // Group by group, which looks none of the rows up.
    std::size_t group = groups_.at(static_cast<std::size_t>(first)).group;
    for (; group < groups_.groups().size(); ++group) {
      const auto heading = static_cast<int>(groups_.headerOf(group));
      if (heading > last) break;
      const GroupedRows::Group& one = groups_.groups()[group];
      std::uint32_t from = 0;
      std::uint32_t to = one.count;
      if (first > heading) {
        from = static_cast<std::uint32_t>(first - heading - 1);
        to = std::min(to, static_cast<std::uint32_t>(last - heading));
      }
      for (std::uint32_t row = from; row < to; ++row) found.push_back(arrangedOf(one.first + row));
    }
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

int ResultTableModel::rowOfArranged(std::size_t arranged) const {
  const auto shown = shownOf(arranged);
  if (!shown) return -1;
  if (!grouped_) return static_cast<int>(*shown);
  const auto position = groups_.positionOf(*shown);
  return position ? static_cast<int>(*position) : -1;
}

int ResultTableModel::rowOrHeadingOfArranged(std::size_t arranged) const {
  const int row = rowOfArranged(arranged);
  const auto shown = shownOf(arranged);
  if (row >= 0 || !grouped_ || !shown) return row;
  const auto group = groups_.groupOf(*shown);
  return group ? static_cast<int>(groups_.headerOf(*group)) : -1;
}

int ResultTableModel::rowOfContent(std::uint32_t content) {
  const auto arranged = std::as_const(rows_).arrangedRows();
  const ResultTrack* wanted = rows_.content().data() + content;
  for (std::size_t position = 0; position < rows_.size(); ++position) {
    if (&arranged[static_cast<std::ptrdiff_t>(position)] != wanted) continue;
    const int heading = rowOrHeadingOfArranged(position);
    if (heading >= 0 && isHeading(heading)) setFolded(heading, false);
    return rowOfArranged(position);
  }
  return -1;
}

const ResultTrack& ResultTableModel::track(int row) const {
  return std::as_const(rows_).arrangedRows()[static_cast<std::ptrdiff_t>(arrangedOf(shownAt(row)))];
}

std::uint32_t ResultTableModel::contentRow(int row) const {
  return static_cast<std::uint32_t>(&track(row) - rows_.content().data());
}

bool ResultTableModel::isHeading(int row) const {
  return grouped_ && row >= 0 && row < rowCount() && !groups_.at(static_cast<std::size_t>(row)).row;
}

int ResultTableModel::headingOf(int row) const {
  if (!grouped_ || row < 0 || row >= rowCount()) return -1;
  return static_cast<int>(groups_.headerOf(groups_.at(static_cast<std::size_t>(row)).group));
}

GroupHeading ResultTableModel::heading(int row) const {
  if (!isHeading(row)) return {};
  GroupHeading heading;
  if (teller_.heading) heading = teller_.heading(groupAt(row));
  if (!heading.title.isEmpty()) return heading;
  const ResultTrack& first = track(row);
  heading.title = toQt(first.value(TrackKey::tName).text());
  heading.artist = toQt(first.value(TrackKey::tArtist).text());
  return heading;
}

bool ResultTableModel::isFolded(int heading) const {
  return isHeading(heading) &&
         groups_.groups()[groups_.at(static_cast<std::size_t>(heading)).group].folded;
}

int ResultTableModel::unfoldedRows(int heading) const {
  if (!isHeading(heading)) return 0;
  const GroupedRows::Group& group =
      groups_.groups()[groups_.at(static_cast<std::size_t>(heading)).group];
  return group.folded ? 0 : static_cast<int>(group.count);
}

void ResultTableModel::setFolded(int heading, bool folded) {
  if (!isHeading(heading) || isFolded(heading) == folded) return;
  const std::size_t group = groups_.at(static_cast<std::size_t>(heading)).group;
  const GroupedRows::Group& one = groups_.groups()[group];
  const int last = heading + static_cast<int>(one.count);
  folded_[static_cast<std::size_t>(one.number)] = folded;
  if (folded) {
    beginRemoveRows({}, heading + 1, last);
    groups_.setFolded(group, true);
    endRemoveRows();
  } else {
    beginInsertRows({}, heading + 1, last);
    groups_.setFolded(group, false);
    endInsertRows();
  }
}

void ResultTableModel::setAllFolded(bool folded) {
  foldNew_ = folded;
  folded_.assign(folded_.size(), folded);
  if (!grouped_) return;
  beginResetModel();
  groups_.setAllFolded(folded);
  endResetModel();
}

bool ResultTableModel::isAllFolded() const {
  return grouped_ && groups_.size() == groups_.groups().size();
}

std::vector<std::int32_t> ResultTableModel::shownGroups() const {
  std::vector<std::int32_t> numbers;
  if (grouped_) {
    for (const GroupedRows::Group& group : groups_.groups()) numbers.push_back(group.number);
    return numbers;
  }
  std::vector<bool> met;
  for (int row = 0; row < rowCount(); ++row) {
    const auto number = static_cast<std::size_t>(groupAt(row));
    if (number >= met.size()) met.resize(number + 1);
    if (met[number]) continue;
    met[number] = true;
    numbers.push_back(groupAt(row));
  }
  return numbers;
}

void ResultTableModel::setHeadings(bool wanted) {
  beginResetModel();
  headingsWanted_ = wanted;
  group();
  endResetModel();
}

void ResultTableModel::forgetGroups() {
  folded_.clear();
  foldNew_ = false;
  groupOrder_ = GroupOrder::found;
  groupKeys_.clear();
}

void ResultTableModel::setGroupOrder(GroupOrder order, std::vector<std::uint64_t> keys) {
  beginResetModel();
  groupOrder_ = order;
  groupKeys_ = std::move(keys);
  group();
  endResetModel();
}

void ResultTableModel::group() {
  const auto& order = rows_.sortOrder();
  // A search arranges its rows by group before it says so.
  grouped_ = headingsWanted_ && (order.empty() || order.front().key == groupColumn);
  groups_ = {};
  if (!grouped_) return;
  const auto arranged = std::as_const(rows_).arrangedRows();
  const auto count = static_cast<std::uint32_t>(shownTracks());
  std::vector<GroupedRows::Group> groups;
  for (std::uint32_t shown = 0; shown < count; ++shown) {
    const std::int32_t number = arranged[static_cast<std::ptrdiff_t>(arrangedOf(shown))].tGroupID;
    if (groups.empty() || groups.back().number != number) {
      const auto place = static_cast<std::size_t>(number);
      if (place >= folded_.size()) folded_.resize(place + 1, foldNew_);
      groups.push_back({number, shown, 0, folded_[place]});
    }
    ++groups.back().count;
  }
  if (groupOrder_ != GroupOrder::found) {
    const auto keyOf = [this](const GroupedRows::Group& one) {
      const auto place = static_cast<std::size_t>(one.number);
      return place < groupKeys_.size() ? groupKeys_[place] : 0;
    };
    std::stable_sort(groups.begin(), groups.end(),
                     [&](const auto& a, const auto& b) { return keyOf(a) > keyOf(b); });
  }
  groups_ = GroupedRows(std::move(groups));
}

KeepMark ResultTableModel::keepMark(int row) const {
  const ResultTrack& one = track(row);
  return {one.tCheckbox, rowState(one, preferences_.boolean(settings::keeperMode)).keeper,
          teller_.isPicked && teller_.isPicked(one)};
}

FileSymbol ResultTableModel::fileSymbol(int row) const {
  const TrackRecord& record = *track(row).record;
  switch (record.availability()) {
    case FileAvailability::cloud:
      return FileSymbol::cloud;
    case FileAvailability::missing:
      return record.item().locationType == LocationType::url ? FileSymbol::stream
                                                             : FileSymbol::missing;
    case FileAvailability::reachable:
      break;
  }
  return FileSymbol::none;
}

QString ResultTableModel::stateText(const ResultTrack& track) const {
  const RowState state = rowState(track, preferences_.boolean(settings::keeperMode));
  QString text = state.keeper ? tr("Kept") : tr("Not kept");
  if (teller_.isPicked && teller_.isPicked(track)) text += tr("\nChosen by you");
  if (state.file == FileAvailability::cloud) text += tr("\nIn the cloud: there is no local file");
  if (track.record->item().locationType == LocationType::url)
    text += tr("\nA stream from the net: there is no file");
  else if (state.file == FileAvailability::missing)
    text += tr("\nThe file is missing");
  return text;
}

QString ResultTableModel::text(const TableColumn& column, const ResultTrack& track) const {
  if (column.content == ColumnContent::checkBox || column.content == ColumnContent::availability)
    return {};
  return shownText(column, track, dates_);
}

QString ResultTableModel::toolTip(const TableColumn& column, const ResultTrack& track) const {
  if (column.key == TrackKey::tSound)
    if (const Message reason = track.sound.kind == Likeness::Kind::unknown
                                   ? reasonOf(track.sound)
                                   : explainPart(track.sound);
        !reason.empty()) {
      QString sentence = toQt(ended(reason));
      sentence[0] = sentence[0].toUpper();
      return sentence;
    }
  return text(column, track);
}

QString ResultTableModel::spokenText(const TableColumn& column, const ResultTrack& track) const {
  if (column.content == ColumnContent::checkBox) return stateText(track);
  const QString text = shownText(column, track, dates_);
  return text.isEmpty() ? tr("%1: nothing").arg(translated(column.title)) : text;
}

QVariant ResultTableModel::headingData(const QModelIndex& index, int role) const {
  switch (role) {
    case Qt::ToolTipRole:
      return heading(index.row()).spoken();
    case Qt::AccessibleTextRole: {
      const QString spoken = heading(index.row()).spoken();
      return isFolded(index.row()) ? tr("Group, folded: %1").arg(spoken)
                                   : tr("Group: %1").arg(spoken);
    }
    default:
      return {};
  }
}

QVariant ResultTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  if (isHeading(index.row())) return headingData(index, role);
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
      // A stream has no file that could be missing.
      return toQt(fileSymbol(index.row()) == FileSymbol::stream ||
                          !preferences_.boolean(settings::colorsByState)
                      ? cellTextColor(keepMark(index.row()).keeper, "1")
                      : delegate_.viewForTableColumn(column.identifier, row).textColor,
                  QGuiApplication::palette());
    case RowBackgroundRole:
      // Headings tell groups apart; without them every second row has a ground of its own.
      if (grouped_ || index.row() % 2 == 0) return {};
      return toQt(colors::darkStripe, QGuiApplication::palette());
    case Qt::TextAlignmentRole:
      return QVariant(alignment(isCheckBox ? ColumnAlignment::left : column.alignment));
    case Qt::ToolTipRole:
      if (isCheckBox || column.content == ColumnContent::availability) return stateText(row);
      return toolTip(column, row) + QLatin1Char('\n') + stateText(row);
    case Qt::AccessibleTextRole:
      return spokenText(column, row);
    case Qt::AccessibleDescriptionRole: {
      if (!grouped_) return {};
      const auto place = groups_.at(static_cast<std::size_t>(index.row()));
      const GroupedRows::Group& group = groups_.groups()[place.group];
      return tr("Copy %1 of %2")
          .arg(numberText(*place.row - group.first + 1), numberText(group.count));
    }
    default:
      return {};
  }
}

bool ResultTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !index.isValid() || index.column() != 0 ||
      index.row() >= rowCount() || isHeading(index.row()))
    return false;
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
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
      if (column.content != ColumnContent::checkBox) return translated(column.title);
      return preferences_.boolean(settings::keeperMode) ? tr("Remove") : tr("Keep");
    case Qt::TextAlignmentRole:
      return QVariant(alignment(column.alignment));
    default:
      return {};
  }
}

Qt::ItemFlags ResultTableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  if (index.column() == 0 && !isHeading(index.row())) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

void ResultTableModel::setFilter(const QString& text) {
  filterText_ = text;
  filter_.start(fromQt(text), rows_.content());
  slices_.start();
  continueFilter();
}

void ResultTableModel::setGroupFilter(std::function<bool(std::int32_t)> isShown) {
  groupFilter_ = std::move(isShown);
  if (!isFiltering()) {
    beginResetModel();
    showFiltered();
    endResetModel();
  }
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
  filtered_ = filter_.isActive() || groupFilter_;
  visible_.clear();
  if (filtered_) {
    const ResultTrack* content = rows_.content().data();
    std::uint32_t position = 0;
    for (const ResultTrack& row : std::as_const(rows_).arrangedRows()) {
      if ((!groupFilter_ || groupFilter_(row.tGroupID)) &&
          filter_.matches(static_cast<std::size_t>(&row - content)))
        visible_.push_back(position);
      ++position;
    }
  }
  group();
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
    group();
  }
  endResetModel();
}

void ResultTableModel::flagsChanged(int first, int last) {
  // What a tick means may be another thing now.
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, 0);
  last = std::min(last, rowCount() - 1);
  if (first <= last) Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
}

}  // namespace kestrel
