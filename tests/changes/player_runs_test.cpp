// Runs over a player whose server ends in the middle: nothing is lost, and a second attempt goes
// on.
#include <algorithm>
#include <gtest/gtest.h>

#include "changes/library_changes.h"
#include "tests/musicapp/mpd/mpd_server.h"

namespace kestrel::testing {
namespace {

/// A server with three lists, in which a is to be replaced by b.
class PlayerRuns : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!MpdTestServer::isInstalled()) GTEST_SKIP() << "mpd is not installed here";
    server.emplace();
    for (const char* name : {"1", "2", "3"})
      server->writeList(name, {"songs/a.mp3", "gone.mp3", "songs/c.mp3", "songs/a.mp3"});
    open();
  }

  void open() {
    changes.reset();
    server->open();
    changes.emplace(*server->app, server->files, server->clock);
  }
  Plan plan() {
    std::vector<ReplaylistChoice> choices;
    for (const Playlist& list : *server->app->allPlaylists())
      if (!list.isMaster)
        choices.push_back({list.persistentID, true, {{server->track("a"), server->track("b")}}});
    Plan plan = planReplaylist(*server->app->allPlaylists(), choices, {});
    plan.library = server->app->identity();
    return plan;
  }
  /// Of each list, the letters of the known songs.
  std::string lists() {
    std::string all;
    for (const char* name : {"1", "2", "3"})
      for (const std::string& uri : server->stored(name))
        all += uri.starts_with("songs/") ? uri[6] : name[0];
    return all;
  }

  static constexpr const char* before = "a1caa2caa3ca";
  static constexpr const char* after = "b1cbb2cbb3cb";
  std::optional<MpdTestServer> server;
  std::optional<LibraryChanges> changes;
};

TEST_F(PlayerRuns, GoOnAfterTheServerHasEndedAndCanBeTakenBack) {
  ApplyOptions options;
  options.progress = [&](const ApplyProgress& progress) {
    if (progress.done == 1) server->end(SIGKILL);
  };
  const ApplyReport broken = changes->apply(plan(), options);
  EXPECT_EQ(broken.state, RunState::brokenOff) << broken.problem.english();
  EXPECT_EQ(lists(), "b1cba2caa3ca");
  server->start();
  open();
  EXPECT_EQ(changes->apply(plan()).state, RunState::finished);
  EXPECT_EQ(lists(), after);
  changes->undo(*broken.run + 1);
  EXPECT_EQ(lists(), "b1cba2caa3ca");
  changes->undo(*broken.run);
  EXPECT_EQ(lists(), before);
}

TEST_F(PlayerRuns, PassOverAListThatIsRefusedAlone) {
  ApplyOptions options;
  options.progress = [&](const ApplyProgress& progress) {
    if (progress.done == 0) server->writeList("1", {"songs/a.mp3"});
  };
  const ApplyReport report = changes->apply(plan(), options);
  EXPECT_EQ(report.state, RunState::finished) << report.problem.english();
  EXPECT_EQ(report.outcomes.at(0).kind, Outcome::Kind::failed);
  EXPECT_EQ(lists(), "ab2cbb3cb");
  open();
  changes->undo(*report.run);
  EXPECT_EQ(lists(), "aa2caa3ca");
}

TEST_F(PlayerRuns, PassOverAListThatIsAsLongAsTheServerAllows) {
  server.emplace("max_playlist_length \"4\"\n");
  for (const char* name : {"1", "2", "3"}) server->writeList(name, {"songs/a.mp3", "songs/c.mp3"});
  server->writeList("2", {"songs/a.mp3", "songs/c.mp3", "songs/c.mp3", "songs/a.mp3"});
  open();
  const ApplyReport report = changes->apply(plan());
  EXPECT_EQ(report.state, RunState::finished) << report.problem.english();
  EXPECT_EQ(lists(), "bcaccabc");
  const std::string reason = report.outcomes.at(1).reason.english();
  EXPECT_NE(reason.find("max_playlist_length"), std::string::npos) << reason;
  EXPECT_EQ(changes->runs().front().playlists, 2U);
  changes->undo(*report.run);
  EXPECT_EQ(lists(), "acaccaac");
}

/// Whatever a list was left as by a program that was killed within it.
TEST_F(PlayerRuns, AreTakenBackFromWithinAList) {
  const char* const left[] = {"a1cab", "a1cb", "ab1cb", "b1cb"};
  for (const std::string entries : left) {
    SCOPED_TRACE(entries);
    server->writeList("1", {"songs/a.mp3", "gone.mp3", "songs/c.mp3", "songs/a.mp3"});
    open();
    ApplyOptions options;
    options.progress = [](const ApplyProgress&) { ::raise(SIGKILL); };
    ASSERT_TRUE(WIFSIGNALED(inChild([&] { changes->apply(plan(), options); })));
    std::vector<std::string> uris;
    for (const char letter : entries)
      uris.push_back(letter == '1' ? "gone.mp3" : std::string("songs/") + letter + ".mp3");
    server->writeList("1", uris);
    open();
    const auto runs = changes->runs();
    ASSERT_EQ(runs.front().state, RunState::brokenOff);
    changes->undo(runs.front().id);
    EXPECT_EQ(lists(), before);
  }
}

}  // namespace
}  // namespace kestrel::testing
