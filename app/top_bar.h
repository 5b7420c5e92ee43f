/// The toolbar of the main window: the library, what to look in, Find Duplicates, the filter and
/// the history. Its parts keep their places whatever is open.
#pragma once

#include <QList>
#include <QWidget>

#include "platform/log.h"

class QAction;
class QMenu;

namespace kestrel {

class AppDelegate;
class FilterField;
class LibraryButton;
class PlaylistPopupBox;

class TopBar final : public QWidget {
  Q_OBJECT

 public:
  TopBar(AppDelegate& delegate, QAction* find, QAction* history, QMenu* libraryMenu);

  /// Shows the library at hand.
  void reload();
  [[nodiscard]] FilterField& filter() const { return *filter_; }
  [[nodiscard]] PlaylistPopupBox& playlists() const { return *playlists_; }

 private:
  AppDelegate& delegate_;
  NullLog drawings_;  ///< what the pop-up draws is of use to no one
  LibraryButton* library_;
  QList<QWidget*> ofLibrary_;  ///< what there is to do only with one
  PlaylistPopupBox* playlists_;
  FilterField* filter_;
};

}  // namespace kestrel
