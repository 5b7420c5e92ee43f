// Opening libraries through the table of applications, and reading them again.
#include "musicapp/applications.h"

#include <gtest/gtest.h>

#include "foundation/library_error.h"
#include "musicapp/file_url.h"
#include "musicapp/synthetic.h"
#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {
namespace {

std::string oneTrack(const std::string& name) {
  return "<plist><dict><key>Tracks</key><dict><key>7</key><dict><key>Name</key><string>" + name +
         "</string></dict></dict><key>Playlists</key><array><dict><key>Playlist Items</key><array>"
         "<dict><key>Track ID</key><integer>7</integer></dict>"
         "<dict><key>Track ID</key><integer>8</integer></dict></array></dict></array>"
         "<key>Music Folder</key><string>file:///Music%20Folder/</string></dict></plist>";
}

std::string firstTitle(const MediaItems& items) {
  std::string title;
  items.forEach([&](const MediaItem& item) { title = item.title.view(); });
  return title;
}

TEST(Applications, ReloadWhatChangedAndLeaveWhatIsHeld) {
  DocumentWorld world(oneTrack("first"));
  EXPECT_EQ(world.log.lines(),
            std::vector<std::string>{world.path +
                                     ": dropped 1 playlist entries whose Track ID the library does "
                                     "not define"});
  const auto library = openLibrary(fileUrlOfPath(world.path), world.services());
  EXPECT_EQ(library->mediaFolder(), "/Music Folder/");
  const auto held = library->allMediaItems();
  library->reload();
  EXPECT_EQ(library->allMediaItems(), held) << "nothing has changed";

  world.files.writeAtomically(world.path, oneTrack("second"));
  library->reload();
  EXPECT_EQ(firstTitle(*library->allMediaItems()), "second");
  EXPECT_EQ(firstTitle(*held), "first");

  world.files.writeAtomically(world.path, "<plist>");
  EXPECT_THROW(library->reload(), LibraryError);
  EXPECT_EQ(firstTitle(*library->allMediaItems()), "second") << "the last that could be read";
  EXPECT_EQ(library->allPlaylists()->front().items.size(), 1U);
}

TEST(Applications, NameTheAddressThatCannotBeOpened) {
  DocumentWorld world(smallLibrary());
  const auto write = [&](const char* name, const char* text) {
    return world.folder.write(name, text);
  };
  const std::pair<std::string, std::string> cases[] = {
      {world.folder / "none.xml", "cannot be read: No such file"},
      {world.folder / "none", "cannot be read: No such file"},
      {world.folder.path(), "holds no audio files"},
      {"folder://" + world.folder.path() + "/none", "cannot be found"},
      {write("empty.xml", ""), "the file is empty"},
      {write("unnamed", "<oops"), "line 1"},
      {write("text", "no library"), "is no library that Kestrel can open"},
      {"player://host", "is no library that Kestrel can open"}};
  for (const auto& [address, problem] : cases) {
    try {
      openApplication(address, world.services());
      ADD_FAILURE() << address << " was opened";
    } catch (const LibraryError& error) {
      EXPECT_TRUE(address.ends_with(error.file)) << error.file;
      EXPECT_NE(std::string(error.what()).find(problem), std::string::npos) << error.what();
      EXPECT_FALSE(error.remedy.empty()) << error.what();
    }
  }
}

TEST(Synthetic, IDsAreTheSameAtEachOpeningAndTheMasterPlaylistHoldsEverything) {
  DerivedIDs first("track"), second("track"), playlists("playlist");
  const std::uint64_t a = first.of("file:///a"), b = first.of("file:///b");
  EXPECT_NE(a, b);
  EXPECT_EQ(second.of("file:///b"), b);
  EXPECT_EQ(first.of("file:///a"), a);
  EXPECT_NE(playlists.of("file:///a"), a);
  EXPECT_NE(derivedPersistentID("1", "file:///a"), derivedPersistentID("2", "file:///a"));

  DocumentWorld world(smallLibrary());
  const Playlist master = masterPlaylist(*world.app->allMediaItems(), "Everything");
  EXPECT_EQ(master.items, world.app->allPlaylists()->front().items);
  EXPECT_TRUE(master.isMaster && master.name == "Everything" && master.persistentID != 0);
}

}  // namespace
}  // namespace kestrel::testing
