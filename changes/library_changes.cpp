#include "changes/library_changes.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "changes/carrying.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/unread_playlists.h"
#include "platform/files.h"

namespace kestrel {
namespace {

Message reasonText(SkippedGroup::Reason reason) {
  switch (reason) {
    case SkippedGroup::Reason::missingFile:
      return Message::tr("a file of the group is missing");
    case SkippedGroup::Reason::noKeeper:
      return Message::tr("no track of the group is kept");
    case SkippedGroup::Reason::severalKeepers:
      return Message::tr("more than one track of the group is kept");
  }
  return {};
}

/// Affected playlists that are neither shown nor chosen.
template <typename Found, typename Choice>
void addHidden(const Found& found, std::span<const Choice> choices, std::vector<LeftOut>& leftOut) {
  std::unordered_set<std::uint64_t> chosen;
  for (const Choice& choice : choices) chosen.insert(choice.playlist);
  for (std::size_t i = 0; i < found.affected.size(); ++i)
    if (const Playlist& playlist = found.affected[i]->playlist();
        !found.shown[i] && !chosen.contains(playlist.persistentID))
      leftOut.push_back(
          {LeftOut::What::playlist, TextSorter::decToHex(playlist.persistentID), playlist.name,
           Message::tr("the outline cannot show what is in a folder within a folder")});
}

}  // namespace

std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey) {
  std::vector<ReplaylistChoice> choices;
  for (std::size_t i = 0; i < survey.playlists.affected.size(); ++i) {
    const ReplaylistRecord& record = *survey.playlists.affected[i];
    ReplaylistChoice& choice =
        choices.emplace_back(record.playlist().persistentID, survey.playlists.shown[i]);
    for (const KeeperPair& pair : record.nonKeeperKeeperPairs())
      choice.keepers.try_emplace(pair.item, pair.keeper);
  }
  return choices;
}

std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey,
                                        std::span<const PlaylistReplacements> confirmed) {
  std::unordered_set<std::uint64_t> chosen;
  for (const PlaylistReplacements& one : confirmed)
    chosen.insert(one.record->playlist().persistentID);
  std::vector<ReplaylistChoice> choices = choicesOf(survey);
  std::erase_if(choices, [&](const auto& choice) { return !chosen.contains(choice.playlist); });
  return choices;
}

std::vector<LeftOut> leftOutOf(const SurveyReport& survey,
                               std::span<const ReplaylistChoice> choices) {
  std::vector<LeftOut> leftOut;
  for (const SkippedGroup& group : survey.skippedGroups)
    leftOut.push_back(
        {LeftOut::What::group, std::to_string(group.tGroupID), {}, reasonText(group.reason)});
  addHidden(survey.playlists, choices, leftOut);
  return leftOut;
}

std::vector<CleanUpChoice> choicesOf(const RepeatScan& scan) {
  std::vector<CleanUpChoice> choices;
  for (std::size_t i = 0; i < scan.affected.size(); ++i)
    choices.push_back({scan.affected[i]->playlist().persistentID, scan.shown[i],
                       scan.affected[i]->deleteIndexes(),
                       fingerprintOf(scan.affected[i]->playlist().items)});
  return choices;
}

std::vector<LeftOut> leftOutOf(const RepeatScan& scan, std::span<const CleanUpChoice> choices) {
  std::vector<LeftOut> leftOut;
  addHidden(scan, choices, leftOut);
  return leftOut;
}

namespace {

/// With the playlists that may list what goes, and cannot be asked.
std::vector<LeftOut> withUnread(std::vector<LeftOut> leftOut, MediaLibrary& library) {
  auto* const lists = dynamic_cast<UnreadPlaylists*>(&library);
  if (!lists) return leftOut;
  for (const std::string& path : lists->unreadPlaylists())
    leftOut.push_back({LeftOut::What::playlist,
                       {},
                       path,
                       Message::tr("it cannot be read, so that what it lists is not known")});
  return leftOut;
}

}  // namespace

namespace {

/// Playlists that the application fills, and that list what is replaced in others.
void addAutomatic(std::span<const Playlist> playlists, std::span<const ReplaylistChoice> choices,
                  std::vector<LeftOut>& leftOut) {
  std::unordered_set<std::uint64_t> replaced;
  for (const ReplaylistChoice& choice : choices)
    for (const auto& [track, keeper] : choice.keepers) replaced.insert(track);
  for (const Playlist& playlist : playlists)
    if (playlist.kind == PlaylistKind::smart && playlist.distinguishedKind == 0 &&
        std::any_of(playlist.items.begin(), playlist.items.end(),
                    [&](std::uint64_t track) { return replaced.contains(track); }))
      leftOut.push_back({LeftOut::What::automatic, TextSorter::decToHex(playlist.persistentID),
                         playlist.name, Message::tr("it fills itself")});
}

}  // namespace

LibraryChanges::LibraryChanges(MusicApplication& application, FileService& files,
                               const Clock& clock)
    : application_(application),
      files_(files),
      clock_(clock),
      trash_(clock, files.applicationSupportDirectory()) {}

Plan LibraryChanges::finished(Plan plan, std::vector<LeftOut> leftOut) {
  plan.leftOut.insert(plan.leftOut.end(), std::make_move_iterator(leftOut.begin()),
                      std::make_move_iterator(leftOut.end()));
  std::erase_if(plan.playlists, [&](const PlannedPlaylist& planned) {
    Message reason = application_.reasonNotToChange(planned.playlist);
    if (reason.empty()) return false;
    plan.leftOut.push_back({LeftOut::What::playlist, TextSorter::decToHex(planned.playlist),
                            planned.name, std::move(reason)});
    return true;
  });
  plan.library = application_.library().identity();
  plan.made = clock_.now();
  return plan;
}

Plan LibraryChanges::replaylistPlan(const SurveyReport& survey,
                                    std::span<const ReplaylistChoice> choices,
                                    const KeeperReasons& reasons) {
  const Capabilities can = application_.capabilities();
  const auto playlists = application_.library().allPlaylists();
  std::vector<LeftOut> leftOut = withUnread(leftOutOf(survey, choices), application_.library());
  addAutomatic(*playlists, choices, leftOut);
  return finished(planReplaylist(*playlists, choices, reasons, can.editsInPlace, can.keepsRepeats),
                  std::move(leftOut));
}

Plan LibraryChanges::cleanUpPlan(const RepeatScan& scan, std::span<const CleanUpChoice> choices) {
  return finished(planCleanUp(*application_.library().allPlaylists(), choices),
                  leftOutOf(scan, choices));
}

Plan LibraryChanges::additionPlan(std::uint64_t playlist, std::vector<std::uint64_t> tracks) {
  return finished(planAddToPlaylist(*application_.library().allPlaylists(), playlist,
                                    std::move(tracks), application_.capabilities().keepsRepeats));
}

Plan LibraryChanges::additionPlan(std::span<const std::string> paths) {
  return finished(planAddToLibrary(paths));
}

Plan LibraryChanges::trashPlan(std::span<const ResultTrack* const> rows, bool keeperValue,
                               const GuardOptions& options,
                               std::optional<std::span<const ResultTrack* const>> only,
                               TrackValueSet carry) {
  Plan plan = planTrash(rowsThatCount(rows, keeperValue), keeperValue, application_.library(),
                        files_, options, only);
  planCarrying(plan, carry, application_);
  return finished(std::move(plan), withUnread({}, application_.library()));
}

Plan LibraryChanges::removalPlan(std::span<const ResultTrack* const> rows, bool keeperValue,
                                 std::span<const ReplaylistChoice> choices,
                                 const KeeperReasons& reasons, const RemovalOptions& options) {
  Plan plan = planRemoval(rowsThatCount(rows, keeperValue), keeperValue, application_.library(),
                          files_, choices, reasons, options);
  planCarrying(plan, options.carry, application_);
  return finished(std::move(plan), withUnread({}, application_.library()));
}

ApplyReport LibraryChanges::apply(const Plan& plan, ApplyOptions options) {
  const auto withFilesGone = [&](ApplyReport report) {
    std::vector<std::string> paths;
    for (const Outcome& outcome : report.outcomes)
      if (outcome.what == Outcome::What::file && outcome.kind == Outcome::Kind::done)
        paths.push_back(outcome.name);
    application_.filesMoved(paths, options.cancelled);
    return report;
  };
  switch (plan.kind) {
    case RunKind::trash:
      options.guard.cloudReplaces = true;  // the track stays, and can be had again
      if (!plan.playlists.empty())
        return withFilesGone(
            applyTrashAndRepair(plan, application_, trash_, files_, history(), options));
      return withFilesGone(applyTrash(plan, application_.library(), trash_, files_, history(),
                                      options, &application_));
    case RunKind::addToLibrary:
      return applyAdditions(plan, application_, files_, history(), options);
    case RunKind::remove:
      return withFilesGone(applyRemoval(plan, application_, trash_, files_, history(), options));
    default:
      return applyPlan(plan, application_, history(), options);
  }
}

std::string LibraryChanges::historyPath() {
  const auto folder = files_.applicationSupportDirectory();
  if (!folder)
    throw LibraryError(
        "history", {}, Message::tr("there is no place to keep it"),
        Message::tr("Set HOME, or XDG_DATA_HOME to a folder in which Kestrel may keep its data."));
  files_.createDirectories(*folder + "/Kestrel");
  return History::pathIn(*folder + "/Kestrel/");
}

History& LibraryChanges::history() {
  if (!history_) {
    history_.emplace(historyPath(), clock_);
    settleBrokenRuns(*history_, application_, files_);
    clearBrokenRuns(*history_, trash_);
  }
  return *history_;
}

std::string LibraryChanges::moveHistoryAside(bool evenIfReadable) {
  return History::moveAside(historyPath(), clock_, evenIfReadable);
}

std::vector<RunSummary> LibraryChanges::runs() {
  const LibraryIdentity identity = application_.library().identity();
  return history().runs(&identity);
}

UndoCheck LibraryChanges::inspect(const RunRecord& run) {
  application_.library().reload();
  return inspectRun(run, application_.library(), files_, &application_);
}

UndoReport LibraryChanges::undo(std::int64_t run, const UndoOptions& options) {
  return undoRun(run, application_, files_, history(), &trash_, options);
}

}  // namespace kestrel
