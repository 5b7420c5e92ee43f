/// What stands in place of the upper table while there is nothing in it: what has happened, and
/// what to do next.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;

class EmptyPage final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyPage(AppDelegate& delegate);
  /// Shows the controller's situation as it is now.
  void reload();

 signals:
  void openRequested();
  void demoRequested();
  void libraryRequested(const QString& path);
  void findRequested();
  /// Of the criterion that finds nothing, the one that was meant.
  void fileNameRequested();

 private:
  void showWelcome();
  void addButton(const QString& title, void (EmptyPage::*signal)(), bool isDefault = false);

  AppDelegate& delegate_;
  QLabel* icon_;
  QLabel* title_;
  QLabel* text_;
  QWidget* buttons_;
  QVBoxLayout* buttonColumn_;
};

}  // namespace kestrel
