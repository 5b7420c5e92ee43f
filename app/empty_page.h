/// What stands in place of the upper table while there is nothing in it: what has happened, and
/// what to do next.
#pragma once

#include <QWidget>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;

class EmptyPage final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyPage(AppDelegate& delegate);
  /// Shows the controller's situation as it is now. The keys stay with whoever has them, unless
  /// the page has, or nobody: then they go to what is to be done next.
  void reload();

 Q_SIGNALS:
  void openRequested();
  void demoRequested();
  void libraryRequested(const QString& path);
  void findRequested();
  /// Of the criterion that finds nothing, the one that was meant.
  void fileNameRequested();

 private:
  /// The first one is the default.
  struct Button {
    QString title;
    void (EmptyPage::*signal)() = nullptr;
    QString library;  ///< asks for this one instead
    friend bool operator==(const Button&, const Button&) = default;
  };

  [[nodiscard]] std::vector<Button> showSituation();
  [[nodiscard]] std::vector<Button> showWelcome();
  void makeButtons();

  AppDelegate& delegate_;
  QLabel* icon_;
  QLabel* title_;
  QLabel* text_;
  std::vector<Button> wanted_;
  QWidget* buttons_;  ///< those of `wanted_`
  QVBoxLayout* buttonColumn_;
};

}  // namespace kestrel
