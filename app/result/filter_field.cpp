#include "app/result/filter_field.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QToolButton>

#include "resources/artwork.h"
#include "ui/qt/look.h"

namespace kestrel {
namespace {

/// Of the button that clears the field.
constexpr int clearWidth = 3 * gridStep;

}  // namespace

FilterField::FilterField()
    : lens_(addAction(toolbarIcon(QStringLiteral("search")), LeadingPosition)),
      count_(new QLabel(this)) {
  setPlaceholderText(tr("Filter"));
  setAccessibleName(tr("Filter the table by words"));
  setClearButtonEnabled(true);
  setMinimumWidth(20 * gridStep);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  lens_->setVisible(true);
  count_->setFont(smallFont(font()));
  count_->setAttribute(Qt::WA_TransparentForMouseEvents);
  count_->setAccessibleName(tr("Rows that the filter shows"));
  setTextColor(count_, "grayText");
  // The toolkit's buttons within the field have no names: the lens, and the one that clears.
  const auto buttons = findChildren<QToolButton*>();
  for (QToolButton* button : buttons)
    button->setAccessibleName(button == buttons.front() ? tr("Filter") : tr("Clear Filter"));
}

QSize FilterField::sizeHint() const { return {33 * gridStep, QLineEdit::sizeHint().height()}; }

void FilterField::showCount(const QString& count) {
  count_->setText(count);
  setAccessibleDescription(count);
  place();
}

void FilterField::place() {
  count_->adjustSize();
  const int right = text().isEmpty() ? gridStep : clearWidth + 2;
  setTextMargins(0, 0, count_->text().isEmpty() ? 0 : count_->width() + gridStep, 0);
  count_->move(width() - right - count_->width(), (height() - count_->height()) / 2);
}

void FilterField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  place();
}

void FilterField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  // The toolkit keeps what it has drawn of an icon.
  if (event->type() == QEvent::PaletteChange && lens_)
    lens_->setIcon(toolbarIcon(QStringLiteral("search")));
}

}  // namespace kestrel
