// A folder as a library: what is in it, what it is known by, and changing several lists at once.
#include "musicapp/folder/folder_library.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "foundation/library_error.h"
#include "tests/musicapp/folder/folder_world.h"

namespace kestrel::testing {
namespace {

using namespace command;
namespace fs = std::filesystem;

struct SongWorld : FolderWorld {
  [[nodiscard]] std::string paths() const {
    std::string all;
    app->allMediaItems()->forEach([&](const MediaItem& item) {
      all += filePath(item).substr(folder.path().size() + 1) + " ";
    });
    return all;
  }
  [[nodiscard]] std::string notes() const {
    std::string all;
    for (const Message& note : app->notes()) all += note.english() + "\n";
    return all;
  }
};

TEST(FolderLibrary, HoldsTheAudioFilesThatLieInIt) {
  SongWorld world;
  for (const char* path :
       {"Music/b.mp3", "Music/A/a.MP3", "Music/A/B/c.mp3", "Music/.hidden/x.mp3", "Music/.x.mp3",
        "Music/.Trash-1000/files/x.mp3", "Music/$RECYCLE.BIN/x.mp3", "Outside/x.mp3"})
    world.song(path);
  world.folder.write("Music/text.txt", "");
  world.folder.write("Music/broken.ogg", "no audio");
  world.folder.write("Music/untagged.mp3", sampleAudio("mp3"));
  world.folder.write("Outside/list.m3u8", "x.mp3\n");
  const auto link = [&](const char* to, const char* from) {
    fs::create_symlink(world.folder / to, world.folder / from);
  };
  link("Music", "Music/A/loop");
  link("Music/b.mp3", "Music/again.mp3");
  link("Outside", "Music/out");
  link("Outside/x.mp3", "Music/x.mp3");
  link("Outside/list.m3u8", "Music/list.m3u8");
  link("nowhere", "Music/nowhere.mp3");
  world.folder.write("Music/links.m3u", "again.mp3\nA/loop/b.mp3\nout/x.mp3\n");
  world.open();
  EXPECT_EQ(world.paths(), "Music/A/B/c.mp3 Music/A/a.MP3 Music/b.mp3 Music/untagged.mp3 ");
  EXPECT_EQ(world.playlists(), "Music: c a b ; links: b b ?");
  EXPECT_EQ(world.notes(), "1 file has no audio that can be read, such as " +
                               (world.folder / "Music/broken.ogg") +
                               "\n3 links lead out of the folder and were not followed\n"
                               "1 file has no title in its tags\n");
  world.app->allMediaItems()->forEach([&](const MediaItem& item) {
    EXPECT_EQ(item.fileSize, static_cast<std::int64_t>(fs::file_size(filePath(item))));
    EXPECT_TRUE(item.added && item.modified);
    EXPECT_EQ(item.kind.view(), "MPEG audio file");
  });
  // Through a link to the folder as well.
  link("Music", "Alias");
  world.folder.write("Music/alias.m3u", (world.folder / "Alias/b.mp3") + "\n");
  world.address = world.folder / "Alias/";
  world.open();
  EXPECT_EQ(world.playlists(), "Music: c a b ; alias: b; links: b b ?");
}

TEST(FolderLibrary, IsTheSameAfterItWasMoved) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/A/b.mp3"}) world.song(path);
  world.folder.write("Music/A/list.pls", "[playlist]\nFile1=b.mp3\nNumberOfEntries=1\n");
  world.open();
  const auto idsOf = [&] {
    std::vector<std::uint64_t> ids;
    for (const Playlist& list : *world.app->allPlaylists()) {
      ids.push_back(list.persistentID);
      ids.insert(ids.end(), list.items.begin(), list.items.end());
    }
    return ids;
  };
  const auto before = idsOf();
  const LibraryIdentity identity = world.app->identity();
  fs::rename(world.folder / "Music", world.folder / "Moved");
  world.address = "folder://" + (world.folder / "Moved");
  world.open();
  EXPECT_EQ(idsOf(), before);
  EXPECT_EQ(world.app->identity().id, identity.id);
  EXPECT_NE(world.app->identity().uri, identity.uri);
  // Its version tells each state from the others.
  const std::string version = world.app->identity().version;
  world.open();
  EXPECT_EQ(world.app->identity().version, version);
  tag(world.folder / "Moved/a.mp3", {{"TITLE", "another"}});
  world.app->reload();
  EXPECT_NE(world.app->identity().version, version);
}

TEST(FolderLibrary, HasPlaylistsOfFoldersThatAreNamed) {
  SongWorld world;
  world.song("Music/a.mp3");
  world.folder.write("Music/own.m3u", "a.mp3\n");
  world.folder.write("My Lists/top.m3u8", world.folder / "Music/a.mp3");
  world.folder.write("My Lists/Sub/deep.m3u8", "../../Music/a.mp3\n");
  world.folder.write("My Lists/.real.m3u8", "../Music/a.mp3\n../Music/a.mp3\n");
  fs::create_symlink(".real.m3u8", world.folder / "My Lists/link.m3u8");
  world.address =
      "folder://" + (world.folder / "Music") + "?playlists=" + world.folder.path() + "/My%20Lists";
  world.open();
  EXPECT_EQ(world.playlists(), "Music: a; own: a; link: a a; top: a; Sub: a; Sub/deep: a");
  EXPECT_EQ(world.app->identity().uri, world.address);
  ASSERT_FALSE(world.app->run(DeleteEntries{world.id("link"), {1}}).failed());
  EXPECT_TRUE(fs::is_symlink(world.folder / "My Lists/link.m3u8"));
  EXPECT_EQ(TemporaryFolder::read(world.folder / "My Lists/.real.m3u8"), "../Music/a.mp3\n");
}

TEST(FolderLibrary, MakesMovesAndDeletesPlaylistFiles) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/A/b.mp3"}) world.song(path);
  world.folder.write("Music/A/there.m3u", "");
  world.folder.write("Music/mix.m3u8", "#EXTM3U\nA/b.mp3\n./a.mp3\ngone.mp3\nhttp://radio\n");
  world.open();
  const std::string before = world.lists();
  std::string reversal;
  {
    const auto batch = world.app->beginBatch();
    const auto run = [&](const Command& command) {
      const CommandResult result = world.app->run(command);
      EXPECT_FALSE(result.failed());
      return result.playlist.value_or(0);
    };
    run(SetEntries{run(CreatePlaylist{"New"}), {world.track("b")}});
    run(CreatePlaylist{"mix"});
    const std::uint64_t moved = run(MovePlaylist{world.id("mix"), world.id("A")});
    run(DeletePlaylist{world.id("there")});
    EXPECT_TRUE(world.app->run(MovePlaylist{moved, world.id("New")}).failed());
    EXPECT_EQ(world.lists(), before) << "nothing before the commit";
    batch->commit([&](std::string_view bytes) { reversal = bytes; });
  }
  EXPECT_EQ(world.playlists(), "Music: b a; New: b; mix:; A: b a; A/mix: b a ??");
  const std::string music = world.folder / "Music/";
  EXPECT_EQ(world.lists(),
            music + "A/mix.m3u8: #EXTM3U\nb.mp3\n../a.mp3\n../gone.mp3\nhttp://radio\n" + music +
                "New.m3u8: #EXTM3U\n#EXTINF:1,b\nA/b.mp3\n" + music + "mix.m3u: #EXTM3U\n");
  const auto batch = world.app->beginBatch();
  EXPECT_TRUE(batch->revert(reversal));
  batch->commit();
  EXPECT_EQ(world.lists(), before);
}

TEST(FolderLibrary, ChangesAllListsOrNone) {
  for (const int failing : {0, 1, 2, 3}) {
    SCOPED_TRACE(failing);
    SongWorld world;
    for (const char* path : {"Music/a.mp3", "Music/b.mp3"}) world.song(path);
    for (const char* name : {"Music/1.m3u", "Music/2.m3u", "Music/3.m3u"})
      world.folder.write(name, "a.mp3\n");
    int replaced = 0;
    world.options.onStep = [&](CommitStep step) {
      if (step == CommitStep::compare && ++replaced == failing) throw std::runtime_error("a fault");
    };
    world.open();
    const std::string before = world.lists(), shown = world.playlists();
    {
      const auto batch = world.app->beginBatch();
      for (const char* name : {"1", "2", "3"})
        EXPECT_FALSE(
            world.app->run(ReplaceEntries{world.id(name), {{1, world.track("b")}}}).failed());
      // A list that may not be written is found before any is.
      if (failing == 0) fs::permissions(world.folder / "Music/3.m3u", fs::perms::owner_read);
      bool isRecorded = false;
      EXPECT_ANY_THROW(batch->commit([&](std::string_view) { isRecorded = true; }));
      EXPECT_EQ(isRecorded, failing != 0);
    }
    EXPECT_EQ(world.lists(), before);
    EXPECT_EQ(world.playlists(), shown);
    const fs::path backups = world.folder / "support/Kestrel/Backups";
    for (const auto& entry : fs::recursive_directory_iterator(backups))
      EXPECT_TRUE(entry.is_directory()) << entry.path() << " is of a change that was not made";
  }
}

TEST(FolderLibrary, RefusesAListThatMayNotBeWrittenAlone) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/b.mp3"}) world.song(path);
  for (const char* name : {"Music/1.m3u", "Music/2.m3u", "Music/3.m3u"})
    world.folder.write(name, "a.mp3\n");
  fs::create_hard_link(world.folder / "Music/1.m3u", world.folder / "another name");
  fs::permissions(world.folder / "Music/2.m3u", fs::perms::owner_read);
  world.open();
  const auto batch = world.app->beginBatch();
  for (const auto& [name, reason] :
       {std::pair("1", "its file has 2 names"), {"2", "its file is read-only"}, {"3", ""}}) {
    const std::string why = world.app->reasonNotToChange(world.id(name)).english();
    EXPECT_EQ(why.substr(0, std::strlen(reason)), reason);
    EXPECT_EQ(why.empty(), !*reason);
    const CommandResult result =
        world.app->run(ReplaceEntries{world.id(name), {{1, world.track("b")}}});
    EXPECT_EQ(result.failed(), *reason != 0);
    if (result.failed()) {
      EXPECT_EQ(result.failure->number, CommandFailure::notAllowed);
    }
  }
  batch->commit();
  EXPECT_EQ(world.playlists(), "Music: a b; 1: a; 2: a; 3: b");
}

/// What a program that was killed leaves beside the lists goes when the folder is read next.
TEST(FolderLibrary, LeavesNothingHiddenInTheFolderForGood) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/b.mp3"}) world.song(path);
  for (const char* name : {"Music/1.m3u", "Music/A/2.m3u"})
    world.folder.write(name, "../a.mp3\na.mp3\n");
  world.open();
  const auto hidden = [&] {
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(world.folder / "Music"))
      if (entry.path().filename().string().starts_with(".")) found.push_back(entry);
    return found;
  };
  const auto names = [&] { return fs::hard_link_count(world.folder / "Music/1.m3u"); };
  const auto beKilled = [&] {
    world.options.onStep = [](CommitStep step) {
      if (step == CommitStep::checkAgain) ::raise(SIGKILL);
    };
    world.open();
    ASSERT_TRUE(WIFSIGNALED(inChild([&] {
      const auto batch = world.app->beginBatch();
      for (const char* name : {"1", "2"}) world.app->run(DeleteAllEntries{world.id(name)});
      batch->commit();
    })));
    EXPECT_EQ(hidden().size(), 2U);
    EXPECT_EQ(names(), 2U) << "the backup is no copy yet";
    world.options = {};
  };
  const std::string before = world.playlists();
  beKilled();
  world.open();
  EXPECT_EQ(hidden().size(), 0U);
  EXPECT_EQ(names(), 1U);
  EXPECT_EQ(world.playlists(), before);
  EXPECT_FALSE(world.app->hasChanged()) << "it was this program's doing";
  // A backup that is one with its list is no reason to leave that alone.
  beKilled();
  for (const fs::path& file : hidden()) fs::remove(file);
  world.open();
  EXPECT_EQ(names(), 2U);
  EXPECT_EQ(world.app->reasonNotToChange(world.id("1")).english(), "");
  EXPECT_FALSE(world.app->run(DeleteAllEntries{world.id("1")}).failed());
  EXPECT_EQ(names(), 1U);
}

TEST(FolderLibrary, KeepsNumberedBackups) {
  SongWorld world;
  world.song("Music/a.mp3");
  world.folder.write("Music/list.m3u", "a.mp3\n");
  world.options.keptBackups = 2;
  world.open();
  for (int i = 0; i < 4; ++i)
    ASSERT_FALSE(world.app->run(DuplicateTracks{{world.track("a")}, world.id("list")}).failed());
  std::vector<std::string> kept;
  for (const auto& entry :
       fs::recursive_directory_iterator(world.folder / "support/Kestrel/Backups"))
    if (entry.is_regular_file())
      kept.push_back(entry.path().filename().string() + " " +
                     std::to_string(fs::file_size(entry.path())));
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(kept, (std::vector<std::string>{"0003.m3u 18", "0004.m3u 24"}));
}

/// What an index has of lists is used as long as they stay, and never stands for another song.
TEST(FolderLibrary, KnowsItsListsFromTheIndexUntilTheyChange) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/B/b.mp3"}) world.song(path);
  const auto write = [&](const std::string& name, const std::string& bytes, bool isOld = true) {
    world.folder.write("Music/" + name, bytes);
    if (isOld)
      fs::last_write_time(world.folder / ("Music/" + name),
                          fs::file_time_type::clock::now() - std::chrono::hours(1));
  };
  const auto reopened = [&] {
    world.clock.set(SystemClock().now());
    world.open();
    return world.playlists();
  };
  // A path below 0x80 would be UTF-8 too; entries of all formats and spellings.
  write("1.m3u", "./a.mp3\nB\\b.mp3\n\nK\xF6ln.mp3\nhttp://radio\n");
  write("2.xspf",
        "<playlist version='1'><trackList><track><location>B/%62.mp3</location></track>"
        "<track><location></location></track></trackList></playlist>");
  write("3.pls", "[playlist]\nFile1=a.mp3\nNumberOfEntries=1\n");
  const std::string fresh = reopened();
  EXPECT_EQ(fresh, "Music: b a; 1: a b ??; 2: b ?; 3: a");
  EXPECT_EQ(reopened(), fresh);
  // Proof that it is the index that is asked: the bytes are others, the state is the same.
  const auto time = fs::last_write_time(world.folder / "Music/3.pls");
  write("3.pls", "[playlist]\nFile1=x.mp3\nNumberOfEntries=1\n");
  fs::last_write_time(world.folder / "Music/3.pls", time);
  EXPECT_EQ(reopened(), fresh);
  // Which is found out before the list is changed, once.
  EXPECT_NE(world.failureOf(DeleteAllEntries{world.id("3")}), "");
  EXPECT_EQ(reopened(), "Music: b a; 1: a b ??; 2: b ?; 3: ?");
  // Songs come and go by what the folder has today.
  fs::rename(world.folder / "Music/a.mp3", world.folder / "Music/x.mp3");
  EXPECT_EQ(reopened(), "Music: b a; 1: b ???; 2: b ?; 3: a");
  // Of one that was just written nothing is kept: it may be written again in the same moment.
  write("2.xspf", "<playlist version='1'><trackList/></playlist>", false);
  EXPECT_EQ(reopened(), "Music: b a; 1: b ???; 2:; 3: a");
  fs::remove(world.folder / "Music/1.m3u");
  fs::rename(world.folder / "Music", world.folder / "Away");
  fs::create_directory(world.folder / "Music");
  world.song("Music/x.mp3");
  write("3.pls", "[playlist]\n");
  EXPECT_EQ(reopened(), "Music: x; 3:");
  EXPECT_EQ(world.log.lines().size(), 0U);
  // Without an index all is as with it.
  world.folder.write("cache/Kestrel/audio.sqlite", "none");
  EXPECT_EQ(reopened(), "Music: x; 3:");
}

TEST(FolderLibrary, TellsListsApartThatDifferInTheirEndings) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/A/b.mp3"}) world.song(path);
  world.folder.write("Music/x.m3u", "a.mp3\n");
  world.folder.write("Music/A/x.m3u", "b.mp3\n");
  world.folder.write("Music/x.pls", "[playlist]\nFile1=A/b.mp3\n");
  world.open();
  EXPECT_EQ(world.playlists(), "Music: b a; x.m3u: a; x.pls: b; A: b; A/x: b");
  // One that is made anew by such a name is the file that it was.
  EXPECT_EQ(world.failureOf(DeletePlaylist{world.id("x.pls")}), "");
  EXPECT_EQ(world.failureOf(CreatePlaylist{"x.pls"}), "");
  EXPECT_TRUE(fs::exists(world.folder / "Music/x.pls"));
  EXPECT_EQ(world.playlists(), "Music: b a; x.m3u: a; x.pls:; A: b; A/x: b");
}

TEST(FolderLibrary, NothingIsDoneOnTagsThatWereEditedSince) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/b.mp3", "Music/c.mp3"}) world.song(path);
  world.folder.write("Music/1.m3u", "a.mp3\nb.mp3\n");
  world.open();
  EXPECT_FALSE(world.app->hasChanged());
  // In place, as most programs do.
  const std::string edited = world.folder / "Music/b.mp3";
  fs::last_write_time(edited, fs::last_write_time(edited) + std::chrono::seconds(2));
  EXPECT_TRUE(world.app->hasChanged());
  EXPECT_TRUE(world.app->hasChanged()) << "it stays so";
  const auto replaced = [&](std::uint64_t position, const char* keeper) {
    return world.failureOf(ReplaceEntries{world.id("1"), {{position, world.track(keeper)}}});
  };
  EXPECT_NE(replaced(1, "b"), "") << "as the one that comes in";
  EXPECT_NE(replaced(2, "c"), "") << "as the one that goes";
  EXPECT_EQ(replaced(1, "c"), "") << "it has no part in this";
  world.app->reload();
  EXPECT_FALSE(world.app->hasChanged());
  EXPECT_EQ(replaced(2, "c"), "");
  // What comes in has to be there; what goes may have gone.
  world.folder.write("Music/1.m3u", "a.mp3\nb.mp3\n");
  world.app->reload();
  fs::remove(world.folder / "Music/a.mp3");
  EXPECT_NE(replaced(2, "a"), "");
  EXPECT_EQ(replaced(1, "c"), "");
}

TEST(FolderLibrary, StopsReadingWhenItIsAsked) {
  SongWorld world;
  for (int i = 0; i < 9; ++i) world.song("Music/" + std::to_string(i) + ".mp3");
  world.watch.cancelled = [] { return true; };
  EXPECT_THROW(world.open(), LibraryError);
  world.watch = {};
  world.open();
  fs::rename(world.folder / "Music", world.folder / "Away");
  EXPECT_THROW(world.app->reload(), LibraryError);
  EXPECT_EQ(world.app->allMediaItems()->size(), 9U) << "the last that could be read";
}

TEST(FolderLibrary, IsFoundWhereTheDesktopKeepsMusic) {
  SongWorld world;
  ::setenv("HOME", world.folder.path().c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", (world.folder / "config").c_str(), 1);
  const auto found = [&] { return folderApplication().found(world.services()); };
  using Folders = std::vector<std::string>;
  EXPECT_EQ(found(), Folders{});
  world.song("Music/A/a.mp3");
  EXPECT_EQ(found(), Folders{world.folder / "Music"});
  world.folder.write("config/user-dirs.dirs", "# x\nXDG_MUSIC_DIR=\"$HOME/Musik\"\n");
  EXPECT_EQ(found(), Folders{}) << "there is none";
  world.song("Musik/a.mp3");
  EXPECT_EQ(found(), Folders{world.folder / "Musik"});
  world.folder.write("config/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/\"\n");
  EXPECT_EQ(found(), Folders{});
}

TEST(FolderLibrary, EntriesThatAreOnlyTakenOutOrPutInLeaveTheOthersLinesAlone) {
  SongWorld world;
  for (const char* path : {"Music/a.mp3", "Music/b.mp3", "Music/c.mp3"}) world.song(path);
  const std::string lines[] = {"#EXTINF:1,my A\na.mp3\n", "#EXTINF:2,my B\n./b.mp3\n",
                               "#EXTINF:3,my C\nc.mp3\n", "# gone\ngone.mp3\n"};
  const std::string whole = lines[0] + lines[1] + lines[2] + lines[3];
  const auto set = [&](std::string_view titles) {
    world.folder.write("Music/List.m3u8", "#EXTM3U\n" + whole);
    world.open();
    EXPECT_EQ(world.failureOf(SetEntries{world.id("List"), tracksCalled(*world.app, titles)}), "");
    return TemporaryFolder::read(world.folder / "Music/List.m3u8");
  };
  EXPECT_EQ(set("c"), "#EXTM3U\n" + lines[2] + lines[3]);
  EXPECT_EQ(set("ac"), "#EXTM3U\n" + lines[0] + lines[2] + lines[3]);
  const std::string more = set("abac");
  for (const std::string& line : lines) EXPECT_NE(more.find(line), std::string::npos) << more;
}

}  // namespace
}  // namespace kestrel::testing
