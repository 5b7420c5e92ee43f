// How much each rule wants a track, as a number.

#include "dupes/keeper_rules.h"
#include "dupes/measured_rules.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

using Score = std::optional<std::int64_t>;

/// Local time: the date texts that rules compare are that, and so an hour that comes twice is one.
std::int64_t dateScore(const ResultTrack& track, OptionalDate date) {
  static const std::int64_t missing = *parseIsoDate(missingDateText);
  if (!date) return missing;
  const std::int64_t seconds = date.seconds;
  return seconds + track.store->dates().offsetAt(seconds);
}

Score nameScore(const ResultTrack& track) {
  constexpr std::int64_t longestName = 1000;
  if (track.record->availability() == FileAvailability::cloud) return std::nullopt;
  const auto length = static_cast<std::int64_t>(utf16Length(track.record->fileName()));
  return length > longestName ? std::nullopt : Score(-length);
}

}  // namespace

std::optional<std::int64_t> keeperScore(KeeperRule rule, const ResultTrack& track,
                                        const KeeperOptions& options) {
  const TrackRecord& record = *track.record;
  const MediaItem& item = record.item();
  switch (rule) {
    case KeeperRule::oldestDateAdded:
      return -dateScore(track, item.added);
    case KeeperRule::newestDateAdded:
      return dateScore(track, item.added);
    case KeeperRule::mostPlayed:
      return item.playCount;
    case KeeperRule::leastPlayed:
      return -std::int64_t{item.playCount};
    case KeeperRule::mostRecentlyPlayed:
      return dateScore(track, item.lastPlayed);
    case KeeperRule::leastRecentlyPlayed:
      return -dateScore(track, item.lastPlayed);
    case KeeperRule::oldestDateModified:
      return -dateScore(track, item.modified);
    case KeeperRule::newestDateModified:
      return dateScore(track, item.modified);
    case KeeperRule::highestBitRate:
      return item.bitrate;
    case KeeperRule::lowestBitRate:
      return -std::int64_t{item.bitrate};
    case KeeperRule::largestFileSize:
      return item.fileSize;
    case KeeperRule::smallestFileSize:
      return -item.fileSize;
    case KeeperRule::folderLocation:
      return record.location().starts_with(options.folder) ? Score(0) : std::nullopt;
    case KeeperRule::shortestFileName:
      return nameScore(track);
    case KeeperRule::singleArbitrary:
      return std::nullopt;
    default:
      return measuredRule(rule)->score(track, options);
  }
}

}  // namespace kestrel
