#include "app/change_window.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <atomic>
#include <chrono>

#include "app/controller/result_changes.h"
#include "app/undo_run.h"
#include "platform/queues.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

/// Rows of the summary; ten thousand files are not read one by one.
constexpr std::size_t mostOutcomes = 5000;
constexpr auto betweenReports = std::chrono::milliseconds(30);

}  // namespace

/// The page of a window that shows a plan being carried out, then what came of it.
class RunPage final : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(kestrel::RunPage)

 public:
  struct Events {
    std::function<void()> ended;   ///< the summary is shown; the controller is idle
    std::function<void()> failed;  ///< nothing was changed; the user has been told why
    std::function<void()> close;   ///< the user has seen enough
  };

  RunPage(AppDelegate& delegate, const QString& title, Events events)
      : delegate_(delegate),
        events_(std::move(events)),
        title_(newPlainLabel({}, title)),
        bar_(new QProgressBar),
        status_(newPlainLabel({})),
        outcomes_(newList({}, tr("What was done"))),
        notes_(newPlainLabel({})),
        undo_(new QPushButton(tr("&Undo"))),
        stop_(new QPushButton(tr("&Stop"))),
        close_(new QPushButton(tr("&Close"))) {
    setBold(title_);
    bar_->setRange(0, 0);
    bar_->setAccessibleName(title);
    undo_->setToolTip(tr("Take back what was done"));
    stop_->setToolTip(tr("What is done by then stays; it can be taken back"));
    for (QWidget* later : QList<QWidget*>{outcomes_, notes_, undo_, close_}) later->hide();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    for (QWidget* part : QList<QWidget*>{title_, bar_, status_}) column->addWidget(part);
    column->addWidget(outcomes_, 1);
    column->addWidget(notes_);
    column->addStretch(0);
    column->addWidget(newRow({undo_, nullptr, stop_, close_}));
    connect(stop_, &QPushButton::clicked, this, &RunPage::stop);
    connect(close_, &QPushButton::clicked, this, [this] { events_.close(); });
    connect(undo_, &QPushButton::clicked, this, &RunPage::undo);
  }

  [[nodiscard]] bool isRunning() const { return running_; }
  /// Asks to end before the next playlist or file.
  void stop() {
    *stopped_ = true;
    stop_->setEnabled(false);
    status_->setText(tr("Stopping…"));
  }
  void apply(PlanMaker plan, const GuardOptions& guard);

 private:
  static QString resultText(const Outcome& outcome, RunKind kind);
  /// Has the worker tell how far it is, and stop when it is asked to.
  std::function<void(const ApplyProgress&)> begun();
  void showProgress(const ApplyProgress& progress);
  void tellController(const ApplyReport& report);
  void showReport(const ApplyReport& report);
  void showOutcomes(const std::vector<Outcome>& outcomes, RunKind kind);
  void showLines(QStringList lines);
  void undo();

  AppDelegate& delegate_;
  Events events_;
  std::shared_ptr<std::atomic<bool>> stopped_ = std::make_shared<std::atomic<bool>>(false);
  bool running_ = false;
  bool undoing_ = false;
  std::optional<std::int64_t> run_;  ///< that changed something

  QLabel* title_;
  QProgressBar* bar_;
  QLabel* status_;
  QTreeWidget* outcomes_;
  QLabel* notes_;
  QPushButton* undo_;
  QPushButton* stop_;
  QPushButton* close_;
};

QString RunPage::resultText(const Outcome& outcome, RunKind kind) {
  const auto changes = static_cast<std::int64_t>(outcome.changes);
  switch (outcome.kind) {
    case Outcome::Kind::done:
      if (outcome.what == Outcome::What::values)
        return kind == RunKind::undo ? tr("✓ Taken back") : tr("✓ Carried over");
      if (kind == RunKind::addToLibrary) return tr("✓ Added");
      if (kind == RunKind::undo) return tr("✓ Taken back");
      if (outcome.what == Outcome::What::file)
        return tr("✓ Moved, %1").arg(sizeText(outcome.changes));
      if (outcome.what == Outcome::What::track) return tr("✓ Removed");
      if (outcome.deleted > 0 && kind != RunKind::cleanUp)
        return tr("✓ %1 replaced, %2 deleted")
            .arg(numberText(outcome.changes - outcome.deleted), numberText(outcome.deleted));
      return toQt(Message::tr("✓ %Ln entries changed", "✓ %Ln entry changed", changes));
    case Outcome::Kind::asBefore:
      return tr("– Nothing to take back");
    case Outcome::Kind::skipped:
      return tr("– Left as it was");
    case Outcome::Kind::failed:
      return tr("✗ Failed");
    case Outcome::Kind::notReached:
      return tr("– Stopped before it");
  }
  return {};
}

std::function<void(const ApplyProgress&)> RunPage::begun() {
  *stopped_ = false;
  stop_->setEnabled(true);
  return [page = QPointer<RunPage>(this), &queue = delegate_.process().with.mainQueue,
          last = std::chrono::steady_clock::time_point()](const ApplyProgress& progress) mutable {
    // Thousands of files a second would keep the window busy with nothing but their names.
    const auto now = std::chrono::steady_clock::now();
    if (now - last < betweenReports) return;
    last = now;
    queue.post([page, progress] {
      if (page) page->showProgress(progress);
    });
  };
}

void RunPage::apply(PlanMaker plan, const GuardOptions& guard) {
  running_ = true;
  stop_->setFocus();
  ApplyOptions options;
  options.guard = guard;
  options.cancelled = [stopped = stopped_] { return stopped->load(); };
  options.progress = begun();
  runTask<ApplyReport>(
      delegate_, this, tr("Nothing was changed."),
      [&application = *delegate_.application(), plan = std::move(plan), options] {
        return applyToLibrary(plan(application), application, options);
      },
      [this](const ApplyReport& report) {
        running_ = false;
        tellController(report);
        showReport(report);
        delegate_.whenIdle([page = QPointer<RunPage>(this)] {
          if (page) page->events_.ended();
        });
      },
      [this] {
        running_ = false;
        events_.failed();
      });
}

void RunPage::tellController(const ApplyReport& report) {
  if (report.kind == RunKind::trash || report.kind == RunKind::remove)
    delegate_.removed(report.outcomes);
  if (report.kind == RunKind::addToLibrary) delegate_.setRefreshDue();
  if (report.count(Outcome::Kind::done) > 0) run_ = report.run;
  if (run_) delegate_.setLastRun(LastRun{run_, summaryOf(report)});
  delegate_.whenIdle([&delegate = delegate_] { delegate.refreshPlaylists(); });
}

void RunPage::showProgress(const ApplyProgress& progress) {
  if (!running_ && !undoing_) return;
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
  bar_->hide();
  stop_->hide();
  close_->show();
  close_->setDefault(true);
  close_->setFocus();
  undo_->setVisible(run_.has_value());
  showOutcomes(report.outcomes, report.kind);
  QStringList lines{toQt(summaryOf(report))};
  if (report.state != RunState::failed && !report.problem.empty())
    lines << toQt(ended(report.problem));
  showLines(std::move(lines));
}

void RunPage::showLines(QStringList lines) {
  if (lines.empty()) return;
  title_->setText(lines.takeFirst());
  status_->hide();
  notes_->setText(lines.join(QLatin1Char('\n')));
  notes_->setVisible(!lines.isEmpty());
}

void RunPage::showOutcomes(const std::vector<Outcome>& outcomes, RunKind kind) {
  const auto has = [&](Outcome::What what) {
    return std::any_of(outcomes.begin(), outcomes.end(),
                       [&](const Outcome& outcome) { return outcome.what == what; });
  };
  const bool files = has(Outcome::What::file) || has(Outcome::What::track);
  outcomes_->clear();
  outcomes_->setHeaderLabels({!has(Outcome::What::playlist) ? tr("File")
                              : files                       ? tr("Playlist or File")
                                                            : tr("Playlist"),
                              tr("Result"), tr("Remark")});
  widenOuterColumns(outcomes_);
  outcomes_->show();
  QList<QTreeWidgetItem*> items;
  // What was left out comes first: it is what one has to read.
  for (const bool done : {false, true})
    for (const Outcome& outcome : outcomes) {
      if ((outcome.kind == Outcome::Kind::done) != done) continue;
      if (static_cast<std::size_t>(items.size()) == mostOutcomes) break;
      auto* item = new QTreeWidgetItem(
          {pathToQt(outcome.name), resultText(outcome, kind), toQt(outcome.reason)});
      item->setToolTip(0, item->text(0));
      item->setToolTip(2, item->text(2));
      items << item;
    }
  outcomes_->addTopLevelItems(items);
  if (items.size() < static_cast<qsizetype>(outcomes.size()))
    new QTreeWidgetItem(outcomes_,
                        {tr("… and %1 more, in the history").arg(outcomes.size() - mostOutcomes)});
}

void RunPage::undo() {
  undo_->setEnabled(false);
  close_->setEnabled(false);
  UndoCallbacks callbacks;
  callbacks.progress = begun();
  callbacks.cancelled = [stopped = stopped_] { return stopped->load(); };
  callbacks.begun = [this] {
    undoing_ = true;
    undo_->hide();
    close_->hide();
    stop_->show();
    bar_->setRange(0, 0);
    bar_->show();
    status_->setText(tr("Taking back…"));
    status_->show();
  };
  callbacks.done = [this](const UndoReport& report) {
    run_.reset();
    undoing_ = false;
    bar_->hide();
    stop_->hide();
    close_->show();
    close_->setEnabled(true);
    close_->setFocus();
    showOutcomes(report.outcomes, RunKind::undo);
    QStringList lines = linesOf(report);
    if (!report.isComplete) lines << whatToDo(report);
    showLines(std::move(lines));
  };
  callbacks.tellsItself = true;
  callbacks.notDone = [this] {
    undoing_ = false;
    bar_->hide();
    status_->hide();
    stop_->hide();
    undo_->show();
    undo_->setEnabled(true);
    close_->show();
    close_->setEnabled(true);
  };
  undoAsking(delegate_, this, *run_, {}, UndoQuestion::ifChangedSince, std::move(callbacks));
}

ChangeWindow::ChangeWindow(AppDelegate& delegate, QWidget* parent, const QString& title, QSize size)
    : QDialog(parent), delegate_(delegate), pages_(new QStackedWidget) {
  setWindowTitle(title);
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  resizeWithinScreen(this, size);
  (new QVBoxLayout(this))->addWidget(pages_);
}

void ChangeWindow::setDecision(QWidget* page) { pages_->addWidget(page); }

void ChangeWindow::beginRun(const QString& title) {
  const auto failed = [this] {
    runEnded();
    std::exchange(runPage_, nullptr)->deleteLater();
    pages_->setCurrentIndex(0);
    look();
  };
  runPage_ = new RunPage(delegate_, title, {[this] { runEnded(); }, failed, [this] { reject(); }});
  pages_->addWidget(runPage_);
  pages_->setCurrentWidget(runPage_);
}

void ChangeWindow::apply(Plan plan, const GuardOptions& guard) {
  apply([plan = std::move(plan)](MusicApplication&) { return plan; }, guard);
}

void ChangeWindow::apply(PlanMaker plan, const GuardOptions& guard) {
  runPage_->apply(std::move(plan), guard);
}

void ChangeWindow::reject() {
  if (runPage_ && runPage_->isRunning()) return runPage_->stop();
  QDialog::reject();
}

}  // namespace kestrel
