#include "ui/geometry.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "foundation/text_helpers.h"
#include "platform/log.h"
#include "ui/process.h"

namespace kestrel {
namespace {

void logNumber(Log& log, const char* name, double number) {
  log.detail(std::string(name) + ": " + fixedDecimals(number, 6));
}

}  // namespace

IconDrawing menuIconDrawing(const Size& icon, const Size& canvas) noexcept {
  if (icon.width <= 0 || icon.height <= 0) return {{}, canvas};
  // In single precision: the rounded-down sizes below depend on it.
  const auto vertical = static_cast<float>(canvas.height / icon.height);
  // Always 15, whatever the canvas: what an icon takes of a wide canvas does not
  // depend on how far it is indented.
  const auto horizontal = static_cast<float>(15 / icon.width);
  if (vertical >= horizontal) {
    const double width = std::floor(canvas.width / static_cast<double>(vertical));
    return {{{std::floor(icon.width - width), 0}, {width, icon.height}}, canvas};
  }
  const double height = std::floor(canvas.height / static_cast<double>(horizontal));
  return {{{0, std::floor((icon.height - height) * 0.5)}, {icon.width, height}}, canvas};
}

IconDrawing KSPopupButtonCell::resizeImage(const Size& icon, const Size& canvas, Log& log) {
  if (icon.width > 15) log.detail("IMAGE TOO LONG");
  const Rect crop = {{icon.width - 15, 0}, {15, canvas.height}};
  logNumber(log, "cropRect.size.width", crop.size.width);
  logNumber(log, "cropRect.size.height", crop.size.height);
  logNumber(log, "cropRect.origin.x", crop.origin.x);
  logNumber(log, "cropRect.origin.y", crop.origin.y);
  return {crop, canvas};
}

IconDrawing KSPopupButtonCell::drawTitle(std::string_view image, const Size& icon,
                                         std::string_view representedObject, const Rect& frame,
                                         Log& log) {
  log.detail(image);
  log.detail(representedObject);
  const IconDrawing cut = resizeImage(icon, {15, 15}, log);
  log.detail(std::string(image) + ", cut");
  logNumber(log, "frame.size.width", frame.size.width);
  logNumber(log, "frame.size.height", frame.size.height);
  logNumber(log, "frame.origin.x", frame.origin.x);
  logNumber(log, "frame.origin.y", frame.origin.y);
  return cut;
}

Rect TableGeometry::selectedRect() const noexcept {
  if (!selectedRow) return {};
  return {{0, static_cast<double>(*selectedRow) * rowHeight}, {width, rowHeight}};
}

Point centringOrigin(const Rect& row, const Size& visible) noexcept {
  return {row.origin.x, std::max(0.0, row.origin.y + (row.size.height - visible.height) / 2)};
}

void TextSorter::selectInTable(std::size_t row, bool withMain) {
  auto& tables = process().state<ResultsTableReferences>();
  TableGeometry& table = withMain ? tables.maxTableView : tables.minTableView;
  if (row >= table.rows) return;
  table.selectedRow = row;
  scrollToCenter(&table);
}

void TextSorter::scrollToCenter(TableGeometry* table) {
  if (table) table->visibleOrigin = centringOrigin(table->selectedRect(), table->visibleSize);
}

}  // namespace kestrel
