/// The left side of the main window: what the user decides, and the playlists.
#pragma once

#include <QTabWidget>

namespace kestrel {

class LeftSide final : public QTabWidget {
  Q_OBJECT

 public:
  static constexpr int leastWidth = 240;

  LeftSide(QWidget* decisions, QWidget* playlists);
};

}  // namespace kestrel
