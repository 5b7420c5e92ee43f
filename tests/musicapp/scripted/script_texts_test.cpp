#include "musicapp/scripted/script_texts.h"

#include <array>
#include <gtest/gtest.h>
#include <stdexcept>

#include "tests/musicapp/scripted/described_script.h"

namespace kestrel::testing {
namespace {

using namespace kestrel::command;
using namespace kestrel::script;

/// Names that only one who takes texts for something else stumbles over.
const auto awkwardNames = std::to_array<std::string>(
    {"", " ", "%@ and %s", "\"", "\"\"12\" mixes\"", "AC\\DC \\\" \\n", "end tell",
     "\" & quote & \"", "tell application \"Music\"\nend tell", "two\nlines\r\nand\ta tab\r",
     "-- no comment (* nor this *) \u00AC", "it's \u201Cso\u201D \u2018called\u2019",
     "\U0001F469\u200D\U0001F469\u200D\U0001F467 e\u0301 \u03A9 \u202E \u200B"});

TEST(Templates, SayWhatTheyAreNamedAfterWhateverTheNames) {
  for (const std::string& name : awkwardNames) {
    if (name.find('"') != std::string::npos) continue;
    EXPECT_EQ(statementsOf(scriptText(AddFile{name})), (Statements{{AddFile{name}}}));
    EXPECT_EQ(statementsOf(scriptText(Template::ImportPlaylistFile, {name})),
              (Statements{{AddFile{name}}}));
    const DeleteSameNamedPlaylists named{name, 0xAB, true};
    EXPECT_EQ(statementsOf(scriptText(named)), (Statements{{named, true}}));
  }
}

TEST(Templates, KeepTheirSpellingAndPutArgumentsInAsTheyStand) {
  EXPECT_EQ(scriptText(Template::AddFileToMusic, {"/a \\%@\".mp3"}),
            "tell application \"Music\"\nadd ((POSIX file \"/a \\%@\".mp3\") as alias)\n"
            "delay 0.1\nend tell");
  EXPECT_EQ(scriptText(Template::DeleteSameNamedPlaylists, {"%@", "FF"}),
            "tell application \"iTunes\"\ntry\nconsidering case\ndelete every user playlist whose "
            "name is \"%@\" and persistent ID is not \"FF\" and smart is false\nend considering\n"
            "end try\nend tell");
  EXPECT_THROW(scriptText(Template::RevealTrack, {}), std::invalid_argument);
  EXPECT_THROW(scriptText(Template::RevealTrack, {"1", "2"}), std::invalid_argument);
}

TEST(Templates, ANameWithAQuotationMarkDoesNotCompile) {
  for (const std::string name : {"12\" mixes", "\"", "the \"best\"", "a\" b \"c"}) {
    const std::string error = scriptError(scriptText(DeleteSameNamedPlaylists{name, 0xAB, true}));
    EXPECT_TRUE(error.starts_with("Line 4, column ")) << error;
  }
}

TEST(OwnCommands, MeanWhatTheyWereMadeFrom) {
  for (const std::string& name : awkwardNames)
    EXPECT_EQ(statementsOf(scriptText(CreatePlaylist{name})), (Statements{{CreatePlaylist{name}}}));
  EXPECT_EQ(statementsOf(scriptText(DeleteEntries{0xAB, {2, 11, 7, 2}})),
            (Statements{{DeleteEntries{0xAB, {11, 7, 2}}}}));
  EXPECT_EQ(statementsOf(scriptText(DeleteEntries{0xAB, {}})), Statements{});
  // What must not stand within quotation marks is spelled out.
  EXPECT_EQ(textExpression("12\" \\o/"), "\"12\" & quote & \" \" & (character id 92) & \"o/\"");
}

}  // namespace
}  // namespace kestrel::testing
