#include "dupes/pick_explanation.h"

#include <algorithm>
#include <span>
#include <utility>

namespace kestrel {
namespace {

/// Values that a sentence still lists one by one.
constexpr std::size_t mostListed = 3;

PickUnit unitOf(TrackKey key) {
  switch (key) {
    case TrackKey::tPlayCount:
      return PickUnit::plays;
    case TrackKey::tBit:
      return PickUnit::kbps;
    case TrackKey::tFileName:
      return PickUnit::characters;
    case TrackKey::realSize:
      return PickUnit::bytes;
    default:
      return PickUnit::none;
  }
}

Message textOf(const Value& value, TrackKey key) {
  if (!value.isText()) return Message::tr("%1").arg(value.number());
  std::string text(value.text());
  if (key == TrackKey::tLoc) return Message::verbatim(std::move(text));
  if (text == missingDateText)
    return key == TrackKey::realPlayDate ? Message::tr("never") : Message::tr("no date");
  // "2009-08-13T20:05:15Z" is local time; the letters are for machines.
  std::replace(text.begin(), text.end(), 'T', ' ');
  if (text.ends_with('Z')) text.pop_back();
  return Message::verbatim(std::move(text));
}

PickReason reasonOf(const Pick& pick) {
  if (!pick.rule) return PickReason::noRule;
  switch (keeperRuleInfo(*pick.rule).wish) {
    case KeeperWish::any:
      return PickReason::arbitrary;
    case KeeperWish::lastInFolder:
      return pick.opinion ? PickReason::inFolder : PickReason::noneInFolder;
    default:
      break;
  }
  if (pick.opinion) return pick.tied ? PickReason::tie : PickReason::better;
  return pick.cloudTracks == pick.candidates ? PickReason::onlyCloud : PickReason::onlyLongNames;
}

Message deciding(const PickExplanation& why) {
  switch (why.unit) {
    case PickUnit::plays:
      return Message::tr("%Ln plays", "%Ln play", why.number);
    case PickUnit::kbps:
      return Message::tr("%1 kbps").arg(why.value);
    case PickUnit::characters:
      return Message::tr("%Ln characters", "%Ln character", why.number);
    case PickUnit::bytes:
      return Message::tr("%Ln bytes", "%Ln byte", why.number);
    case PickUnit::none:
      break;
  }
  return why.value;
}

/// With "%1 over %2" and the unit of both.
Message comparison(PickUnit unit) {
  switch (unit) {
    case PickUnit::plays:
      return Message::tr("%1 over %2 plays");
    case PickUnit::kbps:
      return Message::tr("%1 over %2 kbps");
    case PickUnit::characters:
      return Message::tr("%1 over %2 characters");
    case PickUnit::bytes:
      return Message::tr("%1 over %2 bytes");
    case PickUnit::none:
      break;
  }
  return Message::tr("%1 over %2");
}

Message becauseOf(const PickExplanation& why) {
  const std::span shown(why.others.data(), std::min(why.others.size(), mostListed));
  switch (why.reason) {
    case PickReason::better:
      if (why.others.empty()) return deciding(why);
      return comparison(why.unit).arg(why.value).arg(
          listed(shown, why.others.size() - shown.size()));
    case PickReason::tie:
      return Message::tr("tie at %1: the last in the table").arg(deciding(why));
    case PickReason::inFolder: {
      // Every path begins with an empty text.
      const Message folder = why.value.empty() ? Message::tr("any folder") : why.value;
      if (why.tied == 1) return Message::tr("in %1").arg(folder);
      return Message::tr("%Ln tracks in %1: the last in the table",
                         "%Ln track in %1: the last in the table",
                         static_cast<std::int64_t>(why.tied))
          .arg(folder);
    }
    case PickReason::noneInFolder:
      return Message::tr("no track in the folder");
    case PickReason::onlyCloud:
      return Message::tr("only cloud tracks");
    case PickReason::onlyLongNames:
      return Message::tr("only very long file names");
    case PickReason::noRule:
      return Message::tr("no such rule");
    case PickReason::arbitrary:
      break;
  }
  return {};
}

Message withRemark(Message sentence, Message remark) {
  return Message::tr("%1; %2").arg(std::move(sentence)).arg(std::move(remark));
}

}  // namespace

PickExplanation explanation(const Pick& pick) {
  PickExplanation why;
  why.reason = reasonOf(pick);
  why.random = pick.random;
  why.nobody = !pick.keeper;
  why.tied = pick.tied + 1;
  why.cloudTracks = pick.cloudTracks;
  if (!pick.rule) return why;
  const KeeperRuleInfo& info = keeperRuleInfo(*pick.rule);
  why.rule = Message::tr(info.name);
  if (pick.deciding.isAbsent()) return why;
  why.value = textOf(pick.deciding, info.key);
  why.number = pick.deciding.number();
  why.unit = unitOf(info.key);
  for (const Value& other : pick.others) {
    if (other == pick.deciding) continue;
    Message text = textOf(other, info.key);
    if (std::find(why.others.begin(), why.others.end(), text) == why.others.end())
      why.others.push_back(std::move(text));
  }
  return why;
}

Message explain(const Pick& pick) {
  const PickExplanation why = explanation(pick);
  Message sentence = why.rule;
  const auto add = [&](Message text) {
    if (text.empty()) return;
    sentence = sentence.empty() ? std::move(text)
                                : Message::tr("%1: %2").arg(sentence).arg(std::move(text));
  };
  add(becauseOf(why));
  if (why.nobody)
    add(Message::tr("no keeper"));
  else if (why.random)
    add(Message::tr("chosen at random"));
  if (!why.cloudTracks || why.reason == PickReason::onlyCloud) return sentence;
  return withRemark(std::move(sentence),
                    Message::tr("%Ln cloud tracks not considered", "%Ln cloud track not considered",
                                static_cast<std::int64_t>(why.cloudTracks)));
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
