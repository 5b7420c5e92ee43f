/// The playlists at the left: their outline, and what the chosen one holds.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

class QLabel;
class QSplitter;
class QTreeView;

namespace kestrel {

class AppDelegate;
class PlaylistEntryModel;
class PlaylistOutlineView;

class PlaylistsPane final : public QWidget {
  Q_OBJECT

 public:
  struct Commands {
    std::function<void()> find;  ///< searches what is chosen
    std::function<void(const std::string& hexpid)> showInPlayer;
  };

  PlaylistsPane(AppDelegate& delegate, Commands commands);
  ~PlaylistsPane() override;
  [[nodiscard]] PlaylistOutlineView& outline() const { return *outline_; }
  /// Shows a playlist without choosing it; false when the outline does not have it.
  bool showPlaylist(const std::string& decpid);

 private:
  void showEntries();
  void showOutlineMenu(const QPoint& at);
  void showEntryMenu(const QPoint& at);
  /// In the outline; empty without one.
  [[nodiscard]] std::string current() const;

  AppDelegate& delegate_;
  Commands commands_;
  PlaylistOutlineView* outline_;
  QSplitter* halves_;
  QLabel* title_;
  QTreeView* entries_;
  std::unique_ptr<PlaylistEntryModel> model_;
  bool isDue_ = true;  ///< the entries are not those of the current playlist
};

}  // namespace kestrel
