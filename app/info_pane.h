/// Tells about the selected track: why its group has the keeper that it has, which playlists hold
/// it, everything that its record says, and what the music application adds to that.
#pragma once

#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/dates.h"
#include "ui/table_columns.h"

class QLabel;
class QTableWidget;

namespace kestrel {

class AppDelegate;
struct ResultTrack;

class InfoPane final : public QWidget {
  Q_OBJECT

 public:
  explicit InfoPane(AppDelegate& delegate);

  /// How many tracks are selected and, of a single one, its row in the upper table's content. The
  /// pane follows a moment later, so that moving through the table by the keyboard is not held up.
  void showTracks(std::size_t count, std::uint32_t row);
  /// The same again: something about the track has changed.
  void reload() { delay_.start(); }

 Q_SIGNALS:
  /// The user wants to see a playlist that holds the track.
  void playlistActivated(const QString& decpid);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// What the music application knows of a track; empty texts where it gives nothing.
  struct Answer {
    std::string hexpid, cloudStatus, location;
  };

  void showNow();
  void showTable(const ResultTrack& track);
  void ask();
  [[nodiscard]] std::vector<TrackInfoRow> rowsOf(const ResultTrack& track);
  void setRowHeights();

  AppDelegate& delegate_;
  ShortDateTimeFormatter dates_;
  QTimer delay_;
  /// Runs out when the user has stayed with a track: the application is not asked about each one
  /// that the arrow keys pass.
  QTimer rest_;
  std::string shownPid_;          ///< of the track whose table is shown; empty without one
  std::optional<Answer> answer_;  ///< the last one, which may be about another track
  std::size_t count_ = 0;
  std::uint32_t row_ = 0;
  QLabel* title_;
  QLabel* reason_;
  QLabel* playlists_;
  QTableWidget* table_;
};

}  // namespace kestrel
