#include "musicapp/scripted/send.h"

#include <gtest/gtest.h>

#include "platform/log.h"
#include "tests/musicapp/scripted/described_script.h"
#include "tests/musicapp/scripted/recording_runner.h"

namespace kestrel::testing {
namespace {

using script::ImportPass;
using script::Sender;
using Lines = std::vector<std::string>;

const ScriptResult failed{std::nullopt,
                          ScriptError{Message::verbatim("no\nsuch file"), -43, {2, 5}}};

TEST(Sending, ChangesLogTheirErrorsAndRevealsTheirResults) {
  struct Case {
    void (*send)(const Sender&);
    const char* said;
    const char* failure;  ///< what the log has before an error; nullptr for a reveal
  };
  for (const auto& [send, said, failure] :
       {Case{[](const Sender& s) { s.addFileToMusic("/a"); }, "add /a", "Error while adding: "},
        Case{[](const Sender& s) { s.importPlaylistFile("/a", ImportPass::first); }, "add /a",
             "Error while adding 1: "},
        Case{[](const Sender& s) { s.importPlaylistFile("/a", ImportPass::second); }, "add /a",
             "Error while adding 2: "},
        Case{[](const Sender& s) { s.deleteSameNamedPlaylists("n", "A"); }, "delete named n but A?",
             "Error while deleting: "},
        Case{[](const Sender& s) { s.deletePlaylistByPid("A"); }, "delete playlist A?",
             "Error while deleting: "},
        Case{[](const Sender& s) { s.revealTrackInPlaylist("A", "B"); }, "reveal track B in A?",
             nullptr},
        Case{[](const Sender& s) { s.revealTrack("B"); }, "reveal track B?", nullptr},
        Case{[](const Sender& s) { s.revealPlaylist("A"); }, "reveal playlist A?", nullptr}}) {
    RecordingRunner runner;
    MemoryLog log;
    for (const ScriptResult& answer : {ScriptResult(), ScriptResult{"a result", {}}, failed}) {
      runner.answer = answer;
      send({&runner, log});
      EXPECT_EQ(described(runner.scripts.back()), Lines{said});
    }
    EXPECT_EQ(log.lines(),
              failure ? Lines{std::string(failure) + "Line 2, column 5: no such file (-43)"}
                      : (Lines{"(null)", "a result", "(null)"}));
  }
}

TEST(Sending, QuestionsGiveTheAnswerAndLogNothing) {
  RecordingRunner runner;
  MemoryLog log;
  const Sender sender(&runner, log);
  for (const ScriptResult& answer : {ScriptResult{"/a b/c", {}}, ScriptResult(), failed}) {
    runner.answer = answer;
    EXPECT_EQ(sender.trackCloudStatus("A"), answer.text);
    EXPECT_EQ(described(runner.scripts.back()), Lines{"cloud A?"});
    EXPECT_EQ(sender.trackLocation("A"), answer.text);
    EXPECT_EQ(described(runner.scripts.back()), Lines{"where A?"});
  }
  EXPECT_EQ(log.lines(), Lines{});
}

TEST(Sending, WithoutAnApplicationIsAnError) {
  MemoryLog log;
  Sender(nullptr, log).deletePlaylistByPid("A");
  EXPECT_EQ(log.lines(),
            Lines{"Error while deleting: There is no music application to send this to."});
}

}  // namespace
}  // namespace kestrel::testing
