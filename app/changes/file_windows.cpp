// The window that adds files to the library.

#include <QCoreApplication>
#include <utility>

#include "app/changes/change_window.h"
#include "app/changes/playlist_windows.h"
#include "app/controller/result_changes.h"

namespace kestrel {
namespace {

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

QDialog* newAddFilesDialog(AppDelegate& delegate, std::vector<std::string> paths, QWidget* parent) {
  return new AddFilesDialog(delegate, std::move(paths), parent);
}

}  // namespace kestrel
