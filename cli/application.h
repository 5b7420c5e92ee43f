/// What the subcommands that change a library work with beside the session.
#pragma once

#include <string>

#include "changes/apply.h"
#include "cli/session.h"
#include "history/history.h"
#include "musicapp/applications.h"
#include "musicapp/revealer.h"
#include "platform/freedesktop_trash.h"
#include "platform/programs.h"

namespace kestrel {

/// A library opened with its music application: the session's operations read it, and send
/// their scripts to it. At most one for a session.
class OpenedApplication {
 public:
  /// Throws LibraryError.
  OpenedApplication(Session& session, const std::string& path);
  ~OpenedApplication();
  OpenedApplication(const OpenedApplication&) = delete;
  OpenedApplication& operator=(const OpenedApplication&) = delete;

  /// Opened on first use, which makes it if need be. Throws HistoryError, or LibraryError when the
  /// machine has no folder for it.
  History& history();
  /// As `History::moveAside`.
  std::string moveHistoryAside(bool evenIfReadable);
  [[nodiscard]] LibraryIdentity identity();
  /// The playlists as they are now.
  [[nodiscard]] std::shared_ptr<const std::vector<Playlist>> playlists();
  /// For applying: progress on the terminal, and Ctrl-C between two playlists or files.
  [[nodiscard]] ApplyOptions applyOptions();
  Trash& trash() { return trash_; }

 private:
  [[nodiscard]] std::string historyPath() const;

  Session& session_;
  SystemPrograms programs_;
  FileManagerRevealer revealer_{programs_};
  FreedesktopTrash trash_;
  std::optional<History> history_;
  std::unique_ptr<MusicApplication> opened_;

 public:
  MusicApplication& application;
};

}  // namespace kestrel
