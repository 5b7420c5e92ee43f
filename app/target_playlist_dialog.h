/// Asks to which playlist tracks are to be added.
#pragma once

#include <QDialog>
#include <cstddef>

namespace kestrel {

class AppDelegate;

class TargetPlaylistDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Fills the target pop-up.
  TargetPlaylistDialog(QWidget* parent, AppDelegate& delegate, std::size_t tracks);
};

}  // namespace kestrel
