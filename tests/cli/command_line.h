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

namespace kestrel::testing {

class CommandLine : public ::testing::Test {
 protected:
  CommandLine() {
    std::string made = (std::filesystem::temp_directory_path() / "kestrel-cli-XXXXXX").string();
    folder = ::mkdtemp(made.data());
  }
  ~CommandLine() override { std::filesystem::remove_all(folder); }

  /// An audio file as far as reachability goes; returns its path.
  std::string file(const std::string& name) const {
    std::ofstream(folder / name) << "x";
    return folder / name;
  }
  /// Writes a document with these entries and returns its path.
  std::string document(const std::string& tracks, const std::string& playlists) const {
    const std::string path = folder / "Library.xml";
    std::ofstream(path) << "<plist version=\"1.0\"><dict><key>Tracks</key><dict>" << tracks
                        << "</dict><key>Playlists</key><array>" << playlists
                        << "</array></dict></plist>";
    return path;
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

  std::filesystem::path folder;
};

}  // namespace kestrel::testing
