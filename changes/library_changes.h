/// All that changes a library, for every program: plans of what a survey, a scan or a user has
/// chosen, carrying them out, and the history of it.
///
/// No window is known here. Most of it takes the time that reading or writing a whole library
/// takes, and throws LibraryError, HistoryError or FileError, which say what to do.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "changes/apply.h"
#include "changes/plan.h"
#include "changes/trash_plan.h"
#include "changes/undo.h"
#include "cleanup/repeats.h"
#include "history/history.h"
#include "musicapp/music_application.h"
#include "platform/trash.h"
#include "replaylist/survey.h"

namespace kestrel {

/// Every affected playlist of a survey, those too that the outline cannot show.
std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey);
/// Those among them for which replacements were confirmed.
std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey,
                                        std::span<const PlaylistReplacements> confirmed);
/// What the survey left out: groups, and affected playlists that are not among the choices because
/// the outline cannot show them.
std::vector<LeftOut> leftOutOf(const SurveyReport& survey,
                               std::span<const ReplaylistChoice> choices);

/// Every playlist that a scan found, those too that the outline cannot show.
std::vector<CleanUpChoice> choicesOf(const RepeatScan& scan);
std::vector<LeftOut> leftOutOf(const RepeatScan& scan, std::span<const CleanUpChoice> choices);

/// What works on the library of an application. One thread at a time; made for a task, since it
/// keeps the history open from the first use on.
class LibraryChanges {
 public:
  /// All must outlive this.
  LibraryChanges(MusicApplication& application, FileService& files, const Clock& clock);

  // Plans that can be applied: each says which library it is made from, and when. What the
  // application says it cannot change now is left out of them.

  /// With what the survey left out.
  Plan replaylistPlan(const SurveyReport& survey, std::span<const ReplaylistChoice> choices,
                      const KeeperReasons& reasons = {});
  /// With what is not among the choices.
  Plan cleanUpPlan(const RepeatScan& scan, std::span<const CleanUpChoice> choices);
  /// For tracks that go to the end of a playlist, and for files that go into the library.
  Plan additionPlan(std::uint64_t playlist, std::vector<std::uint64_t> tracks);
  Plan additionPlan(std::span<const std::string> paths);
  /// As `planTrash` and `planRemoval`; a track that rows list more than once is one track.
  /// `carry`, and the options' of a removal: see carrying.h; throws LibraryError where the
  /// application cannot (`whyNotCarried`).
  Plan trashPlan(std::span<const ResultTrack* const> rows, bool keeperValue,
                 const GuardOptions& options = {},
                 std::optional<std::span<const ResultTrack* const>> only = {},
                 TrackValueSet carry = {});
  Plan removalPlan(std::span<const ResultTrack* const> rows, bool keeperValue,
                   std::span<const ReplaylistChoice> choices, const KeeperReasons& reasons,
                   const RemovalOptions& options);

  /// Applies a plan of any kind to the library that it was made from; see apply.h.
  ApplyReport apply(const Plan& plan, ApplyOptions options = {});

  /// Opened on first use, which makes it if need be, with what runs that broke off have left in the
  /// trash cleared away.
  History& history();
  /// As `History::moveAside`.
  std::string moveHistoryAside(bool evenIfReadable);
  /// The runs over this library, newest first.
  std::vector<RunSummary> runs();
  /// How a run stands in the library as it is on the disk.
  UndoCheck inspect(const RunRecord& run);
  UndoReport undo(std::int64_t run, const UndoOptions& options = {});

 private:
  Plan finished(Plan plan, std::vector<LeftOut> leftOut = {});
  [[nodiscard]] std::string historyPath();

  MusicApplication& application_;
  FileService& files_;
  const Clock& clock_;
  FreedesktopTrash trash_;
  std::optional<History> history_;
};

}  // namespace kestrel
