#include "dupes/measured_rules.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "dupes/keeper_facts.h"
#include "dupes/lossless.h"
#include "foundation/collation.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

using Score = std::optional<std::int64_t>;
using enum KeeperRule;
using enum TrackKey;
constexpr auto measured = KeeperWish::measured;

/// Numbers side by side in one, the first the weightiest; each is held to the bits it has.
constexpr int rateBits = 22, bitrateBits = 20, depthBits = 8, channelBits = 6;
constexpr std::int64_t losslessFlag = std::int64_t{1} << 60;
std::int64_t appended(std::int64_t score, std::int64_t number, int bits) {
  return score << bits | std::clamp<std::int64_t>(number, 0, (std::int64_t{1} << bits) - 1);
}
std::int64_t takenFrom(std::int64_t& score, int bits) {
  const std::int64_t number = score & ((std::int64_t{1} << bits) - 1);
  score >>= bits;
  return number;
}

/// Of what keeps every bit the finer sound wins, of what does not the higher bit rate.
Score losslessScore(const TrackRecord& record, const KeeperOptions& options) {
  const MediaItem& item = record.item();
  if (isLossless(item.kind.view())) {
    SampleForm samples{item.sampleDepth, item.channels};
    if ((samples.bits == 0 || samples.channels == 0) && options.samples)
      if (const auto told = options.samples(record)) {
        if (samples.bits == 0) samples.bits = told->bits;
        if (samples.channels == 0) samples.channels = told->channels;
      }
    std::int64_t score = appended(0, samples.bits, depthBits);
    score = appended(score, item.sampleRate, rateBits);
    score = appended(score, samples.channels, channelBits);
    return appended(score, item.bitrate, bitrateBits) | losslessFlag;
  }
  std::int64_t score = appended(0, item.bitrate, bitrateBits);
  score = appended(score, item.sampleRate, rateBits);
  return appended(score, item.channels, channelBits);
}

Message losslessWords(std::int64_t score) {
  const bool keepsAll = score & losslessFlag;
  std::int64_t bitrate = 0, depth = 0;
  if (keepsAll) bitrate = takenFrom(score, bitrateBits);
  const std::int64_t channels = takenFrom(score, channelBits);
  const std::int64_t rate = takenFrom(score, rateBits);
  if (keepsAll)
    depth = takenFrom(score, depthBits);
  else
    bitrate = takenFrom(score, bitrateBits);
  std::vector<Message> known;
  if (depth) known.push_back(Message::tr("%Ln bits", "%Ln bit", depth));
  if (rate) known.push_back(Message::tr("%1 Hz").arg(rate));
  if (channels) known.push_back(Message::tr("%Ln channels", "%Ln channel", channels));
  if (bitrate) known.push_back(Message::tr("%1 kbit/s").arg(bitrate));
  if (known.empty()) return keepsAll ? Message::tr("lossless") : Message::tr("lossy");
  return (keepsAll ? Message::tr("lossless with %1") : Message::tr("lossy with %1"))
      .arg(listed(known));
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
Message placeWords(std::int64_t score) { return Message::tr("place %1").arg(-score); }

constexpr MeasuredRule table[] = {
    {{losslessFirst, Message::literal("Lossless First"), tKind, measured},
     [](const ResultTrack& track, const KeeperOptions& options) {
       return losslessScore(*track.record, options);
     },
     losslessWords},
    {{highestRating, Message::literal("Highest Rating"), realRating, measured},
     [](const ResultTrack& track, const KeeperOptions&) {
       return Score(givenRating(track.record->item()));
     },
     [](std::int64_t score) {
       return score ? Message::verbatim(TextSorter::makeRatingHumanReadable(score))
                    : Message::tr("no rating");
     }},
    {{inMostPlaylists, Message::literal("In Most Playlists"), tLoc, measured},
     [](const ResultTrack& track, const KeeperOptions& options) {
       return options.facts ? Score(options.facts->playlistsWith(*track.record)) : std::nullopt;
     },
     [](std::int64_t score) { return Message::tr("%Ln playlists", "%Ln playlist", score); },
     true},
    {{mostCompleteTags, Message::literal("Most Complete Tags"), tLoc, measured},
     [](const ResultTrack& track, const KeeperOptions&) {
       return Score(filledFields(track.record->item()));
     },
     [](std::int64_t score) {
       return Message::tr("%Ln filled fields", "%Ln filled field", score);
     }},
    {{withCover, Message::literal("With Cover"), tLoc, measured},
     [](const ResultTrack& track, const KeeperOptions& options) {
       const auto cover = options.cover ? options.cover(*track.record) : std::nullopt;
       return cover ? Score(*cover ? 1 : 0) : std::nullopt;
     },
     [](std::int64_t score) {
       return score ? Message::tr("with a cover") : Message::tr("without a cover");
     }},
    {{localBeforeCloud, Message::literal("Local Before Cloud"), tLoc, measured},
     [](const ResultTrack& track, const KeeperOptions&) {
       return Score(track.record->availability() == FileAvailability::cloud ? 0 : 1);
     },
     [](std::int64_t score) { return score ? Message::tr("local") : Message::tr("in the cloud"); }},
    {{orderOfFolders, Message::literal("Order of Folders"), tLoc, measured},
     [](const ResultTrack& track, const KeeperOptions& options) {
       return placeIn(options.folders,
                      [path = track.record->location()](const std::string& folder) {
                        return path.starts_with(folder);
                      });
     },
     placeWords},
    {{orderOfKinds, Message::literal("Order of Kinds"), tKind, measured},
     [](const ResultTrack& track, const KeeperOptions& options) {
       return placeIn(options.kinds, [kind = lowercase(track.record->item().kind.view())](
                                         const std::string& wanted) {
         return kind.find(lowercase(wanted)) != std::string::npos;
       });
     },
     placeWords},
    {{albumWithMostTracks, Message::literal("Album with Most Tracks"), tAlbum, measured},
     [](const ResultTrack& track, const KeeperOptions& options) {
       return options.facts ? Score(options.facts->albumScore(*track.record)) : std::nullopt;
     },
     [](std::int64_t score) {
       return Message::tr("%Ln tracks of the album", "%Ln track of the album",
                          KeeperFacts::albumTracks(score));
     },
     true},
};

}  // namespace

std::span<const MeasuredRule> measuredRules() noexcept { return table; }

const MeasuredRule* measuredRule(KeeperRule rule) noexcept {
  const auto place = static_cast<std::size_t>(rule) - static_cast<std::size_t>(table[0].info.rule);
  return place < std::size(table) ? &table[place] : nullptr;
}

}  // namespace kestrel
