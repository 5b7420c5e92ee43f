/// The tracks panel on the screen: its titles, and the table of the non-keepers next to their
/// keepers.
#pragma once

#include <QTableView>
#include <QWidget>
#include <functional>

#include "ui/tracks_panel.h"

namespace kestrel {

class AppDelegate;
struct ReplaylistWindowReferences;

/// The table. A single click does nothing, deliberately; a double click shows a track in the music
/// application, the non-keeper in the left half, the keeper in the right one. Return and Shift with
/// Return do the same for the row that the arrow keys lead to.
class PairsTable final : public QTableView {
  Q_OBJECT

 public:
  PairsTable(AppDelegate& delegate, ReplaylistWindowReferences& window);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent*) override {}
  void keyPressEvent(QKeyEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void changeEvent(QEvent* event) override;

 private:
  void press(int clickCount, double x, int row);

  AppDelegate& delegate_;
  ReplaylistWindowReferences& window_;
};

/// Shown and hidden by `ReplaylistControl::toggleTracksPanel`.
QWidget* newTracksPanel(AppDelegate& delegate, ReplaylistWindowReferences& window);

}  // namespace kestrel
