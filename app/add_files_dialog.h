/// Adding audio files to the library: shows how it goes, and at its end which were added, which
/// were not and why, with the button that takes it back.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

namespace kestrel {

class AppDelegate;
class RunPage;

class AddFilesDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Begins at once.
  AddFilesDialog(AppDelegate& delegate, std::vector<std::string> paths, QWidget* parent);

  /// While files are added, asks that to stop in place of closing.
  void reject() override;

 private:
  RunPage* runPage_;
};

}  // namespace kestrel
