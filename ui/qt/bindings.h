/// Widgets that show the small view models: progress bars, texts, sheets and alerts.
///
/// The models must outlive nothing: a binding ends with its widget or its model, whichever goes
/// first.
#pragma once

#include <QString>
#include <functional>

class QLabel;
class QObject;
class QProgressBar;
class QWidget;

namespace kestrel {

struct Alert;
class AlertPanel;
class Observers;
class ProgressBar;
class Sheet;
class StatusText;
class StyledLabel;
struct StyledText;

/// Calls `changed` at each change of the model, as long as both it and `owner` live.
void observe(QObject* owner, Observers& observers, std::function<void()> changed);
/// The same, and once at once.
void follow(QObject* owner, Observers& observers, std::function<void()> show);

void bind(QProgressBar* bar, ProgressBar& model);
void bind(QLabel* label, StatusText& model);
/// Shows the text that `inUsersWords` makes while the model has one, which is English.
void bind(QLabel* label, StyledLabel& model, std::function<StyledText()> inUsersWords);
/// The text as HTML, with its line breaks, fonts and alignment. What looks like markup in it stays
/// text.
QString htmlOf(const StyledText& text);

/// Shows the panel's alerts over `window`, one after the other.
void bind(QWidget* window, AlertPanel& panel);
/// Shows an alert without waiting; `pressed` gets the number of the button, counted as the alert
/// counts them. Closing it counts as the last button.
void showAlert(QWidget* window, const Alert& alert, std::function<void(int)> pressed);
/// The same of texts that are in the user's language already.
void showAlert(QWidget* window, const QString& message, const QString& informativeText,
               const QStringList& buttons, std::function<void(int)> pressed);

/// Shows a bar and a line of text over `window` while the sheet is open; the user cannot close it.
void bindProgressSheet(QWidget* window, Sheet& sheet, ProgressBar& bar, StatusText& status);

}  // namespace kestrel
