#include "history/playlist_lineage.h"

#include <algorithm>
#include <cstddef>

namespace kestrel {
namespace {

/// The lineages of many changes while they grow, found by the IDs in them.
class Lineages {
 public:
  struct Place {
    std::size_t change;
    bool isOfChange;
  };

  void add(std::uint64_t playlist, const Place& place) {
    const auto [first, last] = places_.equal_range(playlist);
    const auto known = std::find_if(
        first, last, [&](const auto& entry) { return entry.second.change == place.change; });
    if (known == last)
      places_.emplace(playlist, place);
    else
      known->second = place;
  }
  /// As a copy, so that places can be added while one looks at them.
  [[nodiscard]] const std::vector<Place>& at(std::uint64_t playlist) {
    found_.clear();
    const auto [first, last] = places_.equal_range(playlist);
    for (auto entry = first; entry != last; ++entry) found_.push_back(entry->second);
    return found_;
  }

 private:
  std::unordered_multimap<std::uint64_t, Place> places_;
  std::vector<Place> found_;
};

}  // namespace

void followPlaylists(std::span<PlaylistChange> changes, std::span<const PlaylistLink> links) {
  Lineages lineages;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    changes[i].lineage = {{0, changes[i].oldPlaylist}};
    lineages.add(changes[i].oldPlaylist, {i, false});
  }
  // What it was before, back to the first record.
  for (auto link = links.rbegin(); link != links.rend(); ++link) {
    if (link->before == link->after) continue;
    for (const Lineages::Place& place : lineages.at(link->after))
      if (PlaylistChange& change = changes[place.change]; link->change < change.id) {
        lineages.add(link->before, place);
        change.lineage.insert(change.lineage.begin(), {0, link->before});
      }
  }
  // What became of it, of all of it: a later record may never have come to be, and then something
  // else came of the earlier one.
  for (const PlaylistLink& link : links)
    for (Lineages::Place place : lineages.at(link.before)) {
      PlaylistChange& change = changes[place.change];
      place.isOfChange = place.isOfChange || link.change == change.id;
      lineages.add(link.after, place);
      change.lineage.push_back({link.run, link.after, link.byUndo, place.isOfChange});
    }
}

PlaylistStanding standingOf(const PlaylistChange& change, const PlaylistsByID& today) {
  PlaylistStanding standing;
  for (auto step = change.lineage.rbegin(); step != change.lineage.rend(); ++step) {
    if (!standing.playlist)
      if (const auto found = today.find(step->playlist); found != today.end())
        standing = {found->second, 0, step->isOfChange};
    if (standing.playlist && step->playlist == standing.playlist->persistentID && !step->byUndo) {
      standing.run = step->run;
      break;
    }
  }
  return standing;
}

}  // namespace kestrel
