/// The part of a window that shows a plan being carried out: progress that can be stopped between
/// two playlists or files, then what came of it, with the button that takes it back.
#pragma once

#include <QWidget>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "changes/apply.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace kestrel {

class AppDelegate;

class RunPage final : public QWidget {
  Q_OBJECT

 public:
  /// `title` says what is going on while it is.
  RunPage(AppDelegate& delegate, const QString& title);

  /// Starts; one plan a page.
  void apply(Plan plan);
  [[nodiscard]] bool isRunning() const { return running_; }
  /// Asks to end before the next playlist or file.
  void stop();
  /// What to tell when files have come back that the tables no longer show.
  [[nodiscard]] static QString searchAgainText();

 Q_SIGNALS:
  /// The run has ended and its summary is shown; the controller is idle.
  void ended();
  /// Nothing was changed; the user has been told why.
  void failed();
  void closeRequested();

 private:
  void showProgress(const ApplyProgress& progress);
  void showReport(const ApplyReport& report);
  void showOutcomes(const std::vector<Outcome>& outcomes, RunKind kind);
  void showLines(QStringList lines);
  void undo();

  AppDelegate& delegate_;
  std::shared_ptr<std::atomic<bool>> stopped_ = std::make_shared<std::atomic<bool>>(false);
  bool running_ = false;
  std::optional<std::int64_t> run_;
  RunKind kind_ = RunKind::replaylist;
  std::unordered_map<std::uint64_t, QString> names_;  ///< of tracks without a file

  QLabel* title_;
  QProgressBar* bar_;
  QLabel* status_;
  QTreeWidget* outcomes_;
  QLabel* notes_;
  QPushButton* undo_;
  QPushButton* stop_;
  QPushButton* close_;
};

}  // namespace kestrel
