/// Compares the copies of the group at hand, a column each, and tells why one of them is kept.
#pragma once

#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/dates.h"
#include "library/playlist_catalogue.h"

class QBoxLayout;
class QGridLayout;
class QLabel;
class QPushButton;

namespace kestrel {

class AppDelegate;
class CompareWords;
class CoverSource;
class TrackPlayer;
struct GroupComparison;

class ComparePane final : public QWidget {
  Q_OBJECT

 public:
  /// All must outlive it.
  ComparePane(AppDelegate& delegate, CoverSource& covers, TrackPlayer& player);

  /// How many tracks are selected and the row of one of them in the upper table's content: its
  /// group is shown. The pane follows a moment later, so that moving through the table by the
  /// keyboard is not held up.
  void showTracks(std::size_t count, std::uint32_t row);
  /// The same again: something about the tracks has changed.
  void reload() { delay_.start(); }
  /// Covers have been read.
  void reloadCovers();

 Q_SIGNALS:
  /// The user wants to see a playlist that holds a track.
  void playlistActivated(const QString& decpid);
  // Of a row of the upper table's content.
  void keepRequested(std::uint32_t row);
  void revealRequested(std::uint32_t row);
  void playRequested(std::uint32_t row);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// What the music application knows of a track; empty texts where it gives nothing.
  struct Answer {
    std::string hexpid, cloudStatus, location;
  };
  struct Copy {
    std::uint32_t row = 0;
    QString path;  ///< empty when its file is not here
    QLabel* cover = nullptr;
    QPushButton* play = nullptr;
    QLabel* playlists = nullptr;
  };

  void showNow();
  void clear();
  void addCopies(std::int32_t group);
  void addFields(const GroupComparison& comparison);
  void showAnswer();
  void reloadPlayer();
  /// Gives the columns what width there is, and what they hold the height that it takes then.
  void takeRoom();
  [[nodiscard]] int titleWidth() const;
  [[nodiscard]] int copyWidth() const;
  void ask();
  void askPlaylists();

  AppDelegate& delegate_;
  CoverSource& covers_;
  TrackPlayer& player_;
  ShortDateTimeFormatter dates_;
  QTimer delay_;
  /// Runs out when the user has stayed with a track: the application is not asked about each one
  /// that the arrow keys pass.
  QTimer rest_;
  std::string shownPid_;          ///< of the track that is shown; empty without one
  std::optional<Answer> answer_;  ///< the last one, which may be about another track
  std::size_t count_ = 0;
  std::uint32_t row_ = 0;
  std::vector<Copy> copies_;
  int hidden_ = 0;  ///< copies that there is no room for
  QBoxLayout* parts_;
  CompareWords* words_;
  bool beside_ = false;          ///< the words stand beside the copies
  std::vector<QWidget*> cells_;  ///< of the copies' columns
  QWidget* table_ = nullptr;     ///< made anew for each group
  QGridLayout* grid_ = nullptr;
  QWidget* tablePlace_;
};

}  // namespace kestrel
