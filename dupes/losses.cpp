#include "dupes/losses.h"

#include <algorithm>
#include <utility>

#include "dupes/lossless.h"
#include "foundation/message.h"
#include "foundation/text_helpers.h"

namespace kestrel {

bool Loss::isNothing() const noexcept {
  return plays == 0 && rating == 0 && !added && !lastPlayed && skips == 0 && !lastSkipped &&
         comments.empty() && grouping.empty() && bpm == 0 && !lossless && !cover && playlists == 0;
}

void LossesBesideCarrying::leaveOut(Loss& loss) {
  if (carried_.has(TrackValue::plays)) {
    loss.plays = 0;
    loss.lastPlayed = {};
  }
  if (carried_.has(TrackValue::rating)) loss.rating = 0;
  if (carried_.has(TrackValue::added)) loss.added = {};
  if (carried_.has(TrackValue::comments) && !loss.comments.empty() &&
      loss.keeper->item().comments.view().empty() &&
      comments_.try_emplace(loss.keeper, loss.comments).first->second == loss.comments)
    loss.comments = {};
}

void LossTotal::add(const Loss& loss) noexcept {
  if (loss.isNothing()) return;
  ++copies;
  plays += loss.plays;
  playlists += loss.playlists;
  ratings += loss.rating ? 1 : 0;
  added += loss.added ? 1 : 0;
  lastPlayed += loss.lastPlayed ? 1 : 0;
  skips += loss.skips;
  lastSkipped += loss.lastSkipped ? 1 : 0;
  comments += loss.comments.empty() ? 0 : 1;
  groupings += loss.grouping.empty() ? 0 : 1;
  bpm += loss.bpm ? 1 : 0;
  lossless += loss.lossless ? 1 : 0;
  cover += loss.cover ? 1 : 0;
}

Loss lossOf(const TrackRecord& track, const TrackRecord& keeper, const KeeperFacts& facts,
            const CoverOf& cover) {
  const MediaItem& copy = track.item();
  const MediaItem& kept = keeper.item();
  Loss loss;
  loss.track = &track;
  loss.keeper = &keeper;
  loss.plays = copy.playCount;
  if (givenRating(copy) > givenRating(kept)) loss.rating = givenRating(copy);
  if (copy.added && (!kept.added || (*copy.added).seconds < (*kept.added).seconds))
    loss.added = copy.added;
  if (copy.lastPlayed &&
      (!kept.lastPlayed || (*copy.lastPlayed).seconds > (*kept.lastPlayed).seconds))
    loss.lastPlayed = copy.lastPlayed;
  loss.skips = copy.skipCount;
  if (copy.skipped && (!kept.skipped || (*copy.skipped).seconds > (*kept.skipped).seconds))
    loss.lastSkipped = copy.skipped;
  if (kept.comments.view() != copy.comments.view()) loss.comments = copy.comments.view();
  if (kept.grouping.view().empty()) loss.grouping = copy.grouping.view();
  if (kept.beatsPerMinute == 0) loss.bpm = copy.beatsPerMinute;
  loss.lossless = isLossless(copy.kind.view()) && !isLossless(kept.kind.view());
  // Of a keeper of which it is not known, nothing is said.
  loss.cover = cover && cover(track).value_or(false) && !cover(keeper).value_or(true);
  const auto listing = facts.playlistsOf(track);
  const auto listingKeeper = facts.playlistsOf(keeper);
  for (const std::uint32_t playlist : listing)
    if (!std::binary_search(listingKeeper.begin(), listingKeeper.end(), playlist)) ++loss.playlists;
  return loss;
}

std::vector<Loss> lossesOf(std::span<const ResultTrack* const> members, const KeeperFacts& facts,
                           FunctionRef<bool(const ResultTrack&)> isKeeper, const CoverOf& cover) {
  std::vector<Loss> losses;
  const auto keeper = std::find_if(members.begin(), members.end(),
                                   [&](const ResultTrack* member) { return isKeeper(*member); });
  if (keeper == members.end()) return losses;
  for (const ResultTrack* member : members) {
    // A track that is listed twice is one track.
    if (isKeeper(*member) || member->record == (*keeper)->record) continue;
    Loss loss = lossOf(*member->record, *(*keeper)->record, facts, cover);
    if (!loss.isNothing()) losses.push_back(std::move(loss));
  }
  return losses;
}

Message explain(const Loss& loss) {
  std::vector<Message> texts;
  if (loss.plays) texts.push_back(Message::tr("%Ln plays", "%Ln play", loss.plays));
  if (loss.rating)
    texts.push_back(Message::verbatim(TextSorter::makeRatingHumanReadable(loss.rating)));
  if (loss.added) texts.push_back(Message::tr("the earlier date added"));
  if (loss.lastPlayed) texts.push_back(Message::tr("the later date played"));
  if (loss.skips) texts.push_back(Message::tr("%Ln skips", "%Ln skip", loss.skips));
  if (loss.lastSkipped) texts.push_back(Message::tr("the later date skipped"));
  if (!loss.comments.empty()) texts.push_back(Message::tr("comments"));
  if (!loss.grouping.empty()) texts.push_back(Message::tr("grouping"));
  if (loss.bpm) texts.push_back(Message::tr("%1 BPM").arg(loss.bpm));
  if (loss.lossless) texts.push_back(Message::tr("lossless sound"));
  if (loss.cover) texts.push_back(Message::tr("cover"));
  if (loss.playlists) texts.push_back(Message::tr("%Ln playlists", "%Ln playlist", loss.playlists));
  return texts.empty() ? Message() : listed(texts);
}

Message explain(const LossTotal& total) {
  std::vector<Message> texts;
  if (total.plays) texts.push_back(Message::tr("%Ln plays", "%Ln play", total.plays));
  if (total.ratings) texts.push_back(Message::tr("%Ln ratings", "%Ln rating", total.ratings));
  if (total.added)
    texts.push_back(Message::tr("%Ln earlier dates added", "%Ln earlier date added", total.added));
  if (total.lastPlayed)
    texts.push_back(
        Message::tr("%Ln later dates played", "%Ln later date played", total.lastPlayed));
  if (total.skips) texts.push_back(Message::tr("%Ln skips", "%Ln skip", total.skips));
  if (total.lastSkipped)
    texts.push_back(
        Message::tr("%Ln later dates skipped", "%Ln later date skipped", total.lastSkipped));
  if (total.comments) texts.push_back(Message::tr("%Ln comments", "%Ln comment", total.comments));
  if (total.groupings)
    texts.push_back(Message::tr("%Ln groupings", "%Ln grouping", total.groupings));
  if (total.bpm) texts.push_back(Message::tr("%Ln BPM values", "%Ln BPM value", total.bpm));
  if (total.lossless)
    texts.push_back(Message::tr("%Ln lossless files", "%Ln lossless file", total.lossless));
  if (total.cover) texts.push_back(Message::tr("%Ln covers", "%Ln cover", total.cover));
  if (total.playlists)
    texts.push_back(
        Message::tr("%Ln places in playlists", "%Ln place in playlists", total.playlists));
  return texts.empty() ? Message() : listed(texts);
}

}  // namespace kestrel
