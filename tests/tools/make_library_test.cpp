#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
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

std::string text(const Values& values, const std::string& key) {
  const auto found = values.find(key);
  return found == values.end() ? "" : found->second;
}

// What a search by name and artist compares, letter case ignored.
std::string nameAndArtist(const Values& track) {
  icu::UnicodeString both =
      icu::UnicodeString::fromUTF8(text(track, "Name") + '\n' + text(track, "Artist"));
  std::string key;
  return both.toLower(icu::Locale::getRoot()).toUTF8String(key);
}

std::map<std::string, std::vector<std::string>> groups(const WrittenLibrary& library) {
  std::map<std::string, std::vector<std::string>> result;
  for (const auto& [id, track] : library.tracks) result[nameAndArtist(track)].push_back(id);
  return result;
}

TEST(MakeLibrary, TheSameOptionsGiveTheSameBytes) {
  Options options = tracks(700);
  const std::string first = documentBytes(options);
  EXPECT_EQ(documentBytes(options), first);
  options.seed = 2;
  EXPECT_NE(documentBytes(options), first);
}

TEST(MakeLibrary, HoldsWhatWasAskedFor) {
  constexpr std::uint32_t kTracks = 4000;
  Options options = tracks(kTracks);
  options.playlists = 0;
  const std::size_t ofEveryLibrary = writtenLibrary(options).playlists.size();
  options.playlists = 77;
  const WrittenLibrary library = writtenLibrary(options);
  EXPECT_EQ(library.tracks.size(), kTracks);
  EXPECT_EQ(library.playlists.size(), ofEveryLibrary + 77);
  EXPECT_EQ(library.playlists.front().trackIds.size(), kTracks);  // the master playlist

  std::set<std::string> persistentIds;
  std::map<std::string, std::set<std::string>> seen;
  for (const auto& [id, track] : library.tracks) {
    EXPECT_EQ(text(track, "Track ID"), id);
    EXPECT_EQ(text(track, "Persistent ID").size(), 16U);
    persistentIds.insert(text(track, "Persistent ID"));
    for (const auto& [key, value] : track) seen[key].insert(value);
  }
  EXPECT_EQ(persistentIds.size(), kTracks);
  for (const std::string type : {"File", "Remote", "URL"})
    EXPECT_TRUE(seen["Track Type"].count(type));
  for (const std::string flag : {"Podcast", "Movie", "TV Show", "Music Video", "Compilation"}) {
    EXPECT_TRUE(seen.count(flag)) << flag;
  }
  EXPECT_GE(seen["Kind"].size(), 12U);
  EXPECT_TRUE(std::any_of(seen["Size"].begin(), seen["Size"].end(), [](const std::string& size) {
    return std::strtoull(size.c_str(), nullptr, 10) > 0xFFFFFFFFU;
  }));
  // Broken characters would come out as replacement characters.
  EXPECT_EQ(icu::UnicodeString::fromUTF8(library.bytes).indexOf(char16_t{0xFFFD}), -1);
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
  const WrittenLibrary library = writtenLibrary(options);
  std::map<std::string, std::string> groupOf;
  for (const auto& [key, ids] : groups(library)) {
    for (const std::string& id : ids) groupOf[id] = key;
  }
  std::uint32_t unknown = 0, withRepeats = 0, withCopies = 0, empty = 0;
  for (const WrittenPlaylist& playlist : library.playlists) {
    EXPECT_EQ(playlist.values.count("Playlist Items") != 0, !playlist.trackIds.empty());
    empty += playlist.trackIds.empty() ? 1 : 0;
    const bool folder = playlist.values.count("Folder") != 0;
    std::set<std::string> ids, keys;
    for (const std::string& id : playlist.trackIds) {
      if (library.tracks.count(id) == 0) unknown += folder ? 0 : 1;
      ids.insert(id);
      keys.insert(groupOf[id]);
    }
    withRepeats += ids.size() < playlist.trackIds.size() ? 1 : 0;
    withCopies += keys.size() < ids.size() ? 1 : 0;
  }
  EXPECT_EQ(unknown, kUnknownTrackIds);
  EXPECT_GE(withRepeats, 5U);
  EXPECT_GE(withCopies, 10U);
  EXPECT_GE(empty, 1U);
}

}  // namespace
}  // namespace kestrel::make_library
