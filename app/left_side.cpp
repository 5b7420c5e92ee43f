#include "app/left_side.h"

#include <QTabBar>

#include "ui/qt/look.h"

namespace kestrel {

LeftSide::LeftSide(QWidget* decisions, QWidget* playlists) {
  setDocumentMode(true);
  setMinimumWidth(25 * gridStep);
  addTab(decisions, tr("D&ecide"));
  addTab(playlists, tr("&Playlists"));
  tabBar()->setAccessibleName(tr("Decisions and playlists"));
  setGround(this, "paneGround");
}

}  // namespace kestrel
