#include "ui/qt/segments.h"

#include <QButtonGroup>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QRadioButton>

#include "ui/qt/look.h"

namespace kestrel {
namespace {

constexpr int segmentMargin = 12;
constexpr int segmentPadding = 5;
constexpr qreal segmentRadius = 5;

/// A radio button that is drawn as a part of the frame.
class Segment final : public QRadioButton {
 public:
  explicit Segment(const QString& title) : QRadioButton(title) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
  }
  bool isFirst = false, isLast = false;

  [[nodiscard]] QSize sizeHint() const override {
    QFont bold = font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    return {metrics.size(Qt::TextShowMnemonic, text()).width() + 2 * segmentMargin,
            metrics.height() + 2 * segmentPadding};
  }
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  [[nodiscard]] bool hitButton(const QPoint& at) const override { return rect().contains(at); }
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(isFirst ? 0.5 : -0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    // The inner ends are straight: what reaches over them is cut off.
    const qreal reach = segmentRadius + 1;
    path.addRoundedRect(frame.adjusted(isFirst ? 0 : -reach, 0, isLast ? 0 : reach, 0),
                        segmentRadius, segmentRadius);
    const auto color = [&](std::string_view name) {
      return lookColor(name, QGuiApplication::palette());
    };
    painter.fillPath(path, color(isChecked()                   ? "accentGround"
                                 : underMouse() && isEnabled() ? "paneGround"
                                                               : "tableBackground"));
    painter.setPen(color("line"));
    painter.drawPath(path);
    if (!isLast) painter.drawLine(QPointF(frame.right(), 1), QPointF(frame.right(), height() - 1));
    QFont font = this->font();
    font.setBold(isChecked());
    painter.setFont(font);
    painter.setPen(color(isEnabled() ? "labelText" : "grayText"));
    painter.drawText(rect(), int(Qt::AlignCenter) | Qt::TextShowMnemonic, text());
    if (hasFocus()) {
      painter.setPen(QPen(color("accent"), 1.5));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), 3, 3);
    }
  }
};

}  // namespace

Segments::Segments(const QString& accessibleName)
    : group_(new QButtonGroup(this)), line_(new QHBoxLayout(this)) {
  setAccessibleName(accessibleName);
  line_->setContentsMargins(0, 0, 0, 0);
  line_->setSpacing(0);
  connect(group_, &QButtonGroup::idToggled, this, [this](int, bool on) {
    if (on) Q_EMIT changed();
  });
}

void Segments::add(int id, const QString& title) {
  auto* segment = new Segment(title);
  segment->isLast = true;
  segment->isFirst = group_->buttons().isEmpty();
  if (!segment->isFirst) static_cast<Segment*>(group_->buttons().constLast())->isLast = false;
  group_->addButton(segment, id);
  line_->addWidget(segment);
}

void Segments::choose(int id) {
  if (QAbstractButton* button = group_->button(id)) button->setChecked(true);
}

int Segments::chosen() const { return group_->checkedId(); }

}  // namespace kestrel
