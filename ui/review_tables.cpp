#include "ui/review_tables.h"

#include <string>

#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr std::string_view checkBoxColumn = "tCheckbox";
constexpr std::string_view groupColumn = "dupeSort";

}  // namespace

RowState rowState(const ResultTrack& row, bool keeperMode) {
  return {row.tCheckbox != keeperMode, row.record->availability()};
}

Color cellTextColor(bool keeper, std::string_view fileAvail) {
  if (fileAvail == "1") return keeper ? SystemColor::label : SystemColor::gray;
  if (fileAvail == "2") return keeper ? Color(colors::darkblue) : Color(colors::lightBlue);
  return keeper ? Color(colors::darkred) : Color(colors::lightRed);
}

void ReviewTableDelegate::didClickTableColumn(TableSort& sort, std::string_view column) const {
  if (column == checkBoxColumn || sort.empty()) return;
  const ColumnSort first = sort.front();
  if (TableSort expanded = expandedSort(table_, first.key, first.ascending); !expanded.empty())
    sort = std::move(expanded);
  if (table_ == ReviewTable::upper) preferences_.set(settings::sortColumn, std::string(column));
}

CellView ReviewTableDelegate::viewForTableColumn(std::string_view column,
                                                 const ResultTrack& row) const {
  const bool keeperMode = preferences_.boolean(settings::keeperMode);
  CellView cell{column};
  cell.textColor =
      cellTextColor(row.tCheckbox != keeperMode, row.value(TrackKey::fileAvail).text());
  return cell;
}

bool ReviewTableDelegate::shouldReorderColumn(std::ptrdiff_t from,
                                              std::ptrdiff_t to) const noexcept {
  if (table_ == ReviewTable::upper) return from != 0 && to != 0;
  // The lower table keeps its first two columns.
  return from > 1 && to > 1;
}

bool ReviewTableDelegate::selectionShouldChangeInTableView(const TableEvent& event) const noexcept {
  switch (event.kind) {
    case TableEvent::Kind::leftMouseUp:
    case TableEvent::Kind::keyDown:
    case TableEvent::Kind::keyUp:
      return true;
    case TableEvent::Kind::systemDefined:
      if (table_ == ReviewTable::upper) return false;
      break;
    case TableEvent::Kind::leftMouseDown:
    case TableEvent::Kind::other:
      break;
  }
  return event.columnUnderPointer >= 1;
}

std::vector<TableReload> ReviewTableDelegate::clickedACheckBox(bool lowerWindowVisible) const {
  if (table_ == ReviewTable::lower) return {{ReviewTable::lower, true}, {ReviewTable::upper, true}};
  std::vector<TableReload> reloads = {{ReviewTable::upper, true}};
  if (lowerWindowVisible) reloads.push_back({ReviewTable::lower, false});
  return reloads;
}

void KSMaxDel::didAddRowView(MyNSTableRowView& view, const ResultTrack& row,
                             const ArrayController<ResultTrack>& maxArrayController,
                             bool filtered) {
  const auto& order = maxArrayController.sortOrder();
  if (filtered || order.empty() || order.front().key != groupColumn) return;
  view.backgroundColor = row.dupeSort % 2 != 0 ? colors::lightStripe : colors::darkStripe;
}

namespace {

TableSort sortOf(const ReviewTableDelegate& delegate, std::string_view column, bool ascending) {
  const TableColumn* found = tableColumn(column);
  if (!found) return {};
  TableSort sort = {found->sortPrototype()};
  sort.front().ascending = ascending;
  delegate.didClickTableColumn(sort, found->identifier);
  return sort;
}

}  // namespace

TableSort clickedSort(const ReviewTableDelegate& delegate, const ArrayController<ResultTrack>& rows,
                      std::string_view column) {
  const auto& order = rows.sortOrder();
  const bool turned = !order.empty() && order.front().key == column && order.front().ascending;
  return sortOf(delegate, column, !turned);
}

void clickColumnHeader(const ReviewTableDelegate& delegate, ArrayController<ResultTrack>& rows,
                       std::string_view column) {
  if (const TableSort sort = clickedSort(delegate, rows, column); !sort.empty())
    rows.setSortOrder(sortKeys(sort));
}

void sortByColumn(const ReviewTableDelegate& delegate, ArrayController<ResultTrack>& rows,
                  std::string_view column, bool ascending) {
  if (const TableSort sort = sortOf(delegate, column, ascending); !sort.empty())
    rows.setSortOrder(sortKeys(sort));
}

}  // namespace kestrel
