#include "ui/tracks_panel.h"

#include <array>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "dupes/keeper_rules.h"
#include "dupes/sorting.h"
#include "foundation/dates.h"
#include "foundation/identifiers.h"
#include "foundation/text_helpers.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/replaylist_control.h"

namespace kestrel {
namespace {

constexpr int headerPoints = 12, captionPoints = 11;

const KeeperRuleInfo* infoOf(std::int64_t rule) noexcept {
  const auto known = keeperRule(rule);
  return known ? &keeperRuleInfo(*known) : nullptr;
}

Message attributeText(TrackKey key, const TrackRecord& track, ShortDateTimeFormatter& dates) {
  const Value value = track.value(key);
  if (value.isDate()) return Message::verbatim(dates.text(value.date().seconds));
  if (key == TrackKey::tBit) return Message::tr("%1 kbps").arg(value.number());
  if (value.isNumber()) return Message::tr("%1").arg(value.number());
  return Message::verbatim(std::string(value.text()));
}

std::string nameTimeOf(const TrackRecord& track) {
  return std::string(track.value(TrackKey::tName).text()) + " - " +
         ReplaylistControl::transformRealTime(track.value(TrackKey::realTime).number());
}

/// The number text in `pattern`, or nothing at all.
std::string numbered(const char* pattern, const TrackRecord& track, TrackKey key,
                     MessageText inWords = inEnglish) {
  Message number = wordedText(track, key);
  return number.empty() ? std::string() : inWords(Message::tr(pattern).arg(std::move(number)));
}

constexpr const char* trackPattern = Message::literal("#%1");
constexpr const char* discPattern = Message::literal("Disc %1");

/// The panel's plain texts; `rest` is their key without the side's first two letters.
Value panelText(const TrackRecord& track, std::string_view rest) {
  if (rest == "NameTime") return nameTimeOf(track);
  if (rest == "tkInfo") return numbered(trackPattern, track, TrackKey::tTrackNumString);
  if (rest == "dcInfo") return numbered(discPattern, track, TrackKey::tDiscNumString);
  return {};
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

}  // namespace

StyledText replaylistHeader(std::int64_t rule, MessageText inWords) {
  const KeeperRuleInfo* info = infoOf(rule);
  const std::string parts[] = {
      inWords(Message::tr("Each of the playlists below contain at least one non-Keeper track as "
                          "currently Filtered by ")),
      info ? inWords(Message::tr(info->name)) : std::string(),
      inWords(Message::tr("To display a selected playlist's Non-Keeper tracks, click ")),
      inWords(Message::tr("Show Tracks.")),
      inWords(Message::tr("Click ")),
      inWords(Message::tr("OK")),
      inWords(Message::tr(" to re-populate selected playlists with Keeper tracks."))};
  StyledText header;
  header.text.append(parts[0]).append(parts[1]).append(".\r\r").append(parts[2]).append(parts[3]);
  header.text.append(" ").append(parts[4]).append(parts[5]).append(parts[6]);

  std::size_t start[std::size(parts)] = {};  // of each part, were there nothing between them
  for (std::size_t i = 1; i < std::size(parts); ++i)
    start[i] = start[i - 1] + utf16Length(parts[i - 1]);
  header.setPoints(headerPoints);
  header.makeBold(start[1], utf16Length(parts[1]));
  // Three characters stand between the parts here, of which two are counted: see the header file.
  header.makeBold(start[3] + 2, utf16Length(parts[3]));
  header.makeBold(start[5] + 4, utf16Length(parts[5]));
  return header;
}

StyledText keepersTitle(std::int64_t rule, MessageText inWords) {
  const std::string keepers = inWords(Message::tr("Keepers"));
  const KeeperRuleInfo* info = infoOf(rule);
  StyledText title{keepers + ": ", {}};
  if (info && info->rule == KeeperRule::shortestFileName)
    title.text += inWords(Message::tr("Shortest Filename"));
  else if (info && info->rule == KeeperRule::singleArbitrary)
    title.text += inWords(Message::tr("Arbitrary"));
  else if (info)
    title.text += inWords(Message::tr(info->name));
  return title.makeBold(0, utf16Length(keepers)).centre();
}

StyledText attributeCaption(std::int64_t rule, const TrackRecord& track,
                            ShortDateTimeFormatter& dates, MessageText inWords) {
  const KeeperRuleInfo* info = infoOf(rule);
  if (!info) return {};
  if (info->rule == KeeperRule::singleArbitrary) return {inWords(Message::tr("(Arbitrary)")), {}};
  if (info->rule == KeeperRule::shortestFileName)
    return {inWords(Message::tr("(Shortest Filename)")), {}};
  const KeeperAttribute& attribute = keeperAttribute(info->rule);
  const std::string caption = inWords(Message::tr(attribute.name));
  StyledText text{caption + ": " + inWords(attributeText(attribute.shown, track, dates)), {}};
  return text.setPoints(captionPoints).makeBold(0, utf16Length(caption));
}

Value TracksPanelRow::value(std::string_view keyPath) const {
  if (keyPath == "playlistPID") return TextSorter::decToHex(playlist);
  const bool left = takePrefix(keyPath, "nonkeeper.");
  if (!left && !takePrefix(keyPath, "keeper.")) return {};
  const TrackRecord* track = left ? nonkeeper : keeper;
  if (!track) return {};
  if (takePrefix(keyPath, left ? "nk" : "kp")) return panelText(*track, keyPath);
  return track->value(keyPath);
}

TrackTexts trackTexts(const TrackRecord* track, std::int64_t rule, ShortDateTimeFormatter& dates,
                      MessageText inWords) {
  if (!track) return {};
  return {attributeCaption(rule, *track, dates, inWords), nameTimeOf(*track),
          numbered(trackPattern, *track, TrackKey::tTrackNumString, inWords),
          numbered(discPattern, *track, TrackKey::tDiscNumString, inWords)};
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
  // A track stands in many playlists: tracks are compared, and the rows follow them.
  std::unordered_map<const TrackRecord*, std::uint32_t> numbers;
  std::vector<const TrackRecord*> tracks;
  std::vector<std::uint32_t> places;
  places.reserve(rows.size());
  for (const TracksPanelRow& row : rows) {
    const auto [found, isNew] =
        numbers.try_emplace(row.nonkeeper, static_cast<std::uint32_t>(tracks.size()));
    if (isNew) tracks.push_back(row.nonkeeper);
    places.push_back(found->second);
  }
  // By key and not by path: a path would be looked up for every track.
  const std::vector<std::uint32_t> placesOfTracks =
      sortedPlaces(tracks.size(), descriptors, [&](std::size_t track, std::size_t column) {
        return tracks[track] ? tracks[track]->value(keys[column]) : Value();
      });
  for (std::uint32_t& place : places) place = placesOfTracks[place];
  std::vector<std::uint32_t> order(rows.size());
  std::iota(order.begin(), order.end(), 0U);
  sortByPlaces(order, places, static_cast<std::uint32_t>(tracks.size()));
  arrange(rows, order);
}

}  // namespace kestrel

namespace kestrel::ReplaylistControl {
namespace {

std::int64_t ruleInForce() {
  return process().with.preferences.integer(settings::filterMatrixButton);
}

}  // namespace

StyledText configureMeTitle(MessageText inWords) {
  return replaylistHeader(ruleInForce(), inWords);
}

void configureTitleFilterInfoForPlaylist(Message name) {
  ReplaylistWindowReferences& window = state().window;
  window.tracksPanelTitle.setText(std::move(name));
  window.tracksPanelKeeperTitle.setText(configureKeepersTitle());
}

StyledText configureKeepersTitle(MessageText inWords) {
  return keepersTitle(ruleInForce(), inWords);
}

StyledText configureFilterInfo(const TrackRecord& track) {
  return attributeCaption(ruleInForce(), track, shortDates());
}

std::string transformRealTime(std::int64_t milliseconds) {
  return TextSorter::makeTimeHumanReadable(milliseconds);
}

void processThis() {
  ReplaylistWindowReferences& window = state().window;
  const std::int64_t rule = ruleInForce();
  const auto selected = window.outline.selectedRecords();
  std::vector<TracksPanelRow> rows;
  for (const auto& record : selected)
    for (const KeeperPair& pair : record->nonKeeperKeeperPairs())
      rows.push_back({record->trackInfo(pair.item), record->trackInfo(pair.keeper),
                      record->tracks(), record->playlist().persistentID, rule});
  configureTitleFilterInfoForPlaylist(selected.size() == 1
                                          ? Message::verbatim(selected.back()->playlist().name)
                                          : Message::tr("(Multiple Playlists)"));
  sortPanelRows(rows);
  window.knkArrayController.removeAll();
  window.knkArrayController.add(std::move(rows));
}

void processClear() {
  ReplaylistWindowReferences& window = state().window;
  window.knkArrayController.removeAll();
  window.tracksPanelTitle.setText({});
  window.tracksPanelKeeperTitle.setText({});
}

void toggleTracksPanel() {
  Window& panel = state().window.tracksPanel;
  panel.setVisible(!panel.isVisible());
}

TrackTexts nonkeeperTexts(const TracksPanelRow& row, MessageText inWords) {
  return trackTexts(row.nonkeeper, row.rule, shortDates(), inWords);
}

TrackTexts keeperTexts(const TracksPanelRow& row, MessageText inWords) {
  return trackTexts(row.keeper, row.rule, shortDates(), inWords);
}

}  // namespace kestrel::ReplaylistControl
