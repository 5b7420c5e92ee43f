#include "app/program.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QUrl>

#include "app/appearance.h"
#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "app/main_window.h"
#include "app/playlist_windows.h"
#include "foundation/identifiers.h"
#include "musicapp/applications.h"
#include "musicapp/library_identity.h"
#include "musicapp/revealer.h"
#include "platform/file_error.h"
#include "platform/settings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Shows files in the desktop's file manager, and playlists in Kestrel's own window. From any
/// thread.
class DesktopRevealer final : public Revealer {
 public:
  /// `showPlaylist` is called on the main queue.
  DesktopRevealer(ProgramRunner& programs, TaskQueue& mainQueue,
                  std::function<void(std::uint64_t)> showPlaylist)
      : folders_(programs), mainQueue_(mainQueue), showPlaylist_(std::move(showPlaylist)) {}

  /// Selects the file where the file manager can do that, else opens its folder.
  void revealFile(const std::string& path) override {
    const QString service = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/FileManager1"),
                                       service, QStringLiteral("ShowItems"));
    const QString url = QUrl::fromLocalFile(pathToQt(path)).toString(QUrl::FullyEncoded);
    call << QStringList{url} << QString();
    constexpr int patience = 3000;  // milliseconds
    const QDBusMessage answer = QDBusConnection::sessionBus().call(call, QDBus::Block, patience);
    if (answer.type() == QDBusMessage::ErrorMessage) folders_.revealFile(path);
  }
  void revealPlaylist(std::uint64_t playlist) override {
    mainQueue_.post([show = showPlaylist_, playlist] { show(playlist); });
  }

 private:
  FolderRevealer folders_;
  TaskQueue& mainQueue_;
  std::function<void(std::uint64_t)> showPlaylist_;
};

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

std::string settingsFile(const FileService& files) {
  return files.configurationDirectory().value_or(".") + "/Kestrel/settings.ini";
}

}  // namespace

Program::Program()
    : fileLog_(makeFileLog(files_, standardError_)),
      log_({&standardError_, fileLog_.get(), &windowLog_}),
      preferences_(settingsFile(files_), files_, log_),
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
  delegate_ = std::make_unique<AppDelegate>(process_, worker_, [this](const std::string& path) {
    return openApplication(path, {files_, log_, random_, clock_, revealer_.get()});
  });
  window_ = std::make_unique<MainWindow>(*delegate_, windowLog_);
  window_->setPlaylistCommands(playlistCommands(*delegate_, window_.get()));
}

Program::~Program() {
  // What is still running works with all of the above.
  delegate_->cancel();
  worker_.waitUntilIdle();
}

void Program::begin(const QString& library) {
  window_->show();
  const auto& recent = delegate_->recentLibraries();
  if (library.isEmpty() && preferences_.boolean(settings::getDupesAtStartup) && !recent.empty())
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
