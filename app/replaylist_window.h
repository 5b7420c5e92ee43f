/// The replaylist window: which playlists hold tracks that are not kept, what would change in each
/// of them, and the buttons that have it done and taken back.
#pragma once

#include <QDialog>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "app/replaylist_surveyed.h"
#include "app/scope.h"
#include "ui/replaylist_control.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTableView;

namespace kestrel {

class AppDelegate;
class EntryModel;
struct EntryRow;
class OutlineView;
class RunPage;
class ScopeBox;

class ReplaylistWindow final : public QDialog {
  Q_OBJECT

 public:
  /// Begins the survey at once.
  ReplaylistWindow(AppDelegate& delegate, ActionScope scope, QWidget* parent);
  ~ReplaylistWindow() override;

  /// While a run is going on, asks it to stop in place of closing.
  void reject() override;

 private:
  QWidget* makeSurveyPage();
  QWidget* makeOutlineSide();
  QWidget* makeDetailSide();
  void connectModels();
  void startSurvey();
  void showSurvey(ReplaylistSurveyed surveyed);
  void showNotes();
  void checksChanged();
  void highlightChanged();
  void toggleTracks();
  void reveal();
  void confirm();
  void enableControls();
  [[nodiscard]] QString reasonOf(const EntryRow& row);

  AppDelegate& delegate_;
  ReplaylistWindowReferences& window_;
  ScopeBox* scope_;
  ReplaylistSurveyed surveyed_;
  std::unordered_map<std::uint32_t, QString> reasons_;  ///< by row, as far as they were asked for

  QStackedWidget* pages_ = nullptr;
  RunPage* runPage_ = nullptr;
  OutlineView* outline_ = nullptr;
  QLabel* detailTitle_ = nullptr;
  EntryModel* entries_ = nullptr;
  QTableView* entryTable_ = nullptr;
  QWidget* notesArea_ = nullptr;
  QLabel* notes_ = nullptr;
  QLabel* chosen_ = nullptr;
  QPushButton* showTracks_ = nullptr;
  QPushButton* reveal_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace kestrel
