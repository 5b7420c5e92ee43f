/// Tells about the selected track: why its group has the keeper that it has, which playlists hold
/// it, and everything that its record says.
#pragma once

#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <vector>

#include "foundation/dates.h"

class QLabel;
class QTableWidget;

namespace kestrel {

class AppDelegate;
struct TrackInfoRow;

class InfoPane final : public QWidget {
  Q_OBJECT

 public:
  explicit InfoPane(AppDelegate& delegate);

  /// Rows of the upper table's content. The pane follows a moment later, so that moving through
  /// the table with the arrow keys is not held up.
  void showTracks(std::vector<std::uint32_t> rows);
  /// The same rows again: something about them has changed.
  void reload() { delay_.start(); }

 signals:
  /// The user wants to see a playlist that holds the track.
  void playlistActivated(const QString& decpid);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showNow();
  void showTable(const std::vector<TrackInfoRow>& rows, int tag);
  void setRowHeights();

  AppDelegate& delegate_;
  ShortDateTimeFormatter dates_;
  QTimer delay_;
  std::vector<std::uint32_t> rows_;
  QLabel* title_;
  QLabel* reason_;
  QLabel* playlists_;
  QTableWidget* table_;
};

}  // namespace kestrel
