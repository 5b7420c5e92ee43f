#include "changes/listed_elsewhere.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "musicapp/audio/audio_facts.h"
#include "tests/musicapp/folder/folder_world.h"
#include "tests/musicapp/playlist_builders.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {
namespace {

TEST(ListedElsewhere, NamesThePlaylistsOfOthersThatListWhatGoes) {
  const TemporaryFolder disk;
  for (const char* name : {"Music/A/one.mp3", "Music/B/one.mp3", "Music/A/two.mp3"})
    disk.write(name, "");
  std::filesystem::create_directory_symlink(disk / "Music", disk / "link");
  const auto items = std::make_shared<MediaItems>();
  TextPool& texts = items->newPool();
  std::vector<MediaItem> block;
  for (const std::string& path : {disk / "link/A/one.mp3", disk / "Music/B/one.mp3",
                                  disk / "Music/A/two.mp3", std::string("/elsewhere/one.mp3")}) {
    MediaItem& item = block.emplace_back();
    item.persistentID = block.size();
    setLocation(path, item, texts);
  }
  items->append(std::move(block));
  const OtherLibrary library{
      "player:", items,
      playlists({playlist("All", 10, {1, 2, 3, 4}).master(), folder("Folder", 11, {1}),
                 playlist("Mix", 12, {1, 2, 1, 3}).in(11), playlist("Others", 13, {2, 4}),
                 playlist("Smart", 14, {1}).kind(PlaylistKind::smart)})};
  const std::vector<std::string> files{disk / "Music/A/one.mp3", disk / "Music/A/two.mp3"};
  EXPECT_EQ(listedElsewhere({&library, 1}, files),
            (std::vector<ListedElsewhere>{{"player:", "Mix", 3}}));
  EXPECT_TRUE(listedElsewhere({&library, 1}, {}).empty());
}

TEST(ListedElsewhere, OtherLibrariesAreThoseFoundHereButForTheOneAtHand) {
  FolderWorld world;
  world.folder.write("Music/a.mp3", make_library::makeAudio("mp3", 100, 32, 440).bytes);
  world.folder.write("Music/List.m3u8", "a.mp3\n");
  world.folder.write("support/strawberry/strawberry/strawberry.db", "no database");
  ::setenv("HOME", world.folder.path().c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", world.folder.path().c_str(), 1);
  ::setenv("MPD_HOST", (world.folder / "no-socket").c_str(), 1);
  const auto others = otherLibraries({}, world.services());
  ASSERT_EQ(others.size(), 1U);
  EXPECT_EQ(others[0].address, world.folder / "Music");
  EXPECT_EQ(others[0].playlists->back().items.size(), 1U);
  bool isTold = false;
  for (const std::string& line : world.log.lines()) isTold |= line.starts_with("passed over ");
  EXPECT_TRUE(isTold) << "what cannot be read";
  world.open();
  EXPECT_TRUE(otherLibraries(world.app->identity(), world.services()).empty());
}

}  // namespace
}  // namespace kestrel::testing
