#include "app/playlist_window_parts.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "foundation/text_helpers.h"
#include "ui/models/view_models.h"
#include "ui/qt/observe.h"
#include "ui/qt/text.h"

namespace kestrel {

QLabel* newPlainLabel(const QString& accessibleName) {
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAccessibleName(accessibleName);
  return label;
}

QString sizeText(std::uint64_t bytes) {
  const auto count = static_cast<std::int64_t>(bytes);
  if (bytes == 0) return toQt(Message::tr("Zero KB"));
  if (bytes < 1000) return toQt(Message::tr("%Ln bytes", "%Ln byte", count));
  return toQt(ByteCountFormatter({}).text(count));
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

QWidget* newDecisionPage(const QList<QWidget*>& parts, const QWidget* growing,
                         const DecisionRow& row) {
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(row.more);
  buttons->addWidget(newSpinner(*row.working));
  buttons->addWidget(row.status);
  buttons->addWidget(row.chosen, 1);
  buttons->addWidget(row.cancel);
  buttons->addWidget(row.ok);
  // Return in a table is no consent.
  for (QPushButton* button : {row.more, row.cancel, row.ok}) button->setAutoDefault(false);
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(0, 0, 0, 0);
  for (QWidget* part : parts) column->addWidget(part, part == growing ? 1 : 0);
  column->addLayout(buttons);
  return page;
}

void highlightFirstPlaylist(QTreeWidget* outline) {
  for (QTreeWidgetItemIterator it(outline); *it; ++it) {
    if ((*it)->childCount() > 0) continue;
    outline->setCurrentItem(*it);
    outline->setFocus();
    return;
  }
}

Plan confirmedPlan(Plan plan, const std::unordered_set<std::uint64_t>& confirmed) {
  std::erase_if(plan.playlists, [&](const PlannedPlaylist& planned) {
    return !confirmed.contains(planned.playlist);
  });
  return plan;
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
