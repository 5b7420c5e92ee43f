#include "app/entry_table.h"

#include <QHeaderView>
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "foundation/identifiers.h"
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

QString trackText(const TrackStore* tracks, std::uint64_t track) {
  if (track == 0) return {};
  const TrackRecord* record = tracks ? tracks->find(track) : nullptr;
  if (!record) return EntryModel::tr("Unknown track %1").arg(toQt(TextSorter::decToHex(track)));
  QString text = toQt(record->value(TrackKey::tName).text());
  if (const auto artist = record->value(TrackKey::tArtist); !artist.text().empty())
    text += QStringLiteral(" — ") + toQt(artist.text());
  QStringList details;
  // Duplicates share name and artist: these tell them apart.
  if (const auto kind = record->value(TrackKey::tKind); !kind.text().empty())
    details << toQt(kind.text());
  if (const std::int64_t bits = record->item().bitrate; bits > 0)
    details << EntryModel::tr("%1 kbps").arg(bits);
  if (const auto album = record->value(TrackKey::tAlbum); !album.text().empty())
    details << toQt(album.text());
  if (!details.isEmpty()) text += QLatin1Char('\n') + details.join(QStringLiteral(" · "));
  return text;
}

QString trackToolTip(const TrackStore* tracks, std::uint64_t track) {
  const TrackRecord* record = tracks ? tracks->find(track) : nullptr;
  if (!record) return trackText(tracks, track);
  QStringList lines{trackText(tracks, track)};
  if (const auto path = record->value(TrackKey::tLoc); !path.text().empty())
    lines << toQt(path.text());
  return lines.join(QLatin1Char('\n'));
}

EntryModel::EntryModel(QStringList titles, Reason reason)
    : titles_(std::move(titles)), reason_(std::move(reason)) {
  for (int column = 0; column < std::min(int(columns), static_cast<int>(titles_.size())); ++column)
    if (!titles_[column].isEmpty()) shown_.push_back(static_cast<Column>(column));
}

void EntryModel::setRows(std::vector<EntryRow> rows, std::shared_ptr<const TrackStore> tracks) {
  beginResetModel();
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

QString EntryModel::text(const EntryRow& row, Column column) const {
  switch (column) {
    case position:
      return QString::number(row.position);
    case before:
      if (row.change == Change::added) return tr("(not there)");
      return trackText(tracks_.get(), row.before);
    case after:
      if (row.change == Change::deleted) return tr("(deleted)");
      return trackText(tracks_.get(), row.after);
    default:
      break;
  }
  QStringList lines;
  if (const QString reason = reason_ ? reason_(row) : QString(); !reason.isEmpty()) lines << reason;
  if (!row.remark.isEmpty())
    lines << (row.isWarning ? QStringLiteral("⚠ ") + row.remark : row.remark);
  return lines.join(QLatin1Char('\n'));
}

QVariant EntryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const EntryRow& row = rows_[static_cast<std::size_t>(index.row())];
  const Column column = shown_[static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
      return text(row, column);
    case Qt::ToolTipRole:
      if (column == before) return trackToolTip(tracks_.get(), row.before);
      if (column == after) return trackToolTip(tracks_.get(), row.after);
      return text(row, column);
    case Qt::TextAlignmentRole:
      if (column == position) return int(Qt::AlignRight | Qt::AlignVCenter);
      return {};
    default:
      return {};
  }
}

QVariant EntryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section >= columnCount()) return {};
  const Column column = shown_[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return titles_[column];
  if (role == Qt::TextAlignmentRole)
    return int((column == position ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  return {};
}

QTableView* newEntryTable(EntryModel* model, const QString& accessibleName) {
  auto* table = new QTableView;
  model->setParent(table);
  table->setModel(model);
  table->setAccessibleName(accessibleName);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setAlternatingRowColors(true);
  table->setShowGrid(false);
  table->setWordWrap(false);
  table->setTabKeyNavigation(false);
  table->setTextElideMode(Qt::ElideRight);
  table->verticalHeader()->hide();
  // One height for all rows, so that a long table need not measure them.
  table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table->verticalHeader()->setDefaultSectionSize(2 * table->fontMetrics().lineSpacing() + 8);
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Interactive);
  table->horizontalHeader()->resizeSection(
      0, table->fontMetrics().horizontalAdvance(QStringLiteral("9999999")) + 16);
  table->horizontalHeader()->setHighlightSections(false);
  return table;
}

}  // namespace kestrel
