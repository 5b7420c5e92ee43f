/// The clean-up window: which playlists list a track more than once, and which entries would be
/// deleted from each of them.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "changes/plan.h"
#include "library/track_store.h"
#include "ui/rem_dupes_controller.h"

class QLabel;
class QPushButton;
class QStackedWidget;

namespace kestrel {

class AppDelegate;
class EntryModel;
class MusicApplication;
class OutlineView;
class RunPage;

class CleanUpWindow final : public QDialog {
  Q_OBJECT

 public:
  /// Begins the scan at once.
  CleanUpWindow(AppDelegate& delegate, QWidget* parent);
  ~CleanUpWindow() override;

  /// While a run is going on, asks it to stop in place of closing.
  void reject() override;

 private:
  QWidget* makeScanPage();
  void connectModels();
  void startScan();
  void showScan(Plan plan);
  void showNotes();
  void checksChanged();
  void highlightChanged();
  void reveal();
  void confirm();
  void enableControls();
  [[nodiscard]] const PlannedPlaylist* plannedOf(std::uint64_t playlist) const;

  AppDelegate& delegate_;
  RemDupesWindowReferences& window_;
  Plan plan_;
  bool scanned_ = false;
  std::unordered_map<std::uint64_t, const PlannedPlaylist*> planned_;
  std::shared_ptr<const TrackStore> tracks_;

  QStackedWidget* pages_ = nullptr;
  RunPage* runPage_ = nullptr;
  OutlineView* outline_ = nullptr;
  QLabel* detailTitle_ = nullptr;
  EntryModel* entries_ = nullptr;
  QWidget* notesArea_ = nullptr;
  QLabel* notes_ = nullptr;
  QLabel* chosen_ = nullptr;
  QPushButton* reveal_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace kestrel
