/// The menu of libraries: those opened before, those found on this computer, the ways to others,
/// and what there is to know of the one at hand.
#pragma once

#include <QList>
#include <QMenu>
#include <functional>

namespace kestrel {

class AppDelegate;
class LibraryFinder;

class LibraryMenu final : public QMenu {
  Q_OBJECT

 public:
  /// `open` is given an address. The actions are the main window's: the ways to other libraries,
  /// and what is done with the one at hand; nullptr stands for a separator.
  LibraryMenu(AppDelegate& delegate, LibraryFinder& finder,
              std::function<void(const QString& address)> open, QWidget* parent);
  void setActions(QList<QAction*> toOthers, QList<QAction*> ofThis);

 private:
  void fill();
  void addFound();
  void addLibrary(const std::string& address, const QString& details, const QString& toolTip);

  AppDelegate& delegate_;
  LibraryFinder& finder_;
  std::function<void(const QString&)> open_;
  QList<QAction*> toOthers_, ofThis_;
};

}  // namespace kestrel
