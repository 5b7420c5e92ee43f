#include "app/parts/notice_bar.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "resources/artwork.h"
#include "ui/qt/look.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int signSize = 18;
constexpr int noticeMargin = 2 * gridStep;

}  // namespace

NoticeBar::NoticeBar(Weight weight)
    : weight_(weight), line_(new QHBoxLayout(this)), text_(new QLabel) {
  setGround(this, weight == Weight::warning ? "warningGround" : "accentGround");
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  line_->setContentsMargins(noticeMargin + (weight == Weight::warning ? signSize + 12 : 0),
                            gridStep, noticeMargin, gridStep);
  line_->setSpacing(12);
  line_->addWidget(text_, 1);
}

void NoticeBar::setText(const QString& text) {
  text_->setText(text);
  text_->setAccessibleName(text);
  setAccessibleName(text);
}

QPushButton* NoticeBar::addButton(const QString& title, std::function<void()> pressed) {
  QPushButton* button = newButton(title, std::move(pressed));
  button->setMinimumHeight(4 * gridStep);
  line_->addWidget(button);
  return button;
}

void NoticeBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QPalette desktop = QGuiApplication::palette();
  painter.fillRect(QRect(0, height() - 1, width(), 1), lookColor("line", desktop));
  if (weight_ == Weight::warning)
    painter.drawPixmap(noticeMargin, (height() - signSize) / 2,
                       iconPixmap(QStringLiteral("warning"), lookColor("warningText", desktop),
                                  signSize, devicePixelRatioF()));
}

}  // namespace kestrel
