#include "app/changes/finish_bar.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "app/controller/result_groups.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int stepHeight = 6 * gridStep;
constexpr int numberSize = 3 * gridStep;
constexpr int beforeCounting = 250;  // milliseconds

}  // namespace

FinishStep::FinishStep(int number, std::function<void()> pressed) : number_(number) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, std::move(pressed));
}

void FinishStep::show(const QString& title, const QString& amount, State state) {
  setText(title);
  amount_ = amount;
  state_ = state;
  setAccessibleDescription(amount);
  update();
}

QSize FinishStep::sizeHint() const { return {20 * gridStep, stepHeight}; }

void FinishStep::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette desktop = QGuiApplication::palette();
  const auto color = [&](std::string_view name) { return lookColor(name, desktop); };
  const bool filled = state_ == State::next && isEnabled();
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
  painter.drawText(circle, Qt::AlignCenter,
                   state_ == State::done ? QStringLiteral("✓") : QString::number(number_));

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
      pause_(new QTimer(this)),
      counting_(std::make_shared<std::atomic<int>>(0)),
      steps_{new FinishStep(1, std::move(commands.review)),
             new FinishStep(2, std::move(commands.repair)), new FinishStep(3, [this, commands] {
               removes() ? commands.remove() : commands.trash();
             })} {
  setGround(this, "tableBackground");
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(2 * gridStep, gridStep, 2 * gridStep, gridStep);
  line->setSpacing(12);
  for (FinishStep* step : steps_) line->addWidget(step);
  pause_->setSingleShot(true);
  pause_->setInterval(beforeCounting);
  connect(pause_, &QTimer::timeout, this, &FinishBar::recount);
  const auto changed = [this] {
    ++*counting_;
    pause_->start();
    reload();
  };
  observe(this, delegate_.summaryObservers, changed);
  observe(this, delegate_.libraryObservers, changed);
  observe(this, delegate_.knowledgeObservers, [this] { reload(); });
  follow(this, delegate_.observers, [this] { reload(); });
}

bool FinishBar::removes() const {
  if (!delegate_.application()) return false;
  const Capabilities can = delegate_.application()->capabilities();
  return can.deletesTracks || can.tracksFollowFiles;
}

void FinishBar::recount() {
  if (delegate_.situation() != Situation::result) return;
  if (delegate_.isBusy()) return pause_->start();
  const auto result = std::make_shared<std::optional<RepairCount>>();
  const auto waiting = std::make_shared<WaitingCopies>();
  const int wanted = ++*counting_;
  delegate_.ask(
      [result, waiting, rows = std::make_shared<const RowsToCount>(delegate_.content()),
       &application = *delegate_.application(),
       keeperValue = keeperValueBy(delegate_.process().with.preferences), counting = counting_,
       wanted] {
        const auto isOld = [&] { return *counting != wanted; };
        if (isOld()) return;
        *waiting = rows->waiting(keeperValue);
        const auto isUnsafe = [&](std::uint64_t before, std::uint64_t after) {
          return isUnsafeReplacement(rows->track(before), rows->track(after));
        };
        const auto canChange = [&](std::uint64_t playlist) {
          return application.reasonNotToChange(playlist).empty();
        };
        *result = countRepairs(rows->surveyed(), keeperValue, *application.library().allPlaylists(),
                               {isUnsafe, canChange, isOld});
      },
      [bar = QPointer<FinishBar>(this), result, waiting, counting = counting_, wanted] {
        if (!bar || !*result || *counting != wanted) return;
        bar->repairs_ = **result;
        bar->waiting_ = *waiting;
        bar->reload();
      });
}

void FinishBar::reload() {
  using enum FinishStep::State;
  const ResultSummary& summary = delegate_.summary();
  const bool result = delegate_.situation() == Situation::result;
  const bool trashes = delegate_.application() && !removes();
  const QString last = trashes ? tr("Move files to the trash") : tr("Remove copies");
  if (!result) {
    repairs_.reset();
    waiting_ = {};
    steps_[0]->show(tr("Review groups"), {}, ahead);
    steps_[1]->show(tr("Repair playlists"), {}, ahead);
    steps_[2]->show(last, {}, ahead);
  } else {
    const std::size_t open = summary.open;
    const std::size_t doubtful = delegate_.knowledge() ? delegate_.knowledge()->doubtful() : 0;
    const std::size_t picks = delegate_.groups().pickedCount();
    QStringList review;
    if (open > 0) review << toQt(Message::tr("%Ln undecided", "%Ln undecided", countOf(open)));
    if (doubtful > 0)
      review << toQt(Message::tr("%Ln doubtful", "%Ln doubtful", countOf(doubtful)));
    if (picks > 0)
      review << toQt(Message::tr("%Ln picks of yours", "%Ln pick of yours", countOf(picks)));
    if (review.empty()) review << tr("Each has one that is kept");
    steps_[0]->show(
        toQt(Message::tr("Review %Ln groups", "Review %Ln group", countOf(summary.groups))),
        review.join(QStringLiteral(" · ")),
        // Nobody can tell whether the user has looked at them.
        open > 0 || doubtful > 0 ? next : ahead);
    const bool repaired = repairs_ && repairs_->entries == 0;
    steps_[1]->show(tr("Repair playlists"),
                    !repairs_ ? tr("Counting…")
                    : repaired && repairs_->waiting > 0
                        ? toQt(Message::tr("%Ln entries stay: what is kept is only in the cloud",
                                           "%Ln entry stays: what is kept is only in the cloud",
                                           countOf(repairs_->waiting)))
                    : repaired ? tr("They list only what is kept")
                               : toQt(Message::tr("%Ln entries in %1", "%Ln entry in %1",
                                                  countOf(repairs_->entries))
                                          .arg(Message::tr("%Ln playlists", "%Ln playlist",
                                                           countOf(repairs_->playlists)))),
                    repaired               ? done
                    : open + doubtful == 0 ? next
                                           : ahead);
    // What its dialog offers at first.
    const std::size_t copies = summary.toActOn - std::min(waiting_.copies, summary.toActOn);
    const std::uint64_t bytes =
        summary.bytes - std::min<std::uint64_t>(waiting_.bytes, summary.bytes);
    QString amount = toQt(Message::tr("%Ln copies", "%Ln copy", countOf(copies)));
    // Tracks without a file of their own, as those in the cloud are, free nothing.
    if (bytes > 0) amount += QStringLiteral(", ") + sizeText(bytes);
    const bool nothing = copies == 0;
    if (nothing && summary.toActOn > 0)
      amount = toQt(Message::tr("%Ln copies stay: what is kept is only in the cloud",
                                "%Ln copy stays: what is kept is only in the cloud",
                                countOf(summary.toActOn)));
    steps_[2]->show(
        last, nothing && summary.toActOn == 0 ? tr("There is nothing left to remove") : amount,
        nothing                            ? done
        : open + doubtful == 0 && repaired ? next
                                           : ahead);
  }
  for (FinishStep* step : steps_) step->setEnabled(result && !delegate_.isBusy());
}

}  // namespace kestrel
