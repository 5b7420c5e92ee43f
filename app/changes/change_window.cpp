#include "app/changes/change_window.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <atomic>

#include "app/changes/outcome_list.h"
#include "app/changes/undo_run.h"
#include "app/controller/result_changes.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {}  // namespace

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
        outcomes_(new OutcomeList),
        notes_(newPlainLabel({})),
        undo_(new QPushButton(tr("&Undo"))),
        stop_(new QPushButton(tr("&Stop"))),
        close_(new QPushButton(tr("&Close"))) {
    setBold(title_);
    bar_->setRange(0, 0);
    bar_->setAccessibleName(title);
    undo_->setToolTip(tr("Undo what was done"));
    stop_->setToolTip(tr("What is done by then stays; it can be undone"));
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
  void showProgress(const ApplyProgress& progress);
  void tellController(const ApplyReport& report);
  void showReport(const ApplyReport& report, std::span<const LeftOut> leftOut);
  void showLines(QStringList lines);
  void undo();

  AppDelegate& delegate_;
  Events events_;
  std::shared_ptr<std::atomic<bool>> stopped_ = std::make_shared<std::atomic<bool>>(false);
  bool running_ = false;
  std::optional<std::int64_t> run_;  ///< that changed something

  QLabel* title_;
  QProgressBar* bar_;
  QLabel* status_;
  OutcomeList* outcomes_;
  QLabel* notes_;
  QPushButton* undo_;
  QPushButton* stop_;
  QPushButton* close_;
};

void RunPage::apply(PlanMaker plan, const GuardOptions& guard) {
  running_ = true;
  stop_->setFocus();
  ApplyOptions options;
  options.guard = guard;
  options.cancelled = [stopped = stopped_] { return stopped->load(); };
  options.progress = progressFor(delegate_.process().with.mainQueue, this,
                                 [this](const ApplyProgress& progress) { showProgress(progress); });
  struct Done {
    ApplyReport report;
    std::vector<LeftOut> leftOut;
  };
  runTask<Done>(
      delegate_, this, tr("Nothing was changed."),
      [&application = *delegate_.application(), make = std::move(plan), options] {
        const Plan made = make(application);
        return Done{applyToLibrary(made, application, options), made.leftOut};
      },
      [this](const Done& done) {
        running_ = false;
        tellController(done.report);
        showReport(done.report, done.leftOut);
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
  if (!running_) return;
  bar_->setRange(0, static_cast<int>(std::max<std::size_t>(progress.total, 1)));
  bar_->setValue(static_cast<int>(progress.done));
  if (!*stopped_)
    status_->setText(progress.name.empty()
                         ? tr("Writing the library…")
                         : tr("%1 of %2: %3")
                               .arg(numberText(progress.done + 1), numberText(progress.total),
                                    breakable(pathToQt(progress.name))));
}

void RunPage::showReport(const ApplyReport& report, std::span<const LeftOut> leftOut) {
  bar_->hide();
  stop_->hide();
  close_->show();
  close_->setDefault(true);
  close_->setFocus();
  undo_->setVisible(run_.has_value());
  outcomes_->load(report.outcomes, report.kind, leftOut);
  outcomes_->show();
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

void RunPage::undo() {
  undo_->setEnabled(false);
  close_->setEnabled(false);
  UndoCallbacks callbacks;
  callbacks.begun = [this] {
    running_ = true;
    title_->setText(tr("Undoing…"));
    outcomes_->hide();
    notes_->hide();
    undo_->hide();
    close_->hide();
    bar_->setRange(0, 0);
    bar_->show();
    status_->clear();
    status_->show();
    *stopped_ = false;
    stop_->setToolTip(tr("What is back by then stays so; the rest can be undone from the history"));
    stop_->show();
    stop_->setEnabled(true);
    stop_->setFocus();
  };
  callbacks.progress = [this](const ApplyProgress& progress) { showProgress(progress); };
  callbacks.cancelled = [stopped = stopped_] { return stopped->load(); };
  callbacks.done = [this](const UndoReport& report) {
    run_.reset();
    running_ = false;
    // The table behind this window shows it at once.
    delegate_.refreshIfDue();
    bar_->hide();
    stop_->hide();
    close_->setEnabled(true);
    close_->show();
    close_->setFocus();
    outcomes_->load(report.outcomes, RunKind::undo);
    outcomes_->show();
    QStringList lines = linesOf(report);
    if (!report.isComplete) lines << whatToDo(report);
    showLines(std::move(lines));
  };
  callbacks.tellsItself = true;
  callbacks.notDone = [this, title = title_->text(), notes = !notes_->isHidden()] {
    running_ = false;
    title_->setText(title);
    bar_->hide();
    stop_->hide();
    status_->hide();
    outcomes_->show();
    notes_->setVisible(notes);
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

QString ChangeWindow::cannotBeChanged(const Message& why) {
  return RunPage::tr("⚠ The library cannot be changed: %1").arg(toQt(ended(why)));
}

void ChangeWindow::reject() {
  if (runPage_ && runPage_->isRunning()) return runPage_->stop();
  QDialog::reject();
}

}  // namespace kestrel
