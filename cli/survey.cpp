#include "cli/survey.h"

#include <algorithm>

#include "changes/plan_survey.h"

namespace kestrel {
namespace {

/// Walks the outline and collects the paths of playlists, which folders are not.
void collectPaths(const std::vector<ReplaylistRow>& rows, const std::vector<std::string>& only,
                  IndexPath& path, std::vector<IndexPath>& paths) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    path.push_back(i);
    const ReplaylistRecord& record = *rows[i].record;
    const bool wanted = only.empty() ||
                        std::find(only.begin(), only.end(), record.hexpid()) != only.end() ||
                        std::find(only.begin(), only.end(), record.playlist().name) != only.end();
    if (wanted && !record.isFolder()) paths.push_back(path);
    if (rows[i].Child) collectPaths(*rows[i].Child, only, path, paths);
    path.pop_back();
  }
}

void checkChosen(const PlaylistSurvey& survey, const std::vector<std::string>& only) {
  for (const std::string& name : only) {
    std::size_t at = 0;
    for (; at < survey.affected.size(); ++at) {
      const ReplaylistRecord& record = *survey.affected[at];
      if (record.hexpid() == name || record.playlist().name == name) break;
    }
    if (at == survey.affected.size())
      throw UsageError("--only: no affected playlist is called \"" + name +
                       "\" or has this ID; without --only all are listed");
    if (!survey.shown[at])
      throw UsageError("--only: the playlist \"" + name +
                       "\" is in a folder that is itself in a folder, where it cannot be replaced; "
                       "move it up in the music application");
  }
}

std::unordered_map<std::uint64_t, std::string> reasonsOf(const SearchResult& found) {
  std::unordered_map<std::uint64_t, std::string> reasons;
  for (const FoundGroup& group : found.groups)
    for (const ResultTrack* track : group.tracks)
      if (!found.isKeeper(*track))
        reasons.try_emplace(track->record->item().persistentID, group.reason);
  return reasons;
}

}  // namespace

void addOnlyOption(CLI::App& command, std::vector<std::string>& only) {
  const auto add = [&only](const std::vector<std::string>& names) {
    only.insert(only.end(), names.begin(), names.end());
  };
  auto* first = command.add_option_function<std::vector<std::string>>(
      "--only", add, "Only these playlists, by name or hexadecimal ID");
  first->option_text("NAME-or-HEXPID ...")->allow_extra_args(false);
  command
      .add_option_function<std::vector<std::string>>("PLAYLIST", add, "More playlists for --only")
      ->needs(first);
}

SurveyResult surveyFor(OpenedApplication& opened, const SearchResult& found,
                       const std::vector<std::string>& only, const Session& session) {
  SurveyResult result;
  const auto rows = session.process.textSorter.window.bigArrayController.content();
  ReplaylistControl::beginReplaylist(std::vector<SurveyRow>(rows.begin(), rows.end()));
  const SurveyReport& report = ReplaylistControl::report();
  ReplaylistState& state = ReplaylistControl::state();
  result.reasons = reasonsOf(found);
  result.plan.leftOut = leftOutOf(report, {});
  if (report.outcome == SurveyOutcome::severalKeepers) {
    result.status = "alert";
    if (const auto& alert = state.window.alert.alert())
      result.message = joined(alert->message, alert->informativeText).english();
    return result;
  }
  if (report.outcome != SurveyOutcome::found) {
    result.status = "none";
    result.message = state.window.progressStatus.text();
    return result;
  }
  result.status = "ok";
  checkChosen(report.playlists, only);
  std::vector<IndexPath> paths;
  IndexPath path;
  collectPaths(state.window.outline.content(), only, path, paths);
  state.window.outline.setSelection(std::move(paths));
  result.chosen = ReplaylistControl::clickedOK();

  const std::vector<ReplaylistChoice> choices = choicesOf(report, result.chosen);
  result.plan = planReplaylist(*opened.playlists(), choices, result.reasons,
                               opened.application.capabilities().editsInPlace);
  for (LeftOut& left : leftOutOf(report, choices)) result.plan.leftOut.push_back(std::move(left));
  result.plan.library = opened.identity();
  result.plan.made = session.clock.now();
  return result;
}

}  // namespace kestrel
