/// Which playlist of today is the one that a run has changed.
///
/// Replacing entries gives a playlist a new ID, and so does making a deleted one anew. The records
/// of all runs, followed from ID to ID, tell what a playlist has been and become. A record may be
/// of something that never came to be, or is no more: its run was ended while the library was
/// written, or a backup was put in the library's place afterwards. So the records say only what may
/// stand there; the library says what does.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "history/history.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// What a record says of one playlist: after its run, `after` stood where `before` did.
struct PlaylistLink {
  std::int64_t change = 0;  ///< the record's number
  std::int64_t run = 0;
  std::uint64_t before = 0;
  std::uint64_t after = 0;
  bool byUndo = false;
};

/// Fills in the changes' lineages. `links` are those of all runs, in the order of their records.
void followPlaylists(std::span<PlaylistChange> changes, std::span<const PlaylistLink> links);

using PlaylistsByID = std::unordered_map<std::uint64_t, const Playlist*>;

struct PlaylistStanding {
  const Playlist* playlist = nullptr;  ///< nullptr: it is gone
  std::int64_t run = 0;  ///< the last, but for undos, that by the records has left it there; or 0
  /// It is what the change made, or what came of that. Otherwise a playlist that the change did
  /// away with is there, or what came of it without the change: the change is not in effect.
  bool isOfChange = false;
};
PlaylistStanding standingOf(const PlaylistChange& change, const PlaylistsByID& today);

}  // namespace kestrel
