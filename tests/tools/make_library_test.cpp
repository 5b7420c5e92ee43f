#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "tests/tools/written_library.h"
#include "tools/make_library/playlists.h"

namespace kestrel::make_library {
namespace {

Options tracks(std::uint32_t count) {
  Options options;
  options.tracks = count;
  return options;
}

// What a search by name and artist compares, letter case ignored.
std::string nameAndArtist(const PropertyList& track) {
  std::string key(track.textAt("Name"));
  icu::UnicodeString both =
      icu::UnicodeString::fromUTF8(key.append("\n").append(track.textAt("Artist")));
  key.clear();
  return both.toLower(icu::Locale::getRoot()).toUTF8String(key);
}

std::map<std::string, std::vector<std::string>> groups(const PropertyList& library) {
  std::map<std::string, std::vector<std::string>> result;
  for (const auto& [id, track] : tracksOf(library)) result[nameAndArtist(track)].push_back(id);
  return result;
}

TEST(MakeLibrary, HoldsWhatWasAskedFor) {
  constexpr std::uint32_t kTracks = 4000;
  Options options = tracks(kTracks);
  options.playlists = 0;
  const auto listsOf = [](const PropertyList& made) -> const PropertyList::Array& {
    return made.find("Playlists")->values();
  };
  const std::size_t ofEveryLibrary = listsOf(writtenLibrary(options)).size();
  options.playlists = 77;
  const std::string bytes = documentBytes(options);
  const PropertyList library = parsePropertyList(bytes, "written");
  EXPECT_EQ(tracksOf(library).size(), kTracks);
  EXPECT_EQ(listsOf(library).size(), ofEveryLibrary + 77);
  EXPECT_EQ(listsOf(library).front().find("Playlist Items")->values().size(), kTracks)
      << "the master";

  std::set<std::string> persistentIds;
  std::map<std::string, std::set<std::string>> seen;
  std::int64_t largest = 0;
  for (const auto& [id, track] : tracksOf(library)) {
    EXPECT_EQ(std::to_string(track.find("Track ID")->integer()), id);
    EXPECT_EQ(track.textAt("Persistent ID").size(), 16U);
    persistentIds.emplace(track.textAt("Persistent ID"));
    for (const auto& [key, value] : track.entries()) seen[key].emplace(value.text());
    if (const PropertyList* size = track.find("Size")) largest = std::max(largest, size->integer());
  }
  EXPECT_EQ(persistentIds.size(), kTracks);
  for (const std::string type : {"File", "Remote", "URL"})
    EXPECT_TRUE(seen["Track Type"].count(type));
  for (const std::string flag : {"Podcast", "Movie", "TV Show", "Music Video", "Compilation"}) {
    EXPECT_TRUE(seen.count(flag)) << flag;
  }
  EXPECT_GE(seen["Kind"].size(), 12U);
  EXPECT_GT(largest, 0xFFFFFFFF);
  // Broken characters would come out as replacement characters.
  EXPECT_EQ(icu::UnicodeString::fromUTF8(bytes).indexOf(char16_t{0xFFFD}), -1);
}

TEST(MakeLibrary, AboutAsManyCopiesAsAskedFor) {
  for (const std::uint32_t percent : {0U, 12U, 45U, 90U}) {
    Options options = tracks(5000);
    options.duplicatePercent = percent;
    const double surplus = 5000.0 - static_cast<double>(groups(writtenLibrary(options)).size());
    // Two songs of an artist bear the same name by chance now and then.
    EXPECT_NEAR(surplus / 50, percent, 1) << percent;
  }
}

TEST(MakeLibrary, PlaylistsListTracksThatExist) {
  Options options = tracks(2500);
  options.playlists = 60;
  const PropertyList library = writtenLibrary(options);
  std::map<std::string, std::string> groupOf;
  for (const auto& [key, ids] : groups(library)) {
    for (const std::string& id : ids) groupOf[id] = key;
  }
  std::uint32_t unknown = 0, withRepeats = 0, withCopies = 0, empty = 0;
  for (const PropertyList& playlist : library.find("Playlists")->values()) {
    const PropertyList* items = playlist.find("Playlist Items");
    empty += items ? 0 : 1;
    if (!items) continue;
    EXPECT_FALSE(items->values().empty());
    std::set<std::string> ids, keys;
    for (const PropertyList& item : items->values()) {
      const std::string id = std::to_string(item.find("Track ID")->integer());
      const auto group = groupOf.find(id);
      if (group == groupOf.end()) unknown += playlist.find("Folder") ? 0 : 1;
      ids.insert(id);
      keys.insert(group == groupOf.end() ? "" : group->second);
    }
    withRepeats += ids.size() < items->values().size() ? 1 : 0;
    withCopies += keys.size() < ids.size() ? 1 : 0;
  }
  EXPECT_EQ(unknown, kUnknownTrackIds);
  EXPECT_GE(withRepeats, 5U);
  EXPECT_GE(withCopies, 10U);
  EXPECT_GE(empty, 1U);
}

}  // namespace
}  // namespace kestrel::make_library
