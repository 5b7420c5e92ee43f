/// Carrying out a plan, and saying what came of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "changes/plan.h"
#include "changes/trash_check.h"
#include "history/history.h"
#include "musicapp/music_application.h"

namespace kestrel {

class FileService;

struct ApplyProgress {
  std::size_t done = 0;
  std::size_t total = 0;
  std::string name;  ///< of the playlist or file that comes next; empty at the end
};

struct ApplyOptions {
  GuardOptions guard;                                  ///< of files that go to the trash
  std::function<void(const ApplyProgress&)> progress;  ///< before each playlist or file
  std::function<bool()> cancelled;                     ///< asked between two
};

/// What became of one playlist, one track, or one file, of a plan.
struct Outcome {
  enum class Kind : std::uint8_t {
    done,
    asBefore,  ///< of an undo: there was nothing to take back
    skipped,
    failed,
    notReached
  };
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

/// Applies a plan of removal: playlists are changed, and tracks taken out of the library and so out
/// of every list, as one batch like that of `applyPlan`. Then the files go to the trash like those
/// of `applyTrash`. Tracks that can leave no more, and what was to go in their place, are skipped.
ApplyReport applyRemoval(const Plan& plan, MusicApplication& application, Trash& trash,
                         const FileService& files, History& history, const ApplyOptions& = {});

/// Applies a trash plan to the library that `now` is the identity of: moves the files that are not
/// held back, those only that pass the guard again (trash_check.h), with the plan's own library in
/// view and right before each is moved. The report has one outcome for each file of the plan.
/// Throws like `applyPlan`.
ApplyReport applyTrash(const Plan& plan, const LibraryIdentity& now, MediaLibrary& library,
                       Trash& trash, const FileService& files, History& history,
                       const ApplyOptions& = {});

/// The files of a run that go to the trash, in lists of one length.
struct FileMoves {
  std::vector<const PlannedFile*> planned;
  std::vector<FileChange> changes;    ///< as the history has them, once they are begun
  std::vector<std::size_t> outcomes;  ///< by place in the report
};
/// Adds an outcome for each file of the plan to the report; returns those that go.
FileMoves chooseFiles(const Plan& plan, TrashCheck& check, ApplyReport& report);
/// Moves the files of a run whose changes stand in the history, and says in the report what came of
/// each. Where a file goes is on the disk before it is moved. Ends early, with the report's state,
/// when it is cancelled, or when the history cannot be written: `brokenOff`. The run is the
/// caller's to finish.
void moveFiles(FileMoves& moves, TrashCheck& check, Trash& trash, const FileService& files,
               History& history, const ApplyOptions& options, ApplyReport& report);

/// Takes the notes out of the trash that runs which broke off have left there without a file, and
/// notes in the history that it is done. For all who open a history, on opening it. Throws nothing:
/// what cannot be done now is for the next time.
void clearBrokenRuns(History& history, Trash& trash);

/// Adds the files of a plan to the application's library, as one batch: the tracks that came to be
/// are all on the disk when this returns, or, when the report's state is `failed`, none. What was
/// added is found by comparing the library with what it was. Files that the library has, or that
/// are no audio files, are left out and named. Throws like `applyPlan`.
ApplyReport applyAdditions(const Plan& plan, MusicApplication& application, FileService& files,
                           History& history, const ApplyOptions& = {});

}  // namespace kestrel
