/// Carrying out a plan, and saying what came of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "musicapp/music_application.h"
#include "history/history.h"
#include "changes/plan.h"

namespace kestrel {

class FileService;

struct ApplyProgress {
  std::size_t done = 0;
  std::size_t total = 0;
  std::string name;  ///< of the playlist or file that comes next; empty at the end
};

struct ApplyOptions {
  std::function<void(const ApplyProgress&)> progress;  ///< before each playlist or file
  std::function<bool()> cancelled;                     ///< asked between two
};

/// What became of one playlist, one track, or one file, of a plan.
struct Outcome {
  enum class Kind : std::uint8_t { done, skipped, failed, notReached };
  enum class What : std::uint8_t { playlist, track, file };
  What what = What::playlist;
  Kind kind = Kind::notReached;
  std::uint64_t id = 0;       ///< of the playlist as planned, or of the track
  std::uint64_t newID = 0;    ///< of the playlist afterwards; 0 when it is gone or for a file
  std::string name;           ///< or path
  std::uint64_t changes = 0;  ///< entries, or bytes
  Message reason;             ///< of what was not done, a sentence without full stop
};

struct ApplyReport {
  RunKind kind = RunKind::replaylist;
  std::optional<std::int64_t> run;  ///< its number in the history; nothing when nothing was begun
  RunState state = RunState::finished;
  std::vector<Outcome> outcomes;  ///< in the plan's order: playlists, tracks, files
  Message problem;  ///< of a run that failed: why nothing of it was kept; or what else went wrong
  bool changedLibrary = false;  ///< its document is, or will be, another than before

  [[nodiscard]] std::size_t count(Outcome::Kind kind) const noexcept;
  [[nodiscard]] std::size_t count(Outcome::What what, Outcome::Kind kind) const noexcept;
  /// For people: a line that sums up, then one for each playlist, track or file that was left out.
  [[nodiscard]] std::vector<Message> messages() const;
  [[nodiscard]] std::vector<std::string> lines() const { return english(messages()); }
};

/// Applies a plan about playlists to the application's library, as one batch: it is all on
/// the disk when this returns, or, when the report's state is `failed`, none of it.
///
/// Throws LibraryError before anything is changed when the library is in use or no longer the one
/// that the plan was made from, and HistoryError when the run cannot be written down; without a
/// history nothing is changed. A playlist that is not as planned is skipped.
ApplyReport applyPlan(const Plan& plan, MusicApplication& application, History& history,
                      const ApplyOptions& = {});

/// Applies a trash plan to the library that `now` is the identity of: moves the files that are not
/// held back, those only that are still the same files and whose keeper's file is still there. The
/// report has one outcome for each file of the plan. When the history cannot be written any more,
/// the file of which it does not know is put back and the run ends, `brokenOff`. Throws like
/// `applyPlan`.
ApplyReport applyTrash(const Plan& plan, const LibraryIdentity& now, Trash& trash,
                       FileService& files, History& history, const ApplyOptions& = {});

/// Adds the files of a plan to the application's library, as one batch: the tracks that came to be
/// are all on the disk when this returns, or, when the report's state is `failed`, none. What was
/// added is found by comparing the library with what it was. Files that the library has, or that
/// are no audio files, are left out and named. Throws like `applyPlan`.
ApplyReport applyAdditions(const Plan& plan, MusicApplication& application, FileService& files,
                           History& history, const ApplyOptions& = {});

}  // namespace kestrel
