// plan: what replaylist, cleanup or trash would do, as a file for apply.

#include <iostream>
#include <memory>

#include "changes/heard_files.h"
#include "changes/plan_json.h"
#include "cli/acting.h"
#include "cli/carry.h"
#include "cli/command.h"
#include "cli/loss_output.h"

namespace kestrel {

void addPlanCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    std::vector<std::string> only;
    bool cleanup = false;
    bool trash = false;
    GuardOptions guard;
    std::vector<std::string> carry;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "plan", "Write what replaylist, cleanup or trash would do, as JSON for apply");
  addSearchOptions(*command, options->search);
  addOnlyOption(*command, options->only);
  auto* cleanup = command->add_flag("--cleanup", options->cleanup,
                                    "Of a clean-up; the options of the search do not count");
  auto* trash = command->add_flag("--trash", options->trash, "Of moving files to the trash")
                    ->excludes(cleanup);
  addCarryOption(*command, options->carry)->needs(trash);
  addGuardOptions(*command, options->guard);
  addSoundOption(*command, options->guard)->needs(trash);
  setAction(*command, chosen, [options](Session& session) {
    options->search.sound = options->guard.onlySameSound;
    checkSearchOptions(options->search);
    const TrackValueSet carry = carriedValues(options->carry);
    OpenedApplication opened(session, options->search.library);
    checkCarry(carry, RunKind::trash, opened.application.capabilities());
    Plan plan;
    Json scope = "library", lost;
    if (options->cleanup) {
      const RepeatScan scan = findRepeats(opened.playlists());
      plan = opened.changes.cleanUpPlan(scan, choicesOf(scan));
    } else {
      const SearchResult found = search(session, opened.application.library(), options->search);
      if (session.interrupted()) return session.stopped();
      scope = found.scope();
      lost = json(ledgerOf(found, nullptr, carry, &session));
      plan = options->trash ? opened.changes.trashPlan(rowsOf(found), !found.keeperMode,
                                                       options->guard, {}, carry)
                            : surveyFor(opened, found, options->only).plan;
      if (options->guard.onlySameSound) noteHeardFiles(plan, *found.sounds);
    }
    Json written = jsonOf(plan, *opened.playlists());
    written["scope"] = std::move(scope);
    if (!lost.is_null()) written["lost"] = std::move(lost);
    std::cout << dump(written, 1) << '\n';
    return 0;
  });
}

}  // namespace kestrel
