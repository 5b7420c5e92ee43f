#include "replaylist/survey_texts.h"

#include <array>

#include "dupes/keeper_rules.h"
#include "foundation/dates.h"
#include "foundation/text_helpers.h"
#include "library/process.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "replaylist/replaylist_state.h"

namespace kestrel {
namespace {

constexpr std::int64_t shortestFileName = 10, singleArbitrary = 11;
constexpr int headerPoints = 12, captionPoints = 11;

struct Attribute {
  std::string_view caption;
  TrackKey key;
};

/// By rule, from 1. Not the keys by which the rules choose, but those that people read.
constexpr std::array<Attribute, 15> attributes = {{
    {"Date Added", TrackKey::tAddDate},
    {"Plays", TrackKey::tPlayCount},
    {"Last Played", TrackKey::tPlayDate},
    {"Bit Rate", TrackKey::tBit},
    {"Location", TrackKey::tLoc},
    {"Date Added", TrackKey::tAddDate},
    {"Plays", TrackKey::tPlayCount},
    {"Last Played", TrackKey::tPlayDate},
    {"Bit Rate", TrackKey::tBit},
    {"File Name", TrackKey::tFileName},
    {"Single Arbitrary", TrackKey::tName},
    {"Date Modified", TrackKey::tModDate},
    {"Date Modified", TrackKey::tModDate},
    {"Size", TrackKey::tSize},
    {"Size", TrackKey::tSize},
}};

const Attribute* attributeOf(std::int64_t rule) noexcept {
  return keeperRule(rule) ? &attributes[static_cast<std::size_t>(rule) - 1] : nullptr;
}

std::string attributeText(const Attribute& attribute, const TrackRecord& track,
                          ShortDateTimeFormatter& dates) {
  const Value value = track.value(attribute.key);
  if (value.isDate()) return dates.text(value.date().seconds);
  if (value.isNumber())
    return std::to_string(value.number()) + (attribute.key == TrackKey::tBit ? " kbps" : "");
  return std::string(value.text());
}

}  // namespace

std::string_view ruleTitleCaption(std::int64_t rule) noexcept {
  const auto known = keeperRule(rule);
  return known ? keeperRuleInfo(*known).name : std::string_view();
}

std::string_view ruleAttributeCaption(std::int64_t rule) noexcept {
  const Attribute* attribute = attributeOf(rule);
  return attribute ? attribute->caption : std::string_view();
}

StyledText replaylistHeader(std::int64_t rule) {
  const std::string_view caption = ruleTitleCaption(rule);
  const std::string_view parts[] = {
      "Each of the playlists below contain at least one non-Keeper track as currently Filtered by ",
      caption,
      "To display a selected playlist's Non-Keeper tracks, click ",
      "Show Tracks.",
      "Click ",
      "OK",
      " to re-populate selected playlists with Keeper tracks."};
  StyledText header;
  header.text.append(parts[0]).append(parts[1]).append(".\r\r").append(parts[2]).append(parts[3]);
  header.text.append(" ").append(parts[4]).append(parts[5]).append(parts[6]);

  std::size_t start[std::size(parts)] = {};  // of each part, were there nothing between them
  for (std::size_t i = 1; i < std::size(parts); ++i)
    start[i] = start[i - 1] + utf16Length(parts[i - 1]);
  header.setPoints(headerPoints);
  header.makeBold(start[1], utf16Length(caption));
  // Three characters stand between the parts here, of which two are counted, deliberately.
  header.makeBold(start[3] + 2, utf16Length(parts[3]));
  header.makeBold(start[5] + 4, utf16Length(parts[5]));
  return header;
}

StyledText keepersTitle(std::int64_t rule) {
  constexpr std::string_view keepers = "Keepers";
  StyledText title{std::string(keepers) + ": ", {}};
  if (rule == shortestFileName)
    title.text += "Shortest Filename";
  else if (rule == singleArbitrary)
    title.text += "Arbitrary";
  else
    title.text += ruleTitleCaption(rule);
  return title.makeBold(0, keepers.size()).centre();
}

StyledText attributeCaption(std::int64_t rule, const TrackRecord& track,
                            ShortDateTimeFormatter& dates) {
  if (rule == singleArbitrary) return {"(Arbitrary)", {}};
  if (rule == shortestFileName) return {"(Shortest Filename)", {}};
  const Attribute* attribute = attributeOf(rule);
  if (!attribute) return {};
  StyledText text{std::string(attribute->caption) + ": ", {}};
  text.text += attributeText(*attribute, track, dates);
  return text.setPoints(captionPoints).makeBold(0, attribute->caption.size());
}

}  // namespace kestrel

namespace kestrel::ReplaylistControl {
namespace {

std::int64_t ruleInForce() {
  return process().with.preferences.integer(settings::filterMatrixButton);
}

}  // namespace

StyledText configureMeTitle() { return replaylistHeader(ruleInForce()); }

void configureTitleFilterInfoForPlaylist(std::string_view name) {
  ReplaylistWindowReferences& window = state().window;
  window.tracksPanelTitle.setText(std::string(name));
  window.tracksPanelKeeperTitle.setText(keepersTitle(ruleInForce()));
}

StyledText configureFilterInfo(const TrackRecord& track) {
  return attributeCaption(ruleInForce(), track, shortDates());
}

std::string transformRealTime(std::int64_t milliseconds) {
  return TextSorter::makeTimeHumanReadable(milliseconds);
}

}  // namespace kestrel::ReplaylistControl
