#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {

using Dictionary = PropertyList::Dictionary;

std::string smallLibrary() {
  Dictionary tracks;
  for (int i = 1; i <= 4; ++i) {
    const std::string title(1, static_cast<char>('a' + i - 1));
    tracks.push_back(
        {std::to_string(i),
         Dictionary{
             {"Track ID", i},
             {"Unknown Key", "k \u00E9"},
             {"Persistent ID", "000000000000000" + std::string(1, static_cast<char>('A' + i - 1))},
             {"Name", title},
             {"Track Type", "File"},
             {"Location", "file:///music/" + title + ".mp3"}}});
  }
  PropertyList::Array lists;
  const auto add = [&](const char* name, int id, const std::vector<int>& entries,
                       const Dictionary& more = {}) {
    PropertyList list = Dictionary{
        {"Name", name}, {"Playlist ID", id}, {"Playlist Persistent ID", std::to_string(id)}};
    for (const auto& [key, value] : more) list.set(key, value);
    PropertyList::Array items;
    for (const int track : entries) items.push_back(Dictionary{{"Track ID", track}});
    if (!items.empty()) list.set("Playlist Items", std::move(items));
    lists.push_back(std::move(list));
  };
  add("Library", 10, {1, 2, 3, 4}, {{"Master", true}});
  add("Purchased", 11, {4}, {{"Distinguished Kind", 19}});
  add("Mix", 12, {1, 2, 1, 3});
  add("Empty", 13, {});
  add("Folder", 14, {2}, {{"Folder", true}});
  add("Inner", 15, {2}, {{"Parent Persistent ID", "14"}});
  add("Smart", 16, {3}, {{"Smart Info", PropertyList::Data{"x"}}});
  add("Mix", 17, {4});
  return writePropertyList(Dictionary{
      {"Major Version", 1}, {"Tracks", std::move(tracks)}, {"Playlists", std::move(lists)}});
}

}  // namespace kestrel::testing
