/// Runs the real program on documents in a folder of the test's own.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/programs.h"
#include "tests/platform/temporary_folder.h"
#include "tests/ui/library_harness.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

inline Texts joined(Texts some, const Texts& more) {
  some.insert(some.end(), more.begin(), more.end());
  return some;
}

class CommandLine : public ::testing::Test {
 protected:
  /// Writes a short silence, in MP3 whatever it is called, and returns its path.
  std::string file(const std::string& name) const {
    return folder.write(name, make_library::makeAudio("mp3", 100, 32, 440).bytes);
  }
  /// Writes a document with these entries and returns its path.
  std::string document(const std::string& tracks, const std::string& playlists) const {
    return folder.write("Library.xml", libraryText(tracks, playlists));
  }
  static ProgramResult run(Texts arguments) {
    ProgramCall call;
    call.program = KESTREL_CLI;
    call.arguments = std::move(arguments);
    return SystemPrograms().run(call);
  }
  static void expectIn(const std::string& text, std::string_view part) {
    EXPECT_NE(text.find(part), std::string::npos) << '"' << part << "\" is not in: " << text;
  }
  static Json json(Texts arguments) {
    const ProgramResult result = run(std::move(arguments));
    EXPECT_EQ(result.status, 0) << result.errors;
    return Json::parse(result.output);
  }

  TemporaryFolder folder;
};

}  // namespace kestrel::testing
