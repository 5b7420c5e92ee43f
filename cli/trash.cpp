// trash: moves the files of the tracks that are not kept to the trash.

#include <iostream>
#include <memory>

#include "changes/plan_json.h"
#include "changes/trash_guard.h"
#include "cli/plans.h"
#include "cli/report_output.h"
#include "cli/text_table.h"
#include "foundation/text_helpers.h"
#include "replaylist/survey_groups.h"

namespace kestrel {
namespace {

void writeText(std::ostream& out, const Plan& plan) {
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
               file.path.empty() ? file.name : file.path, file.heldBack.english()});
  }
  table.write(out);
  out << going << (going == 1 ? " file goes" : " files go") << " to the trash, "
      << TextSorter::makeSizeHumanReadable(static_cast<std::int64_t>(bytesToFree(plan)))
      << " in all; " << plan.files.size() - going << " held back.\n";
}

}  // namespace

void addGuardOptions(CLI::App& command, GuardOptions& options) {
  command.add_flag("--other-files", options.otherFiles,
                   "Let files go to the trash too that cannot be read as audio");
  command.add_flag("--outside-media-folder", options.outsideMediaFolder,
                   "Let files go to the trash too that lie outside the library's media folder");
}

void addCloudOption(CLI::App& command, GuardOptions& options) {
  command.add_flag("--cloud-replaces", options.cloudReplaces,
                   "Let tracks go with their files whose kept copy is only in the cloud");
}

std::vector<const ResultTrack*> rowsThatCount(const SearchResult& found) {
  std::vector<const ResultTrack*> rows, counting;
  std::vector<SurveyRow> tracks;
  for (const FoundGroup& group : found.groups)
    for (const ResultTrack* row : group.tracks) {
      rows.push_back(row);
      tracks.emplace_back(*row);
    }
  for (const std::uint32_t row : rowsThatCount(tracks, !found.keeperMode))
    counting.push_back(rows[row]);
  return counting;
}

Plan trashPlan(OpenedApplication& opened, const SearchResult& found, const GuardOptions& guard,
               Session& session) {
  const std::vector<const ResultTrack*> rows = rowsThatCount(found);
  Plan plan =
      planTrash(rows, !found.keeperMode, opened.application.library(), session.files, guard);
  plan.library = opened.identity();
  plan.made = session.clock.now();
  return plan;
}

void addTrashCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    ActingOptions acting;
    GuardOptions guard;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command =
      app.add_subcommand("trash", "Move the files of the tracks that are not kept to the trash");
  addSearchOptions(*command, options->search);
  addGuardOptions(*command, options->guard);
  addActingOptions(*command, options->acting, "Move them; undo moves them back");
  command->callback([options, &chosen] {
    chosen = [options](Session& session) {
      checkSearchOptions(options->search);
      OpenedApplication opened(session, options->search.library);
      const SearchResult found = search(session, opened.application.library(), options->search);
      if (session.interrupted()) return session.stopped();
      const Plan plan = trashPlan(opened, found, options->guard, session);
      Json result;
      if (options->acting.json) {
        result = jsonOf(plan);
        result["scope"] = found.scope();
      } else {
        found.writeScope(std::cout);
        writeText(std::cout, plan);
      }
      const auto act = [&] {
        ApplyOptions apply = opened.applyOptions();
        apply.guard = options->guard;
        return applyTrash(plan, opened.identity(), opened.application.library(), opened.trash(),
                          session.files, opened.history(), apply);
      };
      return finish(options->acting, std::move(result), act,
                    "Nothing has been moved; --apply does it.");
    };
  });
}

}  // namespace kestrel
