/// What stands in place of the upper table while there is nothing in it: what has happened, and
/// what to do next.
#pragma once

#include <QCoreApplication>
#include <QWidget>
#include <functional>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;

class EmptyPage final : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(kestrel::EmptyPage)

 public:
  /// What its buttons do.
  struct Commands {
    std::function<void()> open, demo, find;
    std::function<void()> useFileNames;  ///< of the criterion that finds nothing, what was meant
    std::function<void(const QString& path)> openLibrary;
  };

  EmptyPage(AppDelegate& delegate, Commands commands);
  /// Shows the controller's situation as it is now. The keys stay where they are, unless that is
  /// the page or nowhere: then they go to what is to be done next.
  void reload();

 private:
  /// The first one is the default.
  struct Button {
    QString title;
    std::function<void()> Commands::*command = nullptr;
    QString library;  ///< opens this one instead
    friend bool operator==(const Button&, const Button&) = default;
  };

  [[nodiscard]] std::vector<Button> showSituation();
  [[nodiscard]] std::vector<Button> showWelcome();
  void makeButtons();

  AppDelegate& delegate_;
  Commands commands_;
  QLabel* icon_;
  QLabel* title_;
  QLabel* text_;
  std::vector<Button> wanted_;
  QWidget* buttons_;  ///< those of `wanted_`
  QVBoxLayout* buttonColumn_;
};

}  // namespace kestrel
