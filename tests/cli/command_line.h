/// Runs the real program on documents in a folder of the test's own.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/programs.h"
#include "tests/library/library_harness.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {

class CommandLine : public ::testing::Test {
 protected:
  /// An audio file as far as reachability goes; returns its path.
  std::string file(const std::string& name) const { return folder.write(name, "x"); }
  /// Writes a document with these entries and returns its path.
  std::string document(const std::string& tracks, const std::string& playlists) const {
    return folder.write("Library.xml", libraryText(tracks, playlists));
  }
  static ProgramResult run(std::vector<std::string> arguments) {
    ProgramCall call;
    call.program = KESTREL_CLI;
    call.arguments = std::move(arguments);
    return SystemPrograms().run(call);
  }
  static nlohmann::json json(std::vector<std::string> arguments) {
    const ProgramResult result = run(std::move(arguments));
    EXPECT_EQ(result.status, 0) << result.errors;
    return nlohmann::json::parse(result.output);
  }

  TemporaryFolder folder;
};

}  // namespace kestrel::testing
