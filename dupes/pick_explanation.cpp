#include "dupes/pick_explanation.h"

#include <algorithm>

namespace kestrel {
namespace {

struct Unit {
  TrackKey key;
  std::string_view one;
  std::string_view many;
};

constexpr Unit units[] = {
    {TrackKey::tPlayCount, "play", "plays"},
    {TrackKey::tBit, "kbps", "kbps"},
    {TrackKey::tFileName, "character", "characters"},
    {TrackKey::realSize, "byte", "bytes"},
};

/// Values that a sentence still lists one by one.
constexpr std::size_t listed = 3;

std::string textOf(const Value& value, TrackKey key) {
  if (!value.isText()) return std::to_string(value.number());
  std::string text(value.text());
  if (key == TrackKey::tLoc) return text;
  if (text == missingDateText) return key == TrackKey::realPlayDate ? "never" : "no date";
  // "2009-08-13T20:05:15Z" is local time; the letters are for machines.
  std::replace(text.begin(), text.end(), 'T', ' ');
  if (text.ends_with('Z')) text.pop_back();
  return text;
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

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count).append(" ").append(count == 1 ? one : many);
}

/// "12", "12 and 0", "12, 3 and 0", "12, 3, 0 and 5 more".
std::string enumeration(std::span<const std::string> texts) {
  std::string out;
  const std::size_t shown = std::min(texts.size(), listed);
  const std::size_t more = texts.size() - shown;
  for (std::size_t i = 0; i < shown; ++i) {
    if (i) out += i + 1 == shown && !more ? " and " : ", ";
    out += texts[i];
  }
  if (more) out += " and " + std::to_string(more) + " more";
  return out;
}

std::string withUnit(std::string text, const std::string& unit) {
  return unit.empty() ? text : text + " " + unit;
}

std::string becauseOf(const PickExplanation& why) {
  switch (why.reason) {
    case PickReason::better:
      if (why.others.empty()) return withUnit(why.value, why.unit);
      return withUnit(why.value + " over " + enumeration(why.others), why.units);
    case PickReason::tie:
      return "tie at " + withUnit(why.value, why.unit) + ": the last in the table";
    case PickReason::inFolder:
      if (why.tied == 1) return "in " + why.value;
      return std::to_string(why.tied) + " tracks in " + why.value + ": the last in the table";
    case PickReason::noneInFolder:
      return "no track in the folder";
    case PickReason::onlyCloud:
      return "only cloud tracks";
    case PickReason::onlyLongNames:
      return "only very long file names";
    case PickReason::noRule:
      return "no such rule";
    case PickReason::arbitrary:
      break;
  }
  return {};
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
  why.rule = info.name;
  if (pick.deciding.isAbsent()) return why;
  why.value = textOf(pick.deciding, info.key);
  for (const Value& other : pick.others) {
    if (other == pick.deciding) continue;
    std::string text = textOf(other, info.key);
    if (std::find(why.others.begin(), why.others.end(), text) == why.others.end())
      why.others.push_back(std::move(text));
  }
  for (const Unit& unit : units) {
    if (unit.key != info.key) continue;
    why.unit = pick.deciding.number() == 1 ? unit.one : unit.many;
    why.units = unit.many;
  }
  return why;
}

std::string explain(const Pick& pick) {
  const PickExplanation why = explanation(pick);
  std::string sentence = why.rule;
  const auto add = [&](std::string_view separator, const std::string& text) {
    if (!sentence.empty() && !text.empty()) sentence += separator;
    sentence += text;
  };
  add(": ", becauseOf(why));
  if (why.nobody)
    add(": ", "no keeper");
  else if (why.random)
    add(": ", "chosen at random");
  if (why.cloudTracks && why.reason != PickReason::onlyCloud)
    add("; ", counted(why.cloudTracks, "cloud track", "cloud tracks") + " not considered");
  return sentence;
}

std::string explain(const GroupDecision& decision) {
  const auto missing = [&] {
    return counted(decision.missingFiles, "missing file", "missing files") + " set aside";
  };
  switch (decision.outcome) {
    case GroupOutcome::noWantedType:
      return "no track of the wanted file type: no keeper";
    case GroupOutcome::tooFewTracks:
      if (!decision.missingFiles) return "fewer than two tracks: nothing to decide";
      if (decision.missingFiles == decision.flags.size()) return "all files are missing: no keeper";
      return "the only track whose file is there";
    case GroupOutcome::ruleAsked:
      break;
  }
  std::string sentence = explain(decision.pick);
  if (decision.narrowedByBitRate)
    sentence += "; among those of the wanted file type and bit rate";
  else if (decision.narrowedByType)
    sentence += "; among those of the wanted file type";
  if (decision.typeNotFound) sentence += "; no track of the wanted file type";
  if (decision.bitRateNotFound) sentence += "; none with the wanted bit rate";
  if (decision.missingFiles) sentence += "; " + missing();
  if (decision.sparedCloudTracks)
    sentence +=
        "; " + counted(decision.sparedCloudTracks, "cloud track", "cloud tracks") + " spared";
  return sentence;
}

}  // namespace kestrel
