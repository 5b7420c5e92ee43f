#include "app/trash_dialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <utility>

#include "app/app_delegate.h"
#include "app/history_changes.h"
#include "app/history_run_page.h"
#include "app/history_task.h"
#include "app/playlist_window_parts.h"
#include "app/scope_box.h"
#include "changes/trash_plan.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// More cannot be read; the sums count all.
constexpr qsizetype mostShown = 5000;

/// The folder that all the files are in, with a slash at its end; empty when there is none.
QString commonFolder(const Plan& plan) {
  std::optional<std::string> common;
  for (const PlannedFile& file : plan.files) {
    if (file.path.empty()) continue;
    if (!common) common = file.path;
    const auto [end, ignored] =
        std::mismatch(common->begin(), common->end(), file.path.begin(), file.path.end());
    common->erase(end, common->end());
  }
  if (!common) return {};
  common->erase(common->rfind('/') + 1);
  return pathToQt(*common);
}

/// A path within that folder as it is seen from there.
QString within(const QString& folder, const QString& path) {
  return path.startsWith(folder) ? path.mid(folder.size()) : path;
}

}  // namespace

TrashDialog::TrashDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent)
    : QDialog(parent), delegate_(delegate), scope_(new ScopeBox(delegate, std::move(scope))) {
  setWindowTitle(tr("Move to Trash"));
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  resize(860, 560);
  pages_ = new QStackedWidget;
  pages_->addWidget(makeQuestionPage());
  auto* column = new QVBoxLayout(this);
  column->addWidget(pages_);
  look();
}

QWidget* TrashDialog::makeQuestionPage() {
  question_ = newPlainLabel(tr("Question"));
  QFont large = question_->font();
  large.setBold(true);
  question_->setFont(large);
  question_->setText(tr("Looking at the files…"));
  explanation_ = newPlainLabel(tr("Explanation"));
  files_ = new QTreeWidget;
  files_->setHeaderLabels({tr("File"), tr("Size"), tr("What stays in its place, or why it stays")});
  files_->setUniformRowHeights(true);
  files_->setAlternatingRowColors(true);
  files_->setTextElideMode(Qt::ElideMiddle);
  files_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  files_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  files_->header()->setSectionResizeMode(2, QHeaderView::Stretch);
  files_->header()->setStretchLastSection(false);
  files_->setAccessibleName(tr("Files"));
  auto* cancel = new QPushButton(tr("&Cancel"));
  move_ = new QPushButton(tr("&Move to Trash"));
  move_->setAutoDefault(false);
  move_->setEnabled(false);
  cancel->setDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(cancel);
  buttons->addWidget(move_);
  connect(scope_, &ScopeBox::changed, this, &TrashDialog::look);
  connect(cancel, &QPushButton::clicked, this, &TrashDialog::reject);
  connect(move_, &QPushButton::clicked, this, &TrashDialog::confirm);

  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(scope_);
  column->addWidget(question_);
  column->addWidget(explanation_);
  column->addWidget(files_, 1);
  column->addLayout(buttons);
  return page;
}

void TrashDialog::look() {
  move_->setEnabled(false);
  runTask<Plan>(
      delegate_, this, tr("The files could not be looked at."),
      [&application = *delegate_.application(), rows = scope_->rows()] {
        return trashPlan(application, rows);
      },
      [this](Plan plan) { showPlan(std::move(plan)); }, [this] { reject(); });
}

void TrashDialog::showPlan(Plan plan) {
  plan_ = std::move(plan);
  const auto going = static_cast<std::size_t>(
      std::count_if(plan_.files.begin(), plan_.files.end(),
                    [](const PlannedFile& file) { return file.heldBack.empty(); }));
  const std::size_t held = plan_.files.size() - going;
  const QString bytes = sizeText(bytesToFree(plan_));
  if (going == 0)
    question_->setText(plan_.files.empty()
                           ? tr("There is nothing to move: all of these tracks are kept.")
                           : tr("There is nothing to move: all of these files are held back."));
  else
    question_->setText(going == 1 ? tr("Move 1 file (%1) to the trash?").arg(bytes)
                                  : tr("Move %1 files (%2) to the trash?").arg(going).arg(bytes));
  QString explanation =
      tr("They are files of tracks that are not kept. The library still lists the tracks. What is "
         "moved can be moved back, here or from the history.");
  if (held > 0)
    explanation += QLatin1Char(' ') + (held == 1 ? tr("1 file is held back.")
                                                 : tr("%1 files are held back.").arg(held));
  folder_ = commonFolder(plan_);
  if (folder_.size() > 1) explanation += QLatin1Char('\n') + tr("All are in %1").arg(folder_);
  explanation_->setText(explanation);
  move_->setEnabled(going > 0);
  addFiles(plan_);
}

void TrashDialog::addFiles(const Plan& plan) {
  files_->clear();
  std::map<QString, QList<QTreeWidgetItem*>> groups;
  std::map<QString, std::size_t> counts;
  for (const PlannedFile& file : plan.files) {
    const QString group = toQt(file.heldBack);
    if (++counts[group] > static_cast<std::size_t>(mostShown)) continue;
    const QString path = file.path.empty() ? toQt(file.name) : pathToQt(file.path);
    const QString remark = !group.isEmpty()          ? group
                           : file.keeperPath.empty() ? tr("a keeper in the cloud")
                                                     : pathToQt(file.keeperPath);
    auto* item =
        new QTreeWidgetItem({within(folder_, path), sizeText(file.size), within(folder_, remark)});
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    item->setToolTip(0, path);
    item->setToolTip(2, remark);
    groups[group] << item;
  }
  // The empty reason comes first: what goes.
  for (auto& [group, items] : groups) {
    auto* top = new QTreeWidgetItem(files_);
    top->setText(0, group.isEmpty() ? tr("To the trash (%1)").arg(counts[group])
                                    : tr("Held back (%1): %2").arg(counts[group]).arg(group));
    top->setFirstColumnSpanned(true);
    QFont bold = top->font(0);
    bold.setBold(true);
    top->setFont(0, bold);
    top->addChildren(items);
    top->setExpanded(true);
  }
}

void TrashDialog::confirm() {
  runPage_ = new RunPage(delegate_, tr("Moving files to the trash…"));
  pages_->addWidget(runPage_);
  pages_->setCurrentWidget(runPage_);
  connect(runPage_, &RunPage::closeRequested, this, &TrashDialog::reject);
  connect(runPage_, &RunPage::failed, this, [this] {
    // The library may have changed: look again before the user decides again.
    std::exchange(runPage_, nullptr)->deleteLater();
    pages_->setCurrentIndex(0);
    look();
  });
  runPage_->apply(plan_);
}

void TrashDialog::reject() {
  if (runPage_ && runPage_->isRunning()) return runPage_->stop();
  QDialog::reject();
}

}  // namespace kestrel
