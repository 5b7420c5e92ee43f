/// The list of all keys and symbols (F1).
#pragma once

#include <QDialog>
#include <QList>

class QMenu;

namespace kestrel {

class ShortcutHelp final : public QDialog {
  Q_OBJECT

 public:
  /// Lists the keys of the menus' commands as they are now, and what has none there.
  ShortcutHelp(const QList<QMenu*>& menus, QWidget* parent);
};

}  // namespace kestrel
