#include "app/changes/entry_table.h"

#include <QHeaderView>
#include <QLocale>
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "foundation/text_helpers.h"
#include "ui/qt/check_table.h"
#include "ui/qt/lines_delegate.h"
#include "ui/qt/path_text.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

using Change = EntryRow::Change;

/// Whether `part` is `whole` with entries left out.
bool isPartOf(std::span<const std::uint64_t> part, std::span<const std::uint64_t> whole) {
  std::size_t met = 0;
  for (std::size_t i = 0; i < whole.size() && met < part.size(); ++i)
    met += whole[i] == part[met] ? 1 : 0;
  return met == part.size();
}

/// The rows of a list and a part of it, the later entries being those that are missing: what is
/// left out of a list are its repeats.
std::vector<EntryRow> rowsWithout(std::span<const std::uint64_t> whole,
                                  std::span<const std::uint64_t> part, Change missing) {
  std::vector<EntryRow> rows;
  std::size_t met = 0;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    const bool kept = met < part.size() && whole[i] == part[met];
    met += kept ? 1 : 0;
    EntryRow& row = rows.emplace_back();
    row.position = i + 1;
    row.change = kept ? Change::none : missing;
    if (kept || missing == Change::deleted) row.before = whole[i];
    if (kept || missing == Change::added) row.after = whole[i];
  }
  return rows;
}

QString numbers(std::span<const std::uint64_t> positions) {
  constexpr std::size_t most = 8;
  QStringList texts;
  for (std::size_t i = 0; i < std::min(positions.size(), most); ++i)
    texts << QString::number(positions[i]);
  if (positions.size() > most) texts << QStringLiteral("…");
  return texts.join(QStringLiteral(", "));
}

}  // namespace

std::vector<EntryRow> replacedRows(const PlannedPlaylist& planned) {
  std::unordered_map<std::uint64_t, const CreatedRepeat*> repeats;
  for (const CreatedRepeat& repeat : planned.repeats) repeats.emplace(repeat.track, &repeat);
  std::vector<EntryRow> rows;
  rows.reserve(planned.replacements.size());
  for (const Replacement& change : planned.replacements) {
    EntryRow& row = rows.emplace_back();
    row.change = Change::replaced;
    row.position = change.position;
    row.before = change.oldTrack;
    row.after = change.newTrack;
    const auto found = repeats.find(change.newTrack);
    if (found == repeats.end()) continue;
    row.isWarning = true;
    row.remark = EntryModel::tr("Then listed at %1").arg(numbers(found->second->positions));
  }
  return rows;
}

std::vector<EntryRow> deletedRows(const PlannedPlaylist& planned,
                                  std::span<const std::uint64_t> entries) {
  const std::unordered_set<std::uint64_t> deleted(planned.deleteIndexes.begin(),
                                                  planned.deleteIndexes.end());
  std::unordered_map<std::uint64_t, std::uint64_t> first;
  std::vector<EntryRow> rows;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto stays = first.try_emplace(entries[i], i + 1).first;
    if (!deleted.contains(i + 1)) continue;
    EntryRow& row = rows.emplace_back();
    row.change = Change::deleted;
    row.position = i + 1;
    row.before = entries[i];
    row.remark = EntryModel::tr("The same track at %1 stays").arg(stays->second);
  }
  return rows;
}

std::vector<EntryRow> comparedRows(std::span<const std::uint64_t> before,
                                   std::span<const std::uint64_t> after) {
  if (before.size() > after.size() && isPartOf(after, before))
    return rowsWithout(before, after, Change::deleted);
  if (before.size() < after.size() && isPartOf(before, after))
    return rowsWithout(after, before, Change::added);
  std::vector<EntryRow> rows;
  for (std::size_t i = 0; i < std::max(before.size(), after.size()); ++i) {
    EntryRow& row = rows.emplace_back();
    row.position = i + 1;
    if (i < before.size()) row.before = before[i];
    if (i < after.size()) row.after = after[i];
    row.change = i >= before.size()      ? Change::added
                 : i >= after.size()     ? Change::deleted
                 : before[i] == after[i] ? Change::none
                                         : Change::replaced;
  }
  return rows;
}

namespace {

struct TrackPart {
  QString text;
  int line;  ///< from 0
};

/// Name and artist; what tells duplicates apart; the file.
std::vector<TrackPart> partsOf(const TrackRecord& record, const TrackRecord* other) {
  const auto text = [&](TrackKey key) { return toQt(record.value(key).text()); };
  std::vector<TrackPart> parts{{text(TrackKey::tName), 0},
                               {text(TrackKey::tArtist), 0},
                               {text(TrackKey::tKind), 1},
                               {{}, 1},
                               {{}, 1},
                               {text(TrackKey::tAlbum), 1},
                               {{}, 2}};
  if (const std::int64_t bits = record.item().bitrate; bits > 0)
    parts[3].text = EntryModel::tr("%1 kbit/s").arg(bits);
  if (const std::int64_t time = record.item().totalTime; time > 0)
    parts[4].text = toQt(TextSorter::makeTimeHumanReadable(time));
  switch (record.availability()) {
    case FileAvailability::reachable: {
      const std::string path = filePath(record.item());
      parts[6].text = pathFrom(path, other && other->availability() == FileAvailability::reachable
                                         ? filePath(other->item())
                                         : path);
      break;
    }
    case FileAvailability::cloud:
      parts[6].text = EntryModel::tr("☁ in the cloud");
      break;
    case FileAvailability::missing:
      parts[6].text = EntryModel::tr("⚠ its file is missing");
      break;
  }
  return parts;
}

/// Of a track that reads as another one does: what the first field says in which they differ.
/// Empty where there is none.
QString differingField(const TrackRecord& record, const TrackRecord& other) {
  const MediaItem& a = record.item();
  const MediaItem& b = other.item();
  const auto isOther = [](OptionalDate one, OptionalDate two) {
    return one && (!two || one.seconds != two.seconds);
  };
  const auto date = [&](OptionalDate one, OptionalDate two) {
    const std::string mine = record.dateText(one), others = two ? other.dateText(two) : "";
    // The day is enough where it is another one.
    const std::size_t letters = mine.compare(0, 10, others, 0, 10) != 0 ? 10 : 19;
    return usersDate(QString(toQt(mine))
                         .replace(QLatin1Char('T'), QLatin1Char(' '))
                         .left(static_cast<qsizetype>(letters))
                         .toStdString());
  };
  if (isOther(a.added, b.added)) return EntryModel::tr("added %1").arg(date(a.added, b.added));
  if (a.playCount != b.playCount)
    return toQt(Message::tr("%Ln plays", "%Ln play", std::int64_t{a.playCount}));
  if (a.fileSize != b.fileSize) return sizeText(static_cast<std::uint64_t>(a.fileSize));
  if (givenRating(a) != givenRating(b))
    return toQt(TextSorter::makeRatingHumanReadable(givenRating(a)));
  if (isOther(a.modified, b.modified))
    return EntryModel::tr("modified %1").arg(date(a.modified, b.modified));
  if (a.trackNumber != b.trackNumber)
    return EntryModel::tr("track %1").arg(QLocale().toString(qlonglong{a.trackNumber}));
  if (a.year != b.year) return QString::number(qlonglong{a.year});
  return {};
}

}  // namespace

TrackText trackText(const TrackStore* tracks, std::uint64_t track, std::uint64_t other) {
  if (track == 0) return {};
  const TrackRecord* record = tracks ? tracks->find(track) : nullptr;
  if (!record) return {EntryModel::tr("Not a song of the library"), {}};
  const TrackRecord* otherRecord = tracks && other != track ? tracks->find(other) : nullptr;
  std::vector<TrackPart> parts = partsOf(*record, otherRecord);
  std::vector<TrackPart> others;
  if (otherRecord) others = partsOf(*otherRecord, record);
  if (otherRecord && std::equal(parts.begin(), parts.end(), others.begin(), others.end(),
                                [](const auto& a, const auto& b) { return a.text == b.text; })) {
    // Before what they share: the end of a line may be cut.
    parts.insert(parts.end() - 1, {differingField(*record, *otherRecord), parts.back().line});
    others.insert(others.end() - 1, TrackPart{});
  }
  TrackText made;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const QString& text = parts[i].text;
    if (text.isEmpty()) continue;
    if (!made.text.isEmpty())
      made.text += parts[i].line != parts[i - 1].line || made.text.endsWith(QLatin1Char('\n'))
                       ? QStringLiteral("\n")
                   : parts[i].line == 0 ? QStringLiteral(" — ")
                                        : QStringLiteral(" · ");
    if (otherRecord && others[i].text != text)
      made.differences << QPoint(static_cast<int>(made.text.size()), static_cast<int>(text.size()));
    made.text += text;
  }
  return made;
}

QString trackToolTip(const TrackStore* tracks, std::uint64_t track) {
  const TrackRecord* record = tracks ? tracks->find(track) : nullptr;
  const QString text = trackText(tracks, track).text;
  if (!record) return text;
  const std::string path = record->location();
  return path.empty() ? text : text + QLatin1Char('\n') + pathToQt(path);
}

EntryModel::EntryModel(QStringList titles, Reason reason,
                       std::function<void(const EntryRow&)> taken)
    : titles_(std::move(titles)), reason_(std::move(reason)), taken_(std::move(taken)) {
  for (int column = 0; column < std::min(int(columns), static_cast<int>(titles_.size())); ++column)
    if (!titles_[column].isEmpty()) shown_.push_back(static_cast<Column>(column));
}

void EntryModel::setRows(std::vector<EntryRow> rows, std::shared_ptr<const TrackStore> tracks,
                         std::unordered_map<std::uint64_t, QString> names) {
  beginResetModel();
  names_ = std::move(names);
  rows_ = std::move(rows);
  tracks_ = std::move(tracks);
  endResetModel();
}

int EntryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int EntryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

TrackText EntryModel::textOf(std::uint64_t track, std::uint64_t other) const {
  if (!tracks_ || !tracks_->find(track))
    if (const auto name = names_.find(track); name != names_.end())
      return {tr("%1\n(not in the library)").arg(name->second), {}};
  return trackText(tracks_.get(), track, other);
}

TrackText EntryModel::text(const EntryRow& row, Column column) const {
  switch (column) {
    case position:
      return {QLocale().toString(qulonglong{row.position}), {}};
    case before:
      if (row.change == Change::added) return {tr("(not there)"), {}};
      return textOf(row.before, row.after);
    case after:
      if (row.change == Change::deleted) return {tr("(deleted)"), {}};
      return textOf(row.after, row.before);
    default:
      break;
  }
  QStringList lines;
  if (const QString reason = reason_ ? reason_(row) : QString(); !reason.isEmpty()) lines << reason;
  if (!row.remark.isEmpty())
    lines << (row.isWarning ? QStringLiteral("⚠ ") + row.remark : row.remark);
  return {lines.join(QLatin1Char('\n')), {}};
}

QVariant EntryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const EntryRow& row = rows_[static_cast<std::size_t>(index.row())];
  const Column column = shown_[static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
      return text(row, column).text;
    case LinesDelegate::StandOutRole:
      return QVariant::fromValue(text(row, column).differences);
    case LinesDelegate::QuietRole:
      return !row.isTaken || column == because;
    case Qt::CheckStateRole:
      if (!taken_ || index.column() != 0) return {};
      return row.isTaken ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
      if (column == before) return trackToolTip(tracks_.get(), row.before);
      if (column == after) return trackToolTip(tracks_.get(), row.after);
      return text(row, column).text;
    case Qt::TextAlignmentRole:
      if (column == position) return int(Qt::AlignRight | Qt::AlignVCenter);
      return {};
    default:
      return {};
  }
}

Qt::ItemFlags EntryModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  if (taken_ && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

bool EntryModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!taken_ || role != Qt::CheckStateRole || !index.isValid()) return false;
  EntryRow& row = rows_[static_cast<std::size_t>(index.row())];
  row.isTaken = value.toInt() == Qt::Checked;
  Q_EMIT dataChanged(index.siblingAtColumn(0), index.siblingAtColumn(columnCount() - 1));
  taken_(row);
  return true;
}

QVariant EntryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section >= columnCount()) return {};
  const Column column = shown_[static_cast<std::size_t>(section)];
  if (role == ColumnRole) return int{column};
  if (role == Qt::DisplayRole) return titles_[column];
  if (role == Qt::TextAlignmentRole)
    return int((column == position ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  return {};
}

QTableView* newEntryTable(EntryModel* model, const QString& accessibleName) {
  auto* table = new CheckTable(model, accessibleName, 3);
  table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Interactive);
  table->horizontalHeader()->resizeSection(
      0, table->fontMetrics().horizontalAdvance(QStringLiteral("99,999")) + 48);
  // What differs needs the most room, the reason goes on in the lines below.
  constexpr int reasonWidth = 38;  // letters
  if (const int last = model->columnCount() - 1;
      last > 1 && model->headerData(last, Qt::Horizontal, EntryModel::ColumnRole).toInt() ==
                      EntryModel::because) {
    table->horizontalHeader()->setSectionResizeMode(last, QHeaderView::Interactive);
    table->horizontalHeader()->resizeSection(last,
                                             reasonWidth * table->fontMetrics().averageCharWidth());
  }
  return table;
}

}  // namespace kestrel
