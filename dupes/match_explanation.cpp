#include "dupes/match_explanation.h"

#include <algorithm>
#include <unordered_set>

#include "dupes/match_key.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

/// What people tell copies apart by; dates, counts and places say nothing about a recording.
constexpr TrackKey furtherKeys[] = {
    TrackKey::tName,    TrackKey::tArtist,      TrackKey::tAlbumArtist, TrackKey::tAlbum,
    TrackKey::tGenre,   TrackKey::tComposer,    TrackKey::tGrouping,    TrackKey::tYear,
    TrackKey::tDiscNum, TrackKey::tTrackNum,    TrackKey::realTime,     TrackKey::tKind,
    TrackKey::tBit,     TrackKey::tCompilation,
};

/// The values that members have under one key, as they are compared, each once in member order.
std::vector<std::string> valuesOf(const TrackStore& store,
                                  std::span<const TrackRecord* const> members,
                                  const std::string& criterion, const GroupingOptions& options) {
  const std::string criteria[] = {criterion};
  MatchKeyMaker maker(store, criteria, options);
  std::vector<std::string> values;
  if (maker.parts() == 0) return values;
  std::unordered_set<std::string> seen;
  std::string value;
  for (const TrackRecord* member : members) {
    maker.make(*member, value);
    if (seen.insert(value).second) values.push_back(value);
  }
  return values;
}

}  // namespace

MatchExplanation explainMatch(const TrackStore& store, std::span<const TrackRecord* const> members,
                              std::span<const std::string> criteria, const GroupingOptions& options,
                              const TrackRecord* seed) {
  MatchExplanation match;
  match.loose = options.loose;
  if (members.empty()) return match;
  for (const std::string& criterion : criteria) {
    MatchedField field{criterion, valuesOf(store, members, criterion, options)};
    if (field.values.empty()) continue;
    match.onlyJoins = match.onlyJoins || field.values.size() > 1;
    match.fields.push_back(std::move(field));
  }
  MatchKeyMaker(store, criteria, options).make(*members.front(), match.key);
  if (options.toleranceSeconds > 0 && seed) {
    match.seed = seed;
    match.seedSeconds = roundedSeconds(seed->item().totalTime);
  }
  for (const TrackKey key : furtherKeys) {
    const std::string criterion(trackKeyName(key));
    if (std::find(criteria.begin(), criteria.end(), criterion) != criteria.end()) continue;
    const std::size_t values = valuesOf(store, members, criterion, options).size();
    if (values > 1) match.splitting.push_back({criterion, values});
  }
  return match;
}

std::vector<Message> explain(const MatchExplanation& match,
                             FunctionRef<Message(const std::string&)> nameOf) {
  std::vector<Message> lines;
  for (const MatchedField& field : match.fields) {
    std::vector<Message> values;
    for (const std::string& value : field.values) values.push_back(inQuotes(value));
    lines.push_back(Message::tr("%1: %2").arg(nameOf(field.criterion)).arg(listed(values)));
  }
  if (match.onlyJoins)
    lines.push_back(Message::tr("the fields differ and are equal only joined together: %1")
                        .arg(inQuotes(match.key)));
  std::vector<Message> passedOver;
  for (const LooseInfo& info : loosenings())
    if (match.loose & bitOf(info.loose)) passedOver.push_back(Message::tr(info.name));
  if (!passedOver.empty()) lines.push_back(Message::tr("passed over: %1").arg(listed(passedOver)));
  if (match.seed)
    lines.push_back(Message::tr("times count from %1, of %2")
                        .arg(TextSorter::makeTimeHumanReadable(match.seed->item().totalTime))
                        .arg(inQuotes(match.seed->item().title.view())));
  std::vector<Message> splitting;
  for (const SplittingField& field : match.splitting) splitting.push_back(nameOf(field.criterion));
  if (!splitting.empty())
    lines.push_back(Message::tr("would be split by: %1").arg(listed(splitting)));
  return lines;
}

}  // namespace kestrel
