// info: what a library holds, and what it takes to load it.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "cli/command.h"
#include "cli/record_output.h"
#include "cli/search.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "foundation/name_table.h"
#include "foundation/text_helpers.h"
#include "foundation/utf8.h"
#include "library/unsearched.h"
#include "musicapp/map_suggestions.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

using Counts = std::vector<std::pair<std::string, std::size_t>>;

constexpr NameTable<MediaKind, 10> mediaKinds{{{MediaKind::unknown, "unknown"},
                                               {MediaKind::song, "songs"},
                                               {MediaKind::movie, "movies"},
                                               {MediaKind::podcast, "podcasts"},
                                               {MediaKind::audiobook, "audiobooks"},
                                               {MediaKind::musicVideo, "music videos"},
                                               {MediaKind::tvShow, "TV shows"},
                                               {MediaKind::homeVideo, "home videos"},
                                               {MediaKind::ringtone, "ringtones"},
                                               {MediaKind::itunesU, "courses"}}};
constexpr NameTable<PlaylistKind, 4> playlistKinds{{{PlaylistKind::regular, "regular"},
                                                    {PlaylistKind::smart, "smart"},
                                                    {PlaylistKind::genius, "genius"},
                                                    {PlaylistKind::folder, "folders"}}};

std::string wordOf(const auto& kinds, auto kind) {
  const std::string_view name = nameOf(kinds, kind);
  return name.empty() ? "kind " + std::to_string(static_cast<int>(kind)) : std::string(name);
}

/// Most frequent first.
Counts ranked(const std::map<std::string, std::size_t>& counts) {
  Counts list(counts.begin(), counts.end());
  std::stable_sort(list.begin(), list.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  return list;
}

/// Memory of this process that no file backs, in bytes; 0 where the system does not tell.
std::size_t anonymousMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string field; status >> field;) {
    if (field != "RssAnon:") continue;
    std::size_t kibibytes = 0;
    status >> kibibytes;
    return kibibytes * 1024;
  }
  return 0;
}

struct InfoOptions {
  ReadingOptions reading;
  std::string suggestMap;  ///< the folder; empty: none is asked for
};

/// Where files that are nowhere are said to be, and which maps would find them.
struct Lost {
  std::size_t locations = 0;
  std::vector<LocationBeginnings::Beginning> beginnings;
  std::vector<MapSuggestion> suggestions;
};

struct Info {
  std::size_t items = 0, songs = 0, searched = 0, entries = 0;
  Counts mediaKinds, kinds, playlistKinds;
  std::array<std::size_t, 3> availability{};
  std::int64_t bytes = 0;
  std::size_t playlists = 0, droppedEntries = 0;
  double seconds = 0;
  std::size_t anonymousBytes = 0, snapshotBytes = 0;
  std::vector<std::string> notes;
  std::optional<Lost> lost;
};

/// Maps are for locations as the library has them, so it is read once more, without maps.
Lost lostOf(Session& session, const InfoOptions& options) {
  const PathMaps maps = std::exchange(session.maps, {});
  const auto library = session.open(options.reading.library);
  session.progress.show("Looking for files in " + options.suggestMap + " ...");
  const std::vector<std::string> locations =
      lostLocations(*library->allMediaItems(), maps, session.files);
  Lost lost{locations.size(), {}, {}};
  LocationBeginnings beginnings;
  for (const std::string& location : locations)
    beginnings.add(std::string_view(location).substr(0, location.rfind('/')));
  lost.beginnings = beginnings.list();
  lost.suggestions = suggestMaps(
      locations, std::filesystem::absolute(options.suggestMap).lexically_normal(), session.files);
  session.progress.clear();
  return lost;
}

Info collect(MediaLibrary& library, const TrackStore& tracks) {
  Info info;
  std::map<std::string, std::size_t> ofMedia, kinds, ofPlaylists;
  const auto items = library.allMediaItems();
  info.items = items->size();
  items->forEach([&](const MediaItem& item) { ++ofMedia[wordOf(mediaKinds, item.mediaKind)]; });
  info.songs = tracks.size();
  for (const TrackRecord& record : tracks.records()) {
    ++kinds[std::string(record.item().kind.view())];
    ++info.availability[static_cast<std::size_t>(record.availability())];
    info.bytes = sizesAdded(info.bytes, record.item().fileSize);
  }
  const auto playlists = library.allPlaylists();
  info.playlists = playlists->size();
  for (const Playlist& playlist : *playlists) {
    ++ofPlaylists[wordOf(playlistKinds, playlist.kind)];
    info.entries += playlist.items.size();
    info.droppedEntries += playlist.unknownItems();
  }
  info.mediaKinds = ranked(ofMedia);
  info.kinds = ranked(kinds);
  info.playlistKinds = ranked(ofPlaylists);
  info.snapshotBytes = tracks.memory();
  info.notes = english(notesOn(library));
  info.searched =
      info.songs - static_cast<std::size_t>(unsearchedSongs(*items, *playlists).unlisted);
  return info;
}

void writeJson(std::ostream& out, const Info& info) {
  const auto object = [](const Counts& counts) {
    Json json = Json::object();
    for (const auto& [name, count] : counts) json[name] = count;
    return json;
  };
  const double perTrack =
      info.items ? static_cast<double>(info.anonymousBytes) / static_cast<double>(info.items) : 0;
  Json document = {{"items", info.items},
                   {"tracks", info.songs},
                   {"searched", info.searched},
                   {"mediaKinds", object(info.mediaKinds)},
                   {"kinds", object(info.kinds)},
                   {"availability",
                    {{"reachable", info.availability[1]},
                     {"cloud", info.availability[2]},
                     {"missing", info.availability[0]}}},
                   {"bytes", info.bytes},
                   {"playlists", info.playlists},
                   {"playlistKinds", object(info.playlistKinds)},
                   {"playlistEntries", info.entries},
                   {"droppedEntries", info.droppedEntries},
                   {"loadSeconds", info.seconds},
                   {"anonymousBytes", info.anonymousBytes},
                   {"anonymousBytesPerItem", perTrack},
                   {"snapshotBytes", info.snapshotBytes},
                   {"notes", info.notes}};
  if (info.lost) {
    Json& beginnings = document["missingBeginnings"] = Json::array();
    for (const auto& [folder, count] : info.lost->beginnings)
      beginnings.push_back({{"beginning", shownLocation(folder)}, {"count", count}});
    Json& suggested = document["suggestedMaps"] = Json::array();
    for (const auto& [map, finds] : info.lost->suggestions)
      suggested.push_back({{"old", shownLocation(map.from)},
                           {"new", map.to},
                           {"finds", finds},
                           {"of", info.lost->locations}});
  }
  out << dump(document, 1) << '\n';
}

void writeLost(std::ostream& out, const Lost& lost) {
  const auto places = [](std::size_t count) { return std::to_string(count) + ' '; };
  out << '\n'
      << places(lost.locations) << (lost.locations == 1 ? "file is" : "files are")
      << " not where the library says";
  if (lost.locations == 0) out << '.';
  out << '\n';
  for (const auto& [folder, count] : lost.beginnings)
    out << "  " << places(count) << "in " << printable(shownLocation(folder)) << '\n';
  for (const auto& [map, finds] : lost.suggestions)
    out << "--map '" << printable(shownLocation(map.from)) << '=' << printable(map.to) << "' finds "
        << finds << " of " << lost.locations << '\n';
  if (lost.locations > 0 && lost.suggestions.empty())
    out << "No map into that folder would find files.\n";
}

void writeText(std::ostream& out, const Info& info) {
  TextTable table({{"", TextTable::Align::left, 60}, {"", TextTable::Align::right}});
  const auto add = [&](const std::string& name, std::size_t count) {
    table.add({name, std::to_string(count)});
  };
  const auto addAll = [&](const Counts& counts) {
    for (const auto& [name, count] : counts) add("  " + (name.empty() ? "(none)" : name), count);
  };
  add("Media items", info.items);
  addAll(info.mediaKinds);
  add("Songs", info.songs);
  add("  searched for duplicates", info.searched);
  add("  with a file that is there", info.availability[1]);
  add("  in the cloud", info.availability[2]);
  add("  with no file to be found", info.availability[0]);
  table.add({"Size of the songs", TextSorter::makeSizeHumanReadable(info.bytes)});
  table.add({"Kinds of songs", ""});
  addAll(info.kinds);
  add("Playlists", info.playlists);
  addAll(info.playlistKinds);
  add("Playlist entries", info.entries);
  if (info.droppedEntries)
    add("  left out, of tracks that the library does not have", info.droppedEntries);
  std::array<char, 32> seconds{};
  std::snprintf(seconds.data(), seconds.size(), "%.3f s", info.seconds);
  table.add({"Time to load", seconds.data()});
  table.add({"Memory taken",
             TextSorter::makeSizeHumanReadable(static_cast<std::int64_t>(info.anonymousBytes))});
  table.write(out);
  for (const std::string& note : info.notes) out << printable(note) << '\n';
  if (info.lost) writeLost(out, *info.lost);
}

int countItems(Session& session, const InfoOptions& options) {
  if (!options.suggestMap.empty() && !std::filesystem::is_directory(options.suggestMap))
    throw UsageError("--suggest-map: " + options.suggestMap + " is no folder");
  const auto start = std::chrono::steady_clock::now();
  const auto library = session.open(options.reading.library);
  const auto tracks = session.snapshot(*library);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  const std::size_t memory = anonymousMemory();
  if (session.interrupted()) return session.stopped();
  Info info = collect(*library, *tracks);
  info.seconds = taken.count();
  info.anonymousBytes = memory;
  noteMissingFiles(session, *tracks);
  if (!options.suggestMap.empty()) info.lost = lostOf(session, options);
  if (options.reading.json)
    writeJson(std::cout, info);
  else
    writeText(std::cout, info);
  return 0;
}

}  // namespace

void addInfoCommand(CLI::App& app, Action& chosen) {
  auto options = std::make_shared<InfoOptions>();
  CLI::App* command = app.add_subcommand("info", "Count what the library holds");
  addLibraryOption(*command, options->reading.library);
  command
      ->add_option("--suggest-map", options->suggestMap,
                   "Look in this folder for the files that are not where the library\n"
                   "says, and tell which --map would find how many")
      ->option_text("FOLDER");
  command->add_flag("--json", options->reading.json, "Write JSON");
  setAction(*command, chosen,
            [options](Session& session) { return countItems(session, *options); });
}

}  // namespace kestrel
