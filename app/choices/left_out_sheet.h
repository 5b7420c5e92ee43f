/// The groups that a search has left out because the user has said that they are no duplicates.
#pragma once

#include <QDialog>
#include <vector>

#include "decisions/track_ids.h"

class QPushButton;
class QTreeWidget;

namespace kestrel {

class AppDelegate;

/// Lists them, and takes that back for those that are ticked.
class LeftOutSheet final : public QDialog {
  Q_OBJECT

 public:
  /// The controller must outlive it.
  LeftOutSheet(AppDelegate& delegate, QWidget* parent);

 private:
  void addGroups();
  void reload();
  void showAgain();

  AppDelegate& delegate_;
  std::vector<TrackIDs> groups_;
  QTreeWidget* list_;
  QPushButton* again_;
};

}  // namespace kestrel
