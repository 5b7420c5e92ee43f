#include "musicapp/scripted/scripted_application.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "foundation/identifiers.h"
#include "musicapp/requests.h"
#include "musicapp/scripted/script_texts.h"
#include "tests/musicapp/scripted/described_script.h"
#include "tests/musicapp/scripted/scripted_world.h"

namespace kestrel::testing {
namespace {

using Lines = std::vector<std::string>;

const ScriptResult failed{std::nullopt,
                          ScriptError{{Message::verbatim("no\nsuch file"), -43}, {2, 5}}};

/// The command that the last text says.
Command lastSaid(const RecordingRunner& runner) {
  const Statements statements = statementsOf(runner.scripts.back());
  return statements.size() == 1 ? statements[0].command : command::AddFile{"several"};
}

TEST(ScriptedApplication, SendsTheTextThatSaysTheCommand) {
  RecordingRunner runner;
  DocumentWorld world(smallLibrary());
  ScriptedApplication application(world.app->library(),
                                  {&runner, world.log, world.clock, world.files, "/", true});
  const Command commands[] = {command::AddFile{"/a"},
                              command::TrackCloudStatus{0xA},
                              command::TrackLocation{0xA},
                              command::RevealTrack{0xB, 0xA},
                              command::RevealTrack{0xB, {}},
                              command::RevealPlaylist{0xA},
                              command::DeleteSameNamedPlaylists{"n", 0xA, true},
                              command::DeletePlaylist{0xA},
                              command::DeleteEntries{0xA, {3, 1}},
                              command::DeleteAllEntries{UINT64_MAX},
                              command::DuplicateTracks{{3, 1, 3, 3}, 0xA},
                              command::DeleteTracks{{1, 2}},
                              command::MovePlaylist{0xA, 0xB}};
  for (const Command& command : commands) {
    runner.answer = {"an answer", {}};
    EXPECT_EQ(application.run(command).text, "an answer");
    EXPECT_EQ(lastSaid(runner), command);
    runner.answer = failed;
    EXPECT_EQ(application.run(command).failure->number, -43);
  }
  runner.answer = {"1F", {}};
  EXPECT_EQ(application.run(command::CreatePlaylist{"a\"b"}).playlist, 0x1FU);
  EXPECT_EQ(lastSaid(runner), Command(command::CreatePlaylist{"a\"b"}));
  EXPECT_FALSE(application.capabilities().editsInPlace);
  EXPECT_TRUE(application.run(command::RestoreTracks{}).failed());
}

TEST(ScriptedApplication, IsAskedByOperationsThatLogTheirErrorsAndReveals) {
  struct Case {
    void (*ask)(MusicApplication&, Log&);
    Command said;
    const char* failure;  ///< what the log has before an error; nullptr for a reveal
  };
  DocumentWorld world(smallLibrary());
  for (const auto& [ask, said, failure] :
       {Case{[](MusicApplication&a, Log&log) { request::addFile(&a, log, "/a"); },
             command::AddFile{"/a"}, "Error while adding: "},
        Case{[](MusicApplication&a, Log&log) { request::revealTrackInPlaylist(&a, log, "A", "B"); },
             command::RevealTrack{0xB, 0xA}, nullptr},
        Case{[](MusicApplication&a, Log&log) { request::revealTrack(&a, log, "B"); },
             command::RevealTrack{0xB, {}}, nullptr},
        Case{[](MusicApplication&a, Log&log) { request::revealPlaylist(&a, log, "A"); },
             command::RevealPlaylist{0xA}, nullptr}}) {
    RecordingRunner runner;
    MemoryLog log;
    ScriptedApplication application(world.app->library(),
                                    {&runner, log, world.clock, world.files, "/", true});
    for (const ScriptResult& answer : {ScriptResult(), ScriptResult{"a result", {}}, failed}) {
      runner.answer = answer;
      ask(application, log);
      EXPECT_EQ(lastSaid(runner), said);
    }
    EXPECT_EQ(log.lines(), failure ? Lines{std::string(failure) + "no such file (-43)"}
                                   : (Lines{"(null)", "a result", "(null)"}));
  }
  MemoryLog log;
  request::addFile(nullptr, log, "/a");
  EXPECT_EQ(log.lines(),
            Lines{"Error while adding: There is no music application to send this to."});
}

TEST(Sending, AReplacementTakesAllItsStepsAndLogsTheirErrors) {
  RecordingRunner runner;
  for (const bool fails : {false, true}) {
    MemoryLog log;
    runner.scripts.clear();
    runner.answer = fails ? failed : ScriptResult();
    script::importAndReplace("/a", "n", "A", &runner, log);
    std::vector<Command> said;
    for (const std::string& script : runner.scripts)
      said.push_back(statementsOf(script).front().command);
    const command::DeleteSameNamedPlaylists namesakes{"n", 0xA, true};
    EXPECT_EQ(said, (std::vector<Command>{command::AddFile{"/a"}, namesakes, command::AddFile{"/a"},
                                          command::DeletePlaylist{0xA}}));
    Lines logged;
    for (const char* failure : {"adding 1", "deleting", "adding 2", "deleting"})
      logged.push_back(std::string("Error while ") + failure +
                       ": Line 2, column 5: no such file (-43)");
    EXPECT_EQ(log.lines(), fails ? logged : Lines());
  }
}

TEST(Sending, ANameIsNeverCarriedOutAsACommand) {
  const std::pair<const char*, bool> cases[] = {
      {"plain", true},
      {"AC\\DC", true},
      {"12\" mixes", true},  // does not compile and so does nothing
      // Tells the application to do something of its own.
      {"x\" and persistent ID is not \"1\" and smart is false\nend considering\nend try\ndelete "
       "(get some track of library playlist 1 whose persistent ID is \"A\")\ntry\nconsidering "
       "case\ndelete every user playlist whose name is \"x",
       false},
      {"a\" & (do shell script \"true\") & \"b", false},  // readers that know more than this one
      {"a\" & quote & \"b", false}};
  for (const auto& [name, isSent] : cases) {
    RecordingRunner runner;
    const command::DeleteSameNamedPlaylists command{name, 0xA, true};
    EXPECT_EQ(script::send(&runner, script::scriptText(command), command).failed(), !isSent);
    EXPECT_EQ(runner.scripts.size(), isSent ? 1U : 0U) << name;
  }
}

TEST(ScriptedApplication, ReplacesAPlaylistAsAWhole) {
  std::string document = smallLibrary();
  document.replace(document.find(">Inner<"), 7, ">In \" ner<");
  ScriptedWorld world(document);
  const CommandResult replaced = world.scripted->run(command::ReplaceEntries{0x15, {{1, 0xD}}});
  ASSERT_FALSE(replaced.failed()) << replaced.failure->message.english();
  EXPECT_NE(replaced.playlist, 0x15U);
  EXPECT_EQ(world.playlists(),
            "Library: a b c d; Purchased: d; Mix: a b a c; Empty:; Folder: b; Smart: c; Mix: d; "
            "Folder/In \" ner: d")
      << "the copy that the deletion between could not delete is gone";
  EXPECT_TRUE(world.runner->scripts[0].starts_with("tell application \"iTunes\" to add"));
  EXPECT_EQ(world.runner->scripts[0], world.runner->scripts[2]);
  for (const auto& entry : std::filesystem::directory_iterator(world.folder / "support/Kestrel"))
    EXPECT_TRUE(entry.is_directory()) << entry.path() << " was left behind";
}

}  // namespace
}  // namespace kestrel::testing
