#include "musicapp/track_values.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "foundation/text_helpers.h"
#include "foundation/utf8.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

constexpr std::int64_t mostPlays = std::numeric_limits<std::int32_t>::max();

}  // namespace

std::vector<TrackValue> TrackValueSet::list() const {
  std::vector<TrackValue> list;
  for (const auto& [value, name] : trackValueNames)
    if (has(value)) list.push_back(value);
  return list;
}

TrackValueSet TrackValueSet::without(TrackValueSet others) const noexcept {
  TrackValueSet rest;
  rest.bits_ = bits_ & ~others.bits_;
  return rest;
}

bool isSame(TrackValue which, const TrackValues& a, const TrackValues& b) noexcept {
  switch (which) {
    case TrackValue::plays:
      return a.plays == b.plays && a.lastPlayed == b.lastPlayed;
    case TrackValue::rating:
      return a.rating == b.rating;
    case TrackValue::added:
      return a.added == b.added;
    case TrackValue::comments:
      return a.comments == b.comments;
  }
  return true;
}

bool isSame(TrackValueSet which, const TrackValues& a, const TrackValues& b) noexcept {
  return std::all_of(trackValueNames.begin(), trackValueNames.end(), [&](const auto& named) {
    return !which.has(named.first) || isSame(named.first, a, b);
  });
}

bool hasAny(TrackValueSet which, const TrackValues& values) noexcept {
  return !isSame(which, values, {});
}

TrackValues valuesOf(const MediaItem& item) {
  TrackValues values;
  values.plays = item.playCount;
  values.lastPlayed = item.lastPlayed;
  if (!item.isRatingComputed) values.rating = item.rating;
  values.added = item.added;
  values.comments = item.comments.view();
  return values;
}

std::vector<std::optional<TrackValues>> valuesIn(MediaLibrary& library,
                                                 std::span<const std::uint64_t> tracks) {
  std::unordered_multimap<std::uint64_t, std::size_t> places;
  for (std::size_t i = 0; i < tracks.size(); ++i) places.emplace(tracks[i], i);
  std::vector<std::optional<TrackValues>> found(tracks.size());
  if (!tracks.empty())
    library.allMediaItems()->forEach([&](const MediaItem& item) {
      const auto [first, last] = places.equal_range(item.persistentID);
      for (auto place = first; place != last; ++place)
        if (!found[place->second]) found[place->second] = valuesOf(item);
    });
  return found;
}

TrackValues carriedOver(TrackValueSet which, const TrackValues& kept,
                        std::span<const TrackValues* const> copies) {
  TrackValues values = kept;
  values.stored.clear();
  for (const TrackValues* copy : copies) {
    if (which.has(TrackValue::plays)) {
      if (copy->plays > 0 && values.plays < mostPlays)
        values.plays = std::min(mostPlays, std::max<std::int64_t>(values.plays, 0) +
                                               std::min<std::int64_t>(copy->plays, mostPlays));
      if (copy->lastPlayed &&
          (!values.lastPlayed || values.lastPlayed.seconds < copy->lastPlayed.seconds))
        values.lastPlayed = copy->lastPlayed;
    }
    if (which.has(TrackValue::rating))
      values.rating = std::max(values.rating, std::min<std::int64_t>(copy->rating, 100));
    if (which.has(TrackValue::added) && copy->added &&
        (!values.added || copy->added.seconds < values.added.seconds))
      values.added = copy->added;
    if (which.has(TrackValue::comments) && values.comments.empty())
      values.comments = writableText(copy->comments);
  }
  return values;
}

Message gainOf(TrackValueSet which, const TrackValues& before, const TrackValues& after) {
  std::vector<Message> texts;
  if (which.has(TrackValue::plays)) {
    if (after.plays != before.plays)
      texts.push_back(Message::tr("%Ln plays", "%Ln play", after.plays - before.plays));
    else if (!isSame(TrackValue::plays, before, after))
      texts.push_back(Message::tr("the later date played"));
  }
  if (which.has(TrackValue::rating) && after.rating != before.rating)
    texts.push_back(Message::verbatim(TextSorter::makeRatingHumanReadable(after.rating)));
  if (which.has(TrackValue::added) && !isSame(TrackValue::added, before, after))
    texts.push_back(Message::tr("the earlier date added"));
  if (which.has(TrackValue::comments) && after.comments != before.comments)
    texts.push_back(Message::tr("comments"));
  return texts.empty() ? Message() : listed(texts);
}

void setValues(MediaItem& item, TrackValueSet which, const TrackValues& values, TextPool& pool) {
  if (which.has(TrackValue::plays)) {
    item.playCount = values.plays;
    item.lastPlayed = values.lastPlayed;
  }
  if (which.has(TrackValue::rating) && valuesOf(item).rating != values.rating) {
    item.rating = values.rating;
    item.isRatingComputed = false;
  }
  if (which.has(TrackValue::added)) item.added = values.added;
  if (which.has(TrackValue::comments) && item.comments.view() != values.comments)
    item.comments = values.comments.empty() ? Text() : pool.add(values.comments);
}

void give(GivenValues& given, std::uint64_t track, TrackValueSet which, const TrackValues& values) {
  auto& [known, held] = given[track];
  for (const TrackValue value : which.list()) {
    known.add(value);
    switch (value) {
      case TrackValue::plays:
        held.plays = values.plays;
        held.lastPlayed = values.lastPlayed;
        break;
      case TrackValue::rating:
        held.rating = values.rating;
        break;
      case TrackValue::added:
        held.added = values.added;
        break;
      case TrackValue::comments:
        held.comments = values.comments;
        break;
    }
  }
  held.stored = values.stored;
}

std::shared_ptr<const MediaItems> withValues(std::shared_ptr<const MediaItems> items,
                                             const GivenValues& given) {
  if (given.empty()) return items;
  const auto both = std::make_shared<std::pair<MediaItems, std::shared_ptr<const MediaItems>>>();
  both->second = std::move(items);
  TextPool& pool = both->first.newPool();
  std::vector<MediaItem> block;
  both->second->forEach([&](const MediaItem& item) {
    if (block.empty()) block.reserve(MediaItems::itemsPerBlock);
    block.push_back(item);
    if (const auto found = given.find(item.persistentID); found != given.end())
      setValues(block.back(), found->second.first, found->second.second, pool);
    if (block.size() == MediaItems::itemsPerBlock) both->first.append(std::exchange(block, {}));
  });
  if (!block.empty()) both->first.append(std::move(block));
  return {both, &both->first};
}

}  // namespace kestrel
