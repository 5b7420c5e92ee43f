#include "app/libraries/library_row.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/parts/library_title.h"
#include "resources/artwork.h"
#include "ui/qt/look.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int rowTile = 36;
constexpr int rowDrawing = 22;

}  // namespace

LibraryRow::LibraryRow(const LibraryTitle& title, std::function<void()> open)
    : icon_(title.icon),
      name_(new ElidedLabel(title.name)),
      details_(new ElidedLabel({})),
      open_(newButton(tr("Open"), std::move(open))) {
  open_->setAutoDefault(true);
  open_->setAccessibleName(tr("Open %1").arg(title.name));
  open_->setMinimumHeight(4 * gridStep);
  open_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  details_->setFont(smallFont(font()));
  setTextColor(details_, "grayText");
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  words->addStretch(1);
  words->addWidget(name_);
  words->addWidget(details_);
  words->addStretch(1);
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(20 + rowTile + 14, 0, 20, 0);
  line->setSpacing(2 * gridStep);
  line->addLayout(words, 1);
  line->addWidget(open_);
  setFixedHeight(7 * gridStep);
}

void LibraryRow::showDetails(const QString& details, const QString& toolTip) {
  details_->setText(details);
  details_->setToolTip(toolTip);
  name_->setToolTip(toolTip);
}

void LibraryRow::mouseDoubleClickEvent(QMouseEvent*) { open_->click(); }

void LibraryRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette desktop = QGuiApplication::palette();
  const QRect tile(20, (height() - rowTile) / 2, rowTile, rowTile);
  painter.setPen(Qt::NoPen);
  painter.setBrush(lookColor("accentGround", desktop));
  painter.drawRoundedRect(tile, gridStep, gridStep);
  const int inset = (rowTile - rowDrawing) / 2;
  painter.drawPixmap(
      tile.topLeft() + QPoint(inset, inset),
      iconPixmap(icon_, lookColor("accent", desktop), rowDrawing, devicePixelRatioF()));
}

}  // namespace kestrel
