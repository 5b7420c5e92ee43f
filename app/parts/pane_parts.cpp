#include "app/parts/pane_parts.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/qt/look.h"

namespace kestrel {

QVBoxLayout* newSection(QWidget* section, const QString& title) {
  auto* column = new QVBoxLayout(section);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  auto* heading = new QLabel(title.toUpper());
  heading->setFont(titleFont(smallFont(section->font())));
  heading->setContentsMargins(0, gridStep, 0, gridStep / 2);
  setTextColor(heading, "grayText");
  section->setAccessibleName(title);
  column->addWidget(heading);
  return column;
}

QToolButton* newFold(const QString& title, QWidget* content) {
  auto* fold = new QToolButton;
  fold->setText(title);
  fold->setCheckable(true);
  fold->setAutoRaise(true);
  fold->setArrowType(Qt::RightArrow);
  fold->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  content->hide();
  QObject::connect(fold, &QToolButton::toggled, content, [content, fold](bool open) {
    content->setVisible(open);
    fold->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
  });
  return fold;
}

QToolButton* newLink(const QString& title) {
  auto* link = new QToolButton;
  link->setText(title);
  link->setAutoRaise(true);
  link->setCursor(Qt::PointingHandCursor);
  setTextColor(link, "accent");
  return link;
}

}  // namespace kestrel
