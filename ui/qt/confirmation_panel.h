/// The panel that asks before something is done: a message, what it means, and two buttons where
/// the panel's form has them. It opens at the upper middle of its window, as sheets stand, and
/// stays where it is put.
///
/// The frames of the form are in points of a panel 500 wide. Where the font or a translated title
/// needs more, all of them grow by one factor, so that the form stays and no text is cut; in
/// languages written from right to left the panel is its mirror image.
#pragma once

#include <QDialog>
#include <functional>

#include "ui/geometry.h"

class QLabel;
class QPushButton;

namespace kestrel {

class ConfirmationPanel final : public QDialog {
 public:
  enum class Form { playlist, all };
  struct Question {
    QString message;
    QString informativeText;
    QString defaultButton;    ///< does it
    QString alternateButton;  ///< leaves it, as does Escape
  };

  ConfirmationPanel(QWidget* window, Form form, const Question& question);

  /// Shows a panel without waiting; `answered` gets whether the default button was pressed.
  static void ask(QWidget* window, Form form, const Question& question,
                  std::function<void(bool)> answered);

  /// What asks for it leaves the panel in its place: the text below, which the panel is about,
  /// stays in sight.
  void center();

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void placeAtTop();
  void layOut();
  [[nodiscard]] double factor() const;
  [[nodiscard]] QRect scaled(const PanelButton& button, double factor) const;

  PanelButton defaultFrame_, alternateFrame_;
  QLabel* message_;
  QLabel* informativeText_;
  QPushButton* default_;
  QPushButton* alternate_;
};

}  // namespace kestrel
