#include "dupes/pick_explanation.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "dupes/measured_rules.h"
#include "foundation/function_ref.h"

namespace kestrel {
namespace {

/// Values that a sentence still lists one by one.
constexpr std::size_t mostListed = 3;

constexpr TrackKey dates[] = {TrackKey::realAddDate, TrackKey::realModDate, TrackKey::realPlayDate,
                              TrackKey::realSkipDate};

/// How the values of a key are counted: one of them, and one "%1" over others "%2".
struct Unit {
  TrackKey key;
  Message (*counted)(const Value& value);
  const char* comparison;
};

constexpr Unit units[] = {
    {TrackKey::tPlayCount,
     [](const Value& value) { return Message::tr("%Ln plays", "%Ln play", value.number()); },
     Message::literal("%1 over %2 plays")},
    {TrackKey::tBit,
     [](const Value& value) { return Message::tr("%1 kbit/s").arg(value.number()); },
     Message::literal("%1 over %2 kbit/s")},
    {TrackKey::tFileName,
     [](const Value& value) {
       return Message::tr("%Ln characters", "%Ln character", value.number());
     },
     Message::literal("%1 over %2 characters")},
    {TrackKey::realSize,
     [](const Value& value) { return Message::tr("%Ln bytes", "%Ln byte", value.number()); },
     Message::literal("%1 over %2 bytes")},
};

/// nullptr for values without a unit.
const Unit* unitOf(TrackKey key) {
  const auto* found = std::find_if(std::begin(units), std::end(units),
                                   [key](const Unit& unit) { return unit.key == key; });
  return found == std::end(units) ? nullptr : found;
}

bool isDate(TrackKey key) {
  return std::find(std::begin(dates), std::end(dates), key) != std::end(dates);
}

/// How many letters of the dates of a pick are enough to tell them apart: those of the day, with
/// hour and minute, or all.
std::size_t lettersOf(const Pick& pick, TrackKey key) {
  constexpr std::size_t day = 10, minute = 16, all = 19;
  if (!isDate(key) || pick.tied) return day;
  std::set<std::string_view> moments;
  const auto add = [&](const Value& value) {
    if (value.isText() && value.text() != missingDateText) moments.insert(value.text());
  };
  add(pick.deciding);
  for (const Value& other : pick.others) add(other);
  for (const std::size_t letters : {day, minute}) {
    std::set<std::string_view> told;
    for (const std::string_view moment : moments) told.insert(moment.substr(0, letters));
    if (told.size() == moments.size()) return letters;
  }
  return all;
}

/// `letters` of a date are told.
Message textOf(const Value& value, TrackKey key, std::size_t letters = 0) {
  if (!value.isText()) return Message::tr("%1").arg(value.number());
  std::string text(value.text());
  if (!isDate(key)) return Message::verbatim(std::move(text));
  if (text == missingDateText)
    return key == TrackKey::realPlayDate ? Message::tr("never") : Message::tr("no date");
  // "2009-08-13T20:05:15Z" is local time; the letters are for machines.
  std::replace(text.begin(), text.end(), 'T', ' ');
  return Message::moment(text.substr(0, letters));
}

/// The different worse values, in table order.
Message othersOf(const Pick& pick, FunctionRef<Message(const Value&)> worded) {
  std::vector<Message> others;
  for (const Value& other : pick.others) {
    if (other == pick.deciding) continue;
    Message text = worded(other);
    if (std::find(others.begin(), others.end(), text) == others.end())
      others.push_back(std::move(text));
  }
  const std::span shown(others.data(), std::min(others.size(), mostListed));
  return others.empty() ? Message() : listed(shown, others.size() - shown.size());
}

/// Of a pick by a rule that has an opinion and compares values, or looks for a folder. A tie that
/// is not `last` is decided by another rule.
Message becauseOf(const Pick& pick, const KeeperRuleInfo& rule, bool last) {
  if (rule.wish == KeeperWish::any) return {};
  const auto tieAt = [last](Message value) {
    return (last ? Message::tr("tie at %1: the last in the table") : Message::tr("tie at %1"))
        .arg(std::move(value));
  };
  if (const MeasuredRule* measure = measuredRule(rule.rule)) {
    const auto worded = [measure](const Value& value) { return measure->worded(value.number()); };
    if (pick.tied) return tieAt(worded(pick.deciding));
    const Message others = othersOf(pick, worded);
    if (others.empty()) return worded(pick.deciding);
    return Message::tr("%1 over %2").arg(worded(pick.deciding)).arg(others);
  }
  if (rule.wish == KeeperWish::lastInFolder) {
    // Every path begins with an empty text.
    const Message folder =
        pick.deciding.text().empty() ? Message::tr("any folder") : textOf(pick.deciding, rule.key);
    if (pick.tied == 0) return Message::tr("in %1").arg(folder);
    if (!last)
      return Message::tr("%Ln tracks in %1", "%Ln track in %1",
                         static_cast<std::int64_t>(pick.tied + 1))
          .arg(folder);
    return Message::tr("%Ln tracks in %1: the last in the table",
                       "%Ln track in %1: the last in the table",
                       static_cast<std::int64_t>(pick.tied + 1))
        .arg(folder);
  }
  const Unit* unit = unitOf(rule.key);
  const std::size_t letters = lettersOf(pick, rule.key);
  const Message value = textOf(pick.deciding, rule.key, letters);
  const Message counted = unit ? unit->counted(pick.deciding) : value;
  if (pick.tied) return tieAt(counted);
  const Message others =
      othersOf(pick, [&](const Value& other) { return textOf(other, rule.key, letters); });
  if (others.empty()) return counted;
  return (unit ? Message::tr(unit->comparison) : Message::tr("%1 over %2")).arg(value).arg(others);
}

/// Why the rule has no opinion.
Message whyNot(const Pick& pick) {
  if (!pick.rule) return Message::tr("no such rule");
  if (keeperRuleInfo(*pick.rule).wish == KeeperWish::lastInFolder)
    return Message::tr("no track in the folder");
  if (keeperRuleInfo(*pick.rule).wish == KeeperWish::measured)
    return Message::tr("nothing is known of it");
  if (pick.cloudTracks == pick.candidates) return Message::tr("only cloud tracks");
  return Message::tr("only very long file names");
}

Message withRemark(Message sentence, Message remark) {
  return Message::tr("%1; %2").arg(std::move(sentence)).arg(std::move(remark));
}

}  // namespace

namespace {

/// Of one rule.
Message explained(const Pick& pick, bool last) {
  const KeeperRuleInfo* rule = pick.rule ? &keeperRuleInfo(*pick.rule) : nullptr;
  Message sentence = rule ? Message::tr(rule->name) : Message();
  const auto add = [&](Message text) {
    if (text.empty()) return;
    sentence = sentence.empty() ? std::move(text)
                                : Message::tr("%1: %2").arg(sentence).arg(std::move(text));
  };
  add(pick.opinion ? becauseOf(pick, *rule, last) : whyNot(pick));
  if (last && !pick.keeper)
    add(Message::tr("no keeper"));
  else if (last && pick.random)
    add(Message::tr("chosen at random"));
  const bool onlyCloud = !pick.opinion && pick.cloudTracks == pick.candidates;
  if (!pick.cloudTracks || onlyCloud) return sentence;
  return withRemark(std::move(sentence),
                    Message::tr("%Ln cloud tracks not considered", "%Ln cloud track not considered",
                                static_cast<std::int64_t>(pick.cloudTracks)));
}

}  // namespace

Message explain(const Pick& pick) {
  Message sentence = explained(pick, true);
  for (auto earlier = pick.before.rbegin(); earlier != pick.before.rend(); ++earlier)
    sentence = Message::tr("%1, then %2").arg(explained(*earlier, false)).arg(std::move(sentence));
  return sentence;
}

Message explain(const GroupDecision& decision) {
  switch (decision.outcome) {
    case GroupOutcome::noWantedType:
      return Message::tr("no track of the wanted file type: no keeper");
    case GroupOutcome::tooFewTracks:
      if (!decision.missingFiles) return Message::tr("fewer than two tracks: nothing to decide");
      if (decision.missingFiles == decision.flags.size())
        return Message::tr("all files are missing: no keeper");
      return Message::tr("the only track whose file is there");
    case GroupOutcome::ruleAsked:
      break;
  }
  Message sentence = explain(decision.pick);
  const auto add = [&](Message remark) {
    sentence = withRemark(std::move(sentence), std::move(remark));
  };
  if (decision.narrowedByBitRate)
    add(Message::tr("among those of the wanted file type and bit rate"));
  else if (decision.narrowedByType)
    add(Message::tr("among those of the wanted file type"));
  if (decision.typeNotFound) add(Message::tr("no track of the wanted file type"));
  if (decision.bitRateNotFound) add(Message::tr("none with the wanted bit rate"));
  if (decision.missingFiles)
    add(Message::tr("%Ln missing files set aside", "%Ln missing file set aside",
                    static_cast<std::int64_t>(decision.missingFiles)));
  if (decision.sparedCloudTracks)
    add(Message::tr("%Ln cloud tracks spared", "%Ln cloud track spared",
                    static_cast<std::int64_t>(decision.sparedCloudTracks)));
  return sentence;
}

}  // namespace kestrel
