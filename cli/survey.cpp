#include "cli/survey.h"

#include <algorithm>

#include "foundation/identifiers.h"

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

std::string reasonOf(const SkippedGroup& group) {
  return group.reason == SkippedGroup::Reason::missingFile ? "a file of the group is missing"
                                                           : "it has no keeper";
}

}  // namespace

SurveyResult surveyFor(OpenedApplication& opened, const SearchResult& found,
                       const std::vector<std::string>& only, const Session& session) {
  SurveyResult result;
  ReplaylistControl::beginReplaylist(true);
  const SurveyReport& report = ReplaylistControl::report();
  ReplaylistState& state = ReplaylistControl::state();
  result.reasons = reasonsOf(found);
  for (const SkippedGroup& group : report.skippedGroups)
    result.plan.leftOut.push_back(
        {LeftOut::What::group, std::to_string(group.tGroupID), {}, reasonOf(group)});
  if (report.outcome == SurveyOutcome::severalKeepers) {
    result.status = "alert";
    if (const auto& alert = state.window.alert.alert())
      result.message = alert->message + " " + alert->informativeText;
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

  std::vector<ReplaylistChoice> choices;
  for (const PlaylistReplacements& replacements : result.chosen) {
    ReplaylistChoice& choice = choices.emplace_back();
    choice.playlist = replacements.record->playlist().persistentID;
    for (const KeeperPair& pair : replacements.pairs) choice.keepers[pair.item] = pair.keeper;
  }
  auto leftOut = std::move(result.plan.leftOut);
  result.plan = planReplaylist(*opened.playlists(), choices, result.reasons);
  result.plan.leftOut.insert(result.plan.leftOut.begin(), leftOut.begin(), leftOut.end());
  for (std::size_t i = 0; i < report.playlists.affected.size(); ++i) {
    if (report.playlists.shown[i]) continue;
    const ReplaylistRecord& record = *report.playlists.affected[i];
    result.plan.leftOut.push_back({LeftOut::What::playlist, record.hexpid(), record.playlist().name,
                                   "its folder is itself in a folder"});
  }
  result.plan.library = opened.identity();
  result.plan.made = session.clock.now();
  return result;
}

}  // namespace kestrel
