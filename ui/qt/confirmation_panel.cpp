#include "ui/qt/confirmation_panel.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "ui/custom_views.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

// In points, as the frames of the buttons.
constexpr double panelWidth = 500;
constexpr double margin = 16;
constexpr double gap = 8;
/// Of the font whose texts the frames were made for.
constexpr double usualLine = 16;

QLabel* newText(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
  return label;
}

int whole(double length) { return static_cast<int>(std::ceil(length)); }

}  // namespace

ConfirmationPanel::ConfirmationPanel(QWidget* window, Form form, const Question& question)
    : QDialog(window),
      message_(newText(question.message, this)),
      informativeText_(newText(question.informativeText, this)),
      // In the order of Tab, and of reading.
      default_(new QPushButton(question.defaultButton, this)),
      alternate_(new QPushButton(question.alternateButton, this)) {
  if (form == Form::playlist) {
    TextSorter::adjustDefButtonForPlaylist(defaultFrame_);
    TextSorter::adjustAltButtonForPlaylist(alternateFrame_);
  } else {
    TextSorter::adjustDefButtonForAll(defaultFrame_);
    TextSorter::adjustAltButtonForAll(alternateFrame_);
  }
  setWindowModality(Qt::WindowModal);
  setWindowTitle(window ? window->window()->windowTitle() : QString());
  setAccessibleName(question.message);
  setAccessibleDescription(question.informativeText);
  setBold(message_);
  default_->setDefault(true);
  default_->setAccessibleDescription(question.message);
  alternate_->setAutoDefault(true);  // Return presses the button that has the focus
  connect(default_, &QPushButton::clicked, this, &QDialog::accept);
  connect(alternate_, &QPushButton::clicked, this, &QDialog::reject);
  layOut();
  placeAtTop();
  default_->setFocus();
}

void ConfirmationPanel::ask(QWidget* window, Form form, const Question& question,
                            std::function<void(bool)> answered) {
  auto* panel = new ConfirmationPanel(window, form, question);
  panel->setAttribute(Qt::WA_DeleteOnClose);
  connect(panel, &QDialog::finished, panel,
          [answered = std::move(answered)](int result) { answered(result == Accepted); });
  panel->open();
}

double ConfirmationPanel::factor() const {
  double factor = std::max(1.0, fontMetrics().height() / usualLine);
  for (const auto& [button, frame] :
       {std::pair(default_, &defaultFrame_), std::pair(alternate_, &alternateFrame_)}) {
    const QSize needed = button->sizeHint();
    factor = std::max({factor, needed.width() / frame->frame.size.width,
                       needed.height() / frame->frame.size.height});
  }
  return factor;
}

QRect ConfirmationPanel::scaled(const PanelButton& button, double factor) const {
  const Rect& frame = button.frame;
  const QRectF place(frame.origin.x * factor,
                     height() - (frame.origin.y + frame.size.height) * factor,
                     frame.size.width * factor, frame.size.height * factor);
  return QStyle::visualRect(layoutDirection(), rect(), place.toRect());
}

void ConfirmationPanel::layOut() {
  const double scale = factor();
  const int side = whole(margin * scale);
  const int width = whole(panelWidth * scale);
  const int textWidth = width - 2 * side;
  const int messageHeight = message_->heightForWidth(textWidth);
  const int informativeHeight =
      informativeText_->text().isEmpty() ? 0 : informativeText_->heightForWidth(textWidth);
  const int below = side + messageHeight + whole(gap * scale);
  const PanelButton& button = defaultFrame_;
  const double buttons = button.frame.origin.y + button.frame.size.height + margin;
  setFixedSize(width, below + informativeHeight + whole(buttons * scale));
  message_->setGeometry(side, side, textWidth, messageHeight);
  informativeText_->setGeometry(side, below, textWidth, informativeHeight);
  default_->setGeometry(scaled(defaultFrame_, scale));
  alternate_->setGeometry(scaled(alternateFrame_, scale));
}

bool ConfirmationPanel::event(QEvent* event) {
  const bool done = QDialog::event(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange ||
      event->type() == QEvent::LayoutDirectionChange)
    layOut();
  return done;
}

void ConfirmationPanel::placeAtTop() {
  const QWidget* over = parentWidget() ? parentWidget()->window() : nullptr;
  const QRect screen = (over ? over->screen() : this->screen())->availableGeometry();
  const QRect window = over ? QRect(over->mapToGlobal(QPoint()), over->size()) : screen;
  const int left = window.center().x() - width() / 2;
  move(std::clamp(left, screen.left(), std::max(screen.left(), screen.right() - width())),
       std::clamp(window.top(), screen.top(), std::max(screen.top(), screen.bottom() - height())));
}

void ConfirmationPanel::center() {
  const Point kept = ModalInfoWindow::center({double(x()), double(y())});
  const QPoint origin(static_cast<int>(kept.x), static_cast<int>(kept.y));
  if (origin != pos()) move(origin);
  // To the toolkit it has been put there: else it would centre it.
  setAttribute(Qt::WA_Moved);
}

void ConfirmationPanel::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) center();
  QDialog::showEvent(event);
}

}  // namespace kestrel
