#include "app/changes/run_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "app/changes/undo_run.h"
#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

RunBar::RunBar(AppDelegate& delegate, std::function<void()> showHistory)
    : delegate_(delegate),
      text_(newPlainLabel(tr("What was changed last"))),
      undo_(newButton(
          tr("Undo"), [this] { undo(); }, tr("Undo what was done"))) {
  setGround(this, "accentGround");
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(2 * gridStep, gridStep / 2, 2 * gridStep, gridStep / 2);
  line->addWidget(text_, 1);
  line->addWidget(undo_);
  line->addWidget(newButton(tr("Sho&w History"), std::move(showHistory)));
  auto* close = newButton(tr("✕"), [this] { delegate_.setLastRun({}); });
  close->setFlat(true);
  close->setToolTip(tr("Hide"));
  close->setAccessibleName(tr("Hide what was changed last"));
  close->setFixedWidth(4 * gridStep);
  line->addWidget(close);
  follow(this, delegate_.runObservers, [this] { reload(); });
  observe(this, delegate_.observers, [this] { reload(); });
}

void RunBar::reload() {
  const auto& last = delegate_.lastRun();
  if (last) text_->setText(QStringLiteral("✓ ") + toQt(last->summary));
  setVisible(last.has_value());
  undo_->setEnabled(last && last->run && !undoing_ && !delegate_.isBusy());
}

void RunBar::undo() {
  if (!delegate_.lastRun() || !delegate_.lastRun()->run) return;
  undoing_ = true;
  UndoCallbacks callbacks;
  callbacks.done = [this](const UndoReport& report) {
    undoing_ = false;
    delegate_.refreshIfDue();
    // What came back is seen in the table; this says that it did.
    delegate_.setLastRun(LastRun{{}, report.messages().front()});
  };
  callbacks.notDone = [this] {
    undoing_ = false;
    reload();
  };
  undoAsking(delegate_, window(), *delegate_.lastRun()->run, {}, UndoQuestion::ifChangedSince,
             std::move(callbacks));
}

}  // namespace kestrel
