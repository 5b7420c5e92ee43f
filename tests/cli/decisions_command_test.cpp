#include <cstdlib>

#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

/// What is decided is kept in a folder of the test's own.
class DecisionsCommand : public CommandLine {
 protected:
  DecisionsCommand() {
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  }
  ~DecisionsCommand() override {
    for (const char* name : {"XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME"}) unsetenv(name);
  }
  std::string library(bool withThird = false) const {
    const auto make = [](int id, const std::string& path, const char* name, int plays) {
      return song(id, std::to_string(id) + "F", path,
                  text("Name", name) + text("Artist", "Ann") + number("Play Count", plays) +
                      number("Bit Rate", 128) + number("Size", 1000));
    };
    std::string ids = make(1, file("a.mp3"), "Tea", 5) + make(2, file("b.mp3"), "Tea (Live)", 9) +
                      make(3, file("c.mp3"), "Rain", 0) + make(4, file("d.mp3"), "Rain", 3);
    if (withThird) ids += make(5, file("e.mp3"), "Rain", 4);
    return document(ids, playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5}) +
                             playlist("Mine", "200", {}, {1, 4}));
  }
};

TEST_F(DecisionsCommand, LeavesGroupsOutUntilAMemberJoins) {
  const std::string path = library();
  const Texts find = {"find", path, "--json", "--new"};
  Json found = json(find);
  ASSERT_EQ(found["groups"].size(), 1U);
  EXPECT_EQ(found["since"], nullptr);
  EXPECT_EQ(json(find)["groups"].size(), 0U) << "nothing new";
  EXPECT_EQ(run({"ignore", path, "7"}).status, 2);
  const Json ignored = json({"ignore", path, found["groups"][0]["tGroupID"], "--json"});
  EXPECT_EQ(ignored["notDuplicates"][0]["tracks"][0]["hexpid"], "3F");
  found = json({"find", path, "--json"});
  EXPECT_EQ(found["groups"].size(), 0U);
  EXPECT_EQ(found["notDuplicates"], 1);
  expectIn(run({"find", path}).output, "1 group is left out as no duplicates");

  library(true);
  found = json(find);
  ASSERT_EQ(found["groups"].size(), 1U) << "a copy has joined";
  EXPECT_NE(found["since"], nullptr);
  library();
  json({"ignore", path, "1", "--take-back", "--json"});
  EXPECT_EQ(json({"find", path, "--json"})["groups"].size(), 1U);
}

TEST_F(DecisionsCommand, NamesWhatIsLeftOutAndFoundAgain) {
  const std::string path = library();
  const std::string group = json({"find", path, "--json"})["groups"][0]["tGroupID"];
  const std::string left = run({"ignore", path, group}).output;
  expectIn(left, "Left out:\n- Rain");
  expectIn(left, "1 group is left out of searches.");
  expectIn(run({"decisions", "list", path}).output, "left out: Rain · Ann, 2 tracks");
  expectIn(run({"ignore", path, "1", "--take-back"}).output, "Found again:\n- Rain");
}

TEST_F(DecisionsCommand, CountsNothingAsSeenThatWasNotShown) {
  const std::string path = library();
  // "Rain" is no doubtful group.
  EXPECT_EQ(json({"find", path, "--json", "--new", "--doubtful"})["groups"].size(), 0U);
  EXPECT_EQ(json({"find", path, "--json", "--new"})["groups"].size(), 1U);
  EXPECT_EQ(json({"find", path, "--json", "--new"})["groups"].size(), 0U);
}

TEST_F(DecisionsCommand, WritesOverNothingButDecisions) {
  const std::string path = library(), text = TemporaryFolder::read(path);
  const ProgramResult slip = run({"decisions", "export", path, path});
  EXPECT_EQ(slip.status, 2);
  expectIn(slip.errors, "is not written over");
  EXPECT_EQ(TemporaryFolder::read(path), text);
  const std::string link = folder / "link";
  std::filesystem::create_symlink(path, link);
  EXPECT_EQ(run({"decisions", "export", path, link}).status, 2);
  for (int time = 0; time < 2; ++time)
    EXPECT_EQ(run({"decisions", "export", path, folder / "own.json"}).status, 0);
  EXPECT_EQ(run({"decisions", "export", path, file("song.mp3")}).status, 2);
}

TEST_F(DecisionsCommand, KeepsPresetsUnderTheirNames) {
  const std::string path = library();
  const auto preset = [&](const Texts& more) {
    return joined({"decisions", "preset", path}, more);
  };
  const Json saved = json(preset({"Best sound", "--keep", "lossless-first,2", "--folders",
                                  folder / "b", "--kinds", "FLAC,AAC", "--json"}));
  EXPECT_EQ(saved["presets"], (Json{{{"name", "Best sound"},
                                     {"keep", {"lossless-first", "most-played"}},
                                     {"folders", {folder / "b"}},
                                     {"kinds", {"FLAC", "AAC"}}}}));
  EXPECT_EQ(run(preset({"Played", "--keep", "highest-bit-rate,most-played"})).status, 0);
  expectIn(run({"decisions", "list", path}).output, "Played: highest-bit-rate most-played");
  const auto keep = [&](const std::string& what) {
    return json({"find", path, "--keep", what, "--json"})["groups"][0]["pick"]["keep"];
  };
  EXPECT_EQ(keep("Played"), Json(Texts{"highest-bit-rate", "most-played"}));
  EXPECT_EQ(keep("largest-file-size,Played"),
            Json(Texts{"largest-file-size", "highest-bit-rate", "most-played"}))
      << "in its place";
  EXPECT_EQ(run(preset({"Played", "--keep", "most-played"})).status, 0)
      << "in the place of the old";
  expectIn(run(preset({"Any", "--keep", "single-arbitrary,most-played"})).errors, "never count");
  EXPECT_EQ(run(preset({"Any", "--remove"})).errors, "");
  EXPECT_EQ(keep("Played"), Json());

  const struct {
    Texts arguments;
    const char* problem;
  } cases[] = {
      {preset({"most-played", "--keep", "1"}), "is the name of a rule"},
      {preset({"X", "--keep", "no-such-rule"}), "there is no rule \"no-such-rule\""},
      {preset({"X"}), "which rules are they?"},
      {preset({"a,b", "--keep", "1"}), "comma"},
      {preset({"None", "--remove"}), "no preset is called \"None\""},
      {preset({"Played", "--remove", "--keep", "1"}), "by its name alone"},
      {preset({}), "which preset is it?"},
      {{"decisions", "list", path, "--keep", "1"}, "are of decisions preset"},
      {{"find", path, "--keep", "Nobody"}, "the presets of this library: Best sound, Played"},
  };
  for (const auto& one : cases) {
    const ProgramResult result = run(one.arguments);
    EXPECT_EQ(result.status, 2) << one.problem;
    expectIn(result.errors, one.problem);
  }
  EXPECT_EQ(json(preset({"Played", "--remove", "--json"}))["presets"].size(), 1U);
  EXPECT_EQ(run({"find", path, "--keep", "Played"}).status, 2);
}

TEST_F(DecisionsCommand, AppliesWhatAPresetPassesOverUnlessToldOtherwise) {
  const std::string path = library();
  const Json saved = json({"decisions", "preset", path, "Loose", "--keep", "most-played", "--loose",
                           "brackets,accents", "--json"});
  EXPECT_EQ(saved["presets"][0]["loose"], Json(Texts{"brackets", "accents"}));
  expectIn(run({"decisions", "list", path}).output, "passes over: brackets, accents");
  const struct {
    Texts options;
    std::size_t groups;
    Texts loose;
  } cases[] = {{{}, 1, {}},
               {{"--preset", "Loose"}, 2, {"accents", "brackets"}},
               {{"--keep", "largest-file-size,Loose"}, 2, {"accents", "brackets"}},
               {{"--preset", "Loose", "--loose", "none"}, 1, {}},
               {{"--preset", "Loose", "--loose", "width"}, 1, {"width"}}};
  for (const auto& one : cases) {
    const Json found = json(joined({"find", path, "--json"}, one.options));
    EXPECT_EQ(found["groups"].size(), one.groups) << ::testing::PrintToString(one.options);
    EXPECT_EQ(found["loose"], Json(one.loose));
  }
  expectIn(run({"find", path, "--loose", "none,width"}).errors, "\"none\" is none of: accents");
}

TEST_F(DecisionsCommand, SavesAndLoadsWhatWasDecided) {
  const std::string path = library(), saved = folder / "saved.json";
  const std::string edited = folder.write(
      "edited.json",
      R"({"kestrelDecisions": 1, "picks": [{"keep": ["3F"], "group": ["3F", "4F", "99F"]}],
          "presets": [{"name": "Played", "keep": ["highest-bit-rate", "most-played"]}],
          "maps": [{"from": "/old", "to": "/new"}]})");
  EXPECT_EQ(json({"decisions", "import", path, edited, "--json"})["unknownTracks"],
            Json(Texts{"99F"}));
  Json group = json({"find", path, "--rule", "2", "--json"})["groups"][0];
  EXPECT_EQ(group["pick"]["byHand"], "picked");
  EXPECT_EQ(group["tracks"][0]["keeper"], true) << "though the other was played more often";
  EXPECT_EQ(group["lost"][0]["plays"], 3);
  EXPECT_EQ(group["lost"][0]["playlists"], 1);
  EXPECT_EQ(run({"decisions", "export", path, saved}).status, 0);
  const Json kept = Json::parse(std::ifstream(saved));
  EXPECT_EQ(kept["picks"][0]["group"], Json(Texts{"3F", "4F", "99F"}));
  EXPECT_EQ(kept["picks"][0]["song"], "Rain · Ann");
  EXPECT_EQ(kept["maps"][0]["to"], "/new");
  const Json preset = json({"find", path, "--preset", "Played", "--json"})["groups"][0]["pick"];
  EXPECT_EQ(preset["keep"], Json(Texts{"highest-bit-rate", "most-played"}));
  expectIn(run({"find", path, "--preset", "None"}).errors, "--preset: none is called");
  expectIn(run({"find", path, "--keep", "best"}).errors, "most-played");
  const Json listed = json({"decisions", "list", path, "--json"});
  EXPECT_EQ(listed["picked"][0]["keep"], Json(Texts{"3F"}));
  EXPECT_EQ(listed["maps"][0], Json({{"from", "/old"}, {"to", "/new"}}));
  expectIn(run({"decisions", "list", path}).output, "picked: Rain · Ann; kept: ");
  for (const char* wrong :
       {R"("maps": [{"old": "/a", "new": "/b"}])", R"("maps": [{"from": "C:/a", "to": "b"}])",
        R"("presets": [{"name": "a,b", "keep": ["most-played"]}])",
        R"("presets": [{"name": "Most-Played", "keep": ["most-played"]}])"}) {
    folder.write("edited.json", std::string("{\"kestrelDecisions\": 1, ") + wrong + "}");
    expectIn(run({"decisions", "import", path, edited}).errors, "is not a ");
  }
  EXPECT_EQ(json({"decisions", "list", path, "--json"}), listed);
  folder.write("edited.json", "{\"kestrelDecisions\": 1, \"picks\": 5}");
  expectIn(run({"decisions", "import", path, edited}).errors, "$.picks");
}

TEST_F(DecisionsCommand, TellsDoubtsMatchesAndOtherRules) {
  const std::string path = library();
  const Json found =
      json({"find", path, "--loose", "brackets", "--doubtful", "--explain", "--json"});
  ASSERT_EQ(found["groups"].size(), 1U);
  EXPECT_EQ(found["groups"][0]["doubts"][0]["version"], "live");
  EXPECT_EQ(found["groups"][0]["match"]["fields"][0]["values"], Json(Texts{"tea"}));
  expectIn(run({"find", path, "--loose", "brakets"}).errors, "is none of: accents");

  const Json compared = json({"compare-rules", path, "--keep", "most-played", "--json"});
  EXPECT_EQ(compared["rules"][1]["changedGroups"], 0);
  EXPECT_EQ(compared["rules"][6]["name"], "Least Played");
  EXPECT_EQ(compared["rules"][6]["changedGroups"], 1);
  EXPECT_EQ(compared["rules"][6]["playsLost"], 3);
  EXPECT_EQ(compared["rules"][6]["entries"], 1);
  EXPECT_EQ(compared["rules"][6]["playlists"], 1);
  // Most and least played, and "in most playlists"; the other rules find both as good.
  EXPECT_EQ(compared["groups"][0]["agree"], 2);
  EXPECT_EQ(compared["groups"][0]["of"], 3);
  for (const char* shell : {"bash", "zsh"})
    expectIn(run({"completions", shell}).output, "compare-rules");
}

}  // namespace
}  // namespace kestrel::testing
