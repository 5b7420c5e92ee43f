#include "dupes/group_filter.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace kestrel {
namespace {

using Candidates = std::span<const ResultTrack* const>;

bool isCloud(const ResultTrack& track) noexcept {
  return track.record->availability() == FileAvailability::cloud;
}

using Narrowing = bool (*)(const ResultTrack&, std::string_view start);

/// Not whole words: the "MP" of "MP3" also finds other kinds of MPEG audio.
bool kindContains(const ResultTrack& track, std::string_view start) {
  return track.record->item().kind.view().find(start) != std::string_view::npos;
}
bool isPurchased(const ResultTrack& track, std::string_view) {
  return track.value(TrackKey::tPurch).text().starts_with('Y');
}
bool isInCloud(const ResultTrack& track, std::string_view) { return isCloud(track); }
bool isLocal(const ResultTrack& track, std::string_view) { return !isCloud(track); }

struct FileType {
  const char* name;
  Narrowing narrowing = kindContains;
};

constexpr FileType fileTypes[] = {
    {Message::literal("AAC")},
    {Message::literal("AIFF")},
    {Message::literal("Apple Lossless")},
    {Message::literal("MP3")},
    {Message::literal("Purchased"), isPurchased},
    {Message::literal("WAV")},
    {Message::literal("Local files"), isLocal},
    {Message::literal("Cloud tracks"), isInCloud},
};

/// The first two characters, or as many as there are.
constexpr std::string_view firstTwo(std::string_view text) noexcept {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool continues = (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    if (!continues && ++characters > 2) return text.substr(0, i);
  }
  return text;
}

static_assert(std::all_of(std::begin(fileTypes), std::end(fileTypes),
                          [](const FileType& type) {
                            return std::count_if(std::begin(fileTypes), std::end(fileTypes),
                                                 [&](const FileType& other) {
                                                   return firstTwo(other.name) ==
                                                          firstTwo(type.name);
                                                 }) == 1;
                          }),
              "a choice is known by its first two characters");

TrackFilter fileTypeFilter(std::string_view choice) {
  const std::string_view start = firstTwo(choice);
  Narrowing narrowing = kindContains;
  for (const FileType& type : fileTypes)
    if (firstTwo(type.name) == start) narrowing = type.narrowing;
  return [narrowing, start = std::string(start)](const ResultTrack& track) {
    return narrowing(track, start);
  };
}

/// Compares numbers: "0256" is 256 too, and a text that is no whole number fits no track.
TrackFilter bitRateFilter(std::string_view choice) {
  const std::string_view digits = choice.substr(0, choice.find(' '));
  std::int64_t bitRate = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, bitRate);
  const bool isNumber = error == std::errc() && stop == end;
  return [isNumber, bitRate](const ResultTrack& track) {
    return isNumber && track.record->item().bitrate == bitRate;
  };
}

std::vector<const ResultTrack*> those(Candidates tracks, const TrackFilter& filter) {
  std::vector<const ResultTrack*> found;
  std::copy_if(tracks.begin(), tracks.end(), std::back_inserter(found),
               [&filter](const ResultTrack* track) { return filter(*track); });
  return found;
}

}  // namespace

std::vector<std::string_view> fileTypeChoices() {
  std::vector<std::string_view> choices;
  for (const FileType& type : fileTypes) choices.emplace_back(type.name);
  return choices;
}

GroupFilter::GroupFilter(FilterSettings settings)
    : settings_(std::move(settings)), rule_(keeperRule(settings_.rule)) {
  // A bit rate without a file type does not count: bit rates of different encodings say nothing
  // about each other.
  if (!settings_.fileType) return;
  fileType_ = fileTypeFilter(*settings_.fileType);
  if (settings_.bitRate) bitRate_ = bitRateFilter(*settings_.bitRate);
}

std::vector<const ResultTrack*> GroupFilter::narrowed(
    const std::vector<const ResultTrack*>& present, GroupDecision& decision) const {
  if (!fileType_) return present;
  std::vector<const ResultTrack*> candidates = those(present, fileType_);
  decision.narrowedByType = !candidates.empty();
  decision.typeNotFound = candidates.empty();
  if (decision.typeNotFound) return present;
  if (bitRate_) {
    std::vector<const ResultTrack*> narrower = those(candidates, bitRate_);
    decision.narrowedByBitRate = !narrower.empty();
    decision.bitRateNotFound = narrower.empty();
    if (!narrower.empty()) candidates = std::move(narrower);
  }
  return candidates;
}

std::vector<const ResultTrack*> GroupFilter::candidates(Candidates members) const {
  std::vector<const ResultTrack*> present;
  for (const ResultTrack* track : members)
    if (track->record->availability() != FileAvailability::missing) present.push_back(track);
  GroupDecision decision;
  if (present.size() >= 2) present = narrowed(present, decision);
  if (present.size() < 2 && !decision.narrowedByType) return {};
  if (decision.typeNotFound && settings_.keeper.alwaysUnCheck) return {};
  return present;
}

GroupDecision GroupFilter::decide(Candidates members, Random& random) const {
  GroupDecision decision;
  decision.flags.assign(members.size(), MemberFlag::unchanged);
  std::vector<const ResultTrack*> present;
  for (const ResultTrack* track : members)
    if (track->record->availability() != FileAvailability::missing) present.push_back(track);
  decision.missingFiles = members.size() - present.size();
  // Gives every member whose file is there the flag that `flagOf` names.
  const auto setPresent = [&](auto flagOf) {
    for (std::size_t i = 0; i < members.size(); ++i)
      if (members[i]->record->availability() != FileAvailability::missing)
        decision.flags[i] = flagOf(*members[i]);
  };
  if (decision.missingFiles) {
    std::fill(decision.flags.begin(), decision.flags.end(), MemberFlag::nonKeeper);
    setPresent([](const ResultTrack&) { return MemberFlag::keeper; });
  }
  if (present.size() < 2) return decision;

  const std::vector<const ResultTrack*> candidates = narrowed(present, decision);
  if (decision.typeNotFound && settings_.keeper.alwaysUnCheck) {
    setPresent([](const ResultTrack&) { return MemberFlag::nonKeeper; });
    decision.outcome = GroupOutcome::noWantedType;
    return decision;
  }
  decision.outcome = GroupOutcome::ruleAsked;
  decision.pick = chooseKeeper(candidates, rule_, settings_.chain, settings_.keeper, random);
  const ResultTrack* keeper = decision.pick.keeper;
  if (!keeper) {
    const MemberFlag all =
        settings_.keeper.alwaysUnCheck ? MemberFlag::nonKeeper : MemberFlag::keeper;
    setPresent([all](const ResultTrack&) { return all; });
    return decision;
  }
  // A cloud copy has no file name to compare, so that rule neither keeps nor gives up any. In a
  // chain, other rules can decide about it.
  const bool spareCloud =
      settings_.chain.empty() &&
      settings_.ruleNumber == static_cast<std::int64_t>(KeeperRule::shortestFileName);
  setPresent([&](const ResultTrack& track) {
    if (&track == keeper) return MemberFlag::keeper;
    if (!spareCloud || !isCloud(track)) return MemberFlag::nonKeeper;
    ++decision.sparedCloudTracks;
    return MemberFlag::keeper;
  });
  return decision;
}

}  // namespace kestrel
