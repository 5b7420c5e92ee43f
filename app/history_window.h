/// The history of a library: its runs, what each changed and how that stands today, and the buttons
/// that take a run or one playlist of it back.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "app/history_changes.h"
#include "library/track_store.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;

namespace kestrel {

class AppDelegate;
class EntryModel;

class HistoryWindow final : public QDialog {
  Q_OBJECT

 public:
  HistoryWindow(AppDelegate& delegate, QWidget* parent);

 private:
  QWidget* makeDetails();
  void load();
  void showRuns(std::vector<RunSummary> runs);
  void loadRun();
  void showRun(InspectedRun run);
  void showChange();
  void updateButtons();
  void undo(std::optional<std::uint64_t> playlist);
  [[nodiscard]] std::optional<std::int64_t> selectedRun() const;
  [[nodiscard]] const PlaylistChange* selectedPlaylist() const;

  AppDelegate& delegate_;
  std::vector<RunSummary> runs_;
  std::optional<InspectedRun> shown_;
  std::shared_ptr<const TrackStore> tracks_;
  std::optional<std::int64_t> wanted_;  ///< the run that is being read
  bool undoing_ = false;

  QTreeWidget* list_ = nullptr;
  QLabel* title_ = nullptr;
  QTreeWidget* changes_ = nullptr;
  QWidget* below_ = nullptr;  ///< the entries of the selected playlist
  QLabel* entryTitle_ = nullptr;
  QCheckBox* onlyChanges_ = nullptr;
  EntryModel* entries_ = nullptr;
  QLabel* result_ = nullptr;
  QPushButton* undoRun_ = nullptr;
  QPushButton* undoPlaylist_ = nullptr;
};

}  // namespace kestrel
