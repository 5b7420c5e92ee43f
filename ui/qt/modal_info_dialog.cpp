#include "ui/qt/modal_info_dialog.h"

#include <QScreen>
#include <QShowEvent>
#include <algorithm>

#include "ui/custom_views.h"

namespace kestrel {

ModalInfoDialog::ModalInfoDialog(QWidget* window) : QDialog(window) {
  setWindowModality(Qt::WindowModal);
}

void ModalInfoDialog::placeAtTop() {
  const QWidget* over = parentWidget() ? parentWidget()->window() : nullptr;
  const QRect screen = (over ? over->screen() : this->screen())->availableGeometry();
  const QRect window = over ? QRect(over->mapToGlobal(QPoint()), over->size()) : screen;
  const int left = window.center().x() - width() / 2;
  move(std::clamp(left, screen.left(), std::max(screen.left(), screen.right() - width())),
       std::clamp(window.top(), screen.top(), std::max(screen.top(), screen.bottom() - height())));
}

void ModalInfoDialog::center() {
  const Point kept = ModalInfoWindow::center({double(x()), double(y())});
  const QPoint origin(static_cast<int>(kept.x), static_cast<int>(kept.y));
  if (origin != pos()) move(origin);
  // As far as the toolkit knows somebody has put it there: else it would centre it.
  setAttribute(Qt::WA_Moved);
}

void ModalInfoDialog::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) center();
  QDialog::showEvent(event);
}

}  // namespace kestrel
