#include "app/add_files_dialog.h"

#include <QVBoxLayout>
#include <utility>

#include "app/history_changes.h"
#include "app/history_run_page.h"
#include "app/history_task.h"

namespace kestrel {

AddFilesDialog::AddFilesDialog(AppDelegate& delegate, std::vector<std::string> paths,
                               QWidget* parent)
    : QDialog(parent), runPage_(new RunPage(delegate, tr("Adding files to the library…"))) {
  setWindowTitle(tr("Add Files to Library"));
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  resize(720, 420);
  (new QVBoxLayout(this))->addWidget(runPage_);
  connect(runPage_, &RunPage::closeRequested, this, &AddFilesDialog::reject);
  connect(runPage_, &RunPage::failed, this, &AddFilesDialog::reject);
  runTask<Plan>(
      delegate, this, tr("The files could not be added."),
      [&application = *delegate.application(), paths = std::move(paths)] {
        return changesOf(application).additionPlan(paths);
      },
      [this](Plan plan) { runPage_->apply(std::move(plan)); }, [this] { reject(); });
}

void AddFilesDialog::reject() {
  if (runPage_->isRunning()) return runPage_->stop();
  QDialog::reject();
}

}  // namespace kestrel
