#include "cli/acting.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "cli/command.h"
#include "cli/filtered_output.h"
#include "foundation/identifiers.h"
#include "foundation/name_table.h"
#include "foundation/utf8.h"
#include "musicapp/applications.h"

namespace kestrel {

OpenedApplication::OpenedApplication(Session& session, const std::string& path)
    : session_(session),
      opened_([&] {
        ApplicationServices services = session.services(path);
        services.revealer = &revealer_;
        auto opened = openApplication(path, services);
        session.progress.clear();
        return opened;
      }()),
      application(*opened_),
      changes(application, session.files, session.clock) {}

std::shared_ptr<const std::vector<Playlist>> OpenedApplication::playlists() {
  return application.library().allPlaylists();
}

ApplyOptions OpenedApplication::applyOptions(const GuardOptions& guard) {
  ApplyOptions options;
  options.guard = guard;
  options.cancelled = [this] { return session_.interrupted(); };
  options.progress = [this](const ApplyProgress& progress) {
    if (progress.done == progress.total) return session_.progress.clear();
    session_.progress.show(std::to_string(progress.done + 1) + " of " +
                           std::to_string(progress.total) + ": " + progress.name);
  };
  return options;
}

void addOnlyOption(CLI::App& command, std::vector<std::string>& only) {
  const auto add = [&only](const std::vector<std::string>& names) {
    only.insert(only.end(), names.begin(), names.end());
  };
  auto* first = command.add_option_function<std::vector<std::string>>(
      "--only", add, "Only these playlists, by name or hexadecimal ID");
  first->option_text("NAME-or-HEXPID ...")->allow_extra_args(false);
  command
      .add_option_function<std::vector<std::string>>("PLAYLIST", add, "More playlists for --only")
      ->needs(first);
}

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

CLI::Option* addSoundOption(CLI::App& command, GuardOptions& options) {
  return command.add_flag("--only-same-sound", options.onlySameSound,
                          "Hold back what is not known to sound the same as the copy that is kept");
}

namespace {

/// Whether --only names a playlist.
bool isNamed(const ReplaylistRecord& record, const std::string& name) {
  return record.hexpid() == name || record.playlist().name == name;
}

/// `survey` is empty where nothing was found.
void checkChosen(const PlaylistSurvey& survey, const std::vector<std::string>& only) {
  for (const std::string& name : only) {
    const auto found = std::find_if(survey.affected.begin(), survey.affected.end(),
                                    [&](const auto& record) { return isNamed(*record, name); });
    if (found == survey.affected.end())
      throw UsageError("--only: no affected playlist is called \"" + name +
                       "\" or has this ID; without --only all are listed");
  }
}

/// The playlists of the outline, from top to bottom: those that are wanted, or all.
void collect(const std::vector<ReplaylistRow>& rows, const std::vector<std::string>& only,
             SharedRecords<ReplaylistRecord>& chosen) {
  for (const auto& [record, children] : rows) {
    const auto isIt = [&](const std::string& name) { return isNamed(*record, name); };
    if (!record->isFolder() && (only.empty() || std::any_of(only.begin(), only.end(), isIt)))
      chosen.push_back(record);
    if (children) collect(*children, only, chosen);
  }
}

}  // namespace

std::vector<const ResultTrack*> rowsOf(const SearchResult& found) {
  std::vector<const ResultTrack*> rows;
  for (const FoundGroup& group : found.groups)
    rows.insert(rows.end(), group.tracks.begin(), group.tracks.end());
  return rows;
}

ReplaylistSurvey surveyFor(OpenedApplication& opened, const SearchResult& found,
                           const std::vector<std::string>& only) {
  ReplaylistSurvey survey;
  std::vector<SurveyRow> rows;
  for (const FoundGroup& group : found.groups)
    for (const ResultTrack* track : group.tracks) {
      rows.emplace_back(*track);
      if (!found.isKeeper(*track))
        survey.reasons.try_emplace(track->record->item().persistentID, group.reason);
    }
  const bool keeperValue = !found.keeperMode;
  survey.report = surveyReplaylist(
      preparedRows(rows, keeperValue), keeperValue, [&] { return opened.playlists(); },
      rows.empty() ? nullptr : found.groups.front().tracks.front()->store);
  checkChosen(survey.report.playlists, only);
  if (survey.report.outcome == SurveyOutcome::found) {
    SharedRecords<ReplaylistRecord> chosen;
    const PlaylistSurvey& playlists = survey.report.playlists;
    collect(*playlists.outline, only, chosen);
    for (std::size_t i = 0; i < playlists.affected.size(); ++i)
      if (!playlists.shown[i]) collect({{playlists.affected[i], std::nullopt}}, only, chosen);
    survey.chosen = replacementsIn(chosen, *survey.report.keepers);
  }
  survey.plan = opened.changes.replaylistPlan(
      survey.report, choicesOf(survey.report, survey.chosen), survey.reasons);
  return survey;
}

void needFiles(const Session& session, const std::string& command) {
  if (session.withoutFiles)
    throw UsageError(
        command +
        " moves files, and with --without-files it is not known whether the files that "
        "are kept are there; say where they are with --map");
}

void addActingOptions(CLI::App& command, ActingOptions& options, const std::string& applyHelp) {
  command.add_flag("--json", options.json, "Write JSON");
  command.add_flag("--apply", options.apply, applyHelp);
}

int Ending::finish(OpenedApplication& opened) const {
  Json result;
  if (options.json) {
    result = json();
    if (found) result["scope"] = found->scope();
  } else {
    if (found) found->writeScope(std::cout);
    text(std::cout);
  }
  int status = 0;
  if (options.apply && hasWork)
    status = tell(std::cout, opened.changes.apply(plan, opened.applyOptions(guard)),
                  options.json ? &result : nullptr);
  else if (!options.json && hasWork)
    std::cout << hint << '\n';
  if (options.json) std::cout << dump(result, 1) << '\n';
  return status;
}

namespace {

std::vector<std::string> filesThatGo(const Plan& plan) {
  std::vector<std::string> files;
  for (const PlannedFile& file : plan.files)
    if (file.heldBack.empty()) files.push_back(file.path);
  return files;
}

}  // namespace

std::vector<ListedElsewhere> listedHere(OpenedApplication& opened, const Plan& plan) {
  MediaLibrary& library = opened.application.library();
  const OtherLibrary own{addressText(library.identity().uri), library.allMediaItems(),
                         library.allPlaylists()};
  return listedElsewhere({&own, 1}, filesThatGo(plan));
}

std::vector<ListedElsewhere> listedElsewhere(Session& session, OpenedApplication& opened,
                                             const Plan& plan) {
  const std::vector<std::string> files = filesThatGo(plan);
  if (files.empty()) return {};
  session.progress.show("Reading the other libraries here ...");
  const auto others = otherLibraries(opened.application.library().identity(), session.services({}));
  session.progress.clear();
  return listedElsewhere(others, files);
}

Json json(const std::vector<ListedElsewhere>& listed) {
  Json list = Json::array();
  for (const ListedElsewhere& one : listed)
    list.push_back(
        {{"library", one.address}, {"playlist", one.playlist}, {"entries", one.entries}});
  return list;
}

void writeText(std::ostream& out, const std::vector<ListedElsewhere>& listed) {
  if (listed.empty()) return;
  out << "Playlists of other libraries here list files that go; they are not changed:\n";
  for (const ListedElsewhere& one : listed)
    out << "  \"" << printable(one.playlist) << "\" of " << printable(one.address) << ": "
        << one.entries << (one.entries == 1 ? " entry" : " entries") << '\n';
}

namespace {

constexpr NameTable<Outcome::Kind, 5> outcomeNames{{{Outcome::Kind::done, "done"},
                                                    {Outcome::Kind::asBefore, "asBefore"},
                                                    {Outcome::Kind::skipped, "skipped"},
                                                    {Outcome::Kind::failed, "failed"},
                                                    {Outcome::Kind::notReached, "notReached"}}};
constexpr NameTable<Outcome::What, 4> whatNames{{{Outcome::What::playlist, "playlist"},
                                                 {Outcome::What::track, "track"},
                                                 {Outcome::What::file, "file"},
                                                 {Outcome::What::values, "values"}}};

}  // namespace

std::string_view wordFor(RunState state) noexcept {
  return state == RunState::brokenOff ? "brokenOff" : nameOf(state);
}

Json json(const std::vector<Outcome>& outcomes) {
  Json list = Json::array();
  for (const Outcome& outcome : outcomes)
    list.push_back({{"what", nameOf(whatNames, outcome.what)},
                    {"id", TextSorter::decToHex(outcome.id)},
                    {"newID", outcome.newID ? Json(TextSorter::decToHex(outcome.newID)) : Json()},
                    {"name", outcome.name},
                    {"result", nameOf(outcomeNames, outcome.kind)},
                    {"changes", outcome.changes},
                    {"reason", outcome.reason.english()}});
  return list;
}

void writeLines(std::ostream& out, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) out << printable(line) << '\n';
}

void writeWarnings(std::ostream& out, const Plan& plan) {
  for (const Warning& warning : warningsOf(plan))
    // There is no outline here that would not show a playlist.
    if (warning.kind != Warning::Kind::notShown && warning.kind != Warning::Kind::tracksHeldBack)
      writeLines(out, {sentence(warning).english()});
}

int tell(std::ostream& out, const ApplyReport& report, Json* result) {
  if (result)
    (*result)["report"] = {{"run", report.run ? Json(report.number) : Json()},
                           {"state", wordFor(report.state)},
                           {"problem", report.problem.english()},
                           {"outcomes", json(report.outcomes)}};
  else
    writeLines(out, report.lines());
  if (const std::string problem = report.problem.english(); !problem.empty()) complain(problem);
  return report.state == RunState::finished && report.count(Outcome::Kind::failed) == 0 ? 0 : 1;
}

}  // namespace kestrel
