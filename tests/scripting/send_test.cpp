#include "scripting/send.h"

#include <functional>
#include <gtest/gtest.h>

#include "platform/log.h"
#include "tests/scripting/recording_runner.h"

namespace kestrel::testing {
namespace {

using script::ImportPass;
using script::Sender;
using script::Template;
using Lines = std::vector<std::string>;

struct Sending {
  std::function<void(const Sender&)> send;
  std::string script;
  std::string failure;  ///< what the log has before the error; empty when that is not logged
};

const std::vector<Sending> imports = {
    {[](const Sender& s) { s.addFileToMusic("/a"); }, scriptText(Template::AddFileToMusic, {"/a"}),
     "Error while adding: "},
    {[](const Sender& s) { s.importPlaylistFile("/a", ImportPass::first); },
     scriptText(Template::ImportPlaylistFile, {"/a"}), "Error while adding 1: "},
    {[](const Sender& s) { s.importPlaylistFile("/a", ImportPass::second); },
     scriptText(Template::ImportPlaylistFile, {"/a"}), "Error while adding 2: "},
    {[](const Sender& s) { s.deleteSameNamedPlaylists("n\"", "A"); },
     scriptText(Template::DeleteSameNamedPlaylists, {"n\"", "A"}), "Error while deleting: "},
    {[](const Sender& s) { s.deletePlaylistByPid("A"); },
     scriptText(Template::DeletePlaylistByPid, {"A"}), "Error while deleting: "},
};
const std::vector<Sending> reveals = {
    {[](const Sender& s) { s.revealTrackInPlaylist("A", "B"); },
     scriptText(Template::RevealTrackInPlaylist, {"A", "B"}),
     {}},
    {[](const Sender& s) { s.revealTrack("B"); }, scriptText(Template::RevealTrack, {"B"}), {}},
    {[](const Sender& s) { s.revealPlaylist("A"); },
     scriptText(Template::RevealPlaylist, {"A"}),
     {}},
};

/// What the log has after the command was sent to an application that answers so.
Lines logged(const Sending& sending, const ScriptResult& answer) {
  RecordingRunner runner;
  runner.answer = answer;
  MemoryLog log;
  sending.send({&runner, log});
  EXPECT_EQ(runner.scripts, Lines{sending.script});
  return log.lines();
}

const ScriptResult failed{std::nullopt, ScriptError{"no\nsuch file", -43, {2, 5}}};

TEST(Sending, ChangesLogTheirErrorsAndNothingElse) {
  for (const Sending& sending : imports) {
    EXPECT_EQ(logged(sending, {}), Lines{});
    EXPECT_EQ(logged(sending, {"a result", {}}), Lines{});
    EXPECT_EQ(logged(sending, failed),
              Lines{sending.failure + "Line 2, column 5: no such file (-43)"});
  }
}

TEST(Sending, RevealsLogTheirResultWhetherOrNotThereIsOne) {
  for (const Sending& sending : reveals) {
    EXPECT_EQ(logged(sending, {}), Lines{"(null)"});
    EXPECT_EQ(logged(sending, {"shown", {}}), Lines{"shown"});
    EXPECT_EQ(logged(sending, failed), Lines{"(null)"});
  }
}

TEST(Sending, QuestionsGiveTheAnswerAndLogNothing) {
  RecordingRunner runner;
  MemoryLog log;
  const Sender sender(&runner, log);
  for (const auto& [answer, expected] :
       {std::pair{ScriptResult{"/a b/c", {}}, std::optional<std::string>("/a b/c")},
        std::pair{ScriptResult(), std::optional<std::string>()},
        std::pair{failed, std::optional<std::string>()}}) {
    runner.answer = answer;
    EXPECT_EQ(sender.trackCloudStatus("A"), expected);
    EXPECT_EQ(sender.trackLocation("A"), expected);
  }
  EXPECT_EQ(log.lines(), Lines{});
  EXPECT_EQ(runner.scripts[0], scriptText(Template::TrackCloudStatus, {"A"}));
  EXPECT_EQ(runner.scripts[1], scriptText(Template::TrackLocation, {"A"}));
}

TEST(Sending, WithoutAnApplicationIsAnError) {
  MemoryLog log;
  const Sender sender(nullptr, log);
  sender.deletePlaylistByPid("A");
  sender.revealPlaylist("A");
  EXPECT_EQ(sender.trackLocation("A"), std::nullopt);
  EXPECT_EQ(
      log.lines(),
      (Lines{"Error while deleting: There is no music application to send this to.", "(null)"}));
}

}  // namespace
}  // namespace kestrel::testing
