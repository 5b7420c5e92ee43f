// The command line on a Music Player Daemon.
#include "tests/cli/player_command_line.h"

namespace kestrel::testing {
namespace {

TEST_F(PlayerCommandLine, RemovesSongsWithTheirFilesAndBringsThemBack) {
  note(kept, "playCount", "9");
  server->writeList("Mine", {gone, "gone/old.mp3", "songs/a.mp3", gone});
  server->writeList("Other", {"songs/c.mp3"});
  const Texts before = server->stored("Mine"), after = {kept, "gone/old.mp3", "songs/a.mp3", kept};

  const auto with = [&](const char* option) -> Texts {
    return {"remove", address, "--rule", "2", "--with-playlists", option};
  };
  EXPECT_NE(run(with("--keep-files")).errors.find("with their files only"), std::string::npos);
  EXPECT_EQ(server->stored("Mine"), before);
  const ProgramResult removed = run(with("--apply"));
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_NE(removed.output.find("Removed from the library: 1 track"), std::string::npos)
      << removed.output;
  EXPECT_EQ(server->stored("Mine"), after);
  EXPECT_FALSE(std::filesystem::exists(copy));
  const auto songs = [&] { return json({"tracks", address, "--json"}).size(); };
  EXPECT_EQ(songs(), 5U) << "the player knows that it is gone";

  const ProgramResult undone = run({"undo", address, "1"});
  EXPECT_EQ(undone.status, 0) << undone.errors << undone.output;
  EXPECT_EQ(server->stored("Mine"), before);
  EXPECT_EQ(songs(), 6U);
  EXPECT_TRUE(std::filesystem::exists(copy));
  EXPECT_NE(run({"undo", address, "1"}).errors.find("already"), std::string::npos);
}

TEST_F(PlayerCommandLine, LeavesFilesOfSongsThatAListGoesOnListing) {
  serve("max_playlist_length \"2\"\n");
  server->writeList("Full", {gone, "songs/a.mp3"});
  const ProgramResult removed =
      run({"remove", address, "--rule", "2", "--with-playlists", "--apply"});
  expectIn(removed.output, "max_playlist_length");
  expectIn(removed.output, "the playlist \"Full\" still lists it");
  EXPECT_TRUE(std::filesystem::exists(copy));
  EXPECT_EQ(server->stored("Full"), (Texts{gone, "songs/a.mp3"}));
}

/// The server forgets what it has noted of a song with its file.
TEST_F(PlayerCommandLine, BringsBackWhatWasNotedOfSongsThatWentToTheTrash) {
  note(kept, "playCount", "9");
  for (const auto& [name, value] :
       {std::pair("playCount", "5"), {"rating", "8"}, {"skipCount", "2"}})
    note(gone, name, value);
  const std::string before = noted(gone);
  const ProgramResult moved = run({"trash", address, "--rule", "2", "--apply"});
  EXPECT_EQ(moved.status, 0) << moved.errors << moved.output;
  EXPECT_FALSE(std::filesystem::exists(copy));
  // Somebody has the server look at its folders, of which one is empty now.
  server->connection().tell({"update"});
  server->waitForUpdate();
  const ProgramResult undone = run({"undo", address, "1"});
  EXPECT_EQ(undone.status, 0) << undone.errors << undone.output;
  EXPECT_EQ(noted(gone), before);
  EXPECT_EQ(noted(kept), "playCount=9 ");
}

}  // namespace
}  // namespace kestrel::testing
