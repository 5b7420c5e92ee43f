#include "app/history_changes.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "app/controller/result_groups.h"
#include "changes/trash_guard.h"
#include "foundation/library_error.h"
#include "platform/files.h"
#include "platform/freedesktop_trash.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {
namespace {

FreedesktopTrash openTrash() {
  const Collaborators& with = process().with;
  return FreedesktopTrash(with.clock, with.files.applicationSupportDirectory());
}

History openHistory() {
  const auto folder = TextSorter::applicationDataDirectory();
  if (!folder)
    throw LibraryError(
        "history", {}, Message::tr("there is no place to keep it"),
        Message::tr("Set HOME, or XDG_DATA_HOME to a folder in which Kestrel may keep its data."));
  process().with.files.createDirectories(*folder);
  History history(History::pathIn(*folder + "/"), process().with.clock);
  FreedesktopTrash trash = openTrash();
  clearBrokenRuns(history, trash);
  return history;
}

Plan finished(Plan plan, MusicApplication& application, std::vector<LeftOut> leftOut) {
  plan.leftOut.insert(plan.leftOut.end(), std::make_move_iterator(leftOut.begin()),
                      std::make_move_iterator(leftOut.end()));
  plan.library = application.library().identity();
  plan.made = process().with.clock.now();
  return plan;
}

/// Waits, after a change, until the library's files show it. An application that has written them
/// when it answers costs one look.
class LibraryWait {
 public:
  explicit LibraryWait(MusicApplication& application)
      : file_(application.library().libraryFile()),
        reference_(TextSorter::dateBeforeChange(file_)) {}
  void forChange() const {
    TextSorter::waitForItunesToUpdate(reference_, file_, process().textSorter.pathToMusicLibrary);
  }

 private:
  std::string file_;
  Moment reference_;
};

}  // namespace

Plan replaylistPlan(MusicApplication& application, const SurveyReport& survey,
                    const std::vector<ReplaylistChoice>& choices) {
  std::vector<LeftOut> leftOut = leftOutOf(survey, choices);
  // Groups are known to users by a song.
  std::unordered_map<std::int32_t, LeftOut*> groups;
  for (LeftOut& left : leftOut)
    if (left.what == LeftOut::What::group) groups.emplace(std::stoi(left.id), &left);
  if (!groups.empty())
    for (const ResultTrack& row : process().textSorter.window.bigArrayController.content())
      if (const auto group = groups.find(row.tGroupID);
          group != groups.end() && group->second->name.empty())
        group->second->name = row.record->item().title.view();
  return finished(planReplaylist(*application.library().allPlaylists(), choices, {},
                                 application.capabilities().editsInPlace),
                  application, std::move(leftOut));
}

Plan cleanUpPlan(MusicApplication& application, const RepeatScan& scan) {
  const std::vector<CleanUpChoice> choices = choicesOf(scan);
  return finished(planCleanUp(*application.library().allPlaylists(), choices), application,
                  leftOutOf(scan, choices));
}

Plan additionPlan(MusicApplication& application, std::uint64_t playlist,
                  const std::vector<std::uint64_t>& tracks) {
  return finished(planAddToPlaylist(*application.library().allPlaylists(), playlist, tracks),
                  application, {});
}

Plan additionPlan(MusicApplication& application, const std::vector<std::string>& paths) {
  return finished(planAddToLibrary(paths), application, {});
}

Plan trashPlan(MusicApplication& application, const std::vector<std::uint32_t>& chosen) {
  const auto content = process().textSorter.window.bigArrayController.content();
  const bool keeperValue = keeperValueBy(process().with.preferences);
  const std::vector<SurveyRow> tracks(content.begin(), content.end());
  std::vector<const ResultTrack*> rows, only;
  for (const std::uint32_t row : rowsThatCount(tracks, keeperValue)) rows.push_back(&content[row]);
  for (const std::uint32_t row : chosen)
    if (row < content.size()) only.push_back(&content[row]);
  Plan plan = planTrash(rows, keeperValue, application.library(), process().with.files, {}, only);
  return finished(std::move(plan), application, {});
}

std::unordered_map<std::uint64_t, std::uint32_t> rowsOfReplaced(const Plan& plan) {
  std::unordered_set<std::uint64_t> replaced;
  for (const PlannedPlaylist& planned : plan.playlists)
    for (const Replacement& change : planned.replacements) replaced.insert(change.oldTrack);
  const auto content = process().textSorter.window.bigArrayController.content();
  std::unordered_map<std::uint64_t, std::uint32_t> rows;
  for (std::uint32_t row = 0; row < content.size() && rows.size() < replaced.size(); ++row)
    if (const std::uint64_t track = content[row].record->item().persistentID;
        replaced.contains(track))
      rows.try_emplace(track, row);
  return rows;
}

ApplyReport applyToLibrary(const Plan& plan, MusicApplication& application,
                           const ApplyOptions& options) {
  History history = openHistory();
  if (plan.kind == RunKind::trash) {
    FreedesktopTrash trash = openTrash();
    return applyTrash(plan, application.library().identity(), application.library(), trash,
                      process().with.files, history, options);
  }
  const LibraryWait wait(application);
  ApplyReport report =
      plan.kind == RunKind::addToLibrary
          ? applyAdditions(plan, application, process().with.files, history, options)
          : applyPlan(plan, application, history, options);
  if (report.changedLibrary) wait.forChange();
  return report;
}

std::vector<RunSummary> runsOf(MusicApplication& application) {
  const LibraryIdentity identity = application.library().identity();
  return openHistory().runs(&identity);
}

InspectedRun inspectedRun(std::int64_t run, MusicApplication& application) {
  auto record = openHistory().run(run);
  if (!record)
    throw LibraryError(application.library().libraryFile(), {},
                       Message::tr("the history no longer has run %1").arg(std::to_string(run)),
                       Message::tr("Open the history again."));
  application.library().reload();
  UndoCheck check = inspectRun(*record, application.library(), process().with.files);
  return {std::move(*record), std::move(check)};
}

UndoReport undoInLibrary(std::int64_t run, MusicApplication& application,
                         const UndoOptions& options) {
  History history = openHistory();
  FreedesktopTrash trash = openTrash();
  const LibraryWait wait(application);
  UndoReport report = undoRun(run, application, process().with.files, history, &trash, options);
  if (report.changedLibrary) wait.forChange();
  return report;
}

}  // namespace kestrel
