#include <algorithm>
#include <csignal>
#include <cstdio>
#include <map>
#include <optional>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "foundation/utf8.h"
#include "library/track_keys.h"
#include "musicapp/file_url.h"
#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

TEST_F(CommandLine, ListsEveryTrackWithEveryKey) {
  const std::string path =
      document(song(1, "A", file("a.mp3"), text("Name", "\"Tea\" \xE2\x98\x95")) +
                   song(2, "B", "", flag("Movie")) + song(3, "C", "/gone"),
               "");
  const Json tracks = json({"tracks", path, "--json"});
  ASSERT_EQ(tracks.size(), 2U) << "a movie is no song";
  EXPECT_EQ(tracks[0]["tName"], "\"Tea\" \xE2\x98\x95");
  EXPECT_EQ(tracks[0]["tCompilation"], false);
  for (const TrackKeyInfo& key : trackKeys())
    EXPECT_EQ(tracks[0].contains(key.name),
              key.origin == TrackKeyOrigin::record && key.type != TrackValueType::date)
        << key.name;
  EXPECT_EQ(tracks[1]["fileAvail"], "0");
}

TEST_F(CommandLine, ListsPlaylistsAsCatalogueAndTree) {
  const std::string path = document(
      song(1, "A", "/a"), playlist("Library", "1", flag("Master"), {1}) +
                              playlist("Trips", "2", flag("Folder")) +
                              playlist("Road", "3", text("Parent Persistent ID", "2"), {1, 1}) +
                              playlist("Bare", "4", flag("Folder")) +
                              playlist("Stray", "6", text("Parent Persistent ID", "77")));
  const Json result = json({"playlists", path, "--json"});
  ASSERT_EQ(result["playlists"].size(), 5U);
  EXPECT_EQ(result["playlists"][0]["pnom"], "Music");
  EXPECT_EQ(result["playlists"][2]["parentID"], "2");
  EXPECT_EQ(result["playlists"][2]["itemCount"], 2);
  const Json& outline = result["outline"];
  ASSERT_EQ(outline.size(), 2U);
  EXPECT_EQ(outline[0]["Child"][0]["pnom"], "Road");
  EXPECT_EQ(outline[0]["Child"][0]["Child"], Json::object());
  EXPECT_EQ(outline[1]["Child"], Json::object()) << "an empty folder";
  const std::string text = run({"playlists", path}).output;
  EXPECT_LT(text.find("\nTrips"), text.find("\n  Road")) << text;
  EXPECT_LT(text.find("\nBare"), text.find("\nStray")) << text << "its folder is not there";
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6);
}

TEST_F(CommandLine, CountsWhatALibraryHolds) {
  const std::string path =
      document(song(1, "A", file("a.mp3"), text("Kind", "MPEG audio file") + number("Size", 500)) +
                   song(2, "B", "", flag("Podcast")) + song(3, "C", "", number("Size", -500)),
               playlist("Mine", "1", {}, {1, 2, 77}));
  const Json info = json({"info", path, "--json"});
  EXPECT_EQ(info["items"], 3);
  EXPECT_EQ(info["tracks"], 2);
  EXPECT_EQ(info["mediaKinds"], (Json{{"songs", 2}, {"podcasts", 1}}));
  EXPECT_EQ(info["availability"], (Json{{"reachable", 1}, {"cloud", 1}, {"missing", 0}}));
  EXPECT_EQ(info["bytes"], 500) << "no file takes room away";
  EXPECT_EQ(info["playlistEntries"], 2);
  EXPECT_EQ(info["droppedEntries"], 1);
  EXPECT_GT(info["anonymousBytes"], 0);
  expectIn(run({"info", path}).output, "MPEG audio file");
}

/// A command in a process of its own, which the test interrupts. One of its outputs is closed, the
/// other one is read.
class Running {
 public:
  Running(const std::string& arguments, bool readErrors)
      : output_(::popen(("echo $$; exec \"" KESTREL_CLI "\" " + arguments +
                         (readErrors ? " 2>&1 1>&-" : " 2>&-"))
                            .c_str(),
                        "r")) {
    if (!output_ || std::fscanf(output_, "%d%*c", &child_) != 1) ::abort();
  }
  void send(int signal) const { ::kill(child_, signal); }
  /// At least one character has been written.
  [[nodiscard]] bool writes() const { return std::getc(output_) != EOF; }
  /// What else it writes, and its exit status; nothing when a signal ended it.
  std::pair<std::string, std::optional<int>> end() const {
    std::string text;
    for (int c = 0; (c = std::getc(output_)) != EOF;) text += static_cast<char>(c);
    const int status = ::pclose(output_);
    return {text, WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt};
  }

 private:
  std::FILE* output_;
  pid_t child_ = 0;
};

TEST_F(CommandLine, LetsNoNameReachATerminalAsItIs) {
  ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  const Texts evils = {"\x1B",   "\x07",   "\x7F",   "\u009B",
                       "\u202E", "\u2066", "\u2028", "\nkestrel-cli: note: all is well"};
  std::string evil, written;
  for (const std::string& part : evils) evil += "]0;" + part;
  for (const char c : evil)
    written += c < ' ' && c > 0 ? "&#" + std::to_string(c) + ";" : std::string(1, c);
  const auto copy = [&](int id) {
    const std::string url = fileUrlOfPath(file(std::to_string(id) + evil));
    return song(id, std::to_string(id) + "F", url.substr(std::string_view("file://").size()),
                text("Name", written) + text("Artist", "=1+1") + text("Kind", written));
  };
  const std::string path = folder.write(
      "a" + evil + "/Library.xml",
      libraryText(copy(1) + copy(2), playlist("Library", "100", flag("Master"), {1, 2}) +
                                         playlist(written, "101", {}, {1, 1}) +
                                         playlist(written, "102", {}, {1, 2})));
  const std::map<std::string, std::string> meant = {
      {"PATH", path},
      {"EVIL", evil},
      {"WHERE",
       "tell application \"Music\" to tell (get some track of library playlist 1 whose persistent "
       "ID is \"1F\") to return (POSIX path of ((get its location) as text))"}};
  std::istringstream commands(
      "find PATH|find PATH --json|find PATH --csv|find PATH --rule 5 --folder EVIL|"
      "find PATH --playlist EVIL|find PATH EVIL|find EVIL|tracks PATH|tracks PATH --json|"
      "playlists PATH|info PATH|replaylist PATH|trash PATH|plan PATH|-v cleanup PATH --apply|"
      "history PATH|history PATH --json|history PATH --run 1|undo PATH 1|script PATH WHERE|"
      "script PATH EVIL|apply PATH");
  for (std::string words; std::getline(commands, words, '|');) {
    Texts arguments;
    std::istringstream each(words);
    for (std::string word; each >> word;)
      arguments.push_back(meant.contains(word) ? meant.at(word) : word);
    const ProgramResult result = run(arguments);
    const std::string said = result.output + result.errors;
    EXPECT_FALSE(said.empty()) << words;
    for (const std::string& part : evils)
      EXPECT_EQ(said.find(part), std::string::npos) << words << ::testing::PrintToString(part);
  }
  EXPECT_EQ(json({"find", path, "--json"})["groups"][0]["tracks"][0]["tName"], evil);

  int terminal = -1;
  if (::forkpty(&terminal, nullptr, nullptr, nullptr) == 0) {
    ::close(STDOUT_FILENO);
    ::execl(KESTREL_CLI, KESTREL_CLI, "tracks", path.c_str(), nullptr);
    ::_exit(127);
  }
  std::string said;
  for (char c = 0; ::read(terminal, &c, 1) == 1;) said += c;
  ::close(terminal);
  ::wait(nullptr);
  const std::string progress = "\r\x1B[KReading " + printable(path) + " ...\r\x1B[K";
  EXPECT_EQ(said.substr(0, progress.size()), progress);
  ::unsetenv("XDG_DATA_HOME");
}

TEST_F(CommandLine, EndsCleanlyWhenInterrupted) {
  std::string tracks;
  std::vector<int> all;
  for (int i = 1; i <= 30'000; ++i) {
    all.push_back(i);
    tracks += song(i, std::to_string(i), "/gone/" + std::to_string(i), text("Name", "Song"));
  }
  const std::string path = document(tracks, playlist("Library", "F00", flag("Master"), all));
  bool stopped = false;
  // The signal may come before the program listens, or too late: it is tried at many moments.
  for (int delay = 20; !stopped && delay < 200; delay += 5) {
    const Running command("tracks " + path, true);
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    command.send(SIGINT);
    const auto [said, status] = command.end();
    stopped = status == 1 && said.find("stopped") != std::string::npos;
  }
  EXPECT_TRUE(stopped);

  // Once it writes it is held up by the full pipe, so that the signal comes in the middle.
  for (const char* arguments :
       {"tracks ", "tracks --json ", "find --json ", "find --csv ", "find "}) {
    const Running command(arguments + path, false);
    EXPECT_TRUE(command.writes());
    command.send(SIGUSR1);  // which another program may send, and which means nothing
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    command.send(SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(command.end().second, 1) << arguments;
  }
}

}  // namespace
}  // namespace kestrel::testing
