// kestrel: the desktop program.

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <exception>
#include <iostream>
#include <memory>

#include "app/app_delegate.h"
#include "app/desktop_revealer.h"
#include "app/main_window.h"
#include "app/settings.h"
#include "foundation/identifiers.h"
#include "library/process.h"
#include "musicapp/document_music_application.h"
#include "platform/file_error.h"
#include "platform/file_preferences.h"
#include "platform/files.h"
#include "platform/programs.h"
#include "platform/random.h"
#include "platform/settings.h"
#include "ui/qt/event_loop_queue.h"
#include "ui/qt/text.h"
#include "ui/qt/window_log.h"

namespace {

using namespace kestrel;

/// The log file; nothing where there is no place for one.
std::unique_ptr<Log> makeFileLog(const FileService& files, Log& complaints) {
  try {
    if (const auto folder = files.stateDirectory())
      return std::make_unique<FileLog>(*folder + "/Kestrel/kestrel.log");
  } catch (const FileError& error) {
    complaints.line(error.what());
  }
  return std::make_unique<NullLog>();
}

std::string settingsFile(const FileService& files) {
  return files.configurationDirectory().value_or(".") + "/Kestrel/settings.ini";
}

/// What the operations work with, and the windows over them.
class Program {
 public:
  Program()
      : fileLog_(makeFileLog(files_, standardError_)),
        log_({&standardError_, fileLog_.get(), &windowLog_}),
        preferences_(settingsFile(files_), files_, log_),
        revealer_(programs_, mainQueue_,
                  [this](std::uint64_t id) { window_->revealPlaylist(decimalText(id)); }),
        process_({.openLibrary = nullptr,
                  .preferences = preferences_,
                  .mainQueue = mainQueue_,
                  .log = log_,
                  .clock = clock_,
                  .random = random_,
                  .files = files_,
                  .backgroundQueue = &worker_}) {
    settings::registerFirstValues(preferences_);
    settings::registerAppValues(preferences_);
    createSupportFolder();
    delegate_ = std::make_unique<AppDelegate>(process_, worker_, [this](const std::string& path) {
      const DocumentServices services{files_, log_, random_, clock_, &revealer_};
      return std::make_shared<DocumentMusicApplication>(path, services);
    });
    window_ = std::make_unique<MainWindow>(*delegate_, windowLog_);
  }
  ~Program() {
    delegate_->cancel();
    worker_.waitUntilIdle();
  }

  MainWindow& window() { return *window_; }

 private:
  void createSupportFolder() {
    try {
      if (const auto folder = files_.applicationSupportDirectory())
        files_.createDirectories(*folder + "/Kestrel");
    } catch (const FileError& error) {
      log_.line(error.what());
    }
  }

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
  DesktopRevealer revealer_;
  WorkerQueue worker_;
  Process process_;
  std::unique_ptr<AppDelegate> delegate_;
  std::unique_ptr<MainWindow> window_;
};

int run(int argc, char** argv) {
  QApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("Kestrel"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("kestrel"));

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Finds the duplicate songs of a music library."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(
      QStringLiteral("LIBRARY"),
      QCoreApplication::translate("main", "The library document to open, as XML"),
      QStringLiteral("[LIBRARY]"));
  parser.process(application);
  if (parser.positionalArguments().size() > 1) {
    std::cerr << "kestrel: only one library can be opened\n";
    return 2;
  }

  Program program;
  program.window().show();
  if (!parser.positionalArguments().isEmpty())
    program.window().openPath(parser.positionalArguments().first());
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "kestrel: " << error.what() << '\n';
  }
  return 1;
}
