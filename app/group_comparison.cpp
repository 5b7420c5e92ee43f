#include "app/group_comparison.h"

#include <algorithm>
#include <optional>

#include "foundation/dates.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

enum class Better : std::uint8_t { higher, lower };
struct Wish {
  TrackKey key;
  Better better;
};
/// An old date of adding speaks for a copy: playlists and memories hang on it.
constexpr Wish wishes[] = {
    {TrackKey::tBit, Better::higher},       {TrackKey::tPlayCount, Better::higher},
    {TrackKey::realSize, Better::higher},   {TrackKey::tAddDate, Better::lower},
    {TrackKey::realRating, Better::higher}, {TrackKey::tSample, Better::higher},
    {TrackKey::tPlayDate, Better::higher},
};

/// What many copies share and nobody asks about, or what another part of the pane says.
bool isLeftOut(const TableColumn& column) {
  return !column.key || column.content == ColumnContent::checkBox ||
         column.content == ColumnContent::availability || column.identifier == "dupeSort" ||
         column.identifier == "hexpid" || column.identifier == "tType" ||
         column.identifier == "tPurch" || column.identifier == "tProtected" ||
         column.identifier == "tFileName";
}

std::optional<double> amount(const Value& value) {
  if (value.isDate()) return value.date().seconds;
  if (value.isNumber()) return value.number();
  return std::nullopt;
}

std::vector<bool> betterOnes(std::span<const ResultTrack* const> copies, const Wish& wish) {
  std::vector<std::optional<double>> amounts;
  std::optional<double> best;
  for (const ResultTrack* copy : copies) {
    const auto one = amounts.emplace_back(amount(copy->value(wish.key)));
    // A date that is missing is no old one.
    if (!one || (wish.better == Better::lower && *one == 0 && wish.key == TrackKey::tAddDate))
      continue;
    if (!best || (wish.better == Better::higher ? *one > *best : *one < *best)) best = one;
  }
  std::vector<bool> better;
  for (const auto& one : amounts) better.push_back(best && one == best);
  return better;
}

/// Paths from the folder on that they share.
void shorten(QStringList& paths) {
  qsizetype shared = paths[0].size();
  for (const QString& path : paths) {
    const auto differs = std::mismatch(path.begin(), path.end(), paths[0].begin(), paths[0].end());
    shared = std::min<qsizetype>(shared, differs.first - path.begin());
  }
  const qsizetype folder = paths[0].lastIndexOf(QLatin1Char('/'), shared - 1);
  if (shared == 0 || folder < 1) return;
  for (QString& path : paths) path = QStringLiteral("…") + path.mid(folder);
}

}  // namespace

GroupComparison compareCopies(std::span<const ResultTrack* const> copies,
                              ShortDateTimeFormatter& dates) {
  GroupComparison comparison;
  if (copies.empty()) return comparison;
  std::vector<ComparedField> plain;
  std::vector<std::optional<ComparedField>> ranked(std::size(wishes));
  for (const TableColumn& column : tableColumns()) {
    if (isLeftOut(column)) continue;
    ComparedField field{translated(column.title), {}, {}};
    for (const ResultTrack* copy : copies)
      field.values << toQt(displayedText(column, *copy, dates, inUsersWords));
    const bool isSame = std::all_of(field.values.begin(), field.values.end(),
                                    [&](const QString& value) { return value == field.values[0]; });
    if (isSame) {
      if (!field.values[0].isEmpty()) comparison.same << field.values[0];
      continue;
    }
    const auto* wish = std::find_if(std::begin(wishes), std::end(wishes),
                                    [&](const Wish& one) { return one.key == column.key; });
    if (column.identifier == "tLoc") shorten(field.values);
    if (wish == std::end(wishes)) {
      plain.push_back(std::move(field));
      continue;
    }
    field.better = betterOnes(copies, *wish);
    ranked[static_cast<std::size_t>(wish - std::begin(wishes))] = std::move(field);
  }
  for (auto& field : ranked)
    if (field) comparison.differing.push_back(std::move(*field));
  for (ComparedField& field : plain) comparison.differing.push_back(std::move(field));
  return comparison;
}

QStringList lackingOf(const GroupComparison& comparison, const std::vector<bool>& kept) {
  QStringList lacking;
  if (std::find(kept.begin(), kept.end(), true) == kept.end()) return lacking;
  for (const ComparedField& field : comparison.differing) {
    QString other;
    bool keptHasIt = field.better.empty();
    for (std::size_t i = 0; i < field.better.size(); ++i) {
      if (!field.better[i]) continue;
      if (kept[i])
        keptHasIt = true;
      else
        other = field.values[static_cast<qsizetype>(i)];
    }
    if (!keptHasIt && !other.isEmpty()) lacking << field.title + QLatin1Char(' ') + other;
  }
  return lacking;
}

}  // namespace kestrel
