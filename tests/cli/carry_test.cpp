// --carry: kept tracks take over what copies have that leave, once, and give it back.
#include <cstdlib>

#include "tests/cli/player_command_line.h"

namespace kestrel::testing {
namespace {

class CarryOption : public CommandLine {
 protected:
  CarryOption() { ::setenv("XDG_DATA_HOME", data.path().c_str(), 1); }
  ~CarryOption() override { ::unsetenv("XDG_DATA_HOME"); }

  std::string song(int id, const std::string& name, const std::string& more) const {
    return testing::song(id, std::to_string(id), file(std::to_string(id) + ".mp3"),
                         text("Name", name) + text("Artist", "Ann") + more);
  }
  static std::string date(const char* key, const char* day) {
    return std::string("<key>") + key + "</key><date>" + day + "T00:00:00Z</date>";
  }
  /// By ID, of the library as it is.
  static Json track(const std::string& path, const std::string& id) {
    for (const Json& one : json({"tracks", path, "--json"}))
      if (one["hexpid"] == id) return one;
    return {};
  }
  static Texts removal(const std::string& path, const Texts& more) {
    return joined({"remove", path, "--keep", "highest-bit-rate,largest-file-size,most-played",
                   "--without-files", "--keep-files"},
                  more);
  }

  TemporaryFolder data;
};

TEST_F(CarryOption, AddsUpWhatCopiesHaveOnceAndTakesItBackToTheByte) {
  const auto bits = [](int rate) { return number("Bit Rate", rate); };
  const std::string path =
      document(song(1, "Tea",
                    bits(320) + number("Play Count", 5) + number("Rating", 60) +
                        date("Date Added", "2015-01-01")) +
                   song(2, "Tea",
                        bits(128) + number("Play Count", 3) + number("Rating", 80) +
                            date("Date Added", "2012-01-01") + text("Comments", "first")) +
                   song(3, "Tea",
                        bits(96) + number("Play Count", 4) + number("Rating", 100) +
                            flag("Rating Computed") + text("Comments", "second")) +
                   song(4, "Rain", bits(320) + number("Play Count", 2147483640)) +
                   song(5, "Rain", bits(128) + number("Play Count", 100)) +
                   song(6, "Snow", bits(320) + number("Play Count", 1)) +
                   song(7, "Snow", bits(128) + number("Play Count", 70)) +
                   song(8, "Hail", bits(320) + text("Comments", "own")) +
                   song(9, "Hail", bits(128) + text("Comments", "other") + number("Skip Count", 3)),
               playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5, 6, 7, 8, 9}) +
                   playlist("Mine", "201", {}, {7}));
  const std::string bytes = TemporaryFolder::read(path);
  const Texts all = {"--carry", "plays,rating,added,comments"};

  expectIn(run(removal(path, {})).output, "has alone: 4 plays and comments\n");
  const std::string shown = run(removal(path, all)).output;
  expectIn(shown, "Would give the kept copy of Tea");
  expectIn(shown, "7 plays, ★★★★, the earlier date added and comments");
  EXPECT_EQ(shown.find("Snow (group"), std::string::npos) << "its copy is listed, and stays";
  EXPECT_EQ(shown.find("Hail (group"), std::string::npos) << "it has nothing to give";
  EXPECT_EQ(TemporaryFolder::read(path), bytes) << "without --apply nothing is changed";

  const Json done = json(removal(path, joined(all, {"--apply", "--json"})));
  EXPECT_EQ(done["report"]["state"], "finished") << done["report"];
  EXPECT_EQ(done["carry"], (Json{"plays", "rating", "added", "comments"}));
  const Json& lost = done["lost"]["total"];
  EXPECT_EQ(lost["plays"], 0) << "nothing of that is lost";
  EXPECT_EQ(lost["comments"], 2) << "of which a kept track has others, or was given others";
  EXPECT_EQ(lost["skips"], 3);
  const Json tea = track(path, "1"), rain = track(path, "4");
  EXPECT_EQ(tea["tPlayCount"], 12);
  EXPECT_EQ(tea["realRating"], 80) << "a computed one is none";
  EXPECT_EQ(tea["tComments"], "first");
  EXPECT_EQ(rain["tPlayCount"], 2147483647) << "the largest that there is";
  EXPECT_EQ(track(path, "6")["tPlayCount"], 1) << "its copy is listed, and stays";
  EXPECT_EQ(track(path, "2"), Json());

  // Again: there is nothing left that could be added.
  const std::string after = TemporaryFolder::read(path);
  EXPECT_EQ(run(removal(path, joined(all, {"--apply"}))).status, 0);
  EXPECT_EQ(TemporaryFolder::read(path), after);

  EXPECT_EQ(json({"history", path, "--run", "1", "--json"})["values"].size(), 2U);
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_EQ(TemporaryFolder::read(path), bytes);

  // Later, after its owner has played and edited on.
  EXPECT_EQ(run(removal(path, joined(all, {"--apply"}))).status, 0);
  std::string played = TemporaryFolder::read(path);
  const std::string twelve = "<integer>12</integer>";
  ASSERT_NE(played.find(twelve), std::string::npos);
  played.replace(played.find(twelve), twelve.size(), "<integer>15</integer>");
  SystemFiles().writeAtomically(path, played);
  const ProgramResult undone = run({"undo", path, "3"});
  EXPECT_EQ(undone.status, 0) << undone.errors;
  const Json back = track(path, "1");
  EXPECT_EQ(back["tPlayCount"], 8) << "5, and the 3 since";
  EXPECT_EQ(back["realRating"], 60);
  EXPECT_EQ(track(path, "2")["tPlayCount"], 3);
}

TEST_F(CarryOption, IsRefusedWithTheReasonWhereItCannotBe) {
  const std::string path =
      document(song(1, "Tea", number("Play Count", 5)) + song(2, "Tea", number("Play Count", 3)),
               playlist("Library", "100", flag("Master"), {1, 2}));
  const std::string bytes = TemporaryFolder::read(path);
  const struct {
    Texts arguments;
    const char* reason;
  } cases[] = {
      {{"remove", path, "--carry", "plays,size", "--apply"}, "\"size\" is none of: plays,rating"},
      {{"trash", path, "--carry", "plays", "--apply"}, "remove them instead"},
      {{"trash", folder.path(), "--carry", "plays", "--apply"}, "left as they are"},
      {{"plan", path, "--carry", "plays"}, "--trash"},
  };
  for (const auto& one : cases) {
    const ProgramResult result = run(one.arguments);
    EXPECT_NE(result.status, 0);
    expectIn(result.errors, one.reason);
  }
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
}

TEST_F(PlayerCommandLine, HoldsBackWhatWasPlayedSinceAPlanToCarryWasMade) {
  note(kept, "playCount", "9");
  note(kept, "rating", "0.666");
  note(gone, "playCount", "2");
  note(gone, "lastPlayed", "1500000000");
  note(gone, "rating", "0.8");
  note(gone, "other", "x");
  const Texts remove = {"remove", address, "--rule", "2", "--carry", "plays,rating", "--json"};
  const std::string before = noted(kept), ofCopy = noted(gone);
  const std::string plan = folder.write("plan.json", run(remove).output);

  expectIn(run({"remove", address, "--carry", "plays,added"}).errors,
           "--carry added: the music player notes plays and ratings of its songs, and no more");
  note(gone, "playCount", "3");
  expectIn(run({"apply", plan}).output, "were changed since the plan was made");
  EXPECT_TRUE(std::filesystem::exists(copy));
  note(gone, "playCount", "2");
  const ProgramResult applied = run({"apply", plan});
  EXPECT_EQ(applied.status, 0) << applied.errors << applied.output;
  expectIn(applied.output, "1 kept track took over what its copies had");
  EXPECT_EQ(noted(kept), "lastPlayed=1500000000 playCount=11 rating=0.80 ");
  EXPECT_FALSE(std::filesystem::exists(copy));

  const auto runs = json({"history", address, "--json"});
  const ProgramResult undone = run({"undo", address, std::to_string(runs[0]["run"].get<int>())});
  EXPECT_EQ(undone.status, 0) << undone.errors << undone.output;
  EXPECT_EQ(noted(kept), before) << "as they were written";
  EXPECT_EQ(noted(gone), ofCopy) << "which the server had forgotten with the file";
}

}  // namespace
}  // namespace kestrel::testing
