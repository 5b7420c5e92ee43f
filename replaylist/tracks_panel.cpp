#include "replaylist/tracks_panel.h"

#include <algorithm>
#include <array>
#include <span>

#include "dupes/descriptor_sort.h"
#include "foundation/identifiers.h"
#include "foundation/text_helpers.h"
#include "library/process.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "replaylist/replaylist_state.h"
#include "replaylist/survey_texts.h"

namespace kestrel {
namespace {

std::string nameTimeOf(const TrackRecord& track) {
  return std::string(track.value(TrackKey::tName).text()) + " - " +
         ReplaylistControl::transformRealTime(track.value(TrackKey::realTime).number());
}

/// `prefix` and the number text, or nothing at all.
std::string numbered(std::string_view prefix, const TrackRecord& track, TrackKey key) {
  const Value number = track.value(key);
  return number.text().empty() ? std::string() : std::string(prefix).append(number.text());
}

/// The panel's plain texts; `rest` is their key without the side's first two letters.
Value panelText(const TrackRecord& track, std::string_view rest) {
  if (rest == "NameTime") return nameTimeOf(track);
  if (rest == "tkInfo") return numbered("#", track, TrackKey::tTrackNumString);
  if (rest == "dcInfo") return numbered("Disc ", track, TrackKey::tDiscNumString);
  return {};
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

}  // namespace

Value TracksPanelRow::value(std::string_view keyPath) const {
  if (keyPath == "playlistPID") return TextSorter::decToHex(playlist);
  const bool left = takePrefix(keyPath, "nonkeeper.");
  if (!left && !takePrefix(keyPath, "keeper.")) return {};
  const TrackRecord* track = left ? nonkeeper : keeper;
  if (!track) return {};
  if (takePrefix(keyPath, left ? "nk" : "kp")) return panelText(*track, keyPath);
  return track->value(keyPath);
}

TrackTexts trackTexts(const TrackRecord* track, std::int64_t rule, ShortDateTimeFormatter& dates) {
  if (!track) return {};
  return {attributeCaption(rule, *track, dates), nameTimeOf(*track),
          numbered("#", *track, TrackKey::tTrackNumString),
          numbered("Disc ", *track, TrackKey::tDiscNumString)};
}

void sortPanelRows(std::vector<TracksPanelRow>& rows) {
  constexpr std::array keys = {TrackKey::tArtist, TrackKey::tAlbum, TrackKey::tDiscNum,
                               TrackKey::tTrackNum};
  SortDescriptors descriptors;
  for (const TrackKey key : keys) {
    std::string path = "nonkeeper." + std::string(trackKeyName(key));
    if (key == TrackKey::tArtist || key == TrackKey::tAlbum)
      descriptors.push_back(std::make_unique<MySortDescriptor>(
          std::move(path), true, ComparisonSelector::localizedStandardCompare));
    else
      descriptors.push_back(std::make_unique<MyNumSortDescriptor>(std::move(path), true,
                                                                  ComparisonSelector::compare));
  }
  // By key and not by path: a path would be looked up for every row.
  arrange(rows, sortedOrder(rows.size(), descriptors, [&](std::size_t row, std::size_t column) {
            const TrackRecord* track = rows[row].nonkeeper;
            return track ? track->value(keys[column]) : Value();
          }));
}

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

void processThis() {
  ReplaylistWindowReferences& window = state().window;
  const std::int64_t rule = process().with.preferences.integer(settings::filterMatrixButton);
  const auto selected = window.outline.selectedRecords();
  std::vector<TracksPanelRow> rows;
  window.tracksPanelLeftOut = 0;
  for (const auto& record : selected) {
    const auto& pairs = record->nonKeeperKeeperPairs();
    const std::size_t taken = std::min(pairs.size(), mostPanelRows - rows.size());
    for (const KeeperPair& pair : std::span(pairs).first(taken))
      rows.push_back({record->trackInfo(pair.item), record->trackInfo(pair.keeper),
                      record->tracks(), record->playlist().persistentID, rule});
    window.tracksPanelLeftOut += pairs.size() - taken;
  }
  configureTitleFilterInfoForPlaylist(selected.size() == 1 ? selected.back()->playlist().name
                                                           : "(Multiple Playlists)");
  sortPanelRows(rows);
  window.knkArrayController.removeAll();
  window.knkArrayController.add(std::move(rows));
}

void processClear() {
  ReplaylistWindowReferences& window = state().window;
  window.tracksPanelLeftOut = 0;
  window.knkArrayController.removeAll();
  window.tracksPanelTitle.setText("");
  window.tracksPanelKeeperTitle.setText({});
}

void toggleTracksPanel() {
  Window& panel = state().window.tracksPanel;
  panel.setVisible(!panel.isVisible());
}

TrackTexts nonkeeperTexts(const TracksPanelRow& row) {
  return trackTexts(row.nonkeeper, row.rule, shortDates());
}

TrackTexts keeperTexts(const TracksPanelRow& row) {
  return trackTexts(row.keeper, row.rule, shortDates());
}

}  // namespace kestrel::ReplaylistControl
