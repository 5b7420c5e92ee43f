#include "ui/survey_texts.h"

#include "dupes/keeper_rules.h"
#include "foundation/dates.h"
#include "foundation/text_helpers.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/replaylist_state.h"

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

}  // namespace kestrel::ReplaylistControl
