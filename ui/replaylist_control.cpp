#include "ui/replaylist_control.h"

#include <algorithm>
#include <utility>

#include "foundation/identifiers.h"
#include "musicapp/requests.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/background.h"
#include "ui/process.h"
#include "ui/replacing.h"
#include "ui/snapshot.h"
#include "ui/survey_texts.h"

namespace kestrel::ReplaylistControl {
namespace {

/// A task of the main queue that changes the replaylist window.
template <typename Change>
void postToWindow(Change change) {
  process().with.mainQueue.post([change = std::move(change)] { change(state().window); });
}

void logLine(std::string_view text) { process().with.log.line(text); }

/// A line that lists some thousand IDs says nothing that its first ones do not.
constexpr std::size_t mostLogged = 1000;

template <typename Texts>
std::string joined(const Texts& texts, std::size_t count) {
  std::string out = "(";
  for (std::size_t i = 0; i < std::min(count, mostLogged); ++i)
    out.append(i ? ", " : "").append(texts(i));
  if (count > mostLogged) out += ", ... of " + std::to_string(count);
  return out + ")";
}

/// The selected rows, or all when none is selected, in table order.
std::vector<SurveyRow> sourceRows(const ArrayController<ResultTrack>& table) {
  const auto arranged = table.arrangedRows();
  if (table.selectedCount() == 0) return {arranged.begin(), arranged.end()};
  std::vector<SurveyRow> rows;
  rows.reserve(table.selectedCount());
  for (const std::size_t position : table.selection()) rows.emplace_back(arranged[position]);
  return rows;
}

/// A tick marks keepers, or in the other mode what is to be acted on.
bool keeperValue() { return !process().with.preferences.boolean(settings::keeperMode); }

void showChecking() {
  postToWindow([](ReplaylistWindowReferences& window) {
    window.progressStatus.setText(Message::tr("Checking groups..."));
    window.progressSpinner.startAnimation();
    window.header.setText(configureMeTitle());
  });
}

void showSeveralKeepers() {
  postToWindow([](ReplaylistWindowReferences& window) {
    window.progressSpinner.stopAnimation();
    window.progressStatus.setText({});
    window.alert.show(TextSorter::alertWithMessage(
        Message::tr("One or more Dupe Groups contain more than one Keeper track."),
        Message::tr("OK"), std::nullopt, std::nullopt,
        Message::tr("Make sure only one track per Dupe Group is designated as a Keeper.")));
  });
}

void showSorting() {
  postToWindow([](ReplaylistWindowReferences& window) {
    window.progressStatus.setText(Message::tr("Sorting playlists..."));
    window.progressSpinner.startAnimation();
  });
}

void showNoResults() {
  postToWindow([](ReplaylistWindowReferences& window) {
    window.progressStatus.setText(Message::tr("No results."));
    window.progressSpinner.stopAnimation();
  });
}

void showOutline(std::shared_ptr<const std::vector<ReplaylistRow>> content) {
  postToWindow([content = std::move(content)](ReplaylistWindowReferences& window) {
    window.outline.setContent(content);
    window.outline.expandAll();
    window.progressSpinner.stopAnimation();
    window.progressStatus.setText({});
  });
}

void survey(std::span<const SurveyRow> rows, const std::vector<SkippedGroup>& leftOut = {}) {
  ReplaylistState& kept = state();
  showChecking();
  kept.storedJustFolders.clear();
  kept.dbidDictionary = {};
  kept.report = {};
  GroupSurvey groups = surveyGroups(rows, keeperValue());
  kept.report.skippedGroups = leftOut;
  kept.report.skippedGroups.insert(kept.report.skippedGroups.end(), groups.skipped.begin(),
                                   groups.skipped.end());
  if (groups.severalKeepers) {
    kept.report.severalKeepers = groups.severalKeepers;
    kept.report.outcome = SurveyOutcome::severalKeepers;
    showSeveralKeepers();
    return;
  }
  logLine("OK TO PROCEED...");
  showSorting();
  kept.dbidDictionary = std::move(groups.keepers);
  kept.report.playlists =
      surveyPlaylists(freshPlaylists(storedLib(), process().with.log), kept.dbidDictionary,
                      TextSorter::groomedTracksDictionary());
  const PlaylistSurvey& found = kept.report.playlists;
  logLine("OK5");
  logLine("THE USER PLAYLIST'S COUNT: " + std::to_string(found.affected.size()));
  if (found.affected.empty()) {
    kept.report.outcome = SurveyOutcome::noResults;
    showNoResults();
    return;
  }
  kept.storedJustFolders = found.justFolders;
  kept.formattedPlaylists = found.affected;
  kept.childPlaylists = found.childPlaylists;
  kept.storedPlaylistArray = found.outline;
  kept.report.outcome = SurveyOutcome::found;
  showOutline(found.outline);
}

}  // namespace

ReplaylistState& state() { return process().state<ReplaylistState>(); }

ShortDateTimeFormatter& shortDates() {
  auto& dates = state().dates;
  if (!dates) dates = std::make_unique<ShortDateTimeFormatter>();
  return *dates;
}

void beginReplaylist(bool useBig) {
  logLine("BEGIN REPLAYLIST");
  const MainWindowReferences& window = process().textSorter.window;
  runInBackground(
      [rows = std::make_shared<const std::vector<SurveyRow>>(sourceRows(
           useBig ? window.bigArrayController : window.lilArrayController))] { survey(*rows); },
      state().failure);
}

void beginReplaylist(std::vector<SurveyRow> rows) {
  logLine("BEGIN REPLAYLIST");
  runInBackground(
      [rows = std::make_shared<const std::vector<SurveyRow>>(std::move(rows))] {
        const PreparedRows prepared = preparedRows(*rows, keeperValue());
        survey(prepared.rows, prepared.leftOut);
      },
      state().failure);
}

const SurveyReport& report() { return state().report; }

std::vector<PlaylistReplacements> clickedOK() {
  ReplaylistState& kept = state();
  postToWindow([](ReplaylistWindowReferences& window) {
    window.outline.setEnabled(false);
    window.okButton.setEnabled(false);
    window.cancelButton.setEnabled(false);
    window.progressSpinner.startAnimation();
  });
  const auto selected = kept.window.outline.selectedRecords();
  const std::vector<IndexPath>& paths = kept.window.outline.selection();
  logLine("selectedPlaylistPIDs: " +
          joined([&](std::size_t i) { return selected[i]->hexpid(); }, selected.size()));
  const auto pathText = [&](std::size_t i) {
    std::string text;
    for (const std::size_t position : paths[i])
      text.append(text.empty() ? "" : " - ").append(std::to_string(position));
    return text;
  };
  logLine("selIndexPaths: " + joined(pathText, paths.size()));

  std::vector<std::uint64_t>& all = kept.allNonKeeperTrackIDs = returnAllNonKeepersSet();
  kept.allNonKeeperTrackIDsIndex.reset(all.size());
  for (const std::uint64_t track : all) kept.allNonKeeperTrackIDsIndex.insert(track, 0);
  logLine("PIDS of All Non-Keepers, " +
          joined([&](std::size_t i) { return TextSorter::decToHex(all[i]); }, all.size()));
  logLine("PAST INITS");
  logLine("NOW HOW 'BOUT IT - MAIN PLAYLIST LOOP");

  std::vector<PlaylistReplacements> result;
  IdMap places, seen;
  for (const auto& record : selected) {
    auto pairs = keeperPairs(record->playlist().items, kept.dbidDictionary, seen);
    if (pairs.empty()) continue;
    // Of playlists that share an ID in a damaged library the last one counts.
    const std::uint64_t id = record->playlist().persistentID;
    if (places.insert(id, static_cast<std::uint32_t>(result.size())))
      result.push_back({record, std::move(pairs)});
    else
      result[*places.find(id)] = {record, std::move(pairs)};
  }
  logLine("+ + +  F I N  + + +");
  return result;
}

std::optional<std::string> processAPid(std::string_view hexpid) {
  const ReplaylistState& kept = state();
  const auto track = numberFromHex(hexpid);
  if (!track || !kept.allNonKeeperTrackIDsIndex.find(*track)) return std::nullopt;
  const auto keeper = kept.dbidDictionary.keeperOf(*track);
  return keeper ? std::optional(TextSorter::decToHex(*keeper)) : std::nullopt;
}

std::vector<std::uint64_t> returnAllNonKeepersSet() {
  return state().dbidDictionary.allNonKeepers();
}

void doubleClickedAction() {
  const auto selected = state().window.outline.selectedRecords();
  if (selected.empty()) return;
  // Behind what else asks the application something, which takes one question at a time.
  runInBackground(
      [pid = selected.front()->hexpid()] {
        const Collaborators& with = process().with;
        request::revealPlaylist(with.application, with.log, pid);
      },
      state().failure);
}

const KeeperTable& dbidDictionary() { return state().dbidDictionary; }
const std::vector<std::uint64_t>& allNonKeeperTrackIDs() { return state().allNonKeeperTrackIDs; }
const std::vector<ReplaylistRow>& storedPlaylistArray() { return *state().storedPlaylistArray; }
const SharedRecords<ReplaylistRecord>& formattedPlaylists() { return state().formattedPlaylists; }
const SharedRecords<ReplaylistRecord>& storedJustFolders() { return state().storedJustFolders; }
const SharedRecords<ReplaylistRecord>& childPlaylists() { return state().childPlaylists; }

std::vector<ReplaylistRow> getFolders(std::string_view hexpid) {
  return openFolder(state().childPlaylists, hexpid);
}

void containerIDsLoop(const SharedRecords<ReplaylistRecord>&,
                      const SharedRecords<ReplaylistRecord>&) {}

std::string decToHex(std::optional<std::uint64_t> number) {
  return TextSorter::decToHex(number.value_or(0));
}

std::vector<std::string> batchDecToHex(std::span<const std::uint64_t> numbers) {
  return TextSorter::batchDecToHex(numbers);
}

}  // namespace kestrel::ReplaylistControl
