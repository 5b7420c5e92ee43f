#include "library/unsearched.h"

#include <algorithm>
#include <unordered_set>

namespace kestrel {

UnsearchedSongs unsearchedSongs(const MediaItems& items, const std::vector<Playlist>& playlists) {
  const auto all = std::find_if(playlists.begin(), playlists.end(),
                                [](const Playlist& list) { return list.isMaster; });
  UnsearchedSongs result;
  std::vector<std::uint64_t> unmet;
  std::size_t next = 0;  // the list mostly is in the order of the library
  items.forEach([&](const MediaItem& item) {
    const bool isMet =
        all != playlists.end() && next < all->items.size() && all->items[next] == item.persistentID;
    next += isMet ? 1 : 0;
    if (item.mediaKind != MediaKind::song) return;
    if (item.locationType == LocationType::unknown)
      ++result.ofUnknownType;
    else if (!isMet && all != playlists.end())
      unmet.push_back(item.persistentID);
  });
  if (!unmet.empty()) {
    const std::unordered_set<std::uint64_t> listed(all->items.begin(), all->items.end());
    result.unlisted = std::count_if(unmet.begin(), unmet.end(),
                                    [&](std::uint64_t id) { return !listed.contains(id); });
  }
  return result;
}

std::vector<Message> UnsearchedSongs::sentences() const {
  std::vector<Message> sentences;
  if (ofUnknownType > 0)
    sentences.push_back(
        Message::tr("%Ln songs are not searched: the library gives no \"Track Type\" for them, so "
                    "that it is not known whether they are files",
                    "%Ln song is not searched: the library gives no \"Track Type\" for it, so that "
                    "it is not known whether it is a file",
                    ofUnknownType));
  if (unlisted > 0)
    sentences.push_back(Message::tr(
        "%Ln songs are not searched: the library's list of all songs is without them",
        "%Ln song is not searched: the library's list of all songs is without it", unlisted));
  return sentences;
}

std::vector<Message> notesOn(MediaLibrary& library) {
  std::vector<Message> notes =
      unsearchedSongs(*library.allMediaItems(), *library.allPlaylists()).sentences();
  for (Message& note : library.notes()) notes.push_back(std::move(note));
  return notes;
}

}  // namespace kestrel
