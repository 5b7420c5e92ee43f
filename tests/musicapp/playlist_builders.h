/// Playlists for tests, and library documents of them:
///
///     Playlists library = playlists({folder("F", 10), playlist("Mix", 1, {1, 2, 1}).in(10)});
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/identifiers.h"
#include "foundation/property_list.h"
#include "musicapp/media_library.h"

namespace kestrel::testing {

struct PlaylistBuilder {
  Playlist made;

  PlaylistBuilder& in(std::uint64_t folder) { return set(made.parentID, folder); }
  PlaylistBuilder& kind(PlaylistKind kind) { return set(made.kind, kind); }
  PlaylistBuilder& master() { return set(made.isMaster, true); }
  PlaylistBuilder& distinguished(std::int64_t kind) { return set(made.distinguishedKind, kind); }

 private:
  template <typename Member, typename T>
  PlaylistBuilder& set(Member& member, T value) {
    member = value;
    return *this;
  }
};

inline PlaylistBuilder playlist(std::string name, std::uint64_t id,
                                std::vector<std::uint64_t> items) {
  PlaylistBuilder builder;
  builder.made.name = std::move(name);
  builder.made.persistentID = id;
  builder.made.items = std::move(items);
  return builder;
}

inline PlaylistBuilder folder(std::string name, std::uint64_t id,
                              std::vector<std::uint64_t> items = {}) {
  return playlist(std::move(name), id, std::move(items)).kind(PlaylistKind::folder);
}

inline std::shared_ptr<const std::vector<Playlist>> playlists(
    const std::vector<PlaylistBuilder>& builders) {
  std::vector<Playlist> made;
  for (const PlaylistBuilder& builder : builders) made.push_back(builder.made);
  return std::make_shared<const std::vector<Playlist>>(std::move(made));
}

/// Laid out as music applications do. The tracks, called "a", "b" and so on, have the persistent
/// IDs from `firstID` on; their Track IDs are 100 more.
inline PropertyList libraryDocument(const std::vector<PlaylistBuilder>& playlists,
                                    std::uint64_t trackCount = 9, std::uint64_t firstID = 1) {
  using Dictionary = PropertyList::Dictionary;
  const auto trackID = [](std::uint64_t track) { return static_cast<std::int64_t>(100 + track); };
  Dictionary tracks;
  for (std::uint64_t i = 0; i < trackCount; ++i) {
    const std::string title(1, static_cast<char>('a' + i));
    const std::uint64_t id = firstID + i;
    tracks.push_back(
        {std::to_string(trackID(id)), Dictionary{{"Track ID", trackID(id)},
                                                 {"Unknown Key", "k \u00E9"},
                                                 {"Name", title},
                                                 {"Persistent ID", TextSorter::decToHex(id)},
                                                 {"Track Type", "File"},
                                                 {"Location", "file:///music/" + title + ".mp3"}}});
  }
  PropertyList::Array lists;
  for (const auto& [made] : playlists) {
    PropertyList& list = lists.emplace_back();
    list.set("Name", made.name);
    list.set("Playlist ID", 1000 + static_cast<std::int64_t>(lists.size()));
    list.set("Playlist Persistent ID", TextSorter::decToHex(made.persistentID));
    if (made.parentID) list.set("Parent Persistent ID", TextSorter::decToHex(*made.parentID));
    if (made.isMaster) list.set("Master", true);
    if (made.distinguishedKind) list.set("Distinguished Kind", made.distinguishedKind);
    if (made.kind == PlaylistKind::folder) list.set("Folder", true);
    if (made.kind == PlaylistKind::smart) list.set("Smart Info", PropertyList::Data{"x"});
    PropertyList::Array items;
    for (const std::uint64_t track : made.items)
      items.push_back(Dictionary{{"Track ID", trackID(track)}});
    if (!items.empty()) list.set("Playlist Items", std::move(items));
  }
  return Dictionary{{"Major Version", 1},
                    {"Library Persistent ID", "ABCD"},
                    {"Tracks", std::move(tracks)},
                    {"Playlists", std::move(lists)}};
}

/// "FOLDER/NAME: ITEM ITEM" for each playlist, with the IDs of items that have no title.
inline std::vector<std::string> playlistTexts(const std::vector<Playlist>& lists,
                                              const std::map<std::uint64_t, std::string>& titles) {
  std::vector<std::string> texts;
  for (const Playlist& list : lists) {
    std::string& text = texts.emplace_back(list.name + ":");
    for (const Playlist& other : lists)
      if (list.parentID == other.persistentID) text.insert(0, other.name + "/");
    for (const std::uint64_t id : list.items)
      text += " " + (titles.contains(id) ? titles.at(id) : std::to_string(id));
  }
  return texts;
}

}  // namespace kestrel::testing
