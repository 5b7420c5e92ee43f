// A library on a real Music Player Daemon: what is read of it, and what is done to its lists.
#include "musicapp/mpd/mpd_library.h"

#include <arpa/inet.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <netinet/in.h>

#include "musicapp/mpd/mpd_journal.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/musicapp/mpd/mpd_server.h"

namespace kestrel::testing {
namespace {

using namespace command;
using Uris = std::vector<std::string>;

std::string uriOf(char title) { return std::string("songs/") + title + ".mp3"; }

class MpdLibraryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!MpdTestServer::isInstalled()) GTEST_SKIP() << "mpd is not installed here";
  }
  MpdTestServer& serve(const std::string& settings = {}, const std::string& password = {}) {
    return server_.emplace(settings, password);
  }
  void open(const std::string& behind = {}) { server_->open(behind); }
  MpdLibrary& app() { return *server_->app; }
  /// Letters are songs; others are not in the database.
  Uris uris(const std::string& letters) {
    Uris found;
    for (const char letter : letters)
      found.push_back(letter >= 'a' && letter <= 'd' ? uriOf(letter)
                                                     : "gone/" + std::string(1, letter));
    return found;
  }
  std::vector<std::uint64_t> ids(const std::string& titles) { return tracksCalled(app(), titles); }

  std::optional<MpdTestServer> server_;
};

TEST_F(MpdLibraryTest, ReadsTagsFilesAndWhatPlayersHaveNoted) {
  MpdTestServer& server = serve();
  const std::pair<const char*, const char*> stickers[] = {{"playCount", "12"},
                                                          {"play_count", "99"},
                                                          {"skip_count", "3"},
                                                          {"rating", "8"},
                                                          {"lastPlayed", "1700000000"}};
  for (const auto& [name, value] : stickers)
    server.connection().tell({"sticker", "set", "song", uriOf('a'), name, value});
  server.connection().tell({"sticker", "set", "song", uriOf('b'), "rating", "0.55"});
  const auto read = [&](const std::string& behind) {
    open(behind);
    LibraryDocument all;
    all.items = std::const_pointer_cast<MediaItems>(app().allMediaItems());
    all.playlists = std::make_shared<std::vector<Playlist>>();
    Lines lines = described(all);
    for (std::string& line : lines) line = line.substr(std::min(line.size(), line.find("Name=")));
    return lines;
  };
  const std::string folder = server.folder / "music/songs";
  const std::string bytes = std::to_string(std::filesystem::file_size(folder + "/a.mp3"));
  const auto modified =
      std::to_string(server.files.status(folder + "/a.mp3")->modified.time_since_epoch() /
                     std::chrono::seconds(1));
  Lines lines = read("");
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0].substr(0, lines[0].find(" | Total")),
            "Name=a | Artist=artist of a | Genre=Genre | Kind=MPEG audio file | Rating=80 | "
            "Bit Rate=32 | Sample Rate=48000 | Play Count=12 | Skip Count=3");
  EXPECT_NE(lines[0].find(" | Size=" + bytes + " | Date Modified=" + modified +
                          " | Play Date UTC=1700000000 | folder=" + folder + " | name=a.mp3"),
            std::string::npos)
      << lines[0];
  EXPECT_NE(lines[1].find(" | Rating=55 "), std::string::npos) << lines[1];
  EXPECT_TRUE(app().mediaFolder() == server.folder / "music" && app().capabilities().addsFiles);
  lines = read("?music=/else%20where/");
  EXPECT_NE(lines[0].find("folder=/else where/songs | name=a.mp3"), std::string::npos) << lines[0];
  EXPECT_EQ(app().identity().uri, server.address() + "?music=/else%20where");
}

TEST_F(MpdLibraryTest, ChangesEntriesAmongThoseThatItDoesNotKnow) {
  serve();
  const struct {
    const char *before, *titles, *after;
  } cases[] = {{"a1b", "b", "1b"},       {"a1b", "cab", "ca1b"},     {"a1b", "dcb", "d1cb"},
               {"1a2b3", "cd", "1c2d3"}, {"a1b2c", "d", "d12"},      {"a1", "abca", "a1bca"},
               {"abc", "", ""},          {"1", "aa", "1aa"},         {"abab", "baba", "baba"},
               {"a1a", "aa", "a1a"},     {"ab1cd", "dcba", "1dcba"}, {"ab1cb", "aca", "a1ca"}};
  for (const auto& [before, titles, after] : cases) {
    SCOPED_TRACE(std::string(before) + " " + titles);
    server_->writeList("L", uris(before));
    open();
    EXPECT_EQ(server_->failureOf(SetEntries{server_->list("L").persistentID, ids(titles)}), "");
    EXPECT_EQ(server_->stored("L"), uris(after));
    EXPECT_EQ(server_->list("L").items, ids(titles));
    const std::string version = app().identity().version;
    open();
    EXPECT_EQ(app().identity().version, version) << "what is known is what is there";
  }
}

TEST_F(MpdLibraryTest, LeavesListsAloneThatAreFullOrWereChangedMeanwhile) {
  serve("max_playlist_length \"4\"\n");
  const std::pair<const char*, bool> cases[] = {{"abc", true}, {"abcd", false}, {"abcdab", false}};
  for (const auto& [before, isDone] : cases) {
    const Command commands[] = {ReplaceEntries{0, {{1, 0}}}, DeleteEntries{0, {1}}};
    for (Command command : commands) {
      server_->writeList("L", uris(before));
      open();
      const std::uint64_t id = server_->list("L").persistentID;
      std::visit(
          [&](auto& c) {
            if constexpr (requires { c.entries; }) c.entries[0].track = ids("d")[0];
            if constexpr (requires { c.playlist; }) c.playlist = id;
          },
          command);
      const std::string failure = server_->failureOf(command);
      EXPECT_EQ(failure.empty(), isDone) << before << failure;
      EXPECT_EQ(server_->stored("L") == uris(before), !isDone) << before;
      EXPECT_EQ(failure.find("max_playlist_length") != std::string::npos, !isDone) << failure;
    }
  }
  server_->writeList("L", uris("ab"));
  open();
  server_->writeList("L", uris("ba"));
  EXPECT_NE(
      server_->failureOf(SetEntries{server_->list("L").persistentID, {}}).find("changed since"),
      std::string::npos);
  EXPECT_THROW(app().beginBatch(), LibraryError);
  EXPECT_EQ(server_->stored("L"), uris("ba"));
  app().reload();
  EXPECT_NO_THROW(app().beginBatch());
}

TEST_F(MpdLibraryTest, GivesListsThatWereLeftHalfChangedTheirOldEntriesBack) {
  MpdTestServer& server = serve();
  const Uris before = uris("abxc");
  const auto steps = stepsOf(before, {{1, true, uriOf('d')}, {3, true, uriOf('a')}});
  const auto stateAfter = [&](std::size_t done) {
    return afterSteps(before, {steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(done)});
  };
  for (std::size_t done = 0; done <= steps.size(); ++done) {
    SCOPED_TRACE(done);
    for (const std::string& address : {server.address(), std::string("mpd://other:6600")}) {
      server.writeList("L", stateAfter(done));
      const MpdJournal journal(server.files, address, "L", before, steps);
      {
        const LibraryLock other(server.files, "MPD");
        open();
        EXPECT_EQ(server.stored("L"), stateAfter(done)) << "another Kestrel is at it";
        EXPECT_THROW(app().beginBatch(), LibraryError);
      }
      open();
      EXPECT_EQ(server.stored("L"), done == steps.size() ? stateAfter(done) : before);
      EXPECT_FALSE(MpdJournal::exists(server.files));
      EXPECT_NO_THROW(app().beginBatch());
    }
  }
  server.writeList("L", uris("dd"));
  const MpdJournal other(server.files, "mpd://other:6600", "L", before, steps);
  open();
  EXPECT_TRUE(MpdJournal::exists(server.files)) << "of another server, as far as can be told";
  EXPECT_EQ(server.stored("L"), uris("dd"));
}

TEST_F(MpdLibraryTest, FollowsFilesThatComeAndGo) {
  serve();
  open();
  const std::string added = server_->addSong("new/e.mp3", "e"),
                    gone = server_->folder / "music/songs/a.mp3";
  EXPECT_EQ(server_->failureOf(AddFile{added}), "");
  EXPECT_EQ(ids("e").size(), 1U);
  std::filesystem::remove(gone);
  app().filesMoved({{gone}}, {});
  EXPECT_EQ(ids("abe").size(), 2U);
  // The server forgets folders with their last song, those within each other too.
  const std::string deep = server_->addSong("one/two/three/f.mp3", "f");
  app().filesMoved({{deep}}, {});
  EXPECT_EQ(ids("f").size(), 1U);
  const std::string aside = server_->folder / "aside.mp3";
  for (const auto& [from, to] : {std::pair(deep, aside), std::pair(aside, deep)}) {
    std::filesystem::rename(from, to);
    app().filesMoved({{deep}}, {});
    EXPECT_EQ(ids("f").size(), to == deep ? 1U : 0U);
  }
  const std::pair<std::string, const char*> cases[] = {
      {server_->folder / "nowhere.mp3", "no such file"},
      {server_->folder.write("outside.mp3", "x"), "moved into the folder"},
      {server_->folder.write("music/no.mp3", "x"), "does not take it"},
      {server_->folder.write("music/no.xml", "x"), "does not take it"}};
  for (const auto& [path, problem] : cases)
    EXPECT_NE(server_->failureOf(AddFile{path}).find(problem), std::string::npos) << path;
  for (const char* name : {"", "a/b", "a\nb"})
    EXPECT_NE(server_->failureOf(CreatePlaylist{name}), "");
}

/// After each look the server writes its whole database.
TEST_F(MpdLibraryTest, HasTheServerLookAtManyFilesAtOnce) {
  namespace fs = std::filesystem;
  serve();
  std::vector<std::string> gone;
  for (const char* folder : {"x", "y"})
    for (int i = 0; i < 12; ++i) {
      const std::string place = std::string("more/") + folder + "/" + std::to_string(i);
      gone.push_back(server_->addSong(place + "/g.mp3", "g"));
      server_->addSong(place + "/k.mp3", "k");
    }
  const std::string away = server_->addSong("more/x/usb/s.mp3", "s");
  server_->connection().tell({"update"});
  server_->waitForUpdate();
  open();
  const auto count = [&] { return app().allMediaItems()->size() - 4; };  // a to d are there too
  const auto looks = [&] {
    MpdConnection asked = server_->connection();
    const int number = std::stoi(asked.value({"update", "songs"}, "updating_db"));
    server_->waitForUpdate();
    return number;
  };
  const auto move = [&](bool back) {
    for (const std::string& file : gone)
      back ? fs::rename(file + ".aside", file) : fs::rename(file, file + ".aside");
    app().filesMoved(gone, {});
  };
  EXPECT_EQ(count(), 24 + 24 + 1U);
  int before = looks();
  move(false);
  EXPECT_EQ(count(), 24 + 1U);
  EXPECT_LE(looks() - before, 3) << "at the folders that they share";
  move(true);
  EXPECT_EQ(count(), 24 + 24 + 1U);
  fs::rename(away, server_->folder / "away.mp3");  // as when a volume is not mounted
  before = looks();
  move(false);
  EXPECT_EQ(count(), 24 + 1U) << "the server has forgotten what was not there";
  EXPECT_GT(looks() - before, 12);
  move(true);
  EXPECT_EQ(count(), 24 + 24 + 1U);
}

TEST_F(MpdLibraryTest, TellsThatAServerIsGoneOrWantsAPassword) {
  serve(
      "password \"secret@read,add,control,admin\"\npassword \"reader@read\"\ndefault_permissions "
      "\"\"\n",
      "secret");
  const std::string server = server_->socket();
  const struct {
    std::string host, address;
    const char* problem;
  } cases[] = {{"", "mpd:" + server, "asks for a password"},
               {"wrong@" + server, "mpd:" + server, "does not accept the password"},
               {"secret@" + server, "mpd:", ""},
               {"secret@" + server, "mpd:" + server, ""},
               {"", "mpd:/no/socket", "cannot be reached"},
               {"", "mpd://secret@localhost", "holds no password"},
               {"", "mpd://host:x", "no address"},
               {"", "mpd:socket", "no address"},
               {"", "mpd:?music=x", "names no folder"}};
  for (const auto& [host, address, problem] : cases) {
    SCOPED_TRACE(host + " " + address);
    ::setenv("MPD_HOST", host.c_str(), 1);
    try {
      const MpdLibrary opened(address, server_->services());
      EXPECT_STREQ(problem, "");
    } catch (const LibraryError& error) {
      EXPECT_NE(std::string(error.what()).find(*problem ? problem : "?"), std::string::npos)
          << error.what();
      EXPECT_EQ(std::string(error.what()).find("secret@"), std::string::npos) << error.what();
      const bool asks = std::string(error.what()).find("Set MPD_HOST") != std::string::npos &&
                        address == "mpd:" + server;
      EXPECT_EQ(dynamic_cast<const PasswordError*>(&error) != nullptr, asks) << error.what();
    }
  }
  ::setenv("MPD_HOST", ("secret@" + server).c_str(), 1);
  server_->app = std::make_unique<MpdLibrary>("mpd:", server_->services());
  EXPECT_EQ(app().identity().uri, "mpd:" + server);
  EXPECT_EQ(mpdApplication().found(server_->services()), Uris{"mpd:" + server});
  ::setenv("MPD_HOST", ("wrong@" + server).c_str(), 1);
  EXPECT_EQ(mpdApplication().found(server_->services()), Uris{"mpd:" + server});
  ::setenv("MPD_HOST", ("reader@" + server).c_str(), 1);
  EXPECT_THROW(MpdLibrary("mpd:", server_->services()).beginBatch(), LibraryError);
  ::setenv("MPD_HOST", ("secret@" + server).c_str(), 1);
  MpdConnection lost = server_->connection();
  server_->end(SIGKILL);
  EXPECT_THROW(lost.tell({"ping"}), LibraryError) << "and no signal";
  EXPECT_TRUE(mpdApplication().found(server_->services()).empty());
  EXPECT_THROW(app().reload(), LibraryError);
  EXPECT_EQ(ids("abcd").size(), 4U) << "what was read stays";
  EXPECT_NE(server_->failureOf(CreatePlaylist{"New"}).find("cannot be reached"), std::string::npos);
  ::unsetenv("MPD_HOST");
}

TEST_F(MpdLibraryTest, HasOneNameByWhateverAddressItIsReached) {
  std::string port;  // one that is free
  {
    const Descriptor probe(::socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof place;
    auto* address = reinterpret_cast<sockaddr*>(&place);
    ASSERT_EQ(::bind(probe.number(), address, size), 0);
    ASSERT_EQ(::getsockname(probe.number(), address, &size), 0);
    port = std::to_string(ntohs(place.sin_port));
  }
  serve("bind_to_address \"127.0.0.1\"\nport \"" + port + "\"\n");
  const auto nameAt = [&](const std::string& address) {
    return MpdLibrary(address, server_->services()).identity().id;
  };
  const std::string bySocket = nameAt(server_->address());
  EXPECT_EQ(bySocket, "server:" + std::filesystem::canonical(server_->socket()).string());
  std::filesystem::create_symlink(server_->socket(), server_->folder / "link");
  EXPECT_EQ(nameAt("mpd:" + server_->folder / "link"), bySocket);
  const std::string byPort = "server:localhost " + port;
  for (const char* host : {"127.0.0.1", "localhost"})
    EXPECT_EQ(nameAt(std::string("mpd://") + host + ":" + port), byPort) << host;
  // Where its socket is one of the usual ones, that is it.
  const std::string runtime = server_->folder / "run";
  std::filesystem::create_directories(runtime + "/mpd");
  std::filesystem::create_symlink(server_->socket(), runtime + "/mpd/socket");
  ::setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
  EXPECT_EQ(nameAt("mpd://localhost:" + port + "?music=" + server_->folder / "music"), bySocket);
  ::unsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
}  // namespace kestrel::testing
