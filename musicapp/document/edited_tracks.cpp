#include "musicapp/document/edited_tracks.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <utility>

#include "foundation/dates.h"
#include "musicapp/document/document_tracks.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// A list of items whose texts belong to other lists, which it keeps alive.
struct DerivedItems {
  std::shared_ptr<const MediaItems> original;
  std::shared_ptr<const MediaItems> added;
  MediaItems items;
};

/// A million texts as keys: their hashes, to be followed by a comparison.
std::uint64_t locationHash(string_view location) { return std::hash<string_view>()(location); }

}  // namespace

std::string locationOf(const MediaItem& item) {
  return item.locationFolder.isNull() ? std::string(item.locationName.view()) : filePath(item);
}

EditedTracks::EditedTracks(string_view document, const DocumentIndex& index,
                           std::shared_ptr<const MediaItems> items)
    : document_(document), index_(index), original_(std::move(items)), current_(original_) {
  if (original_->size() != index.trackCount())
    throw std::invalid_argument("the items are not those of the indexed document");
  items_.reserve(original_->size());
  original_->forEach([&](const MediaItem& item) { items_.push_back(&item); });
  removed_.resize(items_.size());
}

std::int64_t EditedTracks::trackID(TrackNumber number) const {
  return isOld(number) ? index_.trackID(document_, index_.entryOf(number))
                       : addedEntries_[number - index_.trackCount()].trackID;
}

std::optional<TrackNumber> EditedTracks::byPersistentID(std::uint64_t id) {
  if (!byPersistentID_) {
    byPersistentID_.emplace().reserve(items_.size());
    for (TrackNumber i = 0; i < items_.size(); ++i)
      byPersistentID_->add(items_[i]->persistentID, i);
  }
  return byPersistentID_->find(id, [&](TrackNumber i) { return !removed_[i]; });
}

std::optional<TrackNumber> EditedTracks::byTrackID(std::int64_t id) {
  if (!byTrackID_) {
    byTrackID_.emplace().reserve(items_.size());
    for (TrackNumber i = 0; i < items_.size(); ++i)
      if (const std::int64_t key = trackID(i); key != noTrackID)
        byTrackID_->add(static_cast<std::uint64_t>(key), i);
  }
  return byTrackID_->find(static_cast<std::uint64_t>(id),
                          [&](TrackNumber i) { return !removed_[i]; });
}

std::optional<TrackNumber> EditedTracks::byLocation(string_view location) {
  if (location.empty()) return std::nullopt;
  if (!byLocation_) {
    byLocation_.emplace().reserve(items_.size());
    for (TrackNumber i = 0; i < items_.size(); ++i)
      byLocation_->add(locationHash(locationOf(*items_[i])), i);
  }
  return byLocation_->find(locationHash(location), [&](TrackNumber i) {
    return !removed_[i] && locationOf(*items_[i]) == location;
  });
}

TrackNumber EditedTracks::add(const MediaItem& item, std::int64_t trackID) {
  return add(item, {trackID, {}, {}});
}

TrackNumber EditedTracks::add(const MediaItem& item, Added added) {
  const auto number = static_cast<TrackNumber>(items_.size());
  const std::int64_t trackID = added.trackID;
  items_.push_back(&added_->appendCopy(item));
  removed_.push_back(false);
  addedEntries_.push_back(std::move(added));
  // Lookups that were not made yet will find it in `items_`.
  if (byPersistentID_) byPersistentID_->add(item.persistentID, number);
  if (byTrackID_) byTrackID_->add(static_cast<std::uint64_t>(trackID), number);
  if (byLocation_) byLocation_->add(locationHash(locationOf(item)), number);
  current_.reset();
  return number;
}

TrackNumber EditedTracks::restore(const MediaItem& item, std::int64_t trackID, std::string entry,
                                  std::uint64_t behind) {
  Added added{trackID, std::move(entry), {}};
  const ContainerPlace& section = index_.tracks;
  if (behind == 0) {
    if (!section.selfClosed) added.place = section.content;
  } else if (const auto before = byPersistentID(behind)) {
    added.place =
        isOld(*before) ? entryOf(*before).end : addedEntries_[*before - index_.trackCount()].place;
  }
  return add(item, std::move(added));
}

ValueElements EditedTracks::valueElements(TrackNumber number) const {
  if (!isOld(number)) {
    const std::string& entry = addedEntries_[number - index_.trackCount()].entry;
    return entry.empty() ? ValueElements() : kestrel::valueElements(entry, 0);
  }
  ValueElements elements = kestrel::valueElements(document_, entryOf(number).begin);
  if (const auto given = given_.find(number); given != given_.end())
    for (const auto& [key, text] : given->second)
      for (auto& [known, held] : elements)
        if (known == key) held = text;
  return elements;
}

void EditedTracks::setValues(TrackNumber number, const ValueElements& elements,
                             const MediaItem& item, const DocumentLayout& layout) {
  if (isOld(number)) {
    ValueElements& given = given_[number];
    for (const auto& one : elements) {
      std::erase_if(given, [&](const auto& held) { return held.first == one.first; });
      given.push_back(one);
    }
  } else if (std::string& entry = addedEntries_[number - index_.trackCount()].entry;
             !entry.empty()) {
    std::vector<EntryEdit> edits = editsOf(entry, 0, elements, layout);
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
      entry.replace(edit->old.begin, edit->old.end - edit->old.begin, edit->text);
  }
  items_[number] = &added_->appendCopy(item);
  current_.reset();
}

std::vector<EditedTracks::Removed> EditedTracks::removed() const {
  std::vector<Removed> removed;
  for (TrackNumber i = 0; isOld(i); ++i)
    if (removed_[i]) removed.push_back({i, i == 0 ? 0 : items_[i - 1]->persistentID, entryOf(i)});
  return removed;
}

void EditedTracks::remove(TrackNumber number) {
  removed_[number] = true;
  current_.reset();
}

std::shared_ptr<const MediaItems> EditedTracks::items() {
  if (current_) return current_;
  // The texts of added items lie in a pool that later additions leave where it is.
  const auto derived = std::make_shared<DerivedItems>();
  derived->original = original_;
  derived->added = added_;
  std::vector<MediaItem> block;
  for (TrackNumber i = 0; i < items_.size(); ++i) {
    if (removed_[i]) continue;
    if (block.empty()) block.reserve(MediaItems::itemsPerBlock);
    block.push_back(*items_[i]);
    if (block.size() == MediaItems::itemsPerBlock) derived->items.append(std::exchange(block, {}));
  }
  if (!block.empty()) derived->items.append(std::move(block));
  current_ = std::shared_ptr<const MediaItems>(derived, &derived->items);
  return current_;
}

void EditedTracks::appendSplices(const DocumentLayout& layout, std::vector<Splice>& splices) const {
  const size_t old = index_.trackCount();
  std::unordered_set<std::int64_t> removedIDs;  // only looked at where Track IDs repeat
  for (TrackNumber i = 0; i < old; ++i) {
    if (!removed_[i]) continue;
    const ByteRange entry = entryOf(i);
    if (!index_.replaced.empty()) removedIDs.insert(trackID(i));
    if (!splices.empty() && splices.back().old.end == entry.begin && !splices.back().text)
      splices.back().old.end = entry.end;
    else
      splices.push_back({entry, {}});
  }
  for (const auto& [number, elements] : given_) {
    if (removed_[number]) continue;
    for (EntryEdit& edit : editsOf(document_, entryOf(number).begin, elements, layout))
      splices.push_back(
          {edit.old, [text = std::move(edit.text)](TextSink& sink) { sink.append(text); }});
  }
  // The earlier entries with the same Track ID, which did not count so far, would count now.
  if (!removedIDs.empty())
    for (const size_t entry : index_.replaced)
      if (removedIDs.contains(index_.trackID(document_, entry)))
        splices.push_back({index_.trackEntry(entry), {}});
  bool anyAdded = false;
  for (size_t i = old; i < items_.size(); ++i) {
    const Added& added = addedEntries_[i - old];
    if (removed_[i]) continue;
    if (added.place)
      splices.push_back(
          {{*added.place, *added.place}, [&added](TextSink& sink) { sink.append(added.entry); }});
    else
      anyAdded = true;
  }
  if (anyAdded)
    appendInto(
        document_, index_.tracks, "dict", 0, layout,
        [this, &layout](TextSink& sink) { writeAdded(sink, layout); }, splices);
}

void EditedTracks::writeAdded(TextSink& sink, const DocumentLayout& layout) const {
  LayoutWriter out(sink, layout);
  const DateFormatter dates("UTC");
  const size_t old = index_.trackCount();
  for (size_t i = old; i < items_.size(); ++i) {
    const Added& added = addedEntries_[i - old];
    if (removed_[i] || added.place) continue;
    if (added.entry.empty())
      writeTrack(*items_[i], added.trackID, dates, out);
    else
      sink.append(added.entry);
  }
}

}  // namespace kestrel
