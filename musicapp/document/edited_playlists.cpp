#include "musicapp/document/edited_playlists.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "foundation/identifiers.h"
#include "musicapp/command_support.h"

namespace kestrel {
namespace {

using std::size_t;

// Levels below the keys of the root dictionary.
constexpr size_t playlistDepth = 1, keyDepth = 2, entryDepth = 3;

/// Counts of entries that are left, so that the n-th of them is found in logarithmic time.
class RemainingEntries {
 public:
  explicit RemainingEntries(size_t count) : tree_(count + 1), left_(count) {
    for (size_t i = 1; i <= count; ++i) {
      tree_[i] += 1;
      if (const size_t parent = i + (i & -i); parent <= count) tree_[parent] += tree_[i];
    }
    while (step_ * 2 <= count) step_ *= 2;
  }
  [[nodiscard]] size_t left() const noexcept { return left_; }
  /// Removes the `position`-th of those left, counted from 0, and returns its original place.
  size_t take(size_t position) {
    size_t at = 0;
    for (size_t step = step_; step > 0; step /= 2) {
      if (at + step >= tree_.size() || tree_[at + step] > position) continue;
      at += step;
      position -= tree_[at];
    }
    for (size_t i = at + 1; i < tree_.size(); i += i & -i) --tree_[i];
    --left_;
    return at;
  }

 private:
  std::vector<size_t> tree_;  // binary indexed, from 1
  size_t left_;
  size_t step_ = 1;
};

}  // namespace

EditedPlaylists::EditedPlaylists(std::string_view document, const DocumentIndex& index,
                                 EditedTracks& tracks,
                                 std::shared_ptr<const std::vector<Playlist>> playlists)
    : document_(document), index_(index), tracks_(tracks), current_(std::move(playlists)) {
  if (current_->size() != index.playlistEnds.size())
    throw std::invalid_argument("the playlists are not those of the indexed document");
  changes_.resize(current_->size());
  for (size_t i = 0; i < changes_.size(); ++i) changes_[i].origin = i;
  removedOrigins_.resize(changes_.size());
}

std::shared_ptr<const std::vector<Playlist>> EditedPlaylists::shared() const {
  if (!own_) return current_;
  struct Lease {
    explicit Lease(const EditedPlaylists& lender) : list(lender.own_), leases(lender.leases_) {
      leases->fetch_add(1, std::memory_order_relaxed);
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    // Releases what its thread has read: a change that sees the lease gone comes after all of it.
    ~Lease() { leases->fetch_sub(1, std::memory_order_release); }

    std::shared_ptr<const std::vector<Playlist>> list;
    std::shared_ptr<std::atomic<size_t>> leases;
  };
  auto lease = std::make_shared<Lease>(*this);
  const auto* list = lease->list.get();
  return {std::move(lease), list};
}

std::vector<Playlist>& EditedPlaylists::own() {
  if (!own_ || leases_->load(std::memory_order_acquire) > 0) {
    own_ = std::make_shared<std::vector<Playlist>>(*current_);
    current_ = own_;
    leases_ = std::make_shared<std::atomic<size_t>>(0);
  }
  return *own_;
}

void EditedPlaylists::learnEntries(size_t playlist) {
  Change& change = changes_[playlist];
  if (change.place || change.origin == added) return;
  change.place = index_.playlist(document_, change.origin, &change.entries);
  size_t known = 0;
  std::erase_if(change.entries, [&](const EntryPlace& entry) {
    const bool isUnknown =
        std::binary_search(index_.undefinedIDs.begin(), index_.undefinedIDs.end(), entry.trackID);
    isUnknown ? change.unknown.push_back({entry.entry, known}) : void(++known);
    return isUnknown;
  });
  std::vector<Slot> slots;
  slots.reserve(change.entries.size() + change.slots.size());
  for (size_t i = 0; i < change.entries.size(); ++i)
    slots.push_back({i, change.entries[i].trackID});
  slots.insert(slots.end(), change.slots.begin(), change.slots.end());
  change.slots = std::move(slots);
  if (change.slots.size() != (*current_)[playlist].items.size())
    throw std::logic_error("the entries of a playlist are not those that were read");
}

size_t EditedPlaylists::unknownBefore(const Change& change, const Slot& slot) {
  if (slot.old == added) return slot.unknownBefore;
  const auto behind = std::upper_bound(
      change.unknown.begin(), change.unknown.end(), slot.old,
      [](size_t old, const UnknownEntry& unknown) { return old < unknown.knownBefore; });
  return static_cast<size_t>(behind - change.unknown.begin());
}

void EditedPlaylists::settleUnknown(size_t playlist) {
  Change& change = changes_[playlist];
  if (change.unknown.empty()) return;
  size_t lastKept = added;
  for (size_t i = 0; i < change.slots.size(); ++i)
    if (change.slots[i].old != added) lastKept = i;
  for (size_t i = 0; i < change.slots.size(); ++i) {
    Slot& slot = change.slots[i];
    if (slot.old != added || slot.unknownBefore != unsettled) continue;
    if (lastKept == added || i > lastKept) {
      slot.unknownBefore = atEnd;
    } else {
      size_t like = i;  // the one before it, or else the first that stays
      while (i == 0 && change.slots[like].old == added) ++like;
      slot.unknownBefore = unknownBefore(change, change.slots[i == 0 ? like : i - 1]);
    }
  }
  std::vector<std::uint64_t>& places = own()[playlist].unknownAt;
  places.assign(change.unknown.size(), 0);
  for (size_t u = 0, i = 0; u < places.size(); ++u) {
    while (i < change.slots.size() && unknownBefore(change, change.slots[i]) <= u) ++i;
    places[u] = i;
  }
}

void EditedPlaylists::add(std::string name, std::uint64_t persistentID, std::int64_t playlistID,
                          std::span<const TrackNumber> tracks) {
  Playlist& playlist = own().emplace_back();
  playlist.name = std::move(name);
  playlist.persistentID = persistentID;
  changes_.emplace_back().playlistID = playlistID;
  append(changes_.size() - 1, tracks);
}

void EditedPlaylists::append(size_t playlist, std::span<const TrackNumber> tracks) {
  std::vector<std::uint64_t>& items = own()[playlist].items;
  for (const TrackNumber track : tracks) {
    items.push_back(tracks_.item(track).persistentID);
    changes_[playlist].slots.push_back({added, tracks_.trackID(track), atEnd});
  }
}

void EditedPlaylists::remove(const std::vector<bool>& removed) {
  std::vector<Playlist>& playlists = own();
  size_t kept = 0;
  for (size_t i = 0; i < playlists.size(); ++i) {
    Change& change = changes_[i];
    if (removed[i]) {
      if (change.origin != added) removedOrigins_[change.origin] = true;
      continue;
    }
    if (kept != i) {
      // Without an ID in the document it would get another one from its new position.
      change.writesID = change.writesID || lacksID(change);
      playlists[kept] = std::move(playlists[i]);
      changes_[kept] = std::move(change);
    }
    ++kept;
  }
  playlists.resize(kept);
  changes_.resize(kept);
}

template <typename IsRemoved>
void EditedPlaylists::removeWhere(size_t playlist, IsRemoved&& isRemoved) {
  learnEntries(playlist);
  std::vector<Slot>& slots = changes_[playlist].slots;
  std::vector<std::uint64_t>& items = own()[playlist].items;
  size_t kept = 0;
  for (size_t i = 0; i < items.size(); ++i) {
    if (isRemoved(i, slots[i].trackID)) continue;
    items[kept] = items[i];
    slots[kept++] = slots[i];
  }
  items.resize(kept);
  slots.resize(kept);
  settleUnknown(playlist);
}

void EditedPlaylists::replaceEntry(size_t playlist, size_t position, TrackNumber track) {
  learnEntries(playlist);
  own()[playlist].items[position] = tracks_.item(track).persistentID;
  changes_[playlist].slots[position].trackID = tracks_.trackID(track);
}

void EditedPlaylists::setEntries(size_t playlist, std::span<const TrackNumber> tracks,
                                 const std::vector<std::uint64_t>& unknownAt) {
  learnEntries(playlist);
  std::vector<std::uint64_t> then;
  then.reserve(tracks.size());
  for (const TrackNumber track : tracks) then.push_back(tracks_.item(track).persistentID);
  const EntryMatch match = matchedEntries(own()[playlist], {0, then, unknownAt});
  std::vector<std::uint64_t>& now = own()[playlist].items;
  std::vector<Slot>& slots = changes_[playlist].slots;
  std::vector<Slot> next;
  next.reserve(then.size());
  for (size_t j = 0; j < then.size(); ++j) {
    const size_t from = match.from[j];
    next.push_back(from == noEntry ? Slot() : slots[from]);
    if (from == noEntry || now[from] != then[j]) next.back().trackID = tracks_.trackID(tracks[j]);
    if (next.back().old == added)
      next.back().unknownBefore = match.unknownBefore.empty() ? unsettled : match.unknownBefore[j];
  }
  slots = std::move(next);
  now = std::move(then);
  settleUnknown(playlist);
}

void EditedPlaylists::insertEntries(size_t playlist, std::span<const InsertedEntry> entries) {
  learnEntries(playlist);
  std::vector<std::uint64_t>& items = own()[playlist].items;
  std::vector<Slot>& slots = changes_[playlist].slots;
  const std::vector<std::uint64_t> oldItems = std::move(items);
  const std::vector<Slot> oldSlots = std::move(slots);
  items.clear();
  slots.clear();
  size_t next = 0;
  const auto keepUntil = [&](size_t size) {
    for (; items.size() < size && next < oldItems.size(); ++next) {
      items.push_back(oldItems[next]);
      slots.push_back(oldSlots[next]);
    }
  };
  for (const InsertedEntry& entry : entries) {
    keepUntil(entry.position);
    items.push_back(tracks_.item(entry.track).persistentID);
    slots.push_back({added, tracks_.trackID(entry.track), unsettled});
  }
  keepUntil(SIZE_MAX);
  settleUnknown(playlist);
}

std::optional<std::vector<bool>> EditedPlaylists::entriesAt(
    size_t playlist, std::span<const std::uint64_t> positions) const {
  const size_t count = (*current_)[playlist].items.size();
  RemainingEntries remaining(count);
  std::vector<bool> removed(count);
  for (const std::uint64_t position : positions) {
    if (position >= remaining.left()) return std::nullopt;
    removed[remaining.take(position)] = true;
  }
  return removed;
}

void EditedPlaylists::removeEntries(size_t playlist, const std::vector<bool>& removed) {
  removeWhere(playlist, [&](size_t i, std::int64_t) { return removed[i]; });
}

void EditedPlaylists::removeAllEntries(size_t playlist) {
  removeWhere(playlist, [](size_t, std::int64_t) { return true; });
}

std::vector<EditedPlaylists::LostEntry> EditedPlaylists::removeTracks(
    std::span<const TrackNumber> tracks) {
  std::unordered_set<std::uint64_t> persistentIDs;
  std::unordered_set<std::int64_t> trackIDs;
  for (const TrackNumber track : tracks) {
    persistentIDs.insert(tracks_.item(track).persistentID);
    trackIDs.insert(tracks_.trackID(track));
  }
  std::vector<LostEntry> lost;
  for (size_t list = 0; list < current_->size(); ++list) {
    const std::vector<std::uint64_t>& items = (*current_)[list].items;
    if (std::none_of(items.begin(), items.end(),
                     [&](std::uint64_t id) { return persistentIDs.contains(id); }))
      continue;
    // Persistent IDs may repeat in a damaged library: the Track ID decides.
    removeWhere(list, [&](size_t i, std::int64_t trackID) {
      if (!trackIDs.contains(trackID)) return false;
      lost.push_back({(*current_)[list].persistentID, i, (*current_)[list].items[i]});
      return true;
    });
  }
  return lost;
}

void EditedPlaylists::move(size_t playlist, size_t folder) {
  std::vector<Playlist>& playlists = own();
  playlists[playlist].parentID = playlists[folder].persistentID;
  changes_[playlist].moved = true;
  Change& target = changes_[folder];
  target.writesID = target.writesID || lacksID(target);
}

void EditedPlaylists::appendSplices(const DocumentLayout& layout,
                                    std::vector<Splice>& splices) const {
  for (size_t i = 0; i < removedOrigins_.size(); ++i)
    if (removedOrigins_[i]) splices.push_back({index_.playlistEntry(i), {}});
  size_t firstAdded = changes_.size();
  for (size_t i = 0; i < changes_.size(); ++i) {
    if (changes_[i].origin == added)
      firstAdded = std::min(firstAdded, i);
    else
      appendOldSplices(i, layout, splices);
  }
  if (firstAdded == changes_.size()) return;
  const auto write = [this, firstAdded, &layout](TextSink& sink) {
    writeAdded(firstAdded, sink, layout);
  };
  if (index_.playlists.isThere())
    return appendInto(document_, index_.playlists, "array", 0, layout, write, splices);
  const auto writeSection = [write, &layout](TextSink& sink) {
    LayoutWriter out(sink, layout);
    out.key(0, "Playlists");
    out.tag(0, "<array>");
    write(sink);
    out.tag(0, "</array>");
  };
  // The root's tags stand wherever the document has put them.
  appendInto(document_, index_.root, "dict", 0, layout, writeSection, splices);
}

void EditedPlaylists::appendOldSplices(size_t playlist, const DocumentLayout& layout,
                                       std::vector<Splice>& splices) const {
  const Change& change = changes_[playlist];
  const Playlist& state = (*current_)[playlist];
  if (!change.place && !change.moved && !change.writesID && change.slots.empty()) return;
  const PlaylistPlace old =
      change.place ? *change.place : index_.playlist(document_, change.origin);

  const auto writeID = [&state, &layout](TextSink& sink) {
    LayoutWriter(sink, layout)
        .text(keyDepth, "Playlist Persistent ID", paddedHex(state.persistentID));
  };
  const auto writeParent = [&state, &layout](TextSink& sink) {
    LayoutWriter(sink, layout).text(keyDepth, "Parent Persistent ID", paddedHex(*state.parentID));
  };
  // New keys come behind the one that they belong to, or behind all others.
  std::vector<std::function<void(TextSink&)>> last;
  const auto put = [&](size_t behind, const std::function<void(TextSink&)>& text) {
    if (behind)
      splices.push_back({{behind, behind}, text});
    else
      last.push_back(text);
  };
  if (change.writesID) last.push_back(writeID);  // counts even if an ID that is none stands before
  if (change.moved && !old.parent.empty())
    splices.push_back({old.parent, [&state](TextSink& sink) {
                         sink.append("<string>" + paddedHex(*state.parentID) + "</string>");
                       }});
  else if (change.moved)
    put(old.behindID ? old.behindID : old.behindName, writeParent);

  std::vector<std::int64_t> appended;
  appendEntrySplices(change, layout, splices, appended);
  const auto writeEntries = [&layout, appended](TextSink& sink) {
    LayoutWriter(sink, layout).entries(entryDepth, appended);
  };
  if (!appended.empty() && old.items.isThere()) {
    appendInto(document_, old.items, "array", keyDepth, layout, writeEntries, splices);
  } else if (!appended.empty()) {
    last.push_back([writeEntries, &layout](TextSink& sink) {
      LayoutWriter out(sink, layout);
      out.key(keyDepth, "Playlist Items");
      out.tag(keyDepth, "<array>");
      writeEntries(sink);
      out.tag(keyDepth, "</array>");
    });
  }
  if (!last.empty())
    appendInto(
        document_, old.dictionary, "dict", playlistDepth, layout,
        [last](TextSink& sink) {
          for (const auto& text : last) text(sink);
        },
        splices);
}

void EditedPlaylists::appendEntrySplices(const Change& change, const DocumentLayout& layout,
                                         std::vector<Splice>& splices,
                                         std::vector<std::int64_t>& appended) const {
  size_t next = 0;  // the first of the document's entries that is not settled
  const auto cutUntil = [&](size_t end) {
    for (; next < end; ++next) splices.push_back({change.entries[next].entry, {}});
  };
  // Added ones that stand together, and how many of unknown tracks stand before them.
  std::vector<std::pair<size_t, std::vector<std::int64_t>>> groups;
  // Behind what they follow, as those that come at the end are. `before`: at which they stand where
  // they follow nothing.
  const auto insert = [&](size_t before) {
    for (auto& [unknown, ids] : groups) {
      size_t at = next > 0 ? change.entries[next - 1].entry.end : before;
      if (unknown > 0 && unknown <= change.unknown.size())
        at = std::max(next > 0 ? at : 0, change.unknown[unknown - 1].entry.end);
      else if (next == 0 && unknown == 0 && !change.unknown.empty())
        at = std::min(at, change.unknown.front().entry.begin);
      splices.push_back({{at, at}, [&layout, ids = std::move(ids)](TextSink& sink) {
                           LayoutWriter(sink, layout).entries(entryDepth, ids);
                         }});
    }
    groups.clear();
  };
  for (const Slot& slot : change.slots) {
    if (slot.old == added) {
      const size_t unknown = change.unknown.empty() ? 0 : slot.unknownBefore;
      if (groups.empty() || groups.back().first != unknown) groups.push_back({unknown, {}});
      groups.back().second.push_back(slot.trackID);
      continue;
    }
    const EntryPlace& entry = change.entries[slot.old];
    insert(entry.entry.begin);
    cutUntil(slot.old);
    if (slot.trackID != entry.trackID)
      splices.push_back(
          {entry.number, [id = std::to_string(slot.trackID)](TextSink& sink) { sink.append(id); }});
    next = slot.old + 1;
  }
  if (!groups.empty() && groups.back().first >= change.unknown.size()) {
    appended = std::move(groups.back().second);
    groups.pop_back();
  }
  if (!groups.empty()) insert(change.unknown.front().entry.begin);
  cutUntil(change.entries.size());
}

void EditedPlaylists::writeAdded(size_t first, TextSink& sink, const DocumentLayout& layout) const {
  LayoutWriter out(sink, layout);
  for (size_t i = first; i < changes_.size(); ++i) {
    const Change& change = changes_[i];
    const Playlist& playlist = (*current_)[i];
    out.tag(playlistDepth, "<dict>");
    out.value(keyDepth, "Name", "string", playlist.name);
    out.number(keyDepth, "Playlist ID", change.playlistID);
    out.text(keyDepth, "Playlist Persistent ID", paddedHex(playlist.persistentID));
    if (playlist.parentID)
      out.text(keyDepth, "Parent Persistent ID", paddedHex(*playlist.parentID));
    out.flag(keyDepth, "All Items");
    if (!change.slots.empty()) {
      std::vector<std::int64_t> trackIDs;
      for (const Slot& slot : change.slots) trackIDs.push_back(slot.trackID);
      out.key(keyDepth, "Playlist Items");
      out.tag(keyDepth, "<array>");
      out.entries(entryDepth, trackIDs);
      out.tag(keyDepth, "</array>");
    }
    out.tag(playlistDepth, "</dict>");
  }
}

}  // namespace kestrel
