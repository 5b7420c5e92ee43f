#include "platform/programs.h"

#include <cerrno>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <thread>

#include "platform/file_error.h"
#include "tests/platform/scripted_programs.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

ProgramResult shell(const std::string& script, std::string input = {}, bool oneOutput = false,
                    std::optional<std::chrono::milliseconds> timeout = {}) {
  return SystemPrograms().run({"sh", {"-c", script}, std::move(input), oneOutput, timeout});
}

TEST(Programs, ReportHowTheyEndedAndWhatTheyPrinted) {
  const ProgramResult result = shell("echo out; echo err >&2; exit 3");
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.output, "out\n");
  EXPECT_EQ(result.errors, "err\n");
  EXPECT_EQ(shell("kill -TERM $$").status, 128 + 15);
  EXPECT_EQ(shell("echo 1; echo 2 >&2; echo 3", "", true).output, "1\n2\n3\n");
}

TEST(Programs, ArgumentsArriveAsTheyAre) {
  const std::vector<std::string> arguments = {"%s|", "a b", "$HOME", "", "'\"`x`"};
  EXPECT_EQ(SystemPrograms().run({"printf", arguments, {}, false, {}}).output,
            "a b|$HOME||'\"`x`|");
}

TEST(Programs, TalkInAnyOrderWithoutGettingStuck) {
  const std::string big(3'000'000, 'x');
  const ProgramResult both = shell("tee /dev/stderr", big);
  EXPECT_EQ(both.output, big);
  EXPECT_EQ(both.errors, big);
  std::string lines;
  for (int i = 0; i < 100'000; ++i) lines += std::to_string(i) + "\n";
  EXPECT_EQ(shell("sed 'p;p;p'", lines).output.size(), lines.size() * 4);
  // One that never reads what it is given must neither block nor end us.
  EXPECT_EQ(shell("exec 0<&-; echo done", big).output, "done\n");
}

TEST(Programs, ATimeoutEndsThemWithAllThatTheyStarted) {
  const auto start = std::chrono::steady_clock::now();
  const ProgramResult result = shell("sleep 60 & echo $!; wait", "", false, 300ms);
  EXPECT_TRUE(result.timedOut);
  // Gone, or dead and not yet collected.
  const std::string process = "/proc/" + std::to_string(std::stoi(result.output)) + "/stat";
  const auto runs = [&process] {
    std::ifstream file(process);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return !text.empty() && text.find(") Z") == std::string::npos;
  };
  while (runs() && std::chrono::steady_clock::now() - start < 10s) std::this_thread::yield();
  EXPECT_FALSE(runs());
  EXPECT_TRUE(shell("exec >&- 2>&-; sleep 60", "", false, 100ms).timedOut);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
}

TEST(Programs, MissingOnesAreAnError) {
  try {
    SystemPrograms().run({"/no/such/program", {}, {}, false, {}});
    FAIL();
  } catch (const FileError& error) {
    EXPECT_EQ(error.code, ENOENT);
    EXPECT_EQ(error.file, "/no/such/program");
  }
}

}  // namespace
}  // namespace kestrel
