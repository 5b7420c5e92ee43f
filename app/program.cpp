#include "app/program.h"

#include "app/appearance.h"
#include "app/changes/playlist_windows.h"
#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "app/main_window.h"
#include "foundation/identifiers.h"
#include "musicapp/applications.h"
#include "musicapp/library_identity.h"
#include "musicapp/revealer.h"
#include "platform/file_error.h"
#include "platform/settings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Nothing where there is no place for one.
std::unique_ptr<Log> makeFileLog(const FileService& files, Log& complaints) {
  try {
    if (const auto folder = files.stateDirectory())
      return std::make_unique<FileLog>(*folder + "/Kestrel/kestrel.log");
  } catch (const FileError& error) {
    complaints.line(error.what());
  }
  return std::make_unique<NullLog>();
}

/// Shows playlists in this program's own window.
class DesktopRevealer final : public FileManagerRevealer {
 public:
  /// `showPlaylist` is called on the main queue.
  DesktopRevealer(ProgramRunner& programs, TaskQueue& mainQueue,
                  std::function<void(std::uint64_t)> showPlaylist)
      : FileManagerRevealer(programs),
        mainQueue_(mainQueue),
        showPlaylist_(std::move(showPlaylist)) {}
  void revealPlaylist(std::uint64_t playlist) override {
    mainQueue_.post([show = showPlaylist_, playlist] { show(playlist); });
  }

 private:
  TaskQueue& mainQueue_;
  std::function<void(std::uint64_t)> showPlaylist_;
};

}  // namespace

Program::Program(bool verbose)
    : fileLog_(makeFileLog(files_, standardError_)),
      log_(verbose ? std::vector<Log*>{&standardError_, fileLog_.get(), &windowLog_}
                   : std::vector<Log*>{fileLog_.get(), &windowLog_}),
      preferences_(files_.configurationDirectory().value_or(".") + "/Kestrel/settings.ini", files_,
                   log_),
      revealer_(std::make_unique<DesktopRevealer>(
          programs_, mainQueue_,
          [this](std::uint64_t id) { window_->revealPlaylist(decimalText(id)); })),
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
  preferences_.whenUnwritable([this](const Message& reason) {
    mainQueue_.post([this, reason] {
      delegate_->alerts.show(
          {Message::tr("Your settings cannot be kept."), reason, {Message::tr("OK")}});
    });
  });
  createSupportFolder();
  applyAppearance(preferences_);
  delegate_ = std::make_unique<AppDelegate>(
      process_, worker_, [this](const std::string& path, const PathMaps& maps) {
        return openApplication(path, {files_, log_, random_, clock_, revealer_.get(), loadWatch(),
                                      maps, delegate_->passwordOf(path)});
      });
  window_ = std::make_unique<MainWindow>(*delegate_, windowLog_);
  window_->setPlaylistCommands(playlistCommands(*delegate_, window_.get()));
}

Program::~Program() {
  // What is still running works with all of the above.
  delegate_->cancel();
  worker_.waitUntilIdle();
}

LoadWatch Program::loadWatch() {
  const auto& cancel = preferences_.liveInteger(settings::cancelGetDupes);
  const auto progress = [this](std::size_t done, std::size_t total) {
    mainQueue_.post([this, done, total] {
      MainWindowReferences& window = process_.textSorter.window;
      window.mainLaunchProgressBar.stopAnimation();
      window.mainLaunchProgressBar.setIndeterminate(false);
      window.mainLaunchProgressBar.setMaximum(static_cast<double>(total));
      window.mainLaunchProgressBar.setValue(static_cast<double>(done));
      window.mainLaunchProgressStatus.setText(
          Message::tr("Reading files: %1 of %2").arg(done).arg(total));
    });
  };
  return {progress, [&cancel] { return cancel == 1; }};
}

void Program::begin(const QString& library, bool opensLast) {
  window_->show();
  const auto& recent = delegate_->recentLibraries();
  if (library.isEmpty() && opensLast && preferences_.boolean(settings::openLastLibrary) &&
      !recent.empty())
    window_->openPath(pathToQt(addressText(recent.front())));
  else
    window_->openPath(library);
}

void Program::createSupportFolder() {
  try {
    if (const auto folder = files_.applicationSupportDirectory())
      files_.createDirectories(*folder + "/Kestrel");
  } catch (const FileError& error) {
    log_.line(error.what());
  }
}

}  // namespace kestrel
