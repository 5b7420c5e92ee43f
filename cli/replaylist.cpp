// replaylist: puts keepers into playlists in place of the tracks that are not kept.

#include <iostream>
#include <memory>
#include <unordered_map>

#include "cli/acting.h"
#include "cli/command.h"
#include "cli/text_table.h"
#include "foundation/identifiers.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

Json mapOf(std::span<const KeeperPair> pairs) {
  // As a list, for there is one pair a track: an ordered object looks at every key to find one.
  Json::object_t map;
  map.reserve(pairs.size());
  for (const KeeperPair& pair : pairs)
    map.push_back({TextSorter::decToHex(pair.item), TextSorter::decToHex(pair.keeper)});
  return map;
}

Json json(const ReplaylistRecord& record, const PlannedPlaylist* planned, bool shown) {
  const std::vector<std::uint64_t>& items = record.playlist().items;
  Json repeats = Json::array();
  if (planned)
    for (const CreatedRepeat& repeat : planned->repeats)
      repeats.push_back(TextSorter::decToHex(repeat.track));
  return {{"hexpid", record.hexpid()},
          {"name", record.playlist().name},
          {"pairs", mapOf(record.nonKeeperKeeperPairs())},
          {"items", TextSorter::batchDecToHex(items)},
          {"newItems", TextSorter::batchDecToHex(planned ? newEntries(*planned, items) : items)},
          {"creates_repeats", std::move(repeats)},
          {"shown", shown}};
}

constexpr const char* noResults = "No results.";

Json json(const ReplaylistSurvey& result, bool onlyChosen) {
  const SurveyReport& report = result.report;
  const bool hasFound = report.outcome == SurveyOutcome::found;
  Json document = {{"status", hasFound ? "ok" : "none"},
                   {"message", hasFound ? "" : noResults},
                   {"playlists", Json::array()},
                   {"skippedGroups", Json::array()},
                   {"map", Json::object()}};
  std::unordered_map<std::uint64_t, const PlannedPlaylist*> plans;
  for (const PlannedPlaylist& planned : result.plan.playlists)
    plans.try_emplace(planned.playlist, &planned);
  for (std::size_t i = 0; i < report.playlists.affected.size(); ++i) {
    const ReplaylistRecord& record = *report.playlists.affected[i];
    const auto found = plans.find(record.playlist().persistentID);
    const PlannedPlaylist* planned = found == plans.end() ? nullptr : found->second;
    if (onlyChosen && !planned) continue;
    document["playlists"].push_back(json(record, planned, report.playlists.shown[i]));
  }
  for (const LeftOut& left : result.plan.leftOut)
    if (left.what == LeftOut::What::group)
      document["skippedGroups"].push_back(
          {{"tGroupID", left.id}, {"reason", left.reason.english()}});
  Json::object_t map;
  for (const PlaylistReplacements& chosen : result.chosen)
    map.push_back({chosen.record->hexpid(), mapOf(chosen.pairs)});
  document["map"] = std::move(map);
  return document;
}

void writeText(std::ostream& out, const ReplaylistSurvey& result, const TrackStore& tracks) {
  if (result.report.outcome != SurveyOutcome::found) writeLines(out, {noResults});
  for (const PlannedPlaylist& planned : result.plan.playlists) {
    const std::size_t dropped = planned.deleteIndexes.size();
    out << "Playlist \"" << printable(planned.name)
        << "\": " << planned.replacements.size() + dropped << " of " << planned.entryCount
        << " entries\n";
    TextTable table({{"At", TextTable::Align::right},
                     {"Song", TextTable::Align::left, 60},
                     {"Now", TextTable::Align::left, 48},
                     {"Then", TextTable::Align::left, 48},
                     {"Because", TextTable::Align::left, 80}});
    for (const Replacement& change : planned.replacements) {
      const CopyTexts now = textsOf(tracks, change.oldTrack);
      table.add({std::to_string(change.position), now.song, now.copy,
                 textsOf(tracks, change.newTrack).copy, change.reason});
    }
    if (!planned.replacements.empty()) table.write(out, "  ");
    if (dropped > 0)
      out << "  " << dropped << " go, since the playlist lists what is kept instead already\n";
    out << '\n';
  }
  writeWarnings(out, result.plan);
}

}  // namespace

void addReplaylistCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    std::vector<std::string> only;
    ActingOptions acting;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "replaylist", "Put keepers into playlists in place of the tracks that are not kept");
  addSearchOptions(*command, options->search);
  addOnlyOption(*command, options->only);
  addActingOptions(*command, options->acting, "Change the library; undo takes it back");
  setAction(*command, chosen, [options](Session& session) {
    checkSearchOptions(options->search);
    OpenedApplication opened(session, options->search.library);
    const SearchResult found = search(session, opened.application.library(), options->search);
    if (session.interrupted()) return session.stopped();
    const ReplaylistSurvey survey = surveyFor(opened, found, options->only);
    const Ending ending{.options = options->acting,
                        .plan = survey.plan,
                        .found = &found,
                        .hasWork = !survey.plan.playlists.empty(),
                        .hint = "Nothing has been changed; --apply does it.",
                        .json = [&] { return json(survey, !options->only.empty()); },
                        .text = [&](std::ostream& out) { writeText(out, survey, *found.tracks); }};
    return ending.finish(opened);
  });
}

}  // namespace kestrel
