#include "library/unsearched.h"

#include <algorithm>
#include <unordered_set>

namespace kestrel {

std::vector<Message> unsearchedSongs(const MediaItems& items,
                                     const std::vector<Playlist>& playlists) {
  const auto all = std::find_if(playlists.begin(), playlists.end(),
                                [](const Playlist& list) { return list.isMaster; });
  std::int64_t unknown = 0;
  std::vector<std::uint64_t> unmet;
  std::size_t next = 0;  // the list mostly is in the order of the library
  items.forEach([&](const MediaItem& item) {
    const bool isMet =
        all != playlists.end() && next < all->items.size() && all->items[next] == item.persistentID;
    next += isMet ? 1 : 0;
    if (item.mediaKind != MediaKind::song) return;
    if (item.locationType == LocationType::unknown)
      ++unknown;
    else if (!isMet && all != playlists.end())
      unmet.push_back(item.persistentID);
  });
  std::int64_t unlisted = 0;
  if (!unmet.empty()) {
    const std::unordered_set<std::uint64_t> listed(all->items.begin(), all->items.end());
    unlisted = std::count_if(unmet.begin(), unmet.end(),
                             [&](std::uint64_t id) { return !listed.contains(id); });
  }
  std::vector<Message> sentences;
  if (unknown > 0)
    sentences.push_back(
        Message::tr("%Ln songs are not searched: the library gives no \"Track Type\" for them, so "
                    "that it is not known whether they are files",
                    "%Ln song is not searched: the library gives no \"Track Type\" for it, so that "
                    "it is not known whether it is a file",
                    unknown));
  if (unlisted > 0)
    sentences.push_back(Message::tr(
        "%Ln songs are not searched: the library's list of all songs is without them",
        "%Ln song is not searched: the library's list of all songs is without it", unlisted));
  return sentences;
}

std::vector<Message> notesOn(MediaLibrary& library) {
  std::vector<Message> notes = unsearchedSongs(*library.allMediaItems(), *library.allPlaylists());
  for (Message& note : library.notes()) notes.push_back(std::move(note));
  return notes;
}

}  // namespace kestrel
