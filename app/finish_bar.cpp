#include "app/finish_bar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int stepHeight = 6 * gridStep;
constexpr int numberSize = 3 * gridStep;

}  // namespace

FinishStep::FinishStep(int number, std::function<void()> pressed) : number_(number) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, std::move(pressed));
}

void FinishStep::show(const QString& title, const QString& amount, bool isNext) {
  setText(title);
  amount_ = amount;
  isNext_ = isNext;
  setAccessibleDescription(amount);
  update();
}

QSize FinishStep::sizeHint() const { return {20 * gridStep, stepHeight}; }

void FinishStep::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette desktop = QGuiApplication::palette();
  const auto color = [&](std::string_view name) { return lookColor(name, desktop); };
  const bool filled = isNext_ && isEnabled();
  const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(QPen(color(filled || hasFocus() ? "accent" : "line"), hasFocus() ? 2 : 1));
  painter.setBrush(color(filled                                      ? "accentGround"
                         : isEnabled() && (underMouse() || isDown()) ? "paneGround"
                                                                     : "tableBackground"));
  painter.drawRoundedRect(box, gridStep, gridStep);

  const QRect circle(gridStep + 6, (height() - numberSize) / 2, numberSize, numberSize);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color(filled ? "accent" : "badgeGround"));
  painter.drawEllipse(circle);
  painter.setFont(titleFont(smallFont(font())));
  painter.setPen(color(filled ? "accentText" : "grayText"));
  painter.drawText(circle, Qt::AlignCenter, QString::number(number_));

  const int left = circle.right() + 10;
  const QRect words(left, 0, width() - left - gridStep, height());
  const int half = height() / 2;
  painter.setFont(font());
  painter.setPen(color(isEnabled() ? "labelText" : "grayText"));
  const QRect upper = amount_.isEmpty() ? words : words.adjusted(0, 5, 0, -half + 2);
  painter.drawText(upper, Qt::AlignVCenter | Qt::TextShowMnemonic,
                   fontMetrics().elidedText(text(), Qt::ElideRight, words.width()));
  painter.setFont(smallFont(font()));
  painter.setPen(color("grayText"));
  painter.drawText(words.adjusted(0, half, 0, -5), Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(amount_, Qt::ElideRight, words.width()));
}

FinishBar::FinishBar(AppDelegate& delegate, Commands commands)
    : delegate_(delegate),
      steps_{new FinishStep(1, std::move(commands.review)),
             new FinishStep(2, std::move(commands.repair)),
             new FinishStep(3, std::move(commands.remove))} {
  setGround(this, "tableBackground");
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(2 * gridStep, gridStep, 2 * gridStep, gridStep);
  line->setSpacing(12);
  for (FinishStep* step : steps_) line->addWidget(step);
  follow(this, delegate_.observers, [this] { reload(); });
  observe(this, delegate_.summaryObservers, [this] { reload(); });
}

void FinishBar::reload() {
  const ResultSummary& summary = delegate_.summary();
  const bool result = delegate_.situation() == Situation::result;
  const auto number = [](std::size_t count) { return static_cast<std::int64_t>(count); };
  if (result) {
    const std::int64_t open = number(summary.withoutKeeper);
    steps_[0]->show(
        toQt(Message::tr("Review %Ln groups", "Review %Ln group", number(summary.groups))),
        open > 0 ? toQt(Message::tr("%Ln without a keeper", "%Ln without a keeper", open))
                 : tr("Each has a keeper"),
        open > 0);
    steps_[1]->show(tr("Repair playlists"), tr("They get the copies that are kept"), open == 0);
    QString amount = toQt(Message::tr("%Ln tracks", "%Ln track", number(summary.toActOn)));
    // Tracks without a file of their own, as those in the cloud are, free nothing.
    if (summary.bytes > 0) amount += QStringLiteral(", ") + sizeText(summary.bytes);
    steps_[2]->show(tr("Remove copies"), amount, false);
  } else {
    steps_[0]->show(tr("Review groups"), {}, false);
    steps_[1]->show(tr("Repair playlists"), {}, false);
    steps_[2]->show(tr("Remove copies"), {}, false);
  }
  for (FinishStep* step : steps_) step->setEnabled(result && !delegate_.isBusy());
}

}  // namespace kestrel
