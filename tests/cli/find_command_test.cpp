#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

class FindCommand : public CommandLine {
 protected:
  /// Three copies of "Tea" (one in the cloud), two of "Rain" of which one file is gone, and a song.
  std::string library() const {
    const auto make = [](int id, const std::string& path, const char* name, int plays,
                         const std::string& more = {}) {
      return song(id, std::to_string(id) + "F", path,
                  text("Name", name) + text("Artist", "Ann") + number("Play Count", plays) +
                      number("Size", 1000 * id) + number("Total Time", 100'000 + 1000 * id) + more);
    };
    return document(make(1, file("a.mp3"), "Tea", 5,
                         text("Kind", "MPEG audio file") + number("Bit Rate", 128)) +
                        make(2, file("b.m4a"), "TEA", 9, text("Kind", "AAC audio file")) +
                        make(3, "", "tea", 7) + make(4, file("c.mp3"), "Rain", 0) +
                        make(5, folder / "gone.mp3", "Rain", 3) +
                        make(6, file("d.mp3"), "Alone", 1),
                    playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5, 6}) +
                        playlist("Short", "200", {}, {4, 5}) + playlist("Twin", "300", {}, {1}) +
                        playlist("Twin", "301", {}, {2}));
  }
  static Texts keepers(const Json& result) {
    Texts kept;
    for (const Json& group : result["groups"])
      for (const Json& track : group["tracks"])
        if (track["keeper"]) kept.push_back(track["hexpid"]);
    return kept;
  }
};

TEST_F(FindCommand, WritesGroupsAsJson) {
  const Json result =
      json({"find", library(), "--match", "tName,tArtist", "--rule", "2", "--json"});
  EXPECT_EQ(result["count"], "5");
  EXPECT_EQ(result["criteria"], (Json{"tName", "tArtist"}));
  ASSERT_EQ(result["groups"].size(), 2U);
  const Json& first = result["groups"][0];
  EXPECT_EQ(first["tGroupID"], "0");
  EXPECT_EQ(first["dupeSort"], 1);
  EXPECT_EQ(first["pick"]["rule"], 2);
  EXPECT_EQ(first["pick"]["random"], false);
  EXPECT_EQ(first["pick"]["reason"], "Most Played: 9 over 5 and 7 plays");
  const Json& kept = first["tracks"][1];
  EXPECT_EQ(kept["keeper"], true);
  EXPECT_EQ(kept["tCheckbox"], true);
  EXPECT_EQ(kept["tName"], "TEA");
  EXPECT_EQ(kept["decpid"], "47");
  EXPECT_EQ(kept["fileAvail"], "1");
  EXPECT_EQ(kept["realSize"], 2000);
  EXPECT_EQ(kept["checkBox"], "1");
  EXPECT_FALSE(kept.contains("tPlayDate")) << "a missing date is an absent key";
  EXPECT_EQ(keepers(result), (Texts{"2F", "4F"})) << "of Rain the one whose file is there";
  EXPECT_EQ(result["groups"][1]["tracks"][1]["fileAvail"], "0");
}

TEST_F(FindCommand, CountsWhatItFindsAndWhatOtherFieldsWould) {
  const std::string path = library();
  const Texts find = {"find", path, "--match", "name,artist", "--rule", "2", "--json"};
  const Json found = json(joined(find, {"--preview"}));
  EXPECT_EQ(found["totals"], Json({{"groups", 2},
                                   {"tracks", 5},
                                   {"toActOn", 3},
                                   {"files", 1},
                                   {"bytes", 1000},
                                   {"missing", 1},
                                   {"withoutKeeper", 0},
                                   {"severalKeepers", 0},
                                   {"doubtful", 0}}));
  EXPECT_EQ(found["groups"][0]["freed"], 1000);
  EXPECT_TRUE(found["lost"]["covers"].is_null()) << "nobody has looked";
  EXPECT_EQ(json({"find", path, "--keep", "with-cover", "--json"})["lost"]["covers"], 0);
  EXPECT_EQ(found["groups"][1]["missing"], 1);
  // Each is what a search finds.
  const auto groupsOf = [&](const char* fields, const Texts& more = {}) {
    return json(joined({"find", path, "--match", fields, "--json"}, more))["groups"].size();
  };
  const Json& preview = found["preview"];
  EXPECT_EQ(preview["groups"], 2);
  for (const char* field : {"album", "kind", "size", "time", "file-name"})
    EXPECT_EQ(preview["with"][field], groupsOf((std::string("name,artist,") + field).c_str()))
        << field;
  EXPECT_EQ(preview["without"], Json({{"name", groupsOf("artist")}, {"artist", groupsOf("name")}}));
  for (const auto& [word, groups] : preview["loose"].items())
    EXPECT_EQ(groups, groupsOf("name,artist", {"--loose", word})) << word;
  const std::string text = run({"find", path, "--preview"}).output;
  expectIn(text, "2 groups as it is\n");
  expectIn(text, "Without this field");
}

TEST_F(FindCommand, TakesEveryOption) {
  const std::string path = library();
  struct Case {
    std::string options;
    const char* count;
    Texts keepers;
  };
  const Case cases[] = {
      {"", "5", {"3F", "4F"}},  // no dates: a tie, the last in the table
      {"--case-sensitive", "2", {"4F"}},
      {"--playlist Short", "2", {"4F"}},
      {"--playlist 512", "2", {"4F"}},
      {"--rule 7", "5", {"1F", "4F"}},
      {"--rule 2 --keeper-mode 1", "5", {"2F", "4F"}},
      {"--approx 0", "4", {"2F", "4F"}},  // 101 s and 102 s are one second apart, 103 s is not
      {"--approx 1", "5", {"3F", "4F"}},
      {"--tolerance 1s", "4", {"2F", "4F"}},
      {"--tolerance 2", "5", {"3F", "4F"}},
      {"--match tName,realTime", "0", {}},
      {"--match name,Time --tolerance 2s", "5", {"3F", "4F"}},
      {"--match tArtist --approx 0 --rule 14", "6", {"2F", "4F", "6F"}},
      {"--file-type MP3 --rule 2", "5", {"1F", "4F"}},
      {"--file-type WAV --always-uncheck", "5", {"4F"}},
      {"--rule 5 --folder /nowhere --always-uncheck", "5", {"4F"}},
      {"--rule 10", "5", {"2F", "3F", "4F"}},  // cloud copies are spared
  };
  for (const Case& c : cases) {
    Texts arguments = {"find"};
    std::istringstream words(c.options);
    for (std::string word; words >> word;) arguments.push_back(word);
    const Json result = json(joined(arguments, {path, "--json"}));  // no option may take the path
    EXPECT_EQ(result["count"], c.count) << c.options;
    EXPECT_EQ(keepers(result), c.keepers) << c.options;
  }
  const Json mode = json({"find", path, "--rule", "2", "--keeper-mode", "1", "--json"});
  EXPECT_EQ(mode["groups"][0]["tracks"][1]["tCheckbox"], false) << "here a tick marks the others";
}

TEST_F(FindCommand, SaysWhatItCoversLessThanTheLibrary) {
  const std::string tracks = song(1, "1", file("a.mp3"), text("Name", "Tea")) +
                             song(2, "2", file("b.mp3"), text("Name", "Tea"));
  const std::string lists = playlist("Smart", "200", "<key>Smart Info</key><data></data>", {1}) +
                            playlist("Mine", "201", text("Parent Persistent ID", "202"), {1, 2}) +
                            playlist("Folder \x7F", "202", flag("Folder"), {1, 2});
  const auto check = [&](const std::string& path, const Texts& more, const Json& scope,
                         const std::string& note, const std::string& shown) {
    const std::string head = shown.empty() ? "" : "Only the playlist " + shown + " was searched.\n";
    for (const std::string command : {"find", "replaylist", "trash", "plan"}) {
      Texts arguments = joined({command, path}, more);
      const ProgramResult result = run(arguments);
      EXPECT_EQ(result.status, 0) << command << result.errors;
      EXPECT_EQ(result.errors, note.empty() ? ""
                                            : "kestrel-cli: note: " + note + shown +
                                                  (more.empty() ? "\n" : " is searched\n"));
      if (command != "plan") {
        EXPECT_EQ(result.output.substr(0, result.output.find('\n') + 1) == head, !head.empty());
        arguments.push_back("--json");
      }
      EXPECT_EQ(json(arguments)["scope"], scope) << command;
    }
  };
  const std::string without = document(tracks, lists);
  check(without, {}, {{"playlist", "Folder \x7F"}, {"hexpid", "202"}},
        "the library has no list of all its songs; its first playlist is searched, ",
        "\"Folder ?\"");
  EXPECT_EQ(json({"find", without, "--match", "tName", "--json"})["count"], "2");
  const std::string whole =
      document(tracks, lists + playlist("Library", "100", flag("Master"), {1, 2}));
  check(whole, {}, "library", "", "");
  check(whole, {"--playlist", "Music"}, "library", "", "");
  check(whole, {"--playlist", "Mine"}, {{"playlist", "Mine"}, {"hexpid", "201"}},
        "only the playlist ", "\"Mine\"");

  const ProgramResult nothing = run({"find", document(tracks, "")});
  EXPECT_EQ(nothing.status, 1);
  EXPECT_EQ(nothing.output, "");
  expectIn(nothing.errors, "nothing could be searched. Make a playlist");
  const std::string bought = playlist("Bought", "300", number("Distinguished Kind", 19), {1, 2});
  EXPECT_EQ(run({"find", document(tracks, bought)}).status, 2) << "it is in no menu";
}

TEST_F(FindCommand, TakesTheMediaFolderForRuleFive) {
  const auto tea = [&](int id, const std::string& name) {
    return song(id, std::to_string(id), file(name), text("Name", "Tea"));
  };
  std::string document = libraryText(tea(1, "media/a.mp3") + tea(2, "b.mp3"),
                                     playlist("Library", "100", flag("Master"), {1, 2}));
  document.insert(document.find("<key>Tracks"),
                  text("Music Folder", "file://localhost" + (folder / "media/")));
  const std::string path = folder.write("Library.xml", document);
  struct Case {
    Texts options;
    const char* keeper;
    std::string note;
  };
  const Case cases[] = {
      {{}, "1", "the library's media folder, " + (folder / "media") + "\n"},
      {{"--folder", folder / "b"}, "2", ""},
      {{"--folder", ""}, "2", "an empty --folder takes every file"},
      {{"--folder="}, "2", "an empty --folder takes every file"},
  };
  for (const Case& c : cases) {
    const Texts rule = {"find", "--rule", "5", "--match", "tName"};
    const ProgramResult result = run(joined(joined(rule, c.options), {path, "--json"}));
    EXPECT_EQ(keepers(Json::parse(result.output)), Texts{c.keeper}) << result.errors;
    expectIn(result.errors, c.note);
  }
}

TEST_F(FindCommand, RepeatsRandomChoicesWithASeed) {
  const std::string path = library();
  std::set<Texts> seen;
  for (int seed = 0; seed < 20; ++seed) {
    const Texts arguments = {
        "find", path, "--rule", "11", "--json", "--seed", std::to_string(seed)};
    const Json once = json(arguments);
    EXPECT_EQ(once, json(arguments));
    EXPECT_EQ(once["groups"][0]["pick"]["random"], true);
    seen.insert(keepers(once));
  }
  EXPECT_GT(seen.size(), 1U);
}

TEST_F(FindCommand, WritesTablesAndCsv) {
  const std::string path = library();
  const std::string table = run({"find", path, "--rule", "2"}).output;
  expectIn(table, "Group 1 of 2 (number 0) · Most Played: 9 over 5 and 7 plays");
  expectIn(table, "(file missing)");
  expectIn(table, "5 tracks in 2 groups; 3 tracks to act on, with 1 file of 1 KB in all.");

  std::istringstream csv(run({"find", path, "--rule", "2", "--csv"}).output);
  std::string titles, line;
  std::getline(csv, titles);
  EXPECT_EQ(titles.find("tGroupID,dupeSort,keeper,reason,tName,tArtist"), 0U);
  const auto fields = std::count(titles.begin(), titles.end(), ',');
  int lines = 0;
  for (; std::getline(csv, line); ++lines)
    EXPECT_EQ(std::count(line.begin(), line.end(), ','), fields) << line;
  EXPECT_EQ(lines, 5);
}

TEST_F(FindCommand, GathersAGroupWhoseMembersAreNoNeighbours) {
  // The keys are joined without a separator, so that "Track 1", 12 is "Track 11", 2; two name one
  // file, and sizes are as damaged libraries have them.
  const auto make = [&](int id, const char* name, int at, const char* path, long long size) {
    return song(id, std::to_string(id), file(path),
                text("Name", name) + number("Track Number", at) + number("Size", size));
  };
  constexpr long long huge = std::numeric_limits<long long>::max();
  const std::string path =
      document(make(1, "Track 1", 12, "a.mp3", 100) + make(2, "Track 11", 2, "b.mp3", huge) +
                   make(3, "X", 5, "c.mp3", huge) + make(4, "X", 5, "c.mp3", huge) +
                   make(5, "X", 5, "d.mp3", -100) + make(6, "X", 5, "e.mp3", 1),
               playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5, 6}));
  const Texts options = {"find", "--match", "tName,tTrackNum", "--rule", "15", path};
  std::map<std::string, std::size_t> groups;
  const Json result = json(joined(options, {"--json"}));
  for (const Json& group : result["groups"])
    groups.emplace(group["tGroupID"], group["tracks"].size());
  EXPECT_EQ(groups, (std::map<std::string, std::size_t>{{"0", 2}, {"1", 4}}));
  const std::string table = run(options).output;
  expectIn(table, "6 tracks in 2 groups; 4 tracks to act on, with 3 files of 9.22 EB");
}

TEST_F(FindCommand, TellsUsageErrorsFromFailures) {
  const std::string path = library();
  folder.write("Texts/text.txt", "no audio");
  struct Case {
    Texts arguments;
    int status;
    const char* says;
  };
  const Case cases[] = {
      {{"find", path, "--match", "artsit"}, 2, "artist"},
      {{"find", path, "--match", "tName,tGroupID"}, 2, "tGroupID"},
      {{"find", path, "--match", "realTime", "--approx", "1"}, 2, "leave them out"},
      {{"find", path, "--rule", "99"}, 2, "--rule"},
      {{"find", path, "--json", "--csv"}, 2, "--csv"},
      {{"find", path, "--file-type", "OGG"}, 2, "Apple Lossless"},
      {{"find", path, "--playlist", "None"}, 2, "no playlist \"None\""},
      {{"find", path, "--playlist", "Twin"}, 2, "768, 769"},
      {{"find"}, 2, "LIBRARY"},
      {{}, 2, "subcommand"},
      {{"-v", "fnd", path}, 2, "no command \"fnd\"; the nearest is find"},
      {{"find", path, "--approx", "-4"}, 2, "from 0 to 2147483648"},
      {{"find", path, "--approx", "soon"}, 2, "from 0 to 2147483648"},
      {{"find", path, "--tolerance", "0s"}, 2, "from 1 to 2147483648"},
      {{"find", path, "--tolerance", "2", "--approx", "1"}, 2, "excludes"},
      {{"find", path, "--match", "Filename"}, 0, "file-name"},
      {{"find", path + ".none"}, 1, ".none"},
      {{"find", folder / "Texts"}, 1, "no audio files"},
      {{"--help"}, 0, ""},
  };
  for (const Case& c : cases) {
    const ProgramResult result = run(c.arguments);
    EXPECT_EQ(result.status, c.status) << ::testing::PrintToString(c.arguments) << result.errors;
    expectIn(result.errors, c.says);
  }
  std::ofstream(folder / "damaged.xml") << "<plist>\n<dict>\n<key>Tracks</key>\n<dict>\n</plist>";
  expectIn(run({"info", folder / "damaged.xml"}).errors, "damaged.xml, line 5, column 1");
}

}  // namespace
}  // namespace kestrel::testing
