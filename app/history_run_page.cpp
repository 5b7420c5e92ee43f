#include "app/history_run_page.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <chrono>
#include <utility>

#include "app/app_delegate.h"
#include "app/history_changes.h"
#include "app/history_task.h"
#include "app/history_undo.h"
#include "app/playlist_window_parts.h"
#include "platform/queues.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Rows of the summary; ten thousand files are not read one by one.
constexpr std::size_t mostShown = 5000;
constexpr auto betweenReports = std::chrono::milliseconds(30);

QString resultText(const Outcome& outcome, RunKind kind) {
  switch (outcome.kind) {
    case Outcome::Kind::done:
      if (kind == RunKind::trash ||
          (kind == RunKind::remove && outcome.what == Outcome::What::file))
        return RunPage::tr("✓ Moved, %1").arg(sizeText(outcome.changes));
      if (kind == RunKind::addToLibrary) return RunPage::tr("✓ Added");
      if (kind == RunKind::undo) return RunPage::tr("✓ Taken back");
      if (kind == RunKind::remove && outcome.what == Outcome::What::track)
        return RunPage::tr("✓ Removed");
      return RunPage::tr("✓ Done, entries changed: %1").arg(outcome.changes);
    case Outcome::Kind::asBefore:
      return RunPage::tr("– Nothing to take back");
    case Outcome::Kind::skipped:
      return RunPage::tr("– Left as it was");
    case Outcome::Kind::failed:
      return RunPage::tr("✗ Failed");
    case Outcome::Kind::notReached:
      return RunPage::tr("– Stopped before it");
  }
  return {};
}

}  // namespace

RunPage::RunPage(AppDelegate& delegate, const QString& title)
    : delegate_(delegate),
      title_(new QLabel(title)),
      bar_(new QProgressBar),
      status_(new QLabel),
      outcomes_(new QTreeWidget),
      notes_(new QLabel),
      undo_(new QPushButton(tr("&Undo"))),
      stop_(new QPushButton(tr("&Stop"))),
      close_(new QPushButton(tr("&Close"))) {
  QFont bold = title_->font();
  bold.setBold(true);
  title_->setFont(bold);
  bar_->setRange(0, 0);
  bar_->setAccessibleName(title);
  for (QLabel* label : {title_, status_, notes_}) {
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  outcomes_->setRootIsDecorated(false);
  outcomes_->setUniformRowHeights(true);
  outcomes_->setTextElideMode(Qt::ElideMiddle);
  outcomes_->setAlternatingRowColors(true);
  outcomes_->setAccessibleName(tr("What was done"));
  outcomes_->hide();
  notes_->hide();
  undo_->hide();
  undo_->setToolTip(tr("Take back what was done"));
  close_->hide();
  stop_->setToolTip(tr("What is done by then stays; it can be taken back"));

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(undo_);
  buttons->addStretch(1);
  buttons->addWidget(stop_);
  buttons->addWidget(close_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(title_);
  column->addWidget(bar_);
  column->addWidget(status_);
  column->addWidget(outcomes_, 1);
  column->addWidget(notes_);
  column->addStretch(0);
  column->addLayout(buttons);
  connect(stop_, &QPushButton::clicked, this, &RunPage::stop);
  connect(close_, &QPushButton::clicked, this, &RunPage::closeRequested);
  connect(undo_, &QPushButton::clicked, this, &RunPage::undo);
}

void RunPage::stop() {
  *stopped_ = true;
  stop_->setEnabled(false);
  status_->setText(tr("Stopping…"));
}

void RunPage::apply(Plan plan) {
  running_ = true;
  kind_ = plan.kind;
  // A track without a file is named by its title.
  for (const PlannedFile& file : plan.files)
    if (file.path.empty()) names_.emplace(file.track, toQt(file.name));
  stop_->setFocus();
  ApplyOptions options;
  options.cancelled = [stopped = stopped_] { return stopped->load(); };
  options.progress =
      [page = QPointer<RunPage>(this), &queue = delegate_.process().with.mainQueue,
       last = std::chrono::steady_clock::time_point()](const ApplyProgress& progress) mutable {
        // Thousands of files a second would keep the window busy with nothing but their names.
        const auto now = std::chrono::steady_clock::now();
        if (now - last < betweenReports) return;
        last = now;
        queue.post([page, progress] {
          if (page) page->showProgress(progress);
        });
      };
  runTask<ApplyReport>(
      delegate_, this, tr("Nothing was changed."),
      [&application = *delegate_.application(), plan = std::move(plan), options] {
        return applyToLibrary(plan, application, options);
      },
      [this](const ApplyReport& report) {
        running_ = false;
        if (report.kind == RunKind::trash) delegate_.removed(report.outcomes);
        if (report.kind == RunKind::addToLibrary) delegate_.setRefreshDue();
        delegate_.whenIdle([&delegate = delegate_] { delegate.refreshPlaylists(); });
        showReport(report);
        delegate_.whenIdle([page = QPointer<RunPage>(this)] {
          if (page) Q_EMIT page->ended();
        });
      },
      [this] {
        running_ = false;
        Q_EMIT failed();
      });
}

void RunPage::showProgress(const ApplyProgress& progress) {
  if (!running_) return;
  bar_->setRange(0, static_cast<int>(std::max<std::size_t>(progress.total, 1)));
  bar_->setValue(static_cast<int>(progress.done));
  if (!*stopped_)
    status_->setText(progress.name.empty() ? tr("Writing the library…")
                                           : tr("%1 of %2: %3")
                                                 .arg(progress.done + 1)
                                                 .arg(progress.total)
                                                 .arg(toQt(progress.name)));
}

void RunPage::showReport(const ApplyReport& report) {
  run_ = report.run;
  bar_->hide();
  stop_->hide();
  close_->show();
  close_->setDefault(true);
  close_->setFocus();
  undo_->setVisible(report.run && report.count(Outcome::Kind::done) > 0);
  showOutcomes(report.outcomes, report.kind);
  const QStringList lines = toQt(report.messages());
  ApplyReport others = report;
  // Reasons stand beside their playlists already.
  others.outcomes.clear();
  QStringList notes = toQt(others.messages());
  if (report.state != RunState::failed) notes.front() = lines.front();
  showLines(std::move(notes));
}

void RunPage::showLines(QStringList lines) {
  if (lines.empty()) return;
  title_->setText(lines.takeFirst());
  status_->hide();
  notes_->setText(lines.join(QLatin1Char('\n')));
  notes_->setVisible(!lines.isEmpty());
}

void RunPage::showOutcomes(const std::vector<Outcome>& outcomes, RunKind kind) {
  outcomes_->clear();
  outcomes_->setHeaderLabels(
      {isAboutFiles(kind_) ? tr("File") : tr("Playlist"), tr("Result"), tr("Remark")});
  QList<QTreeWidgetItem*> items;
  for (const Outcome& outcome : outcomes) {
    if (static_cast<std::size_t>(items.size()) == mostShown) break;
    const auto named = outcome.name.empty() ? names_.find(outcome.id) : names_.end();
    const QString name = named == names_.end() ? pathToQt(outcome.name) : named->second;
    auto* item = new QTreeWidgetItem({name, resultText(outcome, kind), toQt(outcome.reason)});
    item->setToolTip(0, item->text(0));
    item->setToolTip(2, item->text(2));
    items << item;
  }
  outcomes_->addTopLevelItems(items);
  if (items.size() < static_cast<qsizetype>(outcomes.size()))
    new QTreeWidgetItem(outcomes_,
                        {tr("… and %1 more, in the history").arg(outcomes.size() - mostShown)});
  outcomes_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  outcomes_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  outcomes_->header()->setSectionResizeMode(2, QHeaderView::Stretch);
  outcomes_->header()->setStretchLastSection(false);
  outcomes_->show();
}

QString RunPage::searchAgainText() {
  return tr("Search again to have the tracks in the table again.");
}

void RunPage::undo() {
  undo_->setEnabled(false);
  close_->setEnabled(false);
  UndoCallbacks callbacks;
  callbacks.done = [this](const UndoReport& report) {
    undo_->hide();
    close_->setEnabled(true);
    close_->setFocus();
    showOutcomes(report.outcomes, RunKind::undo);
    QStringList lines = toQt(report.messages()).mid(0, 1);
    if (!report.problem.empty()) lines << toQt(report.problem);
    if (kind_ == RunKind::trash) lines << searchAgainText();
    showLines(std::move(lines));
  };
  callbacks.notDone = [this] {
    undo_->setEnabled(true);
    close_->setEnabled(true);
  };
  undoAsking(delegate_, this, *run_, {}, UndoQuestion::ifChangedSince, std::move(callbacks));
}

}  // namespace kestrel
