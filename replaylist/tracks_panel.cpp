#include "replaylist/tracks_panel.h"

#include <array>

#include "dupes/descriptor_sort.h"
#include "foundation/identifiers.h"
#include "foundation/text_helpers.h"
#include "library/process.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "replaylist/replaylist_state.h"
#include "replaylist/survey_texts.h"
#include "replaylist/tracks_panel_order.h"

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

/// The places of the non-keepers' texts under a key.
std::vector<std::uint32_t> placesOf(std::span<const TracksPanelRow> rows, TrackKey key) {
  // Texts of these keys are borrowed from the tracks' store, which the rows keep alive.
  std::vector<std::string_view> texts;
  texts.reserve(rows.size());
  for (const TracksPanelRow& row : rows)
    texts.push_back(row.nonkeeper ? row.nonkeeper->value(key).text() : std::string_view());
  return localizedStandardPlaces(texts);
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
  constexpr std::array textKeys = {TrackKey::tArtist, TrackKey::tAlbum};
  constexpr std::array numberKeys = {TrackKey::tDiscNum, TrackKey::tTrackNum};
  const std::array places = {placesOf(rows, textKeys[0]), placesOf(rows, textKeys[1])};
  // The text columns are compared by their places; what is empty has none and so stays empty.
  SortDescriptors descriptors;
  const auto add = [&]<typename Descriptor>(TrackKey key) {
    descriptors.push_back(std::make_unique<Descriptor>(
        "nonkeeper." + std::string(trackKeyName(key)), true, ComparisonSelector::compare));
  };
  for (const TrackKey key : textKeys) add.template operator()<MySortDescriptor>(key);
  for (const TrackKey key : numberKeys) add.template operator()<MyNumSortDescriptor>(key);
  const auto valueOf = [&](std::size_t row, std::size_t column) -> Value {
    if (column < textKeys.size()) {
      const std::uint32_t place = places[column][row];
      return place ? Value(std::int64_t{place}) : Value();
    }
    const TrackRecord* track = rows[row].nonkeeper;
    return track ? track->value(numberKeys[column - textKeys.size()]) : Value();
  };
  arrange(rows, sortedOrder(rows.size(), descriptors, valueOf));
}

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

void processThis() {
  ReplaylistWindowReferences& window = state().window;
  const std::int64_t rule = process().with.preferences.integer(settings::filterMatrixButton);
  const auto selected = window.outline.selectedRecords();
  std::vector<TracksPanelRow> rows;
  for (const auto& record : selected)
    for (const KeeperPair& pair : record->nonKeeperKeeperPairs())
      rows.push_back({record->trackInfo(pair.item), record->trackInfo(pair.keeper),
                      record->tracks(), record->playlist().persistentID, rule});
  configureTitleFilterInfoForPlaylist(selected.size() == 1 ? selected.back()->playlist().name
                                                           : "(Multiple Playlists)");
  sortPanelRows(rows);
  window.knkArrayController.removeAll();
  window.knkArrayController.add(std::move(rows));
}

void processClear() {
  ReplaylistWindowReferences& window = state().window;
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
