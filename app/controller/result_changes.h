/// What the windows that change a library have done on the worker: look, change, take back.
///
/// No window is known here. All of it takes the time that reading or writing a whole library
/// takes, and throws LibraryError, HistoryError or FileError, which say what to do.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "changes/library_changes.h"

namespace kestrel {

/// For one task, over the process's files and clock.
LibraryChanges changesOf(MusicApplication& application);

/// The plan for these choices of a survey, with what the survey left out; groups go by a song.
Plan replaylistPlan(MusicApplication& application, const SurveyReport& survey,
                    const std::vector<ReplaylistChoice>& choices);
/// The row of the upper table's content for each track that the plan replaces.
std::unordered_map<std::uint64_t, std::uint32_t> rowsOfReplaced(const Plan& plan);

/// Applies a plan of any kind to the library that it was made from, and returns when its files can
/// be read again. So does `undoInLibrary`.
ApplyReport applyToLibrary(const Plan& plan, MusicApplication& application,
                           const ApplyOptions& options);

/// A run with how it stands today.
struct InspectedRun {
  RunRecord record;
  UndoCheck check;
};
InspectedRun inspectedRun(std::int64_t run, MusicApplication& application);
UndoReport undoInLibrary(std::int64_t run, MusicApplication& application,
                         const UndoOptions& options);

}  // namespace kestrel
