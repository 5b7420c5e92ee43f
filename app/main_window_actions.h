/// The main window's actions; part of main_window, split over several files.
#pragma once

#include <QAction>

#include "app/main_window.h"

namespace kestrel {

struct MainWindow::Actions {
  QAction* open;
  QAction* demo;
  QAction* addFiles;
  QAction* refresh;
  QAction* refreshPlaylists;
  QAction* quit;
  QAction* find;
  QAction* stop;
  QAction* searchAtStart;
  QAction* replaylist;
  QAction* replaylistSelection;
  QAction* cleanUp;
  QAction* trash;
  QAction* history;
  QAction* filter;
  QAction* selectAll;
  QAction* showSelection;
  QAction* makeKeeper;
  QAction* nextUndecided;
  QAction* reveal;
  QAction* copy;
  QAction* copyPath;
  QAction* addToPlaylist;
  QAction* trashTracks;
  QAction* log;
  QAction* legend;
  QAction* about;
};

}  // namespace kestrel
