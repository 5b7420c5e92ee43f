// find: the duplicates of a library, and which copy of each to keep.

#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "cli/filtered_output.h"
#include "cli/listening.h"
#include "cli/loss_output.h"
#include "cli/preview.h"
#include "cli/record_output.h"
#include "cli/search.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "cli/totals.h"
#include "decisions/seen_groups.h"
#include "dupes/asked_of_files.h"
#include "dupes/match_explanation.h"
#include "foundation/text_helpers.h"
#include "foundation/utf8.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

struct FindOptions {
  SearchOptions search;
  bool json = false, csv = false;
  bool explain = false, doubtful = false;
  bool preview = false;
  bool isNew = false;
  Json since;  ///< of the groups that are not new; null at first
};

std::string number(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

std::string optionalNumber(std::int64_t value) { return value ? std::to_string(value) : ""; }

std::string place(const TrackRecord& record) {
  switch (record.availability()) {
    case FileAvailability::missing:
      return "(file missing)";
    case FileAvailability::cloud:
      return "(cloud)";
    case FileAvailability::reachable:
      break;
  }
  return record.location();
}

Json json(const MatchExplanation& match) {
  Json fields = Json::array(), splitting = Json::array();
  for (const MatchedField& field : match.fields)
    fields.push_back({{"key", field.criterion}, {"values", field.values}});
  for (const SplittingField& field : match.splitting)
    splitting.push_back({{"key", field.criterion}, {"values", field.values}});
  Json object = {{"key", match.key},
                 {"fields", std::move(fields)},
                 {"onlyJoins", match.onlyJoins},
                 {"splitBy", std::move(splitting)}};
  if (match.seed)
    object["seed"] = {{"hexpid", TextSorter::decToHex(match.seed->item().persistentID)},
                      {"seconds", match.seedSeconds}};
  return object;
}

Json json(const std::vector<Doubt>& doubts) {
  Json list = Json::array();
  for (const Doubt& doubt : doubts) {
    Json object = {{"kind", nameOf(doubt.kind)}};
    if (doubt.kind == DoubtKind::version)
      object["version"] = doubt.version;
    else if (doubt.kind == DoubtKind::sound)
      object["likeness"] = doubt.sound.percent;
    else if (doubt.kind == DoubtKind::soundInPart)
      object["part"] = nameOf(doubt.sound.part);
    else
      object["seconds"] = doubt.seconds;
    object["text"] = explain(doubt).english();
    list.push_back(std::move(object));
  }
  return list;
}

MatchExplanation matchOf(const SearchResult& result, const FoundGroup& group) {
  const auto number = static_cast<std::size_t>(group.tracks.front()->tGroupID);
  return explainMatch(*result.tracks, group.records(), result.criteria, result.grouping,
                      number < result.seeds.size() ? result.seeds[number] : nullptr);
}

Json json(const SearchResult& result, const FoundGroup& group, const FindOptions& options,
          FunctionRef<bool()> stopped) {
  Json object = {{"tGroupID", group.tGroupID}, {"dupeSort", group.dupeSort}};
  Json& tracks = object["tracks"] = Json::array();
  for (const ResultTrack* track : group.tracks) {
    if (stopped()) break;
    Json row = Json::object();
    for (const TrackKey key : {TrackKey::hexpid, TrackKey::decpid, TrackKey::tCheckbox})
      row[std::string(trackKeyName(key))] = json(track->value(key));
    row["keeper"] = result.isKeeper(*track);
    row["fileAvail"] = json(track->value(TrackKey::fileAvail));
    if (result.sounds)
      if (Json sound = soundOf(result, *track); !sound.is_null()) row["sound"] = std::move(sound);
    addKeys(row, *track);
    tracks.push_back(std::move(row));
  }
  object["pick"] = {
      {"rule", result.settings.ruleNumber}, {"reason", group.reason}, {"random", group.random}};
  if (Json chain = result.chain(); !chain.is_null()) object["pick"]["keep"] = std::move(chain);
  if (group.picked != PickState::none)
    object["pick"]["byHand"] = group.picked == PickState::holds ? "picked" : "undecided";
  const Totals totals = totalsOf(result, group);
  object["freed"] = totals.bytes;
  object["missing"] = totals.missing;
  if (!group.doubts.empty()) object["doubts"] = json(group.doubts);
  if (result.sounds) object["sound"] = soundOf(group);
  const std::vector<Loss> losses = lossesOf(
      group.tracks, *result.facts, [&](const ResultTrack& track) { return result.isKeeper(track); },
      result.knowsCovers ? coversBy(result.files) : nullptr);
  for (const Loss& loss : losses) object["lost"].push_back(json(loss));
  if (options.explain) object["match"] = json(matchOf(result, group));
  return object;
}

void writeNotDuplicates(std::ostream& out, const SearchResult& result) {
  if (!result.notDuplicates.empty())
    out << number(result.notDuplicates.size(), "group is", "groups are")
        << " left out as no duplicates; kestrel-cli ignore --list shows them.\n";
}

void writeText(std::ostream& out, const SearchResult& result, const FindOptions& options,
               FunctionRef<bool()> stopped) {
  result.writeScope(out);
  std::size_t shown = 0;
  const auto soundText = [](const ResultTrack& track) {
    const Message text = textOf(track.sound);
    return text.empty() ? "unknown" : text.english();
  };
  for (const FoundGroup& group : result.groups) {
    out << "Group " << ++shown << " of " << result.groups.size() << " (number " << group.tGroupID
        << ") · " << printable(group.reason) << '\n';
    for (const Doubt& doubt : group.doubts)
      out << "  doubtful: " << printable(explain(doubt).english()) << '\n';
    if (options.explain)
      for (const Message& line : explain(matchOf(result, group)))
        out << "  matched: " << printable(line.english()) << '\n';
    using Align = TextTable::Align;
    std::vector<TextTable::Column> columns{{""},
                                           {"Name", Align::left, 36},
                                           {"Artist", Align::left, 28},
                                           {"Album", Align::left, 28},
                                           {"Time", Align::right},
                                           {"Kind", Align::left, 24},
                                           {"kbit/s", Align::right},
                                           {"Size", Align::right},
                                           {"Plays", Align::right}};
    if (result.sounds) columns.push_back({"Sound", Align::right});
    columns.push_back({"File", Align::left, 200});
    TextTable table(std::move(columns));
    for (const ResultTrack* track : group.tracks) {
      if (stopped()) return;
      const TrackRecord& record = *track->record;
      const MediaItem& item = record.item();
      const bool keeper = result.isKeeper(*track);
      std::vector<std::string> cells{keeper ? "keep" : "",
                                     std::string(item.title.view()),
                                     std::string(item.artist.view()),
                                     std::string(item.album.view()),
                                     TextSorter::makeTimeHumanReadable(item.totalTime),
                                     std::string(item.kind.view()),
                                     optionalNumber(item.bitrate),
                                     std::string(record.value(TrackKey::tSize).text()),
                                     optionalNumber(item.playCount)};
      if (result.sounds)
        cells.push_back(keeper ? shortText(track->sound.fault).english() : soundText(*track));
      cells.push_back(place(record));
      table.add(std::move(cells));
    }
    table.write(out, "  ", stopped);
    out << '\n';
  }
  if (result.groups.empty()) {
    out << (options.isNew      ? "No new duplicates.\n"
            : options.doubtful ? "No doubtful duplicates.\n"
                               : "No duplicates.\n");
    writeNotDuplicates(out, result);
    return;
  }
  const Totals totals = totalsOf(result);
  out << number(totals.tracks, "track", "tracks") << " in "
      << number(totals.groups, "group", "groups") << "; "
      << number(totals.toActOn, "track", "tracks") << " to act on, with "
      << number(totals.files, "file", "files") << " of "
      << (totals.bytes ? TextSorter::makeSizeHumanReadable(totals.bytes) : "0 bytes")
      << " in all.\n";
  if (const Message lost = explain(ledgerOf(result).total); !lost.empty())
    out << "What only those have: " << lost.english() << ".\n";
  if (result.picks.picked + result.picks.undecided)
    out << number(result.picks.picked, "group", "groups") << " picked by hand, "
        << result.picks.undecided << " undecided.\n";
  writeNotDuplicates(out, result);
}

void writeJson(std::ostream& out, const SearchResult& result, const FindOptions& options,
               const std::optional<SearchPreview>& preview, FunctionRef<bool()> stopped) {
  const Totals totals = totalsOf(result);
  // Group by group, so that a large result need not be held twice.
  out << "{\"count\":" << dump(std::to_string(totals.tracks))
      << ",\"criteria\":" << dump(result.criteria) << ",\"scope\":" << dump(result.scope());
  if (options.search.bySound) out << ",\"bySound\":true";
  Json loose = Json::array();
  for (const LooseInfo& info : loosenings())
    if (result.grouping.loose & bitOf(info.loose)) loose.push_back(info.word);
  out << ",\"loose\":" << dump(loose);
  if (options.isNew) out << ",\"since\":" << dump(options.since);
  if (preview) out << ",\"preview\":" << dump(json(*preview));
  out << ",\"totals\":" << dump(json(totals));
  out << ",\"notDuplicates\":" << result.notDuplicates.size() << ",\"picks\":"
      << dump({{"picked", result.picks.picked},
               {"undecided", result.picks.undecided},
               {"changed", result.picks.changed}})
      << ",\"lost\":" << dump(totalOf(ledgerOf(result))) << ",\"groups\":[";
  const char* separator = "\n";
  for (const FoundGroup& group : result.groups) {
    const Json object = json(result, group, options, stopped);
    if (stopped()) return;
    out << separator << dump(object);
    separator = ",\n";
  }
  out << (result.groups.empty() ? "]}\n" : "\n]}\n");
}

void writeCsv(std::ostream& out, const SearchResult& result, FunctionRef<bool()> stopped) {
  out << "tGroupID,dupeSort,keeper,reason";
  const auto forEachColumn = [](auto visit) {
    for (const TrackKeyInfo& info : trackKeys())
      if (info.key != TrackKey::tGroupID && info.key != TrackKey::dupeSort) visit(info);
  };
  forEachColumn([&](const TrackKeyInfo& info) { out << ',' << info.name; });
  out << "\r\n";
  for (const FoundGroup& group : result.groups) {
    for (const ResultTrack* track : group.tracks) {
      if (stopped()) return;
      out << group.tGroupID << ',' << group.dupeSort << ','
          << (result.isKeeper(*track) ? "true" : "false") << ','
          << csvField(std::string_view(group.reason));
      forEachColumn(
          [&](const TrackKeyInfo& info) { out << ',' << csvField(track->value(info.key)); });
      out << "\r\n";
    }
  }
}

/// All that makes a search another one.
std::string searchText(const SearchResult& result, bool bySound) {
  std::string text = result.playlist ? result.playlist->hexpid : "";
  for (const std::string& criterion : result.criteria) text += "\n" + criterion;
  if (bySound) text += "\nby sound";
  return text + "\n" + std::to_string(result.grouping.toleranceSeconds) + "\n" +
         std::to_string(result.grouping.loose) + (result.grouping.caseSensitive ? "\ncase" : "");
}

SeenGroupsFile seenFile(Session& session, MediaLibrary& library, const SearchResult& result,
                        const FindOptions& options) {
  return {session.files, library.identity().uri, searchText(result, options.search.bySound)};
}

/// Leaves those groups that were not there when new ones were last asked for. Returns the others.
SeenGroups keepNew(Session& session, MediaLibrary& library, SearchResult& result,
                   FindOptions& options) {
  Moment when;
  const auto seen = seenFile(session, library, result, options).load(when);
  SeenGroups old;
  if (seen) {
    for (const FoundGroup& group : result.groups)
      if (!seen->isNew(group.ids())) old.add(group.ids());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(when);
    options.since = json(Value(Date{seconds.time_since_epoch().count()}));
    std::erase_if(result.groups,
                  [&](const FoundGroup& group) { return !seen->isNew(group.ids()); });
    note(number(result.groups.size(), "new group", "new groups") + " since " + momentText(when));
  } else {
    note("these groups have not been asked for before, so all are new");
  }
  return old;
}

}  // namespace

void addFindCommand(CLI::App& app, Action& chosen) {
  auto options = std::make_shared<FindOptions>();
  CLI::App* command = app.add_subcommand("find", "Find duplicates and choose which copy to keep");
  addSearchOptions(*command, options->search);
  auto* json = command->add_flag("--json", options->json, "Write JSON");
  command->add_flag("--csv", options->csv, "Write CSV, one line per track")->excludes(json);
  command->add_flag("--explain", options->explain, "Say of each group why its tracks match")
      ->excludes(command->get_option("--by-sound"));
  command->add_flag("--sound", options->search.sound,
                    "Listen to the files, and say how alike the copies sound");
  command->add_flag("--doubtful", options->doubtful,
                    "Only groups that may be no duplicates, with the reason");
  command
      ->add_flag("--preview", options->preview,
                 "Only how many groups there were with another field, or when more was passed over")
      ->excludes(command->get_option("--by-sound"))
      ->excludes("--csv");
  command->add_flag("--new", options->isNew,
                    "Only groups that were not there when this was last asked for");
  setAction(*command, chosen, [options](Session& session) {
    checkSearchOptions(options->search);
    const auto library = session.open(options->search.library);
    SearchResult result = search(session, *library, options->search);
    if (session.interrupted()) return session.stopped();
    const auto stopped = [&session] { return session.interrupted(); };
    SeenGroups seen;
    if (options->isNew) seen = keepNew(session, *library, result, *options);
    if (options->doubtful)
      std::erase_if(result.groups, [](const FoundGroup& group) { return group.doubts.empty(); });
    std::optional<SearchPreview> preview;
    if (options->preview) preview = previewOf(session, *library, result);
    if (session.interrupted()) return session.stopped();
    if (options->json)
      writeJson(std::cout, result, *options, preview, stopped);
    else if (options->csv)
      writeCsv(std::cout, result, stopped);
    else if (preview)
      writeText(std::cout, *preview);
    else
      writeText(std::cout, result, *options, stopped);
    if (session.interrupted()) return session.stopped();
    // What was not shown, or could not be written, is new the next time too.
    if (options->isNew && std::cout.flush()) {
      for (const FoundGroup& group : result.groups) seen.add(group.ids());
      seenFile(session, *library, result, *options).save(seen, session.clock.now());
    }
    return 0;
  });
}

}  // namespace kestrel
