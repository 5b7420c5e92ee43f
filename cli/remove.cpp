// remove: takes the tracks that are not kept out of the library, and their files to the trash.

#include <algorithm>
#include <iostream>
#include <memory>
#include <unordered_set>

#include "changes/heard_files.h"
#include "changes/plan_json.h"
#include "cli/acting.h"
#include "cli/carry.h"
#include "cli/command.h"
#include "cli/loss_output.h"
#include "cli/text_table.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

void writeText(std::ostream& out, const Plan& plan, const TrackStore& library,
               const LossLedger& lost) {
  const LossTexts alone(lost);
  TextTable tracks({{"", TextTable::Align::left},
                    {"Group", TextTable::Align::right},
                    {"Song", TextTable::Align::left, 60},
                    {"This", TextTable::Align::left, 40},
                    {"Kept", TextTable::Align::left, 40},
                    {"", TextTable::Align::left, 80}});
  std::size_t leaving = 0, moved = 0;
  for (const PlannedTrack& track : plan.tracks) {
    const bool leaves = track.heldBack.empty();
    leaving += leaves ? 1 : 0;
    const CopyTexts texts = textsOf(library, track.track);
    tracks.add({leaves ? "remove" : "stays", std::to_string(track.group), texts.song, texts.copy,
                track.keeper ? textsOf(library, *track.keeper).copy : "",
                leaves ? alone.of(track.track) : track.heldBack.english()});
  }
  tracks.write(out);
  for (const PlannedFile& file : plan.files) moved += file.heldBack.empty() ? 1 : 0;
  std::size_t replaced = 0, dropped = 0;
  for (const PlannedPlaylist& playlist : plan.playlists) {
    replaced += playlist.replacements.size();
    dropped += playlist.deleteIndexes.size();
  }
  const auto counted = [](std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + (count == 1 ? one : many);
  };
  out << counted(leaving, " track leaves", " tracks leave") << " the library; "
      << plan.tracks.size() - leaving << " held back.\n";
  if (!plan.playlists.empty())
    out << counted(replaced, " entry", " entries") << " replaced and " << dropped << " dropped in "
        << counted(plan.playlists.size(), " playlist", " playlists") << ".\n";
  if (!plan.files.empty())
    out << counted(moved, " file goes", " files go") << " to the trash, "
        << TextSorter::makeSizeHumanReadable(static_cast<std::int64_t>(bytesToFree(plan)))
        << " in all; " << plan.files.size() - moved << " held back.\n";
  writeWarnings(out, plan);
}

}  // namespace

void addRemoveCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    ActingOptions acting;
    RemovalOptions removal;
    bool keepFiles = false;
    bool withPlaylists = false;
    std::vector<std::string> carry;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "remove",
      "Take the tracks that are not kept out of the library, and their files to the trash");
  addSearchOptions(*command, options->search);
  command->add_flag("--keep-files", options->keepFiles, "Leave the files where they are");
  auto* playlists =
      command->add_flag("--with-playlists", options->withPlaylists,
                        "Put keepers into playlists first; otherwise tracks that are listed stay");
  command
      ->add_flag("--drop-repeats", options->removal.dropRepeats,
                 "Where a playlist lists the keeper already, drop the entry instead")
      ->needs(playlists);
  addCarryOption(*command, options->carry);
  addGuardOptions(*command, options->removal.guard);
  addCloudOption(*command, options->removal.guard);
  addSoundOption(*command, options->removal.guard);
  addActingOptions(*command, options->acting, "Change the library; undo takes it back");
  setAction(*command, chosen, [options](Session& session) {
    options->search.sound = options->removal.guard.onlySameSound;
    checkSearchOptions(options->search);
    options->removal.carry = carriedValues(options->carry);
    if (!options->keepFiles) needFiles(session, "remove without --keep-files");
    OpenedApplication opened(session, options->search.library);
    const Capabilities can = opened.application.capabilities();
    if (!can.deletesTracks && !can.tracksFollowFiles)
      throw UsageError(can.name + " cannot remove tracks");
    if (!can.deletesTracks && options->keepFiles)
      throw UsageError("--keep-files: tracks leave " + can.name + " with their files only");
    checkCarry(options->removal.carry, RunKind::remove, can);
    const SearchResult found = search(session, opened.application.library(), options->search);
    if (session.interrupted()) return session.stopped();
    ReplaylistSurvey survey;
    if (options->withPlaylists) survey = surveyFor(opened, found, {});
    options->removal.files = !options->keepFiles;
    // Those too that the outline does not show: they list the tracks all the same.
    Plan plan =
        opened.changes.removalPlan(rowsOf(found), !found.keeperMode, choicesOf(survey.report),
                                   survey.reasons, options->removal);
    if (options->removal.guard.onlySameSound) noteHeardFiles(plan, *found.sounds);
    const bool leaves = std::any_of(plan.tracks.begin(), plan.tracks.end(),
                                    [](const auto& track) { return track.heldBack.empty(); });
    std::unordered_set<std::uint64_t> leaving;
    for (const PlannedTrack& track : plan.tracks)
      if (track.heldBack.empty()) leaving.insert(track.track);
    const LossLedger lost = ledgerOf(found, &leaving, options->removal.carry, &session);
    const auto elsewhere = listedElsewhere(session, opened, plan);
    const Ending ending{.options = options->acting,
                        .plan = plan,
                        .found = &found,
                        .hasWork = leaves,
                        .hint = "Nothing has been removed; --apply does it.",
                        .json =
                            [&] {
                              Json result = jsonOf(plan, *opened.playlists());
                              result["lost"] = json(lost);
                              result["listedElsewhere"] = json(elsewhere);
                              return result;
                            },
                        .text =
                            [&](std::ostream& out) {
                              writeText(out, plan, *found.tracks, lost);
                              writeTotal(out, "Lost with them", lost);
                              writeCarried(out, plan, *found.tracks);
                              writeText(out, elsewhere);
                            },
                        .guard = options->removal.guard};
    return ending.finish(opened);
  });
}

}  // namespace kestrel
