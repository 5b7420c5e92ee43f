/// What stands in the window before a library is open: those found on this computer, those opened
/// before, and the ways to others.
#pragma once

#include <QScrollArea>
#include <functional>
#include <string>
#include <vector>

class QLabel;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;
class LibraryFinder;
class LibraryRow;

class WelcomePage final : public QScrollArea {
  Q_OBJECT

 public:
  struct Commands {
    std::function<void()> openFolder, openDocument, connectToServer, demo;
    std::function<void(const QString& address)> open;
  };

  WelcomePage(AppDelegate& delegate, LibraryFinder& finder, Commands commands);
  /// Shows what there is to open now, and has it looked for.
  void reload();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  struct Row {
    std::string address;
    LibraryRow* row;
  };

  void fill();
  void fillDetails();
  QWidget* newButtons();
  LibraryRow* addRow(QVBoxLayout* column, const std::string& address);

  AppDelegate& delegate_;
  LibraryFinder& finder_;
  Commands commands_;
  QWidget* card_;
  QVBoxLayout* cardColumn_;
  QLabel* looking_ = nullptr;
  std::vector<std::string> shown_;  ///< addresses, as the card has them
  std::vector<Row> foundRows_;
};

}  // namespace kestrel
