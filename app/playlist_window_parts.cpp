#include "app/playlist_window_parts.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QScrollArea>
#include <algorithm>

#include "models/progress_bar.h"
#include "ui/qt/observe.h"

namespace kestrel {

QLabel* newPlainLabel(const QString& accessibleName) {
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAccessibleName(accessibleName);
  return label;
}

QWidget* newSpinner(ProgressBar& model) {
  auto* bar = new QProgressBar;
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setFixedWidth(90);
  bar->setAccessibleName(QCoreApplication::translate("kestrel::PlaylistWindows", "Working"));
  const auto update = [bar, &model] { bar->setVisible(model.isAnimating() && !model.isHidden()); };
  observe(bar, model.observers, update);
  update();
  return bar;
}

QWidget* newNotesArea(QLabel* notes) {
  notes->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  notes->setContentsMargins(4, 2, 4, 2);
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(notes);
  area->setAccessibleName(notes->accessibleName());
  area->hide();
  return area;
}

void showNotesIn(QWidget* area, QLabel* notes, const QStringList& texts) {
  constexpr int mostLines = 5;
  QStringList lines;
  for (const QString& text : texts) lines << QStringLiteral("• ") + text;
  notes->setText(lines.join(QLatin1Char('\n')));
  area->setVisible(!lines.isEmpty());
  const int width = std::max(area->parentWidget() ? area->parentWidget()->width() - 24 : 0, 400);
  const int most = mostLines * notes->fontMetrics().lineSpacing();
  area->setFixedHeight(std::min(notes->heightForWidth(width), most) + 10);
}

}  // namespace kestrel
