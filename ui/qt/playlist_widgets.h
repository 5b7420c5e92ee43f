/// The playlists on the screen: pop-ups and the outline, bound to their models.
#pragma once

#include <QComboBox>
#include <QTreeWidget>
#include <optional>
#include <string>

#include "ui/playlist_menus.h"

namespace kestrel {

class Log;

/// A pop-up of playlists; what lies in folders is indented by the width of its icon's canvas, while
/// the closed pop-up shows the bare icon. What the closed one draws goes to the log when it
/// changes.
class PlaylistPopupBox final : public QComboBox {
  Q_OBJECT

 public:
  PlaylistPopupBox(PlaylistPopup& menu, Log& log);

 Q_SIGNALS:
  /// The user has chosen; the model says what.
  void playlistChosen();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fill();

  /// What the closed pop-up shows, and where.
  struct Drawn {
    PopupIcon icon;
    std::string title;
    Rect frame;
    friend bool operator==(const Drawn&, const Drawn&) = default;
  };

  PlaylistPopup& menu_;
  Log& log_;
  std::optional<Drawn> drawn_;
  IconDrawing bare_;
};

/// The tree of folders and playlists. What is clicked is chosen, as is what a key makes current,
/// and the current row by Return or Space; what becomes current without the user's doing, as when
/// the tree takes the focus, is not.
class PlaylistOutlineView final : public QTreeWidget {
  Q_OBJECT

 public:
  explicit PlaylistOutlineView(OutlineModel<PlaylistRecord>& outline);
  /// Selects the playlist without telling anybody, and again whenever the outline's content has
  /// been replaced; false when it does not have it now.
  bool showPlaylist(const std::string& decpid);
  /// The decimal ID of the current playlist, and of the one at a place of the viewport; empty
  /// without one.
  [[nodiscard]] std::string current() const;
  [[nodiscard]] std::string at(const QPoint& place) const;

 Q_SIGNALS:
  void playlistChosen(const std::string& decpid);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fill();
  void choose(const QTreeWidgetItem* item);

  OutlineModel<PlaylistRecord>& outline_;
  std::uint64_t shown_ = 0;
  std::string selected_;
};

/// A playlist icon drawn on a canvas as its menus ask for.
QPixmap playlistPixmap(const PopupIcon& icon, qreal devicePixelRatio);

}  // namespace kestrel
