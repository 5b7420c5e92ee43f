#include "musicapp/scripted/script_language.h"

#include <chrono>
#include <gtest/gtest.h>
#include <random>

#include "tests/musicapp/scripted/described_script.h"

namespace kestrel::testing {
namespace {

using namespace command;

/// A script in which `lines` are told to the application.
std::string music(const std::string& lines) {
  return "tell application \"Music\"\n" + lines + "\nend tell";
}

/// Every command, and much of what may be written in more than one way.
const std::string everything = music(R"(
  add POSIX file "/music/" & quote & (character id 92) & ".mp3"
	Reveal ((Get Some Track Of (get some folder playlist whose persistent id is "c") whose persistent ID is "1a"))
)") + "\r\n" + music(R"(delay 1
  try
    considering case
    end considering
    delete every user playlist whose name is "Ärger 🎵 end tell" and persistent ID is not "00FF" and smart is false
  end try
  tell some user playlist whose persistent ID is "FFFFFFFFFFFFFFFF"
    delete track 12

    delete track 3
  end tell
  tell (some user playlist whose persistent ID is "FFFFFFFFFFFFFFFF") to delete track 1
  tell application id "com.apple.Music" to reveal some playlist whose persistent ID is "B"
  delete some track of library playlist 1 whose persistent ID is "1"
  delete some track of library playlist 1 whose persistent ID is "2")");

TEST(ScriptLanguage, ReadsCommandsHoweverTheyAreWritten) {
  const Statements expected = {{AddFile{"/music/\"\\.mp3"}},
                               {RevealTrack{0x1A, 0xC}},
                               {DeleteSameNamedPlaylists{"Ärger 🎵 end tell", 0xFF, false}, true},
                               {DeleteEntries{UINT64_MAX, {12, 3}}},
                               {DeleteEntries{UINT64_MAX, {1}}},
                               {RevealPlaylist{0xB}},
                               {DeleteTracks{{1, 2}}}};
  EXPECT_EQ(statementsOf(everything), expected);
  EXPECT_EQ(statementsOf(" \r\n\t\n"), Statements{});
  EXPECT_EQ(statementsOf("tell application \"Music\"\nend tell"), Statements{});
}

TEST(ScriptLanguage, SaysWhereItIsNotUnderstoodAndWhatWasExpected) {
  const std::string id = " whose persistent ID is \"1\"";
  for (const auto& [text, error] : std::initializer_list<std::pair<std::string, std::string>>{
           {"reboot",
            "Line 1, column 1: expected a block that tells the application, found "
            "'reboot'"},
           {"tell application \"Finder\"\nend tell",
            "Line 1, column 18: \"Finder\" is not the music application"},
           {music("dance"), "Line 2, column 1: expected a command, found 'dance'"},
           {music("add (\"Ärger\" as POSIX file"),
            "Line 2, column 27: expected ')', found the end of the line"},
           {music("reveal some playlist whose name is \"a\""),
            "Line 2, column 28: expected 'persistent', found 'name'"},
           {music("try\r\nreveal some playlist" + id + "\r\nend tell"),
            "Line 4, column 5: expected 'try', found 'tell'"},
           {music("try\nreveal some playlist" + id + "\nreveal some playlist" + id + "\nend try"),
            "Line 4, column 1: a 'try' block holds one command"},
           {music("delete every user playlist whose name is \"My \"best\" songs\" and"),
            "Line 2, column 47: expected 'and', found 'best' (a quotation mark within a text ends "
            "it)"},
           {music("add \"a\" as POSIX file\nadd \"b"),
            "Line 3, column 5: this text has no closing quotation mark"},
           {music("delete track 1"), "Line 2, column 1: no playlist is told to delete this track"},
           {music("tell some playlist" + id + " to delete track 0"),
            "Line 2, column 63: positions count from 1"},
           {music("tell some playlist" + id + " to delete track 1.5"),
            "Line 2, column 63: expected a track's position, found '1.5'"},
           {music("delete some track of some playlist" + id + id),
            "Line 2, column 8: a playlist's entries are deleted by their position"},
           {music("move some playlist" + id + " to some user playlist" + id),
            "Line 2, column 50: playlists are moved to a folder playlist"},
           {music("return its location as text"),
            "Line 2, column 8: no track is told to give this"},
           {music("tell some track of library playlist 1" + id + " to return its location"),
            "Line 2, column 76: this cannot be returned as a text"},
           {music("tell some track of library playlist 1" + id +
                  " to return its cloud status\nreveal some playlist" + id),
            "Line 3, column 1: nothing is run after 'return'"},
           {music("return persistent ID of make new user playlist with properties {name:\"\xC3\"}"),
            "Line 2, column 70: this name is not in UTF-8"},
           {music("add “a” as POSIX file"), "Line 2, column 5: '“' means nothing here"},
           {music("") + "\nend tell", "Line 4, column 1: expected a command, found 'end'"},
       })
    EXPECT_EQ(scriptError(text), error) << text;
}

TEST(ScriptLanguage, LeavesItToTheLookUpThatATextIsNoID) {
  const std::string good = "some playlist whose persistent ID is \"A\"";
  const std::string bad =
      "some playlist whose persistent ID is \"G\" & \"" + std::string(30, '0') + "\"";
  const std::string none = "G" + std::string(23, '0');
  const std::string track = "some track of library playlist 1 whose persistent ID is ";
  EXPECT_EQ(statementsOf(music(
                "reveal " + bad + "\nreveal " + good +
                "\nreveal some playlist whose persistent ID is \"10000000000000000\"\nreveal some "
                "playlist whose persistent ID is \"\"")),
            (Statements{{RevealPlaylist{0}, false, none},
                        {RevealPlaylist{0xA}},
                        {RevealPlaylist{0}, false, "10000000000000000"},
                        {RevealPlaylist{0}, false, ""}}));
  // One command is done whole or not at all, wherever in it the text stands; the next one is.
  EXPECT_EQ(
      statementsOf(music(
          "try\nduplicate " + track + "\"1\" to " + good + "\nduplicate " + track + "\"H\" to " +
          good + "\nduplicate " + track + "\"2\" to " + good + "\nend try\ntell " + bad +
          "\ndelete track 2\ndelete track 1\nend tell\ntell " + good + " to delete track 1\nmove " +
          good + " to some folder playlist whose persistent ID is \"X\"")),
      (Statements{{DuplicateTracks{{1, 0, 2}, 0xA}, true, "H"},
                  {DeleteEntries{0, {2, 1}}, false, none},
                  {DeleteEntries{0xA, {1}}},
                  {MovePlaylist{0xA, 0}, false, "X"}}));
  EXPECT_EQ(statementsOf(music("tell " + track + "\"Z\" to return its cloud status")),
            (Statements{{TrackCloudStatus{0}, false, "Z"}}));
  EXPECT_EQ(statementsOf(music("delete every user playlist whose name is \"a\" and persistent ID "
                               "is not \"G\" and smart is false")),
            (Statements{{DeleteSameNamedPlaylists{"a", {}, false}}}));
}

TEST(ScriptLanguage, NeitherNestingNorDamageBreaksIt) {
  for (const std::string open : {"tell application \"Music\"\n", "try\n"}) {
    std::string deep;
    for (int i = 0; i < 300'000; ++i) deep += open;
    EXPECT_NE(scriptError(deep).find("nested too deeply"), std::string::npos);
  }
  for (const std::string start : {"add ", "add \"a\" & ", "reveal ", "return "})
    EXPECT_NE(scriptError(music(start + std::string(1'000'000, '('))).find("too deeply"),
              std::string::npos);
  // Wherever it is cut and whatever letter is changed, the result is a reading or an error with a
  // place in the text.
  const auto check = [](const std::string& text) {
    const auto parsed = script::parse(text);
    const auto* error = std::get_if<ScriptError>(&parsed);
    if (!error) return;
    EXPECT_GE(error->place.line, 1U);
    EXPECT_GE(error->place.column, 1U);
    EXPECT_LE(error->place.column, text.size() + 1);
    EXPECT_FALSE(error->message.empty());
  };
  for (std::size_t i = 0; i < everything.size(); ++i) check(everything.substr(0, i));
  std::mt19937 random(7);
  const std::string letters = "\"()&{}:\n 0Z\x80\xFF";
  for (int i = 0; i < 20'000; ++i) {
    std::string text = everything;
    for (int changes = 1 + i % 3; changes > 0; --changes)
      text[random() % text.size()] = letters[random() % letters.size()];
    check(text);
  }
}

TEST(ScriptLanguage, LongListsAreOneCommandReadInLinearTime) {
  constexpr std::size_t count = 200'000;
  std::string lines;
  for (std::size_t i = count; i > 0; --i) lines += "delete track " + std::to_string(i) + "\n";
  const auto start = std::chrono::steady_clock::now();
  const auto parsed = script::parse(
      music("tell some playlist whose persistent ID is \"1\"\n" + lines + "end tell"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  const auto& statements = std::get<0>(parsed);
  ASSERT_EQ(statements.size(), 1U);
  EXPECT_EQ(std::get<command::DeleteEntries>(statements[0].command).positions.size(), count);
}

}  // namespace
}  // namespace kestrel::testing
