// kestrel-bench JOB FILE [ARGUMENT]: does one job and prints its figures as JSON, for bench/run.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/memory_watch.h"
#include "bench/other_parsers.h"
#include "dupes/find_dupes.h"
#include "dupes/keeper_pass.h"
#include "dupes/rule_comparison.h"
#include "foundation/identifiers.h"
#include "musicapp/applications.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/random.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/rem_dupes_controller.h"
#include "ui/replaylist_control.h"

namespace kestrel::bench {
namespace {

using Figures = std::map<std::string, double>;

double secondsOf(const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The files of this machine, of which none is looked for: measures Kestrel and not the disk.
class WithoutReachability : public FileService {
 public:
  [[nodiscard]] bool reachable(const char*) const noexcept override { return true; }
  [[nodiscard]] std::optional<FileStatus> status(const std::string& path) const override {
    return files_.status(path);
  }
  [[nodiscard]] std::string readAll(const std::string& path) const override {
    return files_.readAll(path);
  }
  [[nodiscard]] MappedFile map(const std::string& path) const override { return files_.map(path); }
  void writeAtomically(const std::string&, std::string_view) override {}
  void createDirectories(const std::string&) override {}
  bool remove(const std::string&) override { return false; }
  void rename(const std::string&, const std::string&) override {}
  [[nodiscard]] std::vector<std::string> list(const std::string&) const override { return {}; }
  [[nodiscard]] std::optional<std::string> applicationSupportDirectory() const override {
    return {};
  }
  [[nodiscard]] std::optional<std::string> configurationDirectory() const override { return {}; }
  [[nodiscard]] std::optional<std::string> stateDirectory() const override { return {}; }
  [[nodiscard]] std::optional<std::string> cacheDirectory() const override { return {}; }

 private:
  SystemFiles files_;
};

class Bench {
 public:
  explicit Bench(const std::string& path)
      : process({.openLibrary =
                     [this, path] {
                       if (!library_) library_ = openLibrary(path, {files_, log_, random_, clock_});
                       return library_;
                     },
                 .preferences = preferences,
                 .mainQueue = mainQueue_,
                 .log = log_,
                 .clock = clock_,
                 .random = random_,
                 .files = files_}) {}

 private:
  WithoutReachability files_;
  InlineQueue mainQueue_;
  NullLog log_;
  SystemClock clock_;
  SeededRandom random_{1};
  std::shared_ptr<MediaLibrary> library_;  ///< opened once, as the programs do

 public:
  Preferences preferences;
  Process process;
};

Figures load(const std::string& path) {
  const MemoryWatch watch;
  Bench bench(path);
  Figures figures;
  figures["seconds"] = secondsOf([] { TextSorter::buildLibrary(); });
  if (!TextSorter::myLibrary()) throw std::runtime_error(path + " cannot be read");
  figures["tracks"] = static_cast<double>(TextSorter::myLibrary()->allMediaItems()->size());
  figures["anonymous"] = static_cast<double>(anonymousMemory());
  figures["peak"] = static_cast<double>(watch.peak());
  return figures;
}

void chooseWholeLibrary(Bench& bench) {
  for (const Playlist& playlist : *TextSorter::storedPlaylistArray())
    if (playlist.isMaster)
      bench.preferences.set(settings::selectedPlaylistPid, decimalText(playlist.persistentID));
  bench.preferences.set(settings::filterMatrixButton, std::int64_t{2});
}

void chooseKeepers(Bench& bench) {
  std::vector<std::string> numbers;
  std::int32_t last = 0;
  for (const ResultTrack& row : bench.process.textSorter.window.bigArrayController.arrangedRows()) {
    if (row.dupeSort != last) numbers.push_back(std::to_string(row.tGroupID));
    last = row.dupeSort;
  }
  TextSorter::filterArray(numbers);
}

/// A playlist document with the library's first tracks.
void writePlaylistDocument(const std::string& path, MediaLibrary& library, std::size_t entries) {
  std::ofstream out(path);
  out << "<plist version=\"1.0\"><dict><key>Tracks</key><dict>";
  std::string items;
  std::size_t id = 0;
  library.allMediaItems()->forEach([&](const MediaItem& item) {
    if (id == entries) return;
    const std::string number = std::to_string(++id);
    out << "<key>" << number << "</key><dict><key>Track ID</key><integer>" << number
        << "</integer><key>Persistent ID</key><string>" << TextSorter::decToHex(item.persistentID)
        << "</string></dict>\n";
    items += "<dict><key>Track ID</key><integer>" + number + "</integer></dict>\n";
  });
  out << "</dict><key>Playlists</key><array><dict><key>Name</key><string>Imported</string>"
         "<key>Playlist Items</key><array>"
      << items << "</array></dict></array></dict></plist>\n";
}

/// Search by name and artist, then the keeper pass. `tolerance` is "aproxValue", or below 0.
Figures search(const std::string& path, long tolerance) {
  Bench bench(path);
  TextSorter::buildLibrary();
  chooseWholeLibrary(bench);
  bench.preferences.set(settings::criteriaCBTime, tolerance >= 0);
  bench.preferences.set(settings::useAproxValue, tolerance >= 0);
  bench.preferences.set(settings::aproxValue, std::int64_t{tolerance});
  const std::vector<std::string> criteria{"tName", "tArtist"};
  Figures figures;
  std::string found;
  figures["search"] = secondsOf([&] { found = TextSorter::getDupeGroupsWithCriteria(criteria); });
  figures["found"] = std::stod(found);
  figures["keepers"] = secondsOf([&] { chooseKeepers(bench); });
  figures["seconds"] = figures["search"] + figures["keepers"];
  return figures;
}

/// The median of an odd or even number of figures.
double median(std::vector<double> figures) {
  std::sort(figures.begin(), figures.end());
  return (figures[(figures.size() - 1) / 2] + figures[figures.size() / 2]) / 2;
}

/// How many times as long as the plain search step one takes that passes over all it can, `pairs`
/// times in turn. Without what windows do with the rows.
Figures looser(const std::string& path, std::size_t pairs) {
  const Bench bench(path);
  TextSorter::buildLibrary();
  const auto store = TextSorter::groomedTracksDictionary();
  const auto playlists = TextSorter::storedPlaylistArray();
  const auto master = std::find_if(playlists->begin(), playlists->end(),
                                   [](const Playlist& playlist) { return playlist.isMaster; });
  if (!store || master == playlists->end()) throw std::runtime_error(path + " has no songs");
  LooseSet all = 0;
  for (const LooseInfo& info : loosenings()) all |= bitOf(info.loose);
  NullLog log;
  const auto seconds = [&](LooseSet loose) {
    const std::vector<std::string> criteria{"tName", "tArtist"};
    DupeRows found;
    return secondsOf([&] {
      found = findDupes(store, master->items, criteria, {false, 0, loose}, true, log,
                        [] { return false; });
    });
  };
  seconds(all);  // makes the table of letters
  std::vector<double> plain, loose, ratios;
  for (std::size_t i = 0; i < pairs; ++i) {
    plain.push_back(seconds(0));
    loose.push_back(seconds(all));
    ratios.push_back(loose.back() / plain.back());
  }
  return {{"ratio", median(ratios)},
          {"least", *std::min_element(ratios.begin(), ratios.end())},
          {"most", *std::max_element(ratios.begin(), ratios.end())},
          {"plain", median(plain)},
          {"seconds", median(loose)}};
}

/// What every other rule would do with the groups of a search.
Figures rules(const std::string& path) {
  const Bench bench(path);
  TextSorter::buildLibrary();
  const auto store = TextSorter::groomedTracksDictionary();
  const auto playlists = TextSorter::storedPlaylistArray();
  const std::vector<std::string> criteria{"tName", "tArtist"};
  NullLog log;
  DupeRows found;
  for (const Playlist& playlist : *playlists)
    if (playlist.isMaster)
      found = findDupes(store, playlist.items, criteria, {}, true, log, [] { return false; });
  std::vector<ResultTrack*> rows;
  for (ResultTrack& row : found.rows) rows.push_back(&row);
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row]->tGroupID; });
  Figures figures;
  FilterSettings settings;
  settings.keeper.facts = std::make_shared<const KeeperFacts>(store, playlists);
  settings.ruleNumber = 2;
  settings.rule = std::to_string(settings.ruleNumber);
  SeededRandom random(1);
  setKeepers(rows, groups.numbers(), settings, false, random,
             [](auto, auto, const GroupDecision&) {});
  const std::vector<const ResultTrack*> readable(rows.begin(), rows.end());
  figures["seconds"] = secondsOf([&] {
    compareRules(
        readable, groups, everyRule(), settings, *settings.keeper.facts,
        [](const ResultTrack& row) { return row.tCheckbox; }, [](std::int32_t) { return false; },
        [] { return false; });
  });
  figures["groups"] = static_cast<double>(groups.numbers().size());
  return figures;
}

/// A library that is changed by commands.
struct Changing {
  explicit Changing(const std::string& path)
      : application(openApplication(path, {files, log, random, clock})) {}
  std::uint64_t run(const Command& command) {
    const CommandResult result = application->run(command);
    if (result.failed()) throw std::runtime_error(result.failure->message.english());
    return result.playlist.value_or(0);
  }
  SystemFiles files;
  NullLog log;
  SystemClock clock;
  SeededRandom random{1};
  std::unique_ptr<MusicApplication> application;
};

/// What changing a library costs, on a document that may be changed: the scan of a clean-up and the
/// survey of a replaylist, then commands in one batch, then making them durable.
Figures act(const std::string& path) {
  Bench bench(path);
  TextSorter::buildLibrary();
  chooseWholeLibrary(bench);
  TextSorter::getDupeGroupsWithCriteria(std::vector<std::string>{"tName", "tArtist"});
  chooseKeepers(bench);
  Figures figures;
  figures["scan"] = secondsOf([] { RemDupesController::beginRemDupes(); });
  figures["survey"] = secondsOf([] { ReplaylistControl::beginReplaylist(true); });

  Changing changing(path);
  MusicApplication& application = *changing.application;
  const auto& affected = RemDupesController::state().lastScan.affected;
  if (affected.size() < 2) throw std::runtime_error(path + " has too few playlists with repeats");
  const auto deleteRepeats = [&](const RemDupesRecord& record) {
    const auto positions = record.deleteIndexes();
    changing.run(command::DeleteEntries{record.playlist().persistentID,
                                        {positions.rbegin(), positions.rend()}});
  };
  const auto batch = application.beginBatch();
  figures["first change"] = secondsOf([&] { deleteRepeats(*affected[0]); });
  figures["delete"] = secondsOf([&] { deleteRepeats(*affected[1]); });

  const std::string document = path + ".playlist.xml";
  writePlaylistDocument(document, application.library(), 10'000);
  figures["import"] = secondsOf([&] { changing.run(command::AddFile{document}); });
  std::remove(document.c_str());
  figures["commit"] = secondsOf([&] { batch->commit(); });
  figures["seconds"] = figures["scan"] + figures["survey"] + figures["first change"] +
                       figures["delete"] + figures["import"] + figures["commit"];
  return figures;
}

/// What it takes to change entries of `count` playlists of one name, in place.
Figures namesakes(const std::string& path, std::size_t count) {
  Changing changing(path);
  MusicApplication& application = *changing.application;
  std::vector<std::uint64_t> tracks, playlists;
  application.library().allMediaItems()->forEach(
      [&](const MediaItem& item) { tracks.push_back(item.persistentID); });
  const auto batch = application.beginBatch();
  for (std::size_t i = 0; i < count; ++i) {
    playlists.push_back(changing.run(command::CreatePlaylist{"Same"}));
    changing.run(command::SetEntries{playlists.back(), {tracks.at(0), tracks.at(1)}});
  }
  Figures figures;
  figures["seconds"] = secondsOf([&] {
    for (const std::uint64_t playlist : playlists)
      changing.run(command::ReplaceEntries{playlist, {{2, tracks.at(2)}}});
    batch->commit();
  });
  return figures;
}

int run(const std::vector<std::string>& arguments) {
  const std::string& job = arguments.at(0);
  const std::string& path = arguments.at(1);
  Figures figures;
  if (job == "load")
    figures = load(path);
  else if (job == "search")
    figures = search(path, arguments.size() > 2 ? std::stol(arguments[2]) : -1);
  else if (job == "looser")
    figures = looser(path, std::stoul(arguments.at(2)));
  else if (job == "rules")
    figures = rules(path);
  else if (job == "act")
    figures = act(path);
  else if (job == "namesakes")
    figures = namesakes(path, std::stoul(arguments.at(2)));
  else if (job == "dom")
    figures["seconds"] = domParseSeconds(path);
  else if (job == "sax")
    figures["seconds"] = saxParseSeconds(path);
  else
    throw std::runtime_error("no such job: " + job);
  const char* separator = "{";
  for (const auto& [name, value] : figures) {
    std::cout << separator << '"' << name << "\":" << value;
    separator = ",";
  }
  std::cout << "}\n";
  return 0;
}

}  // namespace
}  // namespace kestrel::bench

int main(int argc, char** argv) {
  std::cout.precision(12);
  try {
    return kestrel::bench::run(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& error) {
    std::cerr << "kestrel-bench: " << error.what() << '\n';
    return 1;
  }
}
