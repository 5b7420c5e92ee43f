/// Widgets that show the small view models: progress bars, status texts, sheets and alerts.
///
/// The models must outlive nothing: a binding ends with its widget or its model, whichever goes
/// first.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>

class QLabel;
class QProgressBar;
class QWidget;

namespace kestrel {

struct Alert;
class AlertPanel;
class ProgressBar;
class Sheet;
class StatusText;

void bind(QProgressBar* bar, ProgressBar& model);
void bind(QLabel* label, StatusText& model);

/// Shows the panel's alerts over `window`, one after the other.
void bind(QWidget* window, AlertPanel& panel);
/// Shows an alert without waiting; `pressed` gets the number of the button, counted as the alert
/// counts them. Closing it counts as the last button.
void showAlert(QWidget* window, const Alert& alert, std::function<void(int)> pressed);
/// The same of texts that are in the user's language already.
void showAlert(QWidget* window, const QString& message, const QString& informativeText,
               const QStringList& buttons, std::function<void(int)> pressed);

/// The progress panel of the launch: a bar and a line of text that keep the user waiting.
class ProgressSheet final : public QDialog {
  Q_OBJECT

 public:
  ProgressSheet(QWidget* window, Sheet& sheet, ProgressBar& bar, StatusText& status);
  /// It cannot be closed by the user.
  void reject() override {}
};

}  // namespace kestrel
