/// The progress sheet's forms that several operations show.
#pragma once

#include "ui/process.h"

namespace kestrel {

/// Opens the sheet over the main window, with a bar that runs without an end. Main queue only.
inline void showWaitingSheet(MainWindowReferences& window) {
  ProgressBar& bar = window.mainLaunchProgressBar;
  bar.setIndeterminate(true);
  bar.setMinimum(0);
  bar.setValue(0);
  bar.setHidden(false);
  window.mainLaunchProgressStatus.setText(Message::tr("One moment..."));
  window.mainLaunchProgressWindow.open(window.mainWindow);
  bar.startAnimation();
}

}  // namespace kestrel
