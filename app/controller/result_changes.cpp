#include "app/controller/result_changes.h"

#include <unordered_set>
#include <utility>

#include "app/controller/result_groups.h"
#include "foundation/library_error.h"
#include "platform/trash.h"
#include "ui/library_files.h"
#include "ui/process.h"

namespace kestrel {
namespace {

/// What `change` reports, when the library's files show it. An application that has written them
/// when it answers costs one look.
template <typename Change>
auto shown(MusicApplication& application, Change&& change) {
  const std::string file = application.library().libraryFile();
  const Moment reference = TextSorter::dateBeforeChange(file);
  auto report = change(changesOf(application));
  if (report.changedLibrary)
    TextSorter::waitForItunesToUpdate(reference, file, process().textSorter.pathToMusicLibrary);
  return report;
}

}  // namespace

LibraryChanges changesOf(MusicApplication& application) {
  return {application, process().with.files, process().with.clock};
}

Plan replaylistPlan(MusicApplication& application, const SurveyReport& survey,
                    const std::vector<ReplaylistChoice>& choices) {
  Plan plan = changesOf(application).replaylistPlan(survey, choices);
  std::unordered_map<std::int32_t, LeftOut*> groups;
  for (LeftOut& left : plan.leftOut)
    if (left.what == LeftOut::What::group) groups.emplace(std::stoi(left.id), &left);
  if (!groups.empty())
    for (const ResultTrack& row : process().textSorter.window.bigArrayController.content())
      if (const auto group = groups.find(row.tGroupID);
          group != groups.end() && group->second->name.empty())
        group->second->name = row.record->item().title.view();
  return plan;
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
  return shown(application, [&](LibraryChanges changes) { return changes.apply(plan, options); });
}

InspectedRun inspectedRun(std::int64_t run, MusicApplication& application) {
  LibraryChanges changes = changesOf(application);
  auto record = changes.history().run(run);
  if (!record)
    throw LibraryError(application.library().libraryFile(), {},
                       Message::tr("the history no longer has run %1").arg(std::to_string(run)),
                       Message::tr("Open the history again."));
  UndoCheck check = changes.inspect(*record);
  return {std::move(*record), std::move(check)};
}

UndoReport undoInLibrary(std::int64_t run, MusicApplication& application,
                         const UndoOptions& options) {
  return shown(application, [&](LibraryChanges changes) { return changes.undo(run, options); });
}

}  // namespace kestrel
