// The windows that move files to the trash and add files to the library.

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>
#include <map>
#include <utility>

#include "app/change_window.h"
#include "app/controller/result_changes.h"
#include "app/playlist_windows.h"
#include "app/scope_box.h"
#include "changes/trash_plan.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

/// More of a group cannot be read; the sums count all.
constexpr std::size_t mostFilesOfGroup = 5000;

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

/// Moving the files of tracks that are not kept to the trash: says first which, how much, and what
/// is held back and why.
class TrashDialog final : public ChangeWindow {
  Q_DECLARE_TR_FUNCTIONS(kestrel::TrashDialog)

 public:
  TrashDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent)
      : ChangeWindow(delegate, parent, tr("Move to Trash"), {860, 560}),
        scope_(new ScopeBox(delegate, std::move(scope))),
        question_(newPlainLabel(tr("Question"), tr("Looking at the files…"))),
        explanation_(newPlainLabel(tr("Explanation"))),
        files_(newList({tr("File"), tr("Size"), tr("What stays in its place, or why it stays")},
                       tr("Files"))),
        move_(newButton(tr("&Move to Trash"), [this] { confirm(); })) {
    setBold(question_);
    files_->setRootIsDecorated(true);
    widenOuterColumns(files_);
    QPushButton* cancel = newButton(tr("&Cancel"), [this] { reject(); });
    cancel->setDefault(true);
    connect(scope_, &ScopeBox::changed, this, [this] { look(); });
    setDecision(newColumn(
        {scope_, question_, explanation_, files_, newRow({nullptr, cancel, move_})}, files_));
    look();
  }

 private:
  void look() override {
    move_->setEnabled(false);
    runOrClose<Plan>(
        tr("The files could not be looked at."),
        [&application = *delegate_.application(), rows = scope_->rows()] {
          return trashPlan(application, rows);
        },
        [this](Plan plan) { showPlan(std::move(plan)); });
  }

  void showPlan(Plan plan) {
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
    QString explanation = tr(
        "They are files of tracks that are not kept. The library still lists the tracks. What is "
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

  void addFiles(const Plan& plan) {
    files_->clear();
    std::map<QString, QList<QTreeWidgetItem*>> groups;
    std::map<QString, std::size_t> counts;
    for (const PlannedFile& file : plan.files) {
      const QString group = toQt(file.heldBack);
      if (++counts[group] > mostFilesOfGroup) continue;
      const QString path = file.path.empty() ? toQt(file.name) : pathToQt(file.path);
      const QString remark = !group.isEmpty()          ? group
                             : file.keeperPath.empty() ? tr("a keeper in the cloud")
                                                       : pathToQt(file.keeperPath);
      auto* item = new QTreeWidgetItem(
          {within(folder_, path), sizeText(file.size), within(folder_, remark)});
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

  void confirm() {
    beginRun(tr("Moving files to the trash…"));
    apply(plan_);
  }

  ScopeBox* scope_;
  Plan plan_;
  QString folder_;  ///< that all the files are in
  QLabel* question_;
  QLabel* explanation_;
  QTreeWidget* files_;
  QPushButton* move_;
};

/// Adding audio files to the library: shows how it goes, and at its end which were added, which
/// were not and why, with the button that takes it back.
class AddFilesDialog final : public ChangeWindow {
  Q_DECLARE_TR_FUNCTIONS(kestrel::AddFilesDialog)

 public:
  AddFilesDialog(AppDelegate& delegate, std::vector<std::string> paths, QWidget* parent)
      : ChangeWindow(delegate, parent, tr("Add Files to Library"), {720, 420}) {
    beginRun(tr("Adding files to the library…"));
    runOrClose<Plan>(
        tr("The files could not be added."),
        [&application = *delegate.application(), paths = std::move(paths)] {
          return changesOf(application).additionPlan(paths);
        },
        [this](Plan plan) { apply(std::move(plan)); });
  }

 private:
  void look() override { reject(); }
};

}  // namespace

QDialog* newTrashDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent) {
  return new TrashDialog(delegate, std::move(scope), parent);
}

QDialog* newAddFilesDialog(AppDelegate& delegate, std::vector<std::string> paths, QWidget* parent) {
  return new AddFilesDialog(delegate, std::move(paths), parent);
}

}  // namespace kestrel
