// trash: moves the files of the tracks that are not kept to the trash.

#include <iostream>
#include <memory>
#include <unordered_set>

#include "changes/heard_files.h"
#include "changes/plan_json.h"
#include "changes/report.h"
#include "cli/acting.h"
#include "cli/carry.h"
#include "cli/command.h"
#include "cli/loss_output.h"
#include "cli/text_table.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

void writeText(std::ostream& out, const Plan& plan, const LossLedger& lost) {
  const LossTexts alone(lost);
  TextTable table({{"", TextTable::Align::left},
                   {"Size", TextTable::Align::right},
                   {"File", TextTable::Align::left, 200},
                   {"", TextTable::Align::left, 80}});
  std::size_t going = 0;
  for (const PlannedFile& file : plan.files) {
    const bool goes = file.heldBack.empty();
    going += goes ? 1 : 0;
    table.add({goes ? "trash" : "stays",
               goes ? TextSorter::makeSizeHumanReadable(static_cast<std::int64_t>(file.size)) : "",
               file.path.empty() ? file.name : file.path,
               goes ? alone.of(file.track) : file.heldBack.english()});
  }
  table.write(out);
  out << going << (going == 1 ? " file goes" : " files go") << " to the trash, "
      << TextSorter::makeSizeHumanReadable(static_cast<std::int64_t>(bytesToFree(plan)))
      << " in all; " << plan.files.size() - going << " held back.\n";
  // The others are in the table.
  for (const Warning& warning : warningsOf(plan))
    if (warning.kind == Warning::Kind::playlistLeftOut)
      writeLines(out, {sentence(warning).english()});
}

void writeListedHere(std::ostream& out, const std::vector<ListedElsewhere>& listed) {
  if (listed.empty()) return;
  out << "Playlists of this library list files that go; replaylist puts what is kept in their "
         "place:\n";
  for (const ListedElsewhere& one : listed)
    out << "  \"" << printable(one.playlist) << "\": " << one.entries
        << (one.entries == 1 ? " entry" : " entries") << '\n';
}

}  // namespace

void addTrashCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    ActingOptions acting;
    GuardOptions guard;
    std::vector<std::string> carry;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command =
      app.add_subcommand("trash", "Move the files of the tracks that are not kept to the trash");
  addSearchOptions(*command, options->search);
  addCarryOption(*command, options->carry);
  addGuardOptions(*command, options->guard);
  addSoundOption(*command, options->guard);
  addActingOptions(*command, options->acting, "Move them; undo moves them back");
  setAction(*command, chosen, [options](Session& session) {
    options->search.sound = options->guard.onlySameSound;
    checkSearchOptions(options->search);
    const TrackValueSet carry = carriedValues(options->carry);
    needFiles(session, "trash");
    OpenedApplication opened(session, options->search.library);
    checkCarry(carry, RunKind::trash, opened.application.capabilities());
    const SearchResult found = search(session, opened.application.library(), options->search);
    if (session.interrupted()) return session.stopped();
    Plan plan =
        opened.changes.trashPlan(rowsOf(found), !found.keeperMode, options->guard, {}, carry);
    if (options->guard.onlySameSound) noteHeardFiles(plan, *found.sounds);
    std::unordered_set<std::uint64_t> leaving;
    for (const PlannedFile& file : plan.files) {
      if (!file.heldBack.empty()) continue;
      leaving.insert(file.track);
      leaving.insert(file.otherTracks.begin(), file.otherTracks.end());
    }
    const LossLedger lost = ledgerOf(found, &leaving, carry, &session);
    const Capabilities can = opened.application.capabilities();
    const char* total =
        can.tracksFollowFiles || can.tracksAreFiles ? "Lost with them" : "What only those have";
    const auto here = listedHere(opened, plan), elsewhere = listedElsewhere(session, opened, plan);
    const Ending ending{.options = options->acting,
                        .plan = plan,
                        .found = &found,
                        .hasWork = true,
                        .hint = "Nothing has been moved; --apply does it.",
                        .json =
                            [&] {
                              Json result = jsonOf(plan);
                              result["lost"] = json(lost);
                              result["listedHere"] = json(here);
                              result["listedElsewhere"] = json(elsewhere);
                              return result;
                            },
                        .text =
                            [&](std::ostream& out) {
                              writeText(out, plan, lost);
                              writeTotal(out, total, lost);
                              writeCarried(out, plan, *found.tracks);
                              writeListedHere(out, here);
                              writeText(out, elsewhere);
                            },
                        .guard = options->guard};
    return ending.finish(opened);
  });
}

}  // namespace kestrel
