#include <algorithm>
#include <cstdlib>
#include <map>

#include "foundation/property_list.h"
#include "platform/files.h"
#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

using Json = nlohmann::json;

/// A library with dupes in playlists, and a place for data of the test's own.
class ActingCommands : public CommandLine {
 protected:
  ActingCommands() {
    ::setenv("XDG_DATA_HOME", data.path().c_str(), 1);
    const auto make = [](int id, const std::string& at, const char* name, int plays) {
      return song(id, std::to_string(id) + "F", at,
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

  /// Names of playlists with their folder and entries.
  [[nodiscard]] std::multimap<std::string, std::string> playlists() const {
    std::multimap<std::string, std::string> found;
    const PropertyList document = parsePropertyList(SystemFiles().readAll(path), path);
    std::map<std::int64_t, std::string> tracks;
    for (const auto& [key, track] : document.find("Tracks")->entries())
      tracks[track.find("Track ID")->integer()] = track.textAt("Persistent ID");
    for (const PropertyList& list : document.find("Playlists")->values()) {
      std::string entries(list.textAt("Parent Persistent ID"));
      if (const PropertyList* items = list.find("Playlist Items"))
        for (const PropertyList& item : items->values())
          entries += " " + tracks[item.find("Track ID")->integer()];
      found.emplace(list.textAt("Name"), entries);
    }
    return found;
  }

  TemporaryFolder data;
  std::string path;
};

TEST_F(ActingCommands, ReplacesEntriesAndTakesItBack) {
  const auto before = playlists();
  const std::vector<std::string> replaylist = {"replaylist", path, "--rule", "2", "--json"};
  const Json shown = json(replaylist);
  EXPECT_EQ(shown["status"], "ok");
  EXPECT_TRUE(shown["skippedGroups"].empty()) << "the keeper's file of Snow is there";
  const Json& mine = shown["playlists"][0];
  EXPECT_EQ(mine["hexpid"], "201");
  EXPECT_EQ(mine["pairs"], (Json{{"1F", "2F"}, {"3F", "4F"}}));
  EXPECT_EQ(mine["items"], (Json{"1F", "3F", "2F", "3F"}));
  EXPECT_EQ(mine["newItems"], (Json{"2F", "4F", "2F", "4F"}));
  EXPECT_EQ(mine["creates_repeats"], (Json{"2F"})) << "Rain was listed twice before";
  EXPECT_EQ(mine["shown"], true);
  EXPECT_EQ(shown["map"]["201"], mine["pairs"]);
  EXPECT_EQ(playlists(), before) << "without --apply nothing is changed";

  std::vector<std::string> apply = replaylist;
  apply.push_back("--apply");
  const Json report = json(apply)["report"];
  EXPECT_EQ(report["state"], "finished");
  auto expected = before;
  expected.find("Mine")->second = "0000000000000200 2F 4F 2F 4F";
  expected.find("Quote \" it")->second = " 4F 5F";
  expected.find("Same")->second = " 2F";
  EXPECT_EQ(playlists(), expected) << "whatever they are called";

  const Json history = json({"history", path, "--json"});
  ASSERT_EQ(history.size(), 1U);
  EXPECT_EQ(history[0]["kind"], "replaylist");
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_EQ(playlists(), before);
  EXPECT_EQ(run({"undo", path, "1"}).status, 1) << "twice is once too often";
}

TEST_F(ActingCommands, CleansUpAndUndoesInAnyNesting) {
  const auto before = playlists();
  const Json shown = json({"cleanup", path, "--json"});
  ASSERT_EQ(shown["playlists"].size(), 1U) << "the smart one is not the user's to change";
  EXPECT_EQ(shown["playlists"][0]["deleteIndexes"], (Json{4}));
  EXPECT_EQ(shown["outline"][0]["Child"][0]["playlistname"], "Mine");
  EXPECT_EQ(run({"cleanup", path, "--apply"}).status, 0);
  EXPECT_EQ(playlists().find("Mine")->second, "0000000000000200 1F 3F 2F");
  EXPECT_EQ(run({"replaylist", path, "--rule", "2", "--apply"}).status, 0);
  EXPECT_EQ(run({"undo", path, "1"}).status, 1) << "what it wrote was changed since";
  EXPECT_EQ(run({"undo", path, "2"}).status, 0);
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_EQ(playlists(), before);
}

TEST_F(ActingCommands, AppliesAPlanOnlyToItsOwnLibrary) {
  const std::string plan = folder / "plan.json";
  std::ofstream(plan) << run({"plan", path, "--rule", "2", "--only", "Mine"}).output;
  SystemFiles().writeAtomically(path, SystemFiles().readAll(path) + "\n");
  const ProgramResult stale = run({"apply", plan});
  EXPECT_EQ(stale.status, 1);
  EXPECT_NE(stale.errors.find(path), std::string::npos) << stale.errors;

  std::ofstream(plan) << run({"plan", "--only", "Mine", path, "--rule", "2"}).output;
  EXPECT_EQ(run({"apply", plan}).status, 0);
  EXPECT_EQ(playlists().find("Mine")->second, "0000000000000200 2F 4F 2F 4F");
  EXPECT_EQ(playlists().find("Quote \" it")->second, " 3F 6F") << "was not chosen";
  std::ofstream(plan) << "{\"version\": 1";
  EXPECT_NE(run({"apply", plan}).errors.find("plan.json, line 1"), std::string::npos);
}

TEST_F(ActingCommands, TrashesFilesThatNothingNeeds) {
  const ProgramResult shown = run({"trash", path, "--rule", "2"});
  EXPECT_NE(shown.output.find("2 files go to the trash"), std::string::npos) << shown.output;
  EXPECT_TRUE(std::filesystem::exists(folder / "a.mp3"));
  EXPECT_EQ(run({"trash", path, "--rule", "2", "--apply"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "a.mp3"));
  EXPECT_FALSE(std::filesystem::exists(folder / "c.mp3"));
  EXPECT_TRUE(std::filesystem::exists(folder / "b.mp3"));
  EXPECT_TRUE(std::filesystem::exists(folder / "e.mp3")) << "the only copy there is";
  EXPECT_EQ(run({"undo", path, "1"}).status, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "a.mp3"));

  folder.write("c.mp3", "text");
  const std::string plan = folder.write(
      "plan.json", run({"plan", path, "--rule", "2", "--trash", "--other-files"}).output);
  const ProgramResult applied = run({"apply", plan});
  EXPECT_NE(applied.output.find("c.mp3\": it cannot be read as audio."), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "a.mp3"));
  EXPECT_NE(run({"apply", plan, "--other-files"}).output.find(": 1 file."), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "c.mp3"));
}

TEST_F(ActingCommands, RemovesTracksAndTakesItBackToTheByte) {
  const std::string bytes = TemporaryFolder::read(path),
                    sound = TemporaryFolder::read(file("c.mp3"));
  const auto before = playlists();
  const std::vector<std::string> remove = {"remove", path, "--rule", "2"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), remove.begin(), remove.end());
    return more;
  };
  const Json listed = json(with({"--json"}));
  EXPECT_EQ(listed["tracks"][0]["heldBack"], "the playlist \"Mine\" still lists it");
  EXPECT_EQ(listed["files"][0]["heldBack"], "its track stays in the library");
  EXPECT_EQ(run(with({"--drop-repeats"})).status, 2) << "of what replaces entries";

  const Json done = json(with({"--with-playlists", "--drop-repeats", "--apply", "--json"}));
  EXPECT_EQ(done["report"]["state"], "finished") << done["report"];
  EXPECT_FALSE(std::filesystem::exists(folder / "a.mp3"));
  EXPECT_FALSE(std::filesystem::exists(folder / "c.mp3"));
  auto lists = playlists();
  EXPECT_EQ(lists.find("Mine")->second, "0000000000000200 4F 2F") << "Rain once, and Tea was there";
  EXPECT_EQ(lists.find("Quote \" it")->second, " 4F 5F");
  EXPECT_EQ(lists.find("Library")->second, " 2F 4F 5F") << "the master list, too";
  EXPECT_EQ(lists.find("Folder")->second, " 2F");
  EXPECT_EQ(lists.find("Smart")->second, "");
  EXPECT_EQ(json({"tracks", path, "--json"}).size(), 3U);
  EXPECT_EQ(json({"history", path, "--json"})[0]["kind"], "remove");
  const ProgramResult undone = run({"undo", path, "1"});
  EXPECT_EQ(undone.status, 0) << undone.errors;
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
  EXPECT_EQ(TemporaryFolder::read(folder / "c.mp3"), sound);

  // Later, after its owner has worked on: tracks, entries and files come back all the same.
  EXPECT_EQ(run(with({"--with-playlists", "--apply"})).status, 0);
  EXPECT_EQ(playlists().find("Mine")->second, "0000000000000200 2F 4F 2F 4F");
  SystemFiles().writeAtomically(path, TemporaryFolder::read(path) + "\n");
  EXPECT_EQ(run({"undo", path, "3"}).status, 0);
  EXPECT_EQ(playlists(), before);
  EXPECT_TRUE(std::filesystem::exists(folder / "a.mp3"));
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
  const auto remove = [&](const std::string& at, std::vector<std::string> more) {
    more.insert(more.begin(), {"remove", at, "--rule", "2"});
    return run(more).output;
  };
  const std::string cloud = library(tea(2, "", number("Play Count", 5)));
  EXPECT_NE(remove(cloud, {"--apply"}).find("only in the cloud"), std::string::npos);
  EXPECT_NE(remove(cloud, {"--keep-files"}).find("1 track leaves"), std::string::npos);
  const std::string plan = folder.write(
      "plan.json", run({"remove", cloud, "--rule", "2", "--cloud-replaces", "--json"}).output);
  EXPECT_NE(run({"apply", plan}).output.find("only in the cloud"), std::string::npos)
      << run({"apply", plan}).errors;
  EXPECT_TRUE(std::filesystem::exists(folder / "a.mp3"));
  EXPECT_NE(
      run({"apply", plan, "--cloud-replaces"}).output.find("Removed from the library: 1 track"),
      std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "a.mp3"));

  const std::string local = library(tea(2, file("b.mp3"), number("Play Count", 5)));
  folder.write("plan.json", run({"remove", local, "--rule", "2", "--json"}).output);
  folder.write("b.mp3", "");
  EXPECT_NE(remove(local, {}).find("is empty"), std::string::npos);
  const std::string bytes = TemporaryFolder::read(local);
  EXPECT_NE(run({"apply", plan}).output.find("is empty"), std::string::npos) << "by now";
  EXPECT_EQ(TemporaryFolder::read(local), bytes);
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
  EXPECT_NE(unknown.errors.find("\"Nobody\""), std::string::npos) << unknown.errors;
  EXPECT_EQ(run({"replaylist", path, "Mine"}).status, 2) << "a name for --only, without it";
}

TEST_F(ActingCommands, ChangesNothingWithoutAHistory) {
  const auto before = playlists();
  data.write("Kestrel/history.sqlite", "no database, but long enough for one");
  const ProgramResult refused = run({"cleanup", path, "--apply"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.errors.find("history.sqlite"), std::string::npos) << refused.errors;
  EXPECT_EQ(playlists(), before);
  EXPECT_EQ(run({"history", path, "--move-aside"}).status, 0);
  EXPECT_EQ(run({"cleanup", path, "--apply"}).status, 0);
  EXPECT_NE(run({"history", path, "--move-aside"}).errors.find("can be read"), std::string::npos);
  EXPECT_EQ(json({"history", path, "--json"}).size(), 1U);
  EXPECT_EQ(run({"history", path, "--move-aside", "--even-if-readable"}).status, 0);
  EXPECT_EQ(json({"history", path, "--json"}).size(), 0U);
}

TEST_F(ActingCommands, RunsScripts) {
  EXPECT_EQ(run({"script", path,
                 "tell application \"Music\"\ntry\ntell (get some track of library playlist 1 "
                 "whose persistent ID is \"1F\") to return (POSIX path of ((get its location) as "
                 "text))\nend try\nend tell"})
                .output,
            (folder / "a.mp3") + "\n");
  const std::string deletion =
      "tell application \"Music\" to delete some track of library playlist 1 whose persistent ID "
      "is "
      "\"1F\"";
  const std::string bytes = TemporaryFolder::read(path);
  const ProgramResult refused = run({"script", path, deletion});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.errors.find("could not be undone; --unrecorded"), std::string::npos);
  EXPECT_EQ(TemporaryFolder::read(path), bytes);
  EXPECT_EQ(run({"script", path, deletion, "--unrecorded"}).status, 0);
  EXPECT_EQ(playlists().find("Same")->second, "") << "the track is gone everywhere";
  const ProgramResult wrong = run({"script", path, "tell application \"Music\" to dance"});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_NE(wrong.errors.find("column 29"), std::string::npos) << wrong.errors;
}

}  // namespace
}  // namespace kestrel::testing
