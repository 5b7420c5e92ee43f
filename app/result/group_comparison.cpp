#include "app/result/group_comparison.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <map>
#include <optional>

#include "foundation/dates.h"
#include "ui/qt/result_table_model.h"
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
         column.identifier == "tFileName" || column.key == TrackKey::tAgreement;
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

/// Empty where two copies have different times on one day.
QStringList days(std::span<const ResultTrack* const> copies, TrackKey key) {
  QStringList texts;
  std::map<QString, double> seconds;
  for (const ResultTrack* copy : copies) {
    const Value value = copy->value(key);
    if (!value.isDate()) {
      texts << QString();
      continue;
    }
    const double at = value.date().seconds;
    const QDate day = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(at)).date();
    texts << usersDate(fromQt(day.toString(Qt::ISODate)));
    if (seconds.try_emplace(texts.back(), at).first->second != at) return {};
  }
  return texts;
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
    // Days are enough where they tell the copies apart.
    if (column.content == ColumnContent::date) field.values = days(copies, *column.key);
    if (field.values.empty())
      for (const ResultTrack* copy : copies) field.values << shownText(column, *copy, dates);
    const bool isSame = std::all_of(field.values.begin(), field.values.end(),
                                    [&](const QString& value) { return value == field.values[0]; });
    if (isSame) {
      // The name stands above.
      const bool isTitle = column.key == TrackKey::tName || column.key == TrackKey::tArtist;
      // A tick alone would not say of what.
      const QString same = column.content == ColumnContent::flag && !field.values[0].isEmpty()
                               ? field.title
                               : field.values[0];
      if (!same.isEmpty() && !isTitle) comparison.same << same;
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

}  // namespace kestrel
