/// The program as a whole: what the operations work with, the controller, and the windows over it.
#pragma once

#include <QString>
#include <memory>

#include "app/log_window.h"
#include "musicapp/load_watch.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/programs.h"
#include "platform/queues.h"
#include "platform/random.h"
#include "ui/process.h"
#include "ui/qt/event_loop_queue.h"

namespace kestrel {

class AppDelegate;
class MainWindow;
class Revealer;

/// One at a time, on the main thread. Settings, log and data lie in the user's folders for them.
class Program {
 public:
  /// `verbose`: what goes to the log is written to standard error, too.
  explicit Program(bool verbose = false);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Shows the window and opens a library; with none given the last one, unless the settings or
  /// `opensLast` say otherwise.
  void begin(const QString& library, bool opensLast = true);

  MainWindow& window() { return *window_; }
  AppDelegate& delegate() { return *delegate_; }
  WorkerQueue& worker() { return worker_; }
  Preferences& preferences() { return preferences_; }

 private:
  void createSupportFolder();
  /// What the launch sheet shows of a library that is being read, and whether the user stopped it.
  LoadWatch loadWatch();

  SystemFiles files_;
  SystemPrograms programs_;
  SystemClock clock_;
  SystemRandom random_;
  EventLoopQueue mainQueue_;
  StreamLog standardError_;
  std::unique_ptr<Log> fileLog_;
  WindowLog windowLog_{mainQueue_};
  TeeLog log_;
  FilePreferences preferences_;
  std::unique_ptr<Revealer> revealer_;
  WorkerQueue worker_;
  Process process_;
  std::unique_ptr<AppDelegate> delegate_;
  std::unique_ptr<MainWindow> window_;
};

}  // namespace kestrel
