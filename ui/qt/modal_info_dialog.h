/// A dialog that stays where it was put.
#pragma once

#include <QDialog>

namespace kestrel {

class ModalInfoDialog : public QDialog {
  Q_OBJECT

 public:
  /// Modal to `window`.
  explicit ModalInfoDialog(QWidget* window);

  /// Puts it to the upper middle of its window, as sheets stand, and within the screen.
  void placeAtTop();
  /// What asks for it leaves the dialog in its place, deliberately: the text below, which the
  /// dialog is about, stays in sight.
  void center();

 protected:
  void showEvent(QShowEvent* event) override;
};

}  // namespace kestrel
