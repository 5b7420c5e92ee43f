// find: the duplicates of a library, and which copy of each to keep.

#include <iostream>
#include <memory>
#include <string>
#include <unordered_set>

#include "cli/record_output.h"
#include "cli/search.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "foundation/text_helpers.h"
#include "foundation/utf8.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

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

Json json(const SearchResult& result, const FoundGroup& group, FunctionRef<bool()> stopped) {
  Json object = {{"tGroupID", group.tGroupID}, {"dupeSort", group.dupeSort}};
  Json& tracks = object["tracks"] = Json::array();
  for (const ResultTrack* track : group.tracks) {
    if (stopped()) break;
    Json row = Json::object();
    for (const TrackKey key : {TrackKey::hexpid, TrackKey::decpid, TrackKey::tCheckbox})
      row[std::string(trackKeyName(key))] = json(track->value(key));
    row["keeper"] = result.isKeeper(*track);
    row["fileAvail"] = json(track->value(TrackKey::fileAvail));
    addKeys(row, *track);
    tracks.push_back(std::move(row));
  }
  object["pick"] = {
      {"rule", result.settings.ruleNumber}, {"reason", group.reason}, {"random", group.random}};
  if (Json chain = result.chain(); !chain.is_null()) object["pick"]["keep"] = std::move(chain);
  if (group.picked != PickState::none)
    object["pick"]["byHand"] = group.picked == PickState::holds ? "picked" : "undecided";
  return object;
}

void writeText(std::ostream& out, const SearchResult& result, FunctionRef<bool()> stopped) {
  result.writeScope(out);
  std::size_t tracks = 0, toActOn = 0;
  std::unordered_set<std::string> files;
  std::int64_t bytes = 0;
  for (const FoundGroup& group : result.groups) {
    out << "Group " << group.dupeSort << " of " << result.groups.size() << " · "
        << printable(group.reason) << '\n';
    using Align = TextTable::Align;
    TextTable table({{""},
                     {"Name", Align::left, 36},
                     {"Artist", Align::left, 28},
                     {"Album", Align::left, 28},
                     {"Time", Align::right},
                     {"Kind", Align::left, 24},
                     {"kbit/s", Align::right},
                     {"Size", Align::right},
                     {"Plays", Align::right},
                     {"File", Align::left, 200}});
    for (const ResultTrack* track : group.tracks) {
      if (stopped()) return;
      const TrackRecord& record = *track->record;
      const MediaItem& item = record.item();
      const bool keeper = result.isKeeper(*track);
      table.add({keeper ? "keep" : "", std::string(item.title.view()),
                 std::string(item.artist.view()), std::string(item.album.view()),
                 TextSorter::makeTimeHumanReadable(item.totalTime), std::string(item.kind.view()),
                 optionalNumber(item.bitrate), std::string(record.value(TrackKey::tSize).text()),
                 optionalNumber(item.playCount), place(record)});
      ++tracks;
      if (keeper) continue;
      ++toActOn;
      if (record.availability() != FileAvailability::reachable) continue;
      // Two tracks may name one file.
      if (files.insert(record.location()).second) bytes = sizesAdded(bytes, item.fileSize);
    }
    table.write(out, "  ", stopped);
    out << '\n';
  }
  if (result.groups.empty()) {
    out << "No duplicates.\n";
    return;
  }
  out << number(tracks, "track", "tracks") << " in "
      << number(result.groups.size(), "group", "groups") << "; "
      << number(toActOn, "track", "tracks") << " to act on, with "
      << number(files.size(), "file", "files") << " of "
      << (bytes ? TextSorter::makeSizeHumanReadable(bytes) : "0 bytes") << " in all.\n";
}

void writeJson(std::ostream& out, const SearchResult& result, FunctionRef<bool()> stopped) {
  // Group by group, so that a large result need not be held twice.
  out << "{\"count\":" << dump(std::to_string(result.rows.size()))
      << ",\"criteria\":" << dump(result.criteria) << ",\"scope\":" << dump(result.scope())
      << ",\"groups\":[";
  const char* separator = "\n";
  for (const FoundGroup& group : result.groups) {
    const Json object = json(result, group, stopped);
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

}  // namespace

void addFindCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    bool json = false;
    bool csv = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("find", "Find duplicates and choose which copy to keep");
  addSearchOptions(*command, options->search);
  auto* json = command->add_flag("--json", options->json, "Write JSON");
  command->add_flag("--csv", options->csv, "Write CSV, one line per track")->excludes(json);
  setAction(*command, chosen, [options](Session& session) {
    checkSearchOptions(options->search);
    const auto library = session.open(options->search.library);
    const SearchResult result = search(session, *library, options->search);
    if (session.interrupted()) return session.stopped();
    const auto stopped = [&session] { return session.interrupted(); };
    if (options->json)
      writeJson(std::cout, result, stopped);
    else if (options->csv)
      writeCsv(std::cout, result, stopped);
    else
      writeText(std::cout, result, stopped);
    return session.interrupted() ? session.stopped() : 0;
  });
}

}  // namespace kestrel
