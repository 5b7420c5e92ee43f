// The command line on a Music Player Daemon.
#include "tests/cli/command_line.h"
#include "tests/musicapp/mpd/mpd_server.h"

namespace kestrel::testing {
namespace {

TEST_F(CommandLine, RemovesSongsOfAPlayerWithTheirFilesAndBringsThemBack) {
  if (!MpdTestServer::isInstalled()) GTEST_SKIP() << "mpd is not installed here";
  MpdTestServer server;
  const std::string copy = server.addSong("copies/b.mp3", "b");
  server.connection().tell({"update"});
  server.waitForUpdate();
  const std::string kept = "songs/b.mp3", gone = "copies/b.mp3";
  server.connection().tell({"sticker", "set", "song", kept, "playCount", "9"});
  server.writeList("Mine", {gone, "gone/old.mp3", "songs/a.mp3", gone});
  server.writeList("Other", {"songs/c.mp3"});
  const Texts before = server.stored("Mine"), after = {kept, "gone/old.mp3", "songs/a.mp3", kept};
  std::filesystem::create_directories(server.folder / "support");

  const auto with = [&](const char* option) -> Texts {
    return {"remove", server.address(), "--rule", "2", "--with-playlists", option};
  };
  EXPECT_NE(run(with("--keep-files")).errors.find("with their files only"), std::string::npos);
  EXPECT_EQ(server.stored("Mine"), before);
  const ProgramResult removed = run(with("--apply"));
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_NE(removed.output.find("Removed from the library: 1 track"), std::string::npos)
      << removed.output;
  EXPECT_EQ(server.stored("Mine"), after);
  EXPECT_FALSE(std::filesystem::exists(copy));
  const auto songs = [&] { return json({"tracks", server.address(), "--json"}).size(); };
  EXPECT_EQ(songs(), 4U) << "the player knows that it is gone";

  const ProgramResult undone = run({"undo", server.address(), "1"});
  EXPECT_EQ(undone.status, 0) << undone.errors << undone.output;
  EXPECT_EQ(server.stored("Mine"), before);
  EXPECT_EQ(songs(), 5U);
  EXPECT_TRUE(std::filesystem::exists(copy));
  EXPECT_NE(run({"undo", server.address(), "1"}).errors.find("already"), std::string::npos);
}

}  // namespace
}  // namespace kestrel::testing
