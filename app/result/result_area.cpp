#include "app/result/result_area.h"

#include <QDataStream>
#include <QEvent>
#include <QIODevice>
#include <algorithm>

namespace kestrel {
namespace {

/// Beside the table: a quarter of the window, as far as that is sensible.
constexpr int leastCompare = 416, mostCompare = 720;
/// Below it: as high as leaves the table most of a low window.
constexpr int leastCompareHeight = 152, mostCompareHeight = 216;

int compareHeight(const QWidget& window) {
  return std::clamp(window.height() * 25 / 100, leastCompareHeight, mostCompareHeight);
}

}  // namespace

ResultArea::ResultArea(QWidget* table, QWidget* compare) : QSplitter(Qt::Vertical) {
  addWidget(table);
  addWidget(compare);
  setStretchFactor(0, 1);
  setStretchFactor(1, 0);
  setCollapsible(0, false);
  setHandleWidth(1);
}

void ResultArea::showEvent(QShowEvent* event) {
  QSplitter::showEvent(event);
  window()->installEventFilter(this);
  if (orientation() == Qt::Vertical && below_.isEmpty())
    setSizes({10000, compareHeight(*window())});
  arrange();
}

void ResultArea::hideEvent(QHideEvent* event) {
  remember();
  QSplitter::hideEvent(event);
}

bool ResultArea::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && watched == window()) arrange();
  return QSplitter::eventFilter(watched, event);
}

void ResultArea::remember() { (orientation() == Qt::Horizontal ? beside_ : below_) = saveState(); }

void ResultArea::arrange() {
  const Qt::Orientation wanted = window()->width() >= wide ? Qt::Horizontal : Qt::Vertical;
  if (wanted == orientation()) return;
  remember();
  const bool beside = wanted == Qt::Horizontal;
  setOrientation(wanted);
  const int window = this->window()->width();
  const int width = std::clamp(window * 26 / 100, leastCompare, mostCompare);
  // What was shared out in a wider window may leave the table too little of this one.
  if (!restoreState(beside ? beside_ : below_) || (beside && sizes().back() > window * 2 / 5))
    setSizes({10000, beside ? width : compareHeight(*this->window())});
  setHandleWidth(1);
  // A state holds an orientation too.
  setOrientation(wanted);
}

QByteArray ResultArea::sharing() const {
  QByteArray state;
  QDataStream stream(&state, QIODevice::WriteOnly);
  // What is not shown has no sizes of its own.
  const auto current = [this](Qt::Orientation which) {
    return isVisible() && orientation() == which;
  };
  stream << (current(Qt::Horizontal) ? saveState() : beside_)
         << (current(Qt::Vertical) ? saveState() : below_);
  return state;
}

void ResultArea::restoreSharing(const QByteArray& state) {
  QDataStream stream(state);
  stream >> beside_ >> below_;
  const QByteArray& here = orientation() == Qt::Horizontal ? beside_ : below_;
  if (const Qt::Orientation before = orientation(); !here.isEmpty()) {
    restoreState(here);
    setOrientation(before);
  }
}

}  // namespace kestrel
