/// Carrying out a plan.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "changes/plan.h"
#include "changes/report.h"
#include "changes/trash_guard.h"
#include "history/history.h"
#include "musicapp/music_application.h"

namespace kestrel {

struct ApplyOptions {
  GuardOptions guard;                                  ///< of files that go to the trash
  std::function<void(const ApplyProgress&)> progress;  ///< before each playlist or file
  std::function<bool()> cancelled;                     ///< asked between two
};

/// Applies a plan about playlists to the application's library, as one batch: it is all on
/// the disk when this returns, or, when the report's state is `failed`, none of it.
///
/// Throws LibraryError before anything is changed when the library is in use or no longer the one
/// that the plan was made from, and HistoryError when the run cannot be written down; without a
/// history nothing is changed. A playlist that is not as planned is skipped; one that the
/// application refuses to change fails alone.
ApplyReport applyPlan(const Plan& plan, MusicApplication& application, History& history,
                      const ApplyOptions& = {});

/// Applies a plan of removal: playlists are changed, and tracks taken out of the library and so out
/// of every list, as one batch like that of `applyPlan`. Then the files go to the trash like those
/// of `applyTrash`. Tracks that can leave no more, and what was to go in their place, are skipped.
ApplyReport applyRemoval(const Plan& plan, MusicApplication& application, Trash& trash,
                         const FileService& files, History& history, const ApplyOptions& = {});

/// Applies a trash plan to its library: moves the files that are not held back, those only that
/// pass the guard again (trash_guard.h), with the plan's own library in view and right before each
/// is moved. The report has one outcome for each file of the plan. Throws like `applyPlan`.
/// `carrier`: the library's application, without which a plan that carries over is refused; what
/// left with its file is carried over when the files have gone.
ApplyReport applyTrash(const Plan& plan, MediaLibrary& library, Trash& trash,
                       const FileService& files, History& history, const ApplyOptions& = {},
                       MusicApplication* carrier = nullptr);

/// The same of a plan that has playlists too, as one run: they are changed as one batch like that
/// of `applyPlan`, then the files go. Those stay that a playlist goes on listing which was to be
/// changed and was not.
ApplyReport applyTrashAndRepair(const Plan& plan, MusicApplication& application, Trash& trash,
                                const FileService& files, History& history,
                                const ApplyOptions& = {});

/// Adds the files of a plan to the application's library, as one batch: the tracks that came to be
/// are all on the disk when this returns, or, when the report's state is `failed`, none. What was
/// added is found by comparing the library with what it was. Files that the library has, or that
/// are no audio files, are left out and named. Throws like `applyPlan`.
ApplyReport applyAdditions(const Plan& plan, MusicApplication& application,
                           const FileService& files, History& history, const ApplyOptions& = {});

/// Takes the notes out of the trash that runs which broke off have left there without a file, and
/// notes in the history that it is done. For all who open a history, on opening it. Throws nothing:
/// what cannot be done now is for the next time.
void clearBrokenRuns(History& history, Trash& trash);

// For what carries plans out.

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

/// The last word to the history on a run. That this fails does not change what was done.
void finishRun(ApplyReport& report, History& history);

/// Does `step(i)` for one after the other while the run goes on, and tells of each, by `nameOf(i)`,
/// before. The user may cancel between two.
template <typename NameOf, typename Step>
void stepThrough(std::size_t count, const ApplyOptions& options, ApplyReport& report,
                 NameOf&& nameOf, Step&& step) {
  for (std::size_t i = 0; i < count && report.state == RunState::finished; ++i) {
    if (options.progress) options.progress({i, count, nameOf(i)});
    if (options.cancelled && options.cancelled())
      report.state = RunState::cancelled;
    else
      step(i);
  }
  if (options.progress && report.state == RunState::finished) options.progress({count, count, {}});
}

}  // namespace kestrel
