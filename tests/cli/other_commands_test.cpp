#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

using Json = nlohmann::json;

TEST_F(CommandLine, ListsEveryTrackWithEveryKey) {
  const std::string path =
      document(song(1, "A", file("a.mp3"), text("Name", "\"Tea\" \xE2\x98\x95")) +
                   song(2, "B", "", flag("Movie")) + song(3, "C", "/gone"),
               "");
  const Json tracks = json({"tracks", path, "--json"});
  ASSERT_EQ(tracks.size(), 2U) << "a movie is no song";
  EXPECT_EQ(tracks[0]["tName"], "\"Tea\" \xE2\x98\x95");
  EXPECT_EQ(tracks[0]["tCompilation"], false);
  EXPECT_EQ(tracks[0].size(), 45U);
  EXPECT_FALSE(tracks[0].contains("dupeSort"));
  EXPECT_EQ(tracks[1]["fileAvail"], "0");
}

TEST_F(CommandLine, ListsPlaylistsAsCatalogueAndTree) {
  const std::string path = document(
      song(1, "A", "/a"), playlist("Library", "1", flag("Master"), {1}) +
                              playlist("Trips", "2", flag("Folder")) +
                              playlist("Road", "3", text("Parent Persistent ID", "2"), {1, 1}) +
                              playlist("Bare", "4", flag("Folder")) + playlist("Top", "5"));
  const Json result = json({"playlists", path, "--json"});
  ASSERT_EQ(result["playlists"].size(), 5U);
  EXPECT_EQ(result["playlists"][0]["pnom"], "Music");
  EXPECT_EQ(result["playlists"][2]["parentID"], "2");
  EXPECT_EQ(result["playlists"][2]["itemCount"], 2);
  const Json& outline = result["outline"];
  ASSERT_EQ(outline.size(), 3U);
  EXPECT_EQ(outline[0]["Child"][0]["pnom"], "Road");
  EXPECT_EQ(outline[0]["Child"][0]["Child"], Json::object());
  EXPECT_EQ(outline[1]["Child"], Json::object()) << "an empty folder";
  EXPECT_FALSE(outline[2].contains("Child"));
  const std::string text = run({"playlists", path}).output;
  EXPECT_LT(text.find("\nTrips"), text.find("\n  Road")) << text;
}

TEST_F(CommandLine, CountsWhatALibraryHolds) {
  const std::string path =
      document(song(1, "A", file("a.mp3"), text("Kind", "MPEG audio file") + number("Size", 500)) +
                   song(2, "B", "", flag("Podcast")) + song(3, "C", ""),
               playlist("Mine", "1", {}, {1, 2, 77}));
  const Json info = json({"info", path, "--json"});
  EXPECT_EQ(info["items"], 3);
  EXPECT_EQ(info["tracks"], 2);
  EXPECT_EQ(info["mediaKinds"], (Json{{"songs", 2}, {"podcasts", 1}}));
  EXPECT_EQ(info["availability"], (Json{{"reachable", 1}, {"cloud", 1}, {"missing", 0}}));
  EXPECT_EQ(info["playlistEntries"], 2);
  EXPECT_EQ(info["droppedEntries"], 1);
  EXPECT_GT(info["anonymousBytes"], 0);
  EXPECT_NE(run({"info", path}).output.find("MPEG audio file"), std::string::npos);
}

TEST_F(CommandLine, EndsCleanlyWhenInterrupted) {
  std::string tracks;
  for (int i = 1; i <= 60'000; ++i)
    tracks += song(i, std::to_string(i), "/gone/" + std::to_string(i), text("Name", "Song"));
  const std::string path = document(tracks, playlist("Library", "F00", flag("Master"), {1, 2}));
  bool stopped = false;
  // The signal may come before the program listens, or too late: it is tried at many moments.
  for (int delay = 20; !stopped && delay < 200; delay += 5) {
    int errors[2];
    ASSERT_EQ(::pipe(errors), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      ::dup2(errors[1], STDERR_FILENO);
      ::close(STDOUT_FILENO);
      ::execl(KESTREL_CLI, KESTREL_CLI, "tracks", path.c_str(), nullptr);
      ::_exit(127);
    }
    ::close(errors[1]);
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    ::kill(child, SIGINT);
    std::string said(200, '\0');
    const ssize_t size = ::read(errors[0], said.data(), said.size());
    said.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    ::close(errors[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    stopped =
        WIFEXITED(status) && WEXITSTATUS(status) == 1 && said.find("stopped") != std::string::npos;
  }
  EXPECT_TRUE(stopped);
}

}  // namespace
}  // namespace kestrel::testing
