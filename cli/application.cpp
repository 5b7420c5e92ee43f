#include "cli/application.h"

#include "foundation/library_error.h"
#include "ui/launch.h"
#include "ui/replacing.h"
#include "ui/snapshot.h"

namespace kestrel {
OpenedApplication::OpenedApplication(Session& session, const std::string& path)
    : session_(session),
      trash_(session.clock, session.files.applicationSupportDirectory()),
      opened_(openApplication(path, {.files = session.files,
                                     .log = session.log(),
                                     .random = session.random,
                                     .clock = session.clock,
                                     .revealer = &revealer_})),
      application(*opened_) {
  session.process.with.application = &application;
  session.process.with.openLibrary = [this] {
    // The application owns it and lives as long as the process's use of it.
    return std::shared_ptr<MediaLibrary>(std::shared_ptr<void>(), &application.library());
  };
}

OpenedApplication::~OpenedApplication() {
  session_.process.with.application = nullptr;
  session_.process.with.openLibrary = nullptr;
  session_.process.library = nullptr;
  session_.process.libraryOpened = false;
  session_.process.state<PlaylistDocumentState>().storedLib = nullptr;
}

std::string OpenedApplication::historyPath() const {
  const auto folder = TextSorter::applicationDataDirectory();
  if (!folder)
    throw LibraryError(
        "history", {}, Message::tr("there is no place to keep it"),
        Message::tr("Set HOME, or XDG_DATA_HOME to a folder in which Kestrel may keep its data."));
  session_.files.createDirectories(*folder);
  return History::pathIn(*folder + "/");
}

History& OpenedApplication::history() {
  if (!history_) clearBrokenRuns(history_.emplace(historyPath(), session_.clock), trash_);
  return *history_;
}

std::string OpenedApplication::moveHistoryAside(bool evenIfReadable) {
  return History::moveAside(historyPath(), session_.clock, evenIfReadable);
}

LibraryIdentity OpenedApplication::identity() { return application.library().identity(); }

std::shared_ptr<const std::vector<Playlist>> OpenedApplication::playlists() {
  return application.library().allPlaylists();
}

ApplyOptions OpenedApplication::applyOptions() {
  ApplyOptions options;
  options.cancelled = [this] { return session_.interrupted(); };
  options.progress = [this](const ApplyProgress& progress) {
    if (progress.done == progress.total) return session_.progress.clear();
    session_.progress.show(std::to_string(progress.done + 1) + " of " +
                           std::to_string(progress.total) + ": " + progress.name);
  };
  return options;
}

}  // namespace kestrel
