#include "ui/qt/widgets.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTreeWidget>
#include <algorithm>
#include <utility>

#include "ui/models/view_models.h"
#include "ui/qt/bindings.h"
#include "ui/qt/lines_delegate.h"
#include "ui/qt/look.h"
#include "ui/qt/table_painting.h"

namespace kestrel {
namespace {

QWidget* newBox(QBoxLayout::Direction direction, const QList<QWidget*>& parts,
                const QWidget* growing) {
  auto* box = new QWidget;
  auto* layout = new QBoxLayout(direction, box);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* part : parts) {
    if (part)
      layout->addWidget(part, part == growing ? 1 : 0);
    else
      layout->addStretch(1);
  }
  return box;
}

class Banner final : public QWidget {
 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(lookColor("warningGround", QGuiApplication::palette()));
    painter.drawRoundedRect(rect(), 5, 5);
  }
};

}  // namespace

void setBold(QWidget* widget) {
  QFont bold = widget->font();
  bold.setBold(true);
  widget->setFont(bold);
}

QLabel* newPlainLabel(const QString& accessibleName, const QString& text) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAccessibleName(accessibleName);
  return label;
}

QPushButton* newPrimaryButton(std::function<void()> pressed) {
  auto* button = new PrimaryButton(QString());
  button->setAutoDefault(false);
  QObject::connect(button, &QPushButton::clicked, button, std::move(pressed));
  return button;
}

QPushButton* newButton(const QString& title, std::function<void()> pressed,
                       const QString& toolTip) {
  auto* button = new QPushButton(title);
  button->setAutoDefault(false);
  button->setToolTip(toolTip);
  QObject::connect(button, &QPushButton::clicked, button, std::move(pressed));
  return button;
}

QTreeWidget* newList(const QStringList& headers, const QString& accessibleName) {
  auto* list = new QTreeWidget;
  list->setHeader(new TitleHeader(list));
  list->header()->setStretchLastSection(true);
  list->setItemDelegate(new LinesDelegate(list));
  list->setHeaderLabels(headers);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setAlternatingRowColors(true);
  list->setAccessibleName(accessibleName);
  return list;
}

void widenOuterColumns(QTreeWidget* list) {
  QHeaderView* header = list->header();
  header->setStretchLastSection(false);
  for (const int column : {0, 2}) header->setSectionResizeMode(column, QHeaderView::Stretch);
  header->setSectionResizeMode(1, QHeaderView::ResizeToContents);
}

QWidget* newColumn(const QList<QWidget*>& parts, const QWidget* growing) {
  return newBox(QBoxLayout::TopToBottom, parts, growing);
}

QWidget* newRow(const QList<QWidget*>& parts, const QWidget* growing) {
  return newBox(QBoxLayout::LeftToRight, parts, growing);
}

QWidget* newBanner(const QList<QWidget*>& parts, const QWidget* growing) {
  auto* banner = new Banner;
  auto* layout = new QBoxLayout(QBoxLayout::LeftToRight, banner);
  layout->setContentsMargins(12, 6, 8, 6);
  layout->setSpacing(8);
  for (QWidget* part : parts) layout->addWidget(part, part == growing ? 1 : 0);
  banner->hide();
  return banner;
}

QSplitter* newSplitter(Qt::Orientation orientation, const QList<QWidget*>& parts) {
  auto* splitter = new QSplitter(orientation);
  for (QWidget* part : parts) splitter->addWidget(part);
  splitter->setChildrenCollapsible(false);
  return splitter;
}

QWidget* newNotesArea(const QString& accessibleName) {
  QLabel* label = newPlainLabel(accessibleName);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setContentsMargins(4, 2, 4, 2);
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(label);
  area->setAccessibleName(accessibleName);
  area->hide();
  return area;
}

void showNotesIn(QWidget* area, const QStringList& notes) {
  constexpr int mostLines = 5;
  QStringList lines;
  for (const QString& note : notes) lines << QStringLiteral("• ") + note;
  auto* label = area->findChild<QLabel*>();
  label->setText(lines.join(QLatin1Char('\n')));
  area->setVisible(!lines.isEmpty());
  const int width = std::max(area->parentWidget() ? area->parentWidget()->width() - 24 : 0, 400);
  const int most = mostLines * label->fontMetrics().lineSpacing();
  area->setFixedHeight(std::min(label->heightForWidth(width), most) + 10);
}

QWidget* newSpinner(ProgressBar& model) {
  auto* bar = new QProgressBar;
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setFixedWidth(90);
  bar->setAccessibleName(QCoreApplication::translate("kestrel::PlaylistWindows", "Working"));
  follow(bar, model.observers,
         [bar, &model] { bar->setVisible(model.isAnimating() && !model.isHidden()); });
  return bar;
}

}  // namespace kestrel
