#include "ui/replaylist_control.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "foundation/identifiers.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel::ReplaylistControl {
namespace {

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
  postToWindow<ReplaylistState>([](ReplaylistWindowReferences& window) {
    window.progressStatus.setText(Message::tr("Checking groups..."));
    window.progressSpinner.startAnimation();
    window.header.setText(configureMeTitle());
  });
}

void showSeveralKeepers() {
  postToWindow<ReplaylistState>([](ReplaylistWindowReferences& window) {
    window.progressSpinner.stopAnimation();
    window.progressStatus.setText({});
    window.alert.show(TextSorter::alertWithMessage(
        Message::tr("One or more Dupe Groups contain more than one Keeper track."),
        Message::tr("OK"), std::nullopt, std::nullopt,
        Message::tr("Make sure only one track per Dupe Group is designated as a Keeper.")));
  });
}

void showSorting() {
  postToWindow<ReplaylistState>([](ReplaylistWindowReferences& window) {
    window.progressStatus.setText(Message::tr("Sorting playlists..."));
    window.progressSpinner.startAnimation();
  });
}

void showNoResults() {
  postToWindow<ReplaylistState>([](ReplaylistWindowReferences& window) {
    window.progressStatus.setText(Message::tr("No results."));
    window.progressSpinner.stopAnimation();
  });
}

void showOutline(std::shared_ptr<const std::vector<ReplaylistRow>> content) {
  postToWindow<ReplaylistState>([content = std::move(content)](ReplaylistWindowReferences& window) {
    window.outline.setContent(content);
    window.outline.expandAll();
    window.progressSpinner.stopAnimation();
    window.progressStatus.setText({});
  });
}

void survey(const PreparedRows& rows) {
  ReplaylistState& kept = state();
  showChecking();
  kept.report = {};
  const auto playlists = [] {
    logLine("OK TO PROCEED...");
    showSorting();
    return freshPlaylists(storedLib(), process().with.log);
  };
  kept.report =
      surveyReplaylist(rows, keeperValue(), playlists, TextSorter::groomedTracksDictionary());
  if (kept.report.outcome == SurveyOutcome::severalKeepers) return showSeveralKeepers();
  logLine("OK5");
  logLine("THE USER PLAYLIST'S COUNT: " + std::to_string(kept.report.playlists.affected.size()));
  if (kept.report.outcome == SurveyOutcome::noResults) return showNoResults();
  kept.found = kept.report.playlists;
  showOutline(kept.found.outline);
}

}  // namespace

ReplaylistState& state() { return process().state<ReplaylistState>(); }

void beginReplaylist(bool useBig) {
  logLine("BEGIN REPLAYLIST");
  const MainWindowReferences& window = process().textSorter.window;
  const auto& table = useBig ? window.bigArrayController : window.lilArrayController;
  runInBackground([rows = PreparedRows{sourceRows(table), {}}] { survey(rows); }, state().failure);
}

void beginReplaylist(std::vector<SurveyRow> rows) {
  logLine("BEGIN REPLAYLIST");
  runInBackground([rows = std::move(rows)] { survey(preparedRows(rows, keeperValue())); },
                  state().failure);
}

const SurveyReport& report() { return state().report; }

std::vector<PlaylistReplacements> clickedOK() {
  ReplaylistState& kept = state();
  postToWindow<ReplaylistState>([](ReplaylistWindowReferences& window) {
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

  kept.confirmed = kept.report.keepers;
  const std::vector<std::uint64_t>& all = kept.allNonKeeperTrackIDs = returnAllNonKeepersSet();
  logLine("PIDS of All Non-Keepers, " +
          joined([&](std::size_t i) { return TextSorter::decToHex(all[i]); }, all.size()));
  logLine("PAST INITS");
  logLine("NOW HOW 'BOUT IT - MAIN PLAYLIST LOOP");
  auto replacements = replacementsIn(selected, *kept.confirmed);
  logLine("+ + +  F I N  + + +");
  return replacements;
}

std::vector<std::uint64_t> returnAllNonKeepersSet() { return dbidDictionary().allNonKeepers(); }

void doubleClickedAction() {
  const auto selected = state().window.outline.selectedRecords();
  if (!selected.empty()) revealInBackground(selected.front()->hexpid(), state().failure);
}

const KeeperTable& dbidDictionary() { return *state().report.keepers; }
const std::vector<std::uint64_t>& allNonKeeperTrackIDs() { return state().allNonKeeperTrackIDs; }
const std::vector<ReplaylistRow>& storedPlaylistArray() { return *state().found.outline; }
const SharedRecords<ReplaylistRecord>& formattedPlaylists() { return state().found.affected; }
const SharedRecords<ReplaylistRecord>& storedJustFolders() {
  return state().report.playlists.justFolders;
}
const SharedRecords<ReplaylistRecord>& childPlaylists() { return state().found.childPlaylists; }

std::shared_ptr<MediaLibrary> storedLib() {
  std::shared_ptr<MediaLibrary>& library = state().storedLib;
  if (!library) {
    try {
      if (const auto& open = process().with.openLibrary) library = open();
    } catch (const std::exception& error) {
      process().with.log.line(error.what());
    }
  }
  return library;
}

}  // namespace kestrel::ReplaylistControl
