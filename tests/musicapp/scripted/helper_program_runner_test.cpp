#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "musicapp/scripted/script_runner.h"
#include "platform/programs.h"
#include "tests/platform/scripted_programs.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

/// What the runner makes of a helper that ends so.
ScriptResult outcome(ProgramResult result) {
  ScriptedPrograms programs;
  programs.answer = [&result](const ProgramCall&) { return result; };
  return HelperProgramRunner(programs).run("x");
}

TEST(HelperProgram, RunsTheOneInPathAndHandsItTheTextAsItStands) {
  const TemporaryFolder folder;
  const std::string helper =
      folder.write("bin/osascript", "#!/bin/sh\necho \"$# $1\"\ncat\necho\necho 2>&1\n");
  std::filesystem::permissions(helper, std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  ::setenv("PATH", (folder / "bin:" + path).c_str(), 1);
  const std::string script = "tell \"$HOME\" `x` \\n 'é'\n" + std::string(500'000, 'y');
  SystemPrograms system;
  const ScriptResult result = HelperProgramRunner(system).run(script);
  ::setenv("PATH", path.c_str(), 1);
  EXPECT_FALSE(result.failed());
  EXPECT_EQ(result.text, "1 -\n" + script + "\n");
}

TEST(HelperProgram, ItsOutputIsTheResultAndItsLastLineEndIsNot) {
  for (const auto& [output, text] :
       std::initializer_list<std::pair<std::string, std::optional<std::string>>>{
           {"matched\n", "matched"},
           {"matched", "matched"},
           {" two\nlines \n\n", " two\nlines \n"},
           {"\n", ""},
           {"", std::nullopt}}) {
    const ScriptResult result = outcome({0, false, output, "a warning (-1)\n"});
    EXPECT_FALSE(result.failed());
    EXPECT_EQ(result.text, text);
  }
}

TEST(HelperProgram, ItsExitStatusIsTheErrorAndItsErrorOutputTheReason) {
  for (const auto& [errors, message, number] :
       std::initializer_list<std::tuple<std::string, std::string, int>>{
           {"0:9: syntax error: A \"b\". (-2741)\n", "0:9: syntax error: A \"b\".", -2741},
           {"one\ntwo (1) (-43)\r\n", "one\ntwo (1)", -43},
           {"no number (here)\n", "no number (here)", 0},
           {"too large (99999999999)", "too large (99999999999)", 0},
           {"(-43)\n", "osascript ended with status 1.", -43},
           {"", "osascript ended with status 1.", 0}}) {
    const ScriptResult result = outcome({1, false, "ignored", errors});
    ASSERT_TRUE(result.failed());
    EXPECT_EQ(result.text, std::nullopt);
    EXPECT_EQ(result.error->message.english(), message);
    EXPECT_EQ(result.error->number, number);
  }
}

TEST(HelperProgram, AMissingOneIsAnErrorThatNamesIt) {
  SystemPrograms system;
  const ScriptResult result = HelperProgramRunner(system, "/no/such/helper").run("x");
  ASSERT_TRUE(result.failed());
  EXPECT_NE(result.error->message.english().find("/no/such/helper"), std::string::npos);
}

}  // namespace
}  // namespace kestrel::testing
