#include "dupes/group_filter.h"

#include <algorithm>
#include <array>

#include "foundation/message.h"

namespace kestrel {
namespace {

using Candidates = std::span<const ResultTrack* const>;

constexpr std::array<std::string_view, 8> fileTypes = {Message::literal("AAC"),
                                                       Message::literal("AIFF"),
                                                       Message::literal("Apple Lossless"),
                                                       Message::literal("MP3"),
                                                       Message::literal("Purchased"),
                                                       Message::literal("WAV"),
                                                       Message::literal("Local files"),
                                                       Message::literal("Cloud tracks")};

/// How a choice of file type is told by its first two characters.
struct Narrowing {
  std::string_view start;
  std::string_view predicate;
  std::string_view argument;
  TrackKey key;  ///< the one that the predicate asks for
};

constexpr Narrowing narrowings[] = {
    {"Pu", "tPurch BEGINSWITH %@", "Y", TrackKey::tPurch},
    {"Cl", "tLoc LIKE %@", "Cloud", TrackKey::tLoc},
    {"Lo", "NOT(tLoc LIKE %@)", "Cloud", TrackKey::tLoc},
};

/// Not whole words, deliberately: the "MP" of "MP3" also finds other kinds of MPEG audio.
constexpr std::string_view kindPredicate = "tKind CONTAINS %@";

/// The first two characters, or as many as there are.
std::string_view firstTwo(std::string_view text) noexcept {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool continues = (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    if (!continues && ++characters > 2) return text.substr(0, i);
  }
  return text;
}

TrackFilter fileTypeFilter(std::string_view choice) {
  const std::string_view start = firstTwo(choice);
  for (const Narrowing& narrowing : narrowings)
    if (narrowing.start == start)
      return {Predicate::parse(narrowing.predicate, {narrowing.argument}), narrowing.key};
  return {Predicate::parse(kindPredicate, {start}), TrackKey::tKind};
}

std::vector<const ResultTrack*> those(Candidates tracks, const TrackFilter& filter) {
  std::vector<const ResultTrack*> found;
  for (const ResultTrack* track : tracks)
    if (filter.predicate.evaluate([&](std::string_view) { return track->value(filter.key); }))
      found.push_back(track);
  return found;
}

bool isCloud(const ResultTrack& track) noexcept {
  return track.record->availability() == FileAvailability::cloud;
}

}  // namespace

std::span<const std::string_view> fileTypeChoices() noexcept { return fileTypes; }

GroupFilter::GroupFilter(FilterSettings settings)
    : settings_(std::move(settings)), rule_(keeperRule(settings_.rule)) {
  // A bit rate without a file type does not count, deliberately: bit rates of different encodings
  // say nothing about each other.
  if (!settings_.fileType) return;
  fileType_ = fileTypeFilter(*settings_.fileType);
  if (!settings_.bitRate) return;
  const std::string_view bitRate = *settings_.bitRate;
  bitRate_ = TrackFilter{Predicate::parse("tBit = %@", {bitRate.substr(0, bitRate.find(' '))}),
                         TrackKey::tBit};
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

  std::vector<const ResultTrack*> candidates = present;
  if (fileType_) {
    candidates = those(present, *fileType_);
    decision.narrowedByType = !candidates.empty();
    decision.typeNotFound = candidates.empty();
  }
  if (decision.typeNotFound && settings_.keeper.alwaysUnCheck) {
    setPresent([](const ResultTrack&) { return MemberFlag::nonKeeper; });
    decision.outcome = GroupOutcome::noWantedType;
    return decision;
  }
  if (decision.typeNotFound) {
    candidates = present;
  } else if (bitRate_) {
    std::vector<const ResultTrack*> narrower = those(candidates, *bitRate_);
    decision.narrowedByBitRate = !narrower.empty();
    decision.bitRateNotFound = narrower.empty();
    if (!narrower.empty()) candidates = std::move(narrower);
  }

  decision.outcome = GroupOutcome::ruleAsked;
  decision.pick = chooseKeeper(candidates, rule_, settings_.keeper, random);
  const ResultTrack* keeper = decision.pick.keeper;
  if (!keeper) {
    const MemberFlag all =
        settings_.keeper.alwaysUnCheck ? MemberFlag::nonKeeper : MemberFlag::keeper;
    setPresent([all](const ResultTrack&) { return all; });
    return decision;
  }
  // A cloud copy has no file name to compare, so that rule neither keeps nor gives up any.
  const bool spareCloud =
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
