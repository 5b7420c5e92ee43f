#include "musicapp/path_maps.h"

#include <gtest/gtest.h>

#include "musicapp/map_suggestions.h"
#include "musicapp/media_library.h"
#include "tests/platform/memory_files.h"

namespace kestrel {
namespace {

using Maps = std::vector<PathMaps::Map>;

struct Case {
  const char* location;
  const char* expected;
};

TEST(PathMaps, TakeFoldersAsPeopleWriteThem) {
  const Case cases[] = {{"C:\\Users\\anna\\Music\\", "/C:/Users/anna/Music"},
                        {"c:/Users", "/c:/Users"},
                        {"D:", "/D:"},
                        {"/D:/", "/D:"},
                        {"\\\\nas\\music", "//nas/music"},
                        {"//nas/music/", "//nas/music"},
                        {"file://nas/music", "//nas/music"},
                        {"file://localhost/C:/50%25%20off", "/C:/50% off"},
                        {"/Volumes/A\\B", "/Volumes/A\\B"},
                        {"/", ""}};
  for (const auto& [written, path] : cases) EXPECT_EQ(pathOfLocation(written), path) << written;
  EXPECT_EQ(shownLocation("/C:/Users"), "C:/Users");
  EXPECT_EQ(shownLocation("/Users"), "/Users");
  EXPECT_EQ(shownLocation(""), "/");
}

TEST(PathMaps, FindFilesByTheLongestBeginningAndHoweverNamesAreSpelled) {
  MemoryFiles files;
  for (const char* path :
       {"/home/anna/Music/Caf\u00E9/One.mp3", "/home/anna/Music/Caf\u00E9/100%.mp3", "/cds/Two.mp3",
        "/home/anna/Music/twice/a.mp3", "/home/anna/Music/twice/A.mp3", "/share/x.mp3",
        "/home/anna/Music/bytes/\xE9.mp3", "/home/anna/Music/Rock/x.mp3",
        "/home/anna/Music/rock/y.mp3", "/home/anna/Music/rock/z.mp3",
        "/home/anna/Music/Rock/Z.mp3"})
    files.put(path, "");
  const PathMaps maps({{"C:\\Users\\Anna\\Music", "/home/anna/Music/"},
                       {"C:/Users/Anna/Music/CDs", "/cds"},
                       {"/Volumes/Mus\u00EDc", "/home/anna/Music"},
                       {"\\\\nas\\share", "/share"},
                       {"/gone", "/nowhere"}});
  const Case cases[] = {
      {"/C:/Users/Anna/Music/Caf\u00E9/One.mp3", "/home/anna/Music/Caf\u00E9/One.mp3"},
      {"/c:/users/anna/music/CAFE\u0301/ONE.MP3", "/home/anna/Music/Caf\u00E9/One.mp3"},
      {"/Volumes/Musi\u0301c/Cafe\u0301/100%.mp3", "/home/anna/Music/Caf\u00E9/100%.mp3"},
      {"/C:/Users/Anna/Music/CDs/two.mp3", "/cds/Two.mp3"},
      {"//NAS/share/x.mp3", "/share/x.mp3"},
      // Which of several names is meant, cannot be told.
      {"/C:/Users/Anna/Music/twice/A.mp3", "/home/anna/Music/twice/A.mp3"},
      {"/C:/Users/Anna/Music/Twice/a.MP3", ""},
      {"/C:/Users/Anna/Music/bytes/\xE8.mp3", ""},
      // Folders that differ in letter case alone: whichever has the file.
      {"/C:/Users/Anna/Music/ROCK/X.mp3", "/home/anna/Music/Rock/x.mp3"},
      {"/C:/Users/Anna/Music/Rock/y.mp3", "/home/anna/Music/rock/y.mp3"},
      {"/C:/Users/Anna/Music/rock/z.mp3", "/home/anna/Music/rock/z.mp3"},
      {"/C:/Users/Anna/Music/ROCK/z.mp3", ""},
      {"/C:/Users/Anna/Music2/Caf\u00E9/One.mp3", ""},
      {"/C:/Users/Anna/Music/Cafe/One.mp3", ""},
      {"/gone/x.mp3", ""},
      {"/C:/Users", ""}};
  MappedFiles mapped(maps, files);
  for (const auto& [location, expected] : cases)
    EXPECT_EQ(mapped.find(location).value_or(""), expected) << location;
}

TEST(PathMaps, GiveItemsTheirPathsHere) {
  MemoryFiles files;
  files.put("/music/A/one.mp3", "");
  files.put("/music/B/two.mp3", "");
  files.put("/music/b/three.mp3", "");
  files.put("/Users/a/stays.mp3", "");
  MediaItems items;
  TextPool& pool = items.newPool();
  std::vector<MediaItem> block;
  for (const auto& [folder, name] : {std::pair("/Users/a/a", "ONE.mp3"),
                                     {"/Users/a/A", "no.mp3"},
                                     {"/Users/a/B", "three.mp3"},
                                     {"/Users/a", "stays.mp3"},
                                     {"/Users/b", "other.mp3"}}) {
    MediaItem& item = block.emplace_back();
    item.locationFolder = pool.add(folder);
    item.locationName = pool.add(name);
  }
  block.emplace_back().locationName = pool.add("http://radio/x");
  items.append(std::move(block));
  mapLocations(items, PathMaps(Maps{{"/Users/a", "/music"}}), files);
  std::vector<std::string> paths, originals;
  items.forEach([&](const MediaItem& item) {
    paths.push_back(filePath(item));
    originals.push_back(originalPath(item));
  });
  EXPECT_EQ(paths,
            (std::vector<std::string>{"/music/A/one.mp3", "/music/A/no.mp3", "/music/b/three.mp3",
                                      "/Users/a/stays.mp3", "/Users/b/other.mp3", ""}));
  EXPECT_EQ(originals, (std::vector<std::string>{"/Users/a/a/ONE.mp3", "/Users/a/A/no.mp3",
                                                 "/Users/a/B/three.mp3", "/Users/a/stays.mp3",
                                                 "/Users/b/other.mp3", ""}));
}

/// Locations of two artists with an album of three songs each.
std::vector<std::string> albums(const std::string& root) {
  std::vector<std::string> locations;
  for (const char* album : {"/Ann/Hits/", "/Bo/Best/"})
    for (const char* song : {"1.mp3", "2.mp3", "3.mp3"}) locations.push_back(root + album + song);
  return locations;
}

TEST(MapSuggestions, NameTheBeginningsThatLeadNowhere) {
  LocationBeginnings beginnings;
  for (const char* folder :
       {"/C:/Music/A", "/Users/a/Music/x", "/Users/b/Music", "/C:/Music/B", "/C:/Music",
        "/Users/a/Music/xy", "//nas/a/b", "//nas/c", "/Users/a/Music/x"})
    beginnings.add(folder);
  std::string text;
  for (const auto& [folder, count] : beginnings.list())
    text += folder + ' ' + std::to_string(count) + '\n';
  EXPECT_EQ(text, "/C:/Music 3\n/Users/a/Music 3\n/Users/b/Music 1\n//nas/a/b 1\n//nas/c 1\n");
}

TEST(MapSuggestions, FindFilesByTheEndsOfPaths) {
  const auto suggested = [](const std::vector<std::string>& locations,
                            const std::vector<std::string>& paths) {
    MemoryFiles files;
    files.put("/nas/readme", "");
    for (const std::string& path : paths) files.put(path, "");
    std::string text;
    for (const auto& [map, finds] : suggestMaps(locations, "/nas/", files))
      text += map.from + '=' + map.to + ' ' + std::to_string(finds) + '\n';
    return text;
  };
  const std::vector<std::string> windows = albums("/C:/Users/a/Music");
  EXPECT_EQ(suggested(windows, albums("/nas/tunes")), "/C:/Users/a/Music=/nas/tunes 6\n");
  EXPECT_EQ(suggested(windows, albums("/nas")), "/C:/Users/a/Music=/nas 6\n");
  EXPECT_EQ(suggested(windows, albums("/elsewhere")), "");
  EXPECT_EQ(suggested(windows, albums("/nas/.hidden")), "");
  EXPECT_EQ(suggested(windows, albums("/nas/$RECYCLE.BIN")), "");
  EXPECT_EQ(suggested({"/C:/caf\u00E9/A.mp3", "/D:/x/b.mp3"},
                      {"/nas/1/Cafe\u0301/a.mp3", "/nas/2/x/b.mp3"}),
            "/C:=/nas/1 1\n/D:=/nas/2 1\n");
  MemoryFiles files;
  for (const std::string& path : albums("/tunes")) files.put(path, "");
  const auto fromRoot = suggestMaps(windows, "/", files);
  ASSERT_EQ(fromRoot.size(), 1U);
  EXPECT_EQ(fromRoot.front().map.to, "/tunes");
  // Numbers alone in a folder of another name are other songs.
  EXPECT_EQ(suggested({"/C:/Ann/1.mp3", "/C:/Ann/2.mp3", "/C:/Bo/1.mp3", "/C:/Bo/7.mp3"},
                      {"/nas/Cy/1.mp3"}),
            "");
  // A file that one map finds is no find of another.
  EXPECT_EQ(suggested({"/C:/m/Ann/al/1 a.mp3", "/C:/m/Ann/al/2 b.mp3", "/D:/o/al/1 a.mp3",
                       "/D:/o/al/2 b.mp3"},
                      {"/nas/Ann/al/1 a.mp3", "/nas/Ann/al/2 b.mp3"}),
            "/C:/m=/nas 2\n");
}

}  // namespace
}  // namespace kestrel
