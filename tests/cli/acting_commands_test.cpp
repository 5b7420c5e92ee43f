#include <algorithm>
#include <cstdlib>

#include "tests/changes/library_world.h"
#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

/// A library with dupes in playlists, and a place for data of the test's own.
class ActingCommands : public CommandLine {
 protected:
  ActingCommands() {
    ::setenv("XDG_DATA_HOME", data.path().c_str(), 1);
    const auto make = [](int id, const std::string& at, const char* name, int plays) {
      return song(id, std::to_string(id), at,
                  text("Name", name) + text("Artist", "Ann") + number("Play Count", plays));
    };
    path = document(make(1, file("a.mp3"), "Tea", 5) + make(2, file("b.mp3"), "Tea", 9) +
                        make(3, file("c.mp3"), "Rain", 0) + make(4, file("d.mp3"), "Rain", 3) +
                        make(5, file("e.mp3"), "Snow", 1) + make(6, folder / "gone.mp3", "Snow", 1),
                    playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5, 6}) +
                        playlist("Folder", "0000000000000200", flag("Folder"), {1, 3, 2, 3}) +
                        playlist("Mine", "201", text("Parent Persistent ID", "0000000000000200"),
                                 {1, 3, 2, 3}) +
                        playlist("Quote \" it", "202", {}, {3, 6}) +
                        playlist("Same", "203", {}, {1}) + playlist("Same", "204", {}, {2, 5}) +
                        playlist("Smart", "205", "<key>Smart Info</key><data></data>", {1, 1}));
  }
  ~ActingCommands() override { ::unsetenv("XDG_DATA_HOME"); }

  /// Whether the library has exactly one playlist that reads so.
  [[nodiscard]] bool lists(const std::string& playlist) const {
    return std::ranges::count(playlistsOnDisk(path), playlist) == 1;
  }
  [[nodiscard]] bool exists(const char* file) const {
    return std::filesystem::exists(folder / file);
  }

  TemporaryFolder data;
  std::string path;
};

TEST_F(ActingCommands, ReplacesEntriesAndTakesItBack) {
  const auto before = playlistsOnDisk(path);
  const Texts replaylist = {"replaylist", path, "--rule", "2", "--json"};
  const Json shown = json(replaylist);
  EXPECT_EQ(shown["status"], "ok");
  EXPECT_TRUE(shown["skippedGroups"].empty()) << "the keeper's file of Snow is there";
  const Json& mine = shown["playlists"][0];
  EXPECT_EQ(mine["hexpid"], "201");
  EXPECT_EQ(mine["pairs"], (Json{{"1", "2"}, {"3", "4"}}));
  EXPECT_EQ(mine["items"], (Json{"1", "3", "2", "3"}));
  EXPECT_EQ(mine["newItems"], (Json{"2", "4", "2", "4"}));
  EXPECT_EQ(mine["creates_repeats"], (Json{"2"})) << "Rain was listed twice before";
  EXPECT_EQ(mine["shown"], true);
  EXPECT_EQ(shown["map"]["201"], mine["pairs"]);
  EXPECT_EQ(playlistsOnDisk(path), before) << "without --apply nothing is changed";

  const Json report = json(joined(replaylist, {"--apply"}))["report"];
  EXPECT_EQ(report["state"], "finished");
  EXPECT_EQ(playlistsOnDisk(path),
            (Texts{"Folder/Mine: 2 4 2 4", "Folder: 1 3 2 3", "Quote \" it: 4 5", "Same: 2",
                   "Same: 2 5", "Smart: 1 1"}))
      << "whatever they are called";

  const Json history = json({"history", path, "--json"});
  ASSERT_EQ(history.size(), 1U);
  EXPECT_EQ(history[0]["kind"], "replaylist");
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_EQ(playlistsOnDisk(path), before);
  EXPECT_EQ(run({"undo", path, "1"}).status, 1) << "twice is once too often";
}

TEST_F(ActingCommands, CleansUpAndTakesItBack) {
  const auto before = playlistsOnDisk(path);
  const Json shown = json({"cleanup", path, "--json"});
  ASSERT_EQ(shown["playlists"].size(), 1U) << "the smart one is not the user's to change";
  EXPECT_EQ(shown["playlists"][0]["deleteIndexes"], (Json{4}));
  EXPECT_EQ(shown["outline"][0]["Child"][0]["playlistname"], "Mine");
  EXPECT_EQ(run({"cleanup", path, "--apply"}).status, 0);
  EXPECT_TRUE(lists("Folder/Mine: 1 3 2"));
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_EQ(playlistsOnDisk(path), before);
}

TEST_F(ActingCommands, AppliesAPlanOnlyToItsOwnLibrary) {
  const std::string plan = folder / "plan.json";
  std::ofstream(plan) << run({"plan", path, "--rule", "2", "--only", "Mine"}).output;
  SystemFiles().writeAtomically(path, SystemFiles().readAll(path) + "\n");
  const ProgramResult stale = run({"apply", plan});
  EXPECT_EQ(stale.status, 1);
  expectIn(stale.errors, path);

  std::ofstream(plan) << run({"plan", "--only", "Mine", path, "--rule", "2"}).output;
  EXPECT_EQ(run({"apply", plan}).status, 0);
  EXPECT_TRUE(lists("Folder/Mine: 2 4 2 4"));
  EXPECT_TRUE(lists("Quote \" it: 3 6")) << "was not chosen";
  std::ofstream(plan) << "{\"version\": 1";
  expectIn(run({"apply", plan}).errors, "plan.json, line 1");
}

TEST_F(ActingCommands, TrashesFilesThatNothingNeeds) {
  const ProgramResult shown = run({"trash", path, "--rule", "2"});
  expectIn(shown.output, "2 files go to the trash");
  expectIn(shown.output, "\"Mine\": ");
  expectIn(shown.output, "a.mp3     has alone: 5 plays and 1 playlist\n");
  expectIn(shown.output, "What only those have: ");
  EXPECT_TRUE(exists("a.mp3"));
  EXPECT_EQ(run({"trash", path, "--rule", "2", "--apply"}).status, 0);
  EXPECT_FALSE(exists("a.mp3"));
  EXPECT_FALSE(exists("c.mp3"));
  EXPECT_TRUE(exists("b.mp3"));
  EXPECT_TRUE(exists("e.mp3")) << "the only copy there is";
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_TRUE(exists("a.mp3"));

  folder.write("c.mp3", "text");
  const std::string plan = folder.write(
      "plan.json", run({"plan", path, "--rule", "2", "--trash", "--other-files"}).output);
  const ProgramResult applied = run({"apply", plan});
  expectIn(applied.output, "c.mp3\": it cannot be read as audio.");
  EXPECT_FALSE(exists("a.mp3"));
  expectIn(run({"apply", plan, "--other-files"}).output, ": 1 file.");
  EXPECT_FALSE(exists("c.mp3"));
}

TEST_F(ActingCommands, WorksWithFilesThatAreElsewhere) {
  file("nas/Ann/Caf\u00E9 1.mp3");
  file("nas/Ann/Tea 2.MP3");
  const std::string music = "/C:/Users/ann/Music";
  const auto make = [&](int id, const std::string& at) {
    return song(id, std::to_string(id), at,
                text("Name", "Tea") + text("Artist", "Ann") + number("Play Count", id));
  };
  document(make(1, music + "/Ann/Cafe%CC%81%201.mp3") + make(2, music + "/Ann/tea%202.mp3"),
           playlist("Library", "100", flag("Master"), {1, 2}));
  const std::string bytes = TemporaryFolder::read(path);

  const std::string note =
      "2 of 2 files are not where this library says (C:/Users/ann/Music/Ann/...): --map,";
  for (const char* command : {"find", "info"}) expectIn(run({command, path}).errors, note);
  const Json info = json({"info", path, "--suggest-map", folder.path(), "--json"});
  EXPECT_EQ(info["missingBeginnings"],
            (Json{{{"beginning", "C:/Users/ann/Music/Ann"}, {"count", 2}}}));
  EXPECT_EQ(
      info["suggestedMaps"],
      (Json{{{"old", "C:/Users/ann/Music"}, {"new", folder / "nas"}, {"finds", 2}, {"of", 2}}}));
  const Texts map = {"--map", "C:\\users\\Ann\\Music=" + folder / "nas"};
  EXPECT_EQ(run({"find", path, "--map", "C:/Users"}).status, 2);
  expectIn(run({"find", path, "--map", "/Volumes/x=" + folder.path()}).errors,
           "no location of this library begins with /Volumes/x");
  expectIn(run({"info", path, "--map", "C:/Users/ann/Music=" + folder / "none"}).errors,
           "there is no folder " + folder / "none");
  EXPECT_EQ(run({"info", path, "--suggest-map", folder / "none"}).status, 2);

  const auto kept = [&](const Texts& more) {
    const Json groups = json(joined({"find", path, "--json", "--rule", "2"}, more))["groups"];
    return groups[0]["tracks"][1]["tLoc"];
  };
  EXPECT_EQ(kept({}), "");
  EXPECT_EQ(kept({"--without-files"}), music + "/Ann/tea 2.mp3");
  EXPECT_EQ(kept(map), music + "/Ann/tea 2.mp3") << "the library's own";
  expectIn(run(joined({"find", path}, map)).output, folder / "nas/Ann/Tea 2.MP3");
  for (const char* command : {"trash", "remove"})
    expectIn(run({command, path, "--without-files"}).errors, "moves files");

  const Texts trash = joined({"trash", path, "--rule", "2", "--apply"}, map);
  expectIn(run({"trash", path, "--rule", "2", "--apply"}).output, "its file is missing");
  EXPECT_EQ(run(trash).status, 0);
  EXPECT_FALSE(exists("nas/Ann/Caf\u00E9 1.mp3"));
  EXPECT_TRUE(exists("nas/Ann/Tea 2.MP3"));
  expectIn(run({"history", path, "--run", "1"}).output, folder / "nas/Ann/Caf\u00E9 1.mp3");
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_TRUE(exists("nas/Ann/Caf\u00E9 1.mp3"));
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
  const Texts remove = joined({"remove", path, "--rule", "2", "--apply"}, map);
  EXPECT_EQ(run(remove).status, 0);
  EXPECT_FALSE(exists("nas/Ann/Caf\u00E9 1.mp3"));
  EXPECT_EQ(TemporaryFolder::read(path).find("Cafe%CC%81"), std::string::npos);
  EXPECT_EQ(run({"undo", path, "3"}).status, 0) << "the history knows the files here";
  EXPECT_TRUE(exists("nas/Ann/Caf\u00E9 1.mp3"));
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
}

TEST_F(ActingCommands, RemovesTracksAndTakesItBackToTheByte) {
  const std::string bytes = TemporaryFolder::read(path),
                    sound = TemporaryFolder::read(file("c.mp3"));
  const auto before = playlistsOnDisk(path);
  const auto with = [&](const Texts& more) {
    return joined({"remove", path, "--rule", "2"}, more);
  };
  const Json listed = json(with({"--json"}));
  EXPECT_EQ(listed["tracks"][0]["heldBack"], "the playlist \"Mine\" still lists it");
  EXPECT_EQ(listed["files"][0]["heldBack"], "its track stays in the library");
  EXPECT_EQ(run(with({"--drop-repeats"})).status, 2) << "of what replaces entries";

  const Json done = json(with({"--with-playlists", "--drop-repeats", "--apply", "--json"}));
  EXPECT_EQ(done["report"]["state"], "finished") << done["report"];
  EXPECT_FALSE(exists("a.mp3"));
  EXPECT_FALSE(exists("c.mp3"));
  EXPECT_EQ(playlistsOnDisk(path), (Texts{"Folder/Mine: 4 2", "Folder: 2", "Quote \" it: 4 5",
                                          "Same: 2", "Same: 2 5", "Smart:"}))
      << "Rain once, and Tea was there";
  EXPECT_EQ(json({"tracks", path, "--json"}).size(), 3U);
  EXPECT_EQ(json({"history", path, "--json"})[0]["kind"], "remove");
  const ProgramResult undone = run({"undo", path, "1"});
  EXPECT_EQ(undone.status, 0) << undone.errors;
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
  EXPECT_EQ(TemporaryFolder::read(folder / "c.mp3"), sound);

  // Later, after its owner has worked on: tracks, entries and files come back all the same.
  EXPECT_EQ(run(with({"--with-playlists", "--apply"})).status, 0);
  EXPECT_TRUE(lists("Folder/Mine: 2 4 2 4"));
  SystemFiles().writeAtomically(path, TemporaryFolder::read(path) + "\n");
  EXPECT_EQ(run({"undo", path, "3"}).status, 0);
  EXPECT_EQ(playlistsOnDisk(path), before);
  EXPECT_TRUE(exists("a.mp3"));
}

TEST_F(ActingCommands, RemovesNothingWhoseCopyIsNoGood) {
  const auto tea = [&](int id, const std::string& at, const std::string& more = {}) {
    return song(id, std::to_string(id) + "F", at, text("Name", "Tea") + more);
  };
  // Rule 2 keeps what was played most.
  const auto library = [&](const std::string& kept) {
    return document(tea(1, file("a.mp3")) + kept + song(3, "3F", file("c.mp3")),
                    playlist("Library", "100", flag("Master"), {1, 2, 3}));
  };
  const auto remove = [&](const std::string& at, const Texts& more) {
    return run(joined({"remove", at, "--rule", "2"}, more)).output;
  };
  const std::string cloud = library(tea(2, "", number("Play Count", 5)));
  expectIn(remove(cloud, {"--apply"}), "only in the cloud");
  expectIn(remove(cloud, {"--keep-files"}), "1 track leaves");
  const std::string plan = folder.write(
      "plan.json", run({"remove", cloud, "--rule", "2", "--cloud-replaces", "--json"}).output);
  expectIn(run({"apply", plan}).output, "only in the cloud");
  EXPECT_TRUE(exists("a.mp3"));
  expectIn(run({"apply", plan, "--cloud-replaces"}).output, "Removed from the library: 1 track");
  EXPECT_FALSE(exists("a.mp3"));

  const std::string local = library(tea(2, file("b.mp3"), number("Play Count", 5)));
  folder.write("plan.json", run({"remove", local, "--rule", "2", "--json"}).output);
  folder.write("b.mp3", "");
  expectIn(remove(local, {}), "is empty");
  const std::string bytes = TemporaryFolder::read(local);
  expectIn(run({"apply", plan}).output, "is empty");
  EXPECT_EQ(TemporaryFolder::read(local), bytes);
}

TEST_F(ActingCommands, NamesPlaylistsOfOtherLibrariesHereThatListWhatGoes) {
  ::setenv("XDG_CACHE_HOME", data.path().c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", data.path().c_str(), 1);
  data.write("user-dirs.dirs", "XDG_MUSIC_DIR=\"" + folder.path() + "\"\n");
  folder.write("Elsewhere.m3u8", "a.mp3\nb.mp3\na.mp3\n");
  for (const char* command : {"trash", "remove"}) {
    const Texts call = {command, path, "--rule", "2"};
    EXPECT_EQ(json(joined(call, {"--json"}))["listedElsewhere"],
              (command == std::string("trash")
                   ? Json{{{"library", folder.path()}, {"playlist", "Elsewhere"}, {"entries", 2}}}
                   : Json::array()))
        << "what is removed must not be listed in its own library";
  }
  expectIn(run({"trash", path, "--rule", "2"}).output,
           "\"Elsewhere\" of " + folder.path() + ": 2 entries");
  for (const char* name : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) ::unsetenv(name);
}

TEST_F(ActingCommands, RefusesRunsAndPlaylistsThatAreNotThere) {
  const std::string alone = folder.write(
      "Alone.xml",
      libraryText(song(1, "1", file("a.mp3")), playlist("L", "9", flag("Master"), {1})));
  const std::pair<Texts, const char*> cases[] = {
      {{"history", path, "--run", "7"}, "no run 7"},
      {{"undo", path, "7"}, "no run 7"},
      {{"replaylist", alone, "--only", "None"}, "\"None\""}};
  for (const auto& [arguments, says] : cases) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << ::testing::PrintToString(arguments);
    expectIn(result.errors, says);
  }
}

TEST_F(ActingCommands, LeavesOutTwoKeepersAndStopsAtUnknownPlaylists) {
  // Rule 10 spares cloud copies, so that a group can have two keepers.
  const std::string two = document(song(1, "1", file("a.mp3"), text("Name", "Tea")) +
                                       song(2, "2", file("bb.mp3"), text("Name", "Tea")) +
                                       song(3, "3", "", text("Name", "Tea")) +
                                       song(4, "4", file("c.mp3"), text("Name", "Ice")) +
                                       song(5, "5", file("dd.mp3"), text("Name", "Ice")),
                                   playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5}) +
                                       playlist("Mine", "101", {}, {2, 5}));
  const Json shown = json({"replaylist", two, "--rule", "10", "--json"});
  EXPECT_EQ(shown["playlists"][0]["newItems"], (Json{"2", "4"}));
  EXPECT_EQ(shown["skippedGroups"][0]["reason"], "more than one track of the group is kept");
  EXPECT_EQ(json({"replaylist", two, "--rule", "10", "--playlist", "Mine", "--json"})["status"],
            "none");
  const ProgramResult unknown = run({"replaylist", two, "--rule", "2", "--only", "101", "Nobody"});
  EXPECT_EQ(unknown.status, 2) << unknown.errors;
  expectIn(unknown.errors, "\"Nobody\"");
  EXPECT_EQ(run({"replaylist", path, "Mine"}).status, 2) << "a name for --only, without it";
}

TEST_F(ActingCommands, ChangesNothingWithoutAHistory) {
  const auto before = playlistsOnDisk(path);
  data.write("Kestrel/history.sqlite", "no database, but long enough for one");
  const ProgramResult refused = run({"cleanup", path, "--apply"});
  EXPECT_EQ(refused.status, 1);
  expectIn(refused.errors, "history.sqlite");
  EXPECT_EQ(playlistsOnDisk(path), before);
  EXPECT_EQ(run({"history", path, "--move-aside"}).status, 0);
  EXPECT_EQ(run({"cleanup", path, "--apply"}).status, 0);
  expectIn(run({"history", path, "--move-aside"}).errors, "can be read");
  EXPECT_EQ(json({"history", path, "--json"}).size(), 1U);
  EXPECT_EQ(run({"history", path, "--move-aside", "--even-if-readable"}).status, 0);
  EXPECT_EQ(json({"history", path, "--json"}).size(), 0U);
}

TEST_F(ActingCommands, RunsScripts) {
  EXPECT_EQ(run({"script", path,
                 "tell application \"Music\"\ntry\ntell (get some track of library playlist 1 "
                 "whose persistent ID is \"1\") to return (POSIX path of ((get its location) as "
                 "text))\nend try\nend tell"})
                .output,
            (folder / "a.mp3") + "\n");
  const std::string deletion =
      "tell application \"Music\" to delete some track of library playlist 1 whose persistent ID "
      "is \"1\"";
  const std::string bytes = TemporaryFolder::read(path);
  const ProgramResult refused = run({"script", path, deletion});
  EXPECT_EQ(refused.status, 2);
  expectIn(refused.errors, "could not be undone; --unrecorded");
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
  EXPECT_EQ(run({"script", path, deletion, "--unrecorded"}).status, 0);
  EXPECT_TRUE(lists("Same:")) << "the track is gone everywhere";
  const ProgramResult wrong = run({"script", path, "tell application \"Music\" to dance"});
  EXPECT_EQ(wrong.status, 1);
  expectIn(wrong.errors, "column 29");
}

}  // namespace
}  // namespace kestrel::testing
