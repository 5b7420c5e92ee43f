// How much each rule wants a track, as a number.

#include <algorithm>
#include <array>
#include <limits>

#include "dupes/keeper_facts.h"
#include "dupes/keeper_rules.h"
#include "foundation/collation.h"
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

/// Kinds that keep every bit, as their names tell; letters in lower case.
bool isLosslessKind(std::string_view kind) {
  constexpr std::array words = {"lossless", "flac", "alac", "aiff",    "wav",
                                "monkey",   "tta",  "dsf",  "wavpack", "pcm"};
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    return kind.find(word) != std::string_view::npos;
  });
}

Score losslessScore(const TrackRecord& record, const KeeperOptions& options) {
  const MediaItem& item = record.item();
  LosslessScore score;
  score.isLossless = isLossless(item.kind.view());
  score.rate = item.sampleRate;
  score.bitRate = item.bitrate;
  if (score.isLossless && options.samples)
    if (const auto samples = options.samples(record)) {
      score.bits = samples->bits;
      score.channels = samples->channels;
    }
  return score.number();
}

std::int64_t filledFields(const MediaItem& item) {
  constexpr Text MediaItem::*texts[] = {
      &MediaItem::title,    &MediaItem::artist, &MediaItem::albumArtist, &MediaItem::album,
      &MediaItem::composer, &MediaItem::genre,  &MediaItem::grouping,    &MediaItem::comments};
  std::int64_t filled = 0;
  for (const auto text : texts) filled += (item.*text).view().empty() ? 0 : 1;
  for (const std::int64_t number :
       {std::int64_t{item.year}, std::int64_t{item.trackNumber}, std::int64_t{item.discNumber},
        std::int64_t{item.trackCount}, std::int64_t{item.beatsPerMinute}})
    filled += number == 0 ? 0 : 1;
  return filled;
}

/// The place of the first text for which `fits` holds, as a score; after the last where none does,
/// and nothing without an order.
template <typename Fits>
Score placeIn(const std::vector<std::string>& order, Fits&& fits) {
  if (order.empty()) return std::nullopt;
  const auto found = std::find_if(order.begin(), order.end(), fits);
  return -(found - order.begin()) - 1;
}

Score nameScore(const ResultTrack& track) {
  constexpr std::int64_t longestName = 1000;
  if (track.record->availability() == FileAvailability::cloud) return std::nullopt;
  const auto length = static_cast<std::int64_t>(utf16Length(track.record->fileName()));
  return length > longestName ? std::nullopt : Score(-length);
}

}  // namespace

namespace {

constexpr int rateWidth = 24, channelsWidth = 5, bitsWidth = 7;
constexpr std::int64_t most(int width) noexcept { return (std::int64_t{1} << width) - 1; }

}  // namespace

std::int64_t LosslessScore::number() const noexcept {
  std::int64_t made = isLossless ? 1 : 0;
  const auto add = [&](std::int64_t value, int width) {
    made = made << width | std::clamp<std::int64_t>(value, 0, most(width));
  };
  if (!isLossless) add(bitRate, rateWidth);
  add(bits, bitsWidth);
  add(rate, rateWidth);
  add(channels, channelsWidth);
  if (isLossless) add(bitRate, rateWidth);
  return made;
}

LosslessScore LosslessScore::of(std::int64_t number) noexcept {
  LosslessScore score;
  const auto take = [&](int width) {
    const std::int64_t value = number & most(width);
    number >>= width;
    return value;
  };
  score.isLossless = number >> (2 * rateWidth + channelsWidth + bitsWidth) != 0;
  if (score.isLossless) score.bitRate = take(rateWidth);
  score.channels = take(channelsWidth);
  score.rate = take(rateWidth);
  score.bits = take(bitsWidth);
  if (!score.isLossless) score.bitRate = take(rateWidth);
  return score;
}

bool isLossless(std::string_view kind) {
  // Libraries have few kinds, and mostly ask for the same again.
  thread_local std::string known;
  thread_local bool lossless = false;
  if (kind != known) {
    lossless = isLosslessKind(lowercase(kind));
    known = kind;
  }
  return lossless;
}

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
    case KeeperRule::losslessFirst:
      return losslessScore(record, options);
    case KeeperRule::highestRating:
      return item.rating;
    case KeeperRule::inMostPlaylists:
      return options.facts ? Score(options.facts->playlistsWith(record)) : std::nullopt;
    case KeeperRule::mostCompleteTags:
      return filledFields(item);
    case KeeperRule::withCover: {
      const auto cover = options.cover ? options.cover(record) : std::nullopt;
      return cover ? Score(*cover ? 1 : 0) : std::nullopt;
    }
    case KeeperRule::localBeforeCloud:
      return record.availability() == FileAvailability::cloud ? 0 : 1;
    case KeeperRule::orderOfFolders:
      return placeIn(options.folders, [path = record.location()](const std::string& folder) {
        return path.starts_with(folder);
      });
    case KeeperRule::orderOfKinds:
      return placeIn(options.kinds,
                     [kind = lowercase(item.kind.view())](const std::string& wanted) {
                       return kind.find(lowercase(wanted)) != std::string::npos;
                     });
    case KeeperRule::albumWithMostTracks:
      return options.facts ? Score(options.facts->albumScore(record)) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace kestrel
