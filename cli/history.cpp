// history and undo: what was changed, and taking it back.

#include <chrono>
#include <iostream>
#include <memory>

#include "cli/acting.h"
#include "cli/command.h"
#include "cli/record_output.h"
#include "cli/text_table.h"
#include "foundation/dates.h"
#include "foundation/identifiers.h"
#include "foundation/name_table.h"

namespace kestrel {
namespace {

std::string dateText(Moment moment) {
  static const DateFormatter utc("UTC");
  return utc.text(std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count());
}

/// The number of the run that a run took back; nothing where it is no undo.
std::optional<std::int64_t> undoneRun(const RunSummary& undo, const std::vector<RunSummary>& runs) {
  for (const RunSummary& run : runs)
    if (run.id == undo.undoes) return run.number;
  return std::nullopt;
}

Json json(const RunSummary& run, const std::vector<RunSummary>& runs) {
  const auto undoes = undoneRun(run, runs);
  return {{"run", run.number},
          {"kind", nameOf(run.kind)},
          {"state", wordFor(run.state)},
          {"started", dateText(run.started)},
          {"ended", run.ended ? Json(dateText(*run.ended)) : Json()},
          {"library", addressText(run.libraryUri)},
          {"undoes", undoes ? Json(*undoes) : Json()},
          {"playlists", run.playlists},
          {"files", run.files},
          {"tracks", run.tracks},
          {"values", run.values},
          {"undone", run.isUndone()}};
}

Json json(const RunRecord& run, const std::vector<RunSummary>& runs) {
  Json object = json(run.summary, runs);
  Json& playlists = object["playlists"] = Json::array();
  for (const PlaylistChange& change : run.playlists)
    playlists.push_back(
        {{"name", change.name},
         {"state", nameOf(change.state)},
         {"oldHexpid", TextSorter::decToHex(change.oldPlaylist)},
         {"newHexpid",
          change.newPlaylist ? Json(TextSorter::decToHex(*change.newPlaylist)) : Json()},
         {"folder", change.folderName},
         {"lost", change.lost},
         {"oldItems", TextSorter::batchDecToHex(change.oldEntries)},
         {"newItems", TextSorter::batchDecToHex(change.newEntries)},
         {"undone", change.undoneBy.has_value()},
         {"note", change.note}});
  Json& files = object["files"] = Json::array();
  for (const FileChange& change : run.files)
    files.push_back({{"path", change.item.originalPath},
                     {"state", nameOf(change.state)},
                     {"size", change.size},
                     {"undone", change.undoneBy.has_value()},
                     {"note", change.note}});
  Json& tracks = object["tracks"] = Json::array();
  for (const TrackChange& change : run.tracks)
    tracks.push_back({{"hexpid", TextSorter::decToHex(change.track)},
                      {"name", change.name},
                      {"state", nameOf(change.state)},
                      {"undone", change.undoneBy.has_value()}});
  Json& values = object["values"] = Json::array();
  for (const ValueChange& change : run.values) {
    if (change.leaves) continue;  // it is in the history for the way back alone
    values.push_back({{"hexpid", TextSorter::decToHex(change.track)},
                      {"name", change.name},
                      {"state", nameOf(change.state)},
                      {"gained", gainOf(change.which, change.before, change.after).english()},
                      {"undone", change.undoneBy.has_value()}});
  }
  return object;
}

constexpr NameTable<RunState, 6> stateTexts{{{RunState::running, "running"},
                                             {RunState::finished, "done"},
                                             {RunState::cancelled, "stopped half-way"},
                                             {RunState::failed, "failed, nothing changed"},
                                             {RunState::incomplete, "done in part"},
                                             {RunState::brokenOff, "broke off"}}};

std::string stateText(const RunSummary& run) {
  if (run.isUndone()) return "undone";
  if (run.undone > 0) return "undone in part";
  return std::string(nameOf(stateTexts, run.state));
}

void writeText(std::ostream& out, const std::vector<RunSummary>& runs) {
  if (runs.empty()) {
    out << "Nothing has been changed in this library.\n";
    return;
  }
  TextTable table({{"Run", TextTable::Align::right},
                   {"When", TextTable::Align::left},
                   {"What", TextTable::Align::left},
                   {"Playlists", TextTable::Align::right},
                   {"Tracks", TextTable::Align::right},
                   {"Files", TextTable::Align::right},
                   {"State", TextTable::Align::left}});
  for (const RunSummary& run : runs) {
    const auto undoes = undoneRun(run, runs);
    table.add({std::to_string(run.number), momentText(run.started),
               std::string(nameOf(run.kind)) +
                   (undoes ? " of run " + std::to_string(*undoes) : std::string()),
               std::to_string(run.playlists), std::to_string(run.tracks), std::to_string(run.files),
               stateText(run)});
  }
  table.write(out);
}

const RunSummary& runNumbered(std::int64_t number, const std::vector<RunSummary>& runs) {
  for (const RunSummary& run : runs)
    if (run.number == number) return run;
  throw UsageError("the history of this library has no run " + std::to_string(number) +
                   "; kestrel-cli history lists them");
}

constexpr NameTable<UndoState, 5> undoTexts{{{UndoState::ready, "as the run left it"},
                                             {UndoState::gone, "deleted; undoing makes it anew"},
                                             {UndoState::notDone, "was not changed by the run"},
                                             {UndoState::undone, "undone before"},
                                             {UndoState::asBefore, "as it was before the run"}}};

void writeText(std::ostream& out, const UndoCheck& check) {
  TextTable table({{"Playlist, track or file", TextTable::Align::left, 80},
                   {"Today", TextTable::Align::left, 80}});
  for (const auto* items : check.lists())
    for (const UndoItem& item : *items)
      table.add({item.name, item.state == UndoState::different
                                ? item.difference.english()
                                : std::string(nameOf(undoTexts, item.state))});
  table.write(out);
}

}  // namespace

void addHistoryCommand(CLI::App& app, Action& chosen) {
  struct Options {
    std::string library;
    std::optional<std::int64_t> run;
    bool moveAside = false;
    bool evenIfReadable = false;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("history", "List what was changed in a library");
  addLibraryOption(*command, options->library);
  command->add_option("--run", options->run, "One run, with what became of it");
  auto* moveAside =
      command->add_flag("--move-aside", options->moveAside,
                        "Move a history that cannot be read aside, so that a new one can begin");
  command
      ->add_flag("--even-if-readable", options->evenIfReadable,
                 "With --move-aside: one that can be read too; its runs cannot be undone then")
      ->needs(moveAside);
  command->add_flag("--json", options->json, "Write JSON");
  setAction(*command, chosen, [options](Session& session) {
    OpenedApplication opened(session, options->library);
    if (options->moveAside) {
      writeLines(std::cout, {"The history is now " +
                             opened.changes.moveHistoryAside(options->evenIfReadable)});
      return 0;
    }
    const auto runs = opened.changes.runs();
    if (options->run) {
      auto run = opened.changes.history().run(runNumbered(*options->run, runs).id);
      run.value().summary.number = *options->run;
      if (options->json)
        std::cout << dump(json(*run, runs), 1) << '\n';
      else
        writeText(std::cout, opened.changes.inspect(*run));
      return 0;
    }
    if (!options->json) {
      writeText(std::cout, runs);
      return 0;
    }
    Json list = Json::array();
    for (const RunSummary& run : runs) list.push_back(json(run, runs));
    std::cout << dump(list, 1) << '\n';
    return 0;
  });
}

void addUndoCommand(CLI::App& app, Action& chosen) {
  struct Options {
    std::string library;
    std::int64_t run = 0;
    std::string playlist;
    bool leaveDifferent = false;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("undo", "Take a run back");
  addLibraryOption(*command, options->library);
  command->add_option("RUN", options->run, "The run's number, as history lists it")->required();
  command->add_option("--playlist", options->playlist, "Only this playlist of it")
      ->option_text("HEXPID");
  command->add_flag("--leave-different", options->leaveDifferent,
                    "Undo the rest where something has been changed since");
  command->add_flag("--json", options->json, "Write JSON");
  setAction(*command, chosen, [options](Session& session) {
    UndoOptions undo;
    undo.leaveDifferent = options->leaveDifferent;
    if (!options->playlist.empty()) {
      undo.playlist = numberFromHex(options->playlist);
      if (!undo.playlist)
        throw UsageError("--playlist: \"" + options->playlist +
                         "\" is no hexadecimal persistent ID");
    }
    OpenedApplication opened(session, options->library);
    const std::int64_t run = runNumbered(options->run, opened.changes.runs()).id;
    const ApplyOptions going = opened.applyOptions();
    undo.progress = going.progress;
    undo.cancelled = going.cancelled;
    const UndoReport report = [&] {
      try {
        return opened.changes.undo(run, undo);
      } catch (const LaterRunError& error) {
        throw LibraryError(error.file, {}, error.problem,
                           Message::tr("Undo run %1 first: kestrel-cli undo … %1")
                               .arg(std::to_string(error.number)));
      } catch (const DifferentError& error) {
        throw LibraryError(error.file, {}, error.problem,
                           Message::verbatim("--leave-different undoes the rest."));
      }
    }();
    if (options->json)
      std::cout << dump(Json{{"run", report.run ? Json(report.number) : Json()},
                             {"problem", report.problem.english()},
                             {"outcomes", json(report.outcomes)}},
                        1)
                << '\n';
    else
      writeLines(std::cout, report.lines());
    return report.isComplete ? 0 : 1;
  });
}

}  // namespace kestrel
