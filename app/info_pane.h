/// Tells about the selected track: why its group has the keeper that it has, which playlists hold
/// it, and everything that its record says.
#pragma once

#include <QTimer>
#include <QWidget>
#include <cstddef>
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

  /// How many tracks are selected and, of a single one, its row in the upper table's content. The
  /// pane follows a moment later, so that moving through the table by the keyboard is not held up.
  void showTracks(std::size_t count, std::uint32_t row);
  /// The same again: something about the track has changed.
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
  std::size_t count_ = 0;
  std::uint32_t row_ = 0;
  QLabel* title_;
  QLabel* reason_;
  QLabel* playlists_;
  QTableWidget* table_;
};

}  // namespace kestrel
