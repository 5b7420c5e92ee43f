// Changing a stored playlist while the server breaks off, or refuses, at every command.
#include "musicapp/mpd/mpd_list_edit.h"

#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "musicapp/mpd/mpd_list_merge.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

using Entries = MpdEntries;

Entries entriesOf(const std::string& letters) {
  Entries entries;
  for (const char letter : letters) entries.emplace_back(1, letter);
  return entries;
}

/// A server with one list, of letters, that can be told to fail.
class FakeServer {
 public:
  explicit FakeServer(const std::string& letters) : list(letters) {
    listener_ = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    server.host.copy(address.sun_path, sizeof address.sun_path - 1);
    if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener_, 5) != 0)
      throw std::runtime_error("no socket");
    thread_ = std::thread([this] { serve(); });
  }
  ~FakeServer() {
    ::shutdown(listener_, SHUT_RDWR);
    thread_.join();
    ::close(listener_);
  }
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;

  TemporaryFolder folder;
  MpdServer server{folder / "socket", 0, {}, {}};
  std::string list;
  std::string version = "0.23.5";
  // Set before the first connection.
  int breaksAt = -1;     ///< the connection, before this edit
  bool forGood = false;  ///< and no other is accepted
  /// What another client makes of the list, once it has been read so many times.
  std::function<std::string(std::string)> foreign;
  int foreignAt = 1;
  int refusesAt = -1;
  std::size_t longest = 100;  ///< what is longer is cut by whatever is done to the list

 private:
  void serve() {
    for (int client; (client = ::accept(listener_, nullptr, nullptr)) >= 0; ::close(client)) {
      if (forGood && breaksAt >= 0 && edits_ > breaksAt) continue;
      FILE* stream = ::fdopen(::dup(client), "r+");
      ::fprintf(stream, "OK MPD %s\n", version.c_str());
      ::fflush(stream);
      while (answer(stream)) ::fflush(stream);
      ::fclose(stream);
    }
  }

  /// False when the connection is to end.
  bool answer(FILE* stream) {
    std::vector<std::string> commands;
    char line[4096];
    bool isList = false, answersEach = false;
    do {
      if (!::fgets(line, sizeof line, stream)) return false;
      const std::string text(line);
      if (text == "command_list_begin\n" || text == "command_list_ok_begin\n")
        isList = true, answersEach = text == "command_list_ok_begin\n";
      else if (text != "command_list_end\n")
        commands.push_back(text);
    } while (isList && std::string(line) != "command_list_end\n");
    for (std::size_t i = 0; i < commands.size(); ++i) {
      std::istringstream words(commands[i]);
      std::string command, name, first, second;
      words >> command >> name >> first >> second;
      const auto number = [](const std::string& text) {
        return std::stoul(text.substr(text.find_first_not_of('"')));
      };
      if (command == "listplaylist") {
        if (foreign && reads_++ == foreignAt) list = foreign(list);
        for (const char letter : list) ::fprintf(stream, "file: %c\n", letter);
        if (answersEach) ::fprintf(stream, "list_OK\n");
        continue;
      }
      const int edit = edits_++;
      if (edit == breaksAt) return false;
      int code = edit == refusesAt ? 50 : 0;
      if (command == "playlistadd" && list.size() >= longest) code = 51;
      if (code != 0) {
        ::fprintf(stream, "ACK [%d@%zu] {%s} no\n", code, i, command.c_str());
        return true;
      }
      list.resize(std::min(list.size(), longest));
      if (command == "playlistadd")
        list.insert(second.empty() ? list.size() : number(second), 1, first[first.size() / 2]);
      else if (command == "playlistdelete")
        list.erase(number(first), 1);
      else if (command == "playlistmove") {
        const char moved = list[number(first)];
        list.erase(number(first), 1);
        list.insert(number(second), 1, moved);
      }
      if (answersEach) ::fprintf(stream, "list_OK\n");
    }
    ::fprintf(stream, "OK\n");
    return true;
  }

  int listener_ = -1;
  int edits_ = 0, reads_ = 0;
  std::thread thread_;
};

/// What makes "dbee" of "abcd", which takes 7 steps.
const std::vector<MpdChange> changes = {
    {0, true, "d"}, {2, true, {}}, {3, false, "e"}, {3, true, "e"}};

/// What came of it: the list, and whether that it is unchanged was told.
std::string edit(FakeServer& fake) {
  const Entries before = entriesOf(fake.list);
  const auto steps = stepsOf(before, changes);
  EXPECT_EQ(afterSteps(before, steps), entriesOf("dbee" + fake.list.substr(4)));
  try {
    MpdConnection connection(fake.server);
    editMpdList(connection, "L", before, steps);
    return fake.list + " done";
  } catch (const MpdEditError& error) {
    return fake.list + (error.isUnchanged ? " unchanged" : " unknown");
  }
}

TEST(MpdListEdit, LeavesTheOldListOrTheNewWhereverTheServerBreaksOffOrRefuses) {
  for (int step = -1; step < 8; ++step) {
    SCOPED_TRACE(step);
    const bool isReached = step >= 0 && step < 6;
    FakeServer breaking("abcd"), refusing("abcd"), old("abcd");
    breaking.breaksAt = refusing.refusesAt = step;
    old.version = "0.22.0";
    EXPECT_EQ(edit(breaking), isReached ? "abcd unchanged" : "dbee done");
    EXPECT_EQ(edit(refusing), isReached ? "abcd unchanged" : "dbee done");
    EXPECT_EQ(edit(old), "dbee done");
  }
}

TEST(MpdListEdit, DeletesNothingFromAListThatTheServerWouldCut) {
  for (const std::size_t longest : {3U, 4U, 5U}) {
    FakeServer fake("abcd");
    fake.longest = longest;
    EXPECT_EQ(edit(fake), longest < 5 ? "abcd unchanged" : "dbee done") << longest;
  }
  // Taking out alone starts with an entry more, too.
  const auto steps = stepsOf(entriesOf("abcd"), {{1, true, {}}, {3, true, {}}});
  EXPECT_EQ(steps.front().kind, MpdStep::Kind::add);
  EXPECT_EQ(afterSteps(entriesOf("abcd"), steps), entriesOf("ac"));
}

/// Before the list is read, and after the first part of the steps.
TEST(MpdListEdit, LeavesWhatAnotherProgramMakesOfTheListMeanwhile) {
  const struct {
    const char* is;
    std::function<std::string(std::string)> act;
  } cases[] = {{"xabcd", [](const std::string& list) { return "x" + list; }},
               {"abcdx", [](const std::string& list) { return list + "x"; }},
               {"bcd", [](const std::string& list) { return list.substr(1); }},
               {"dabc",
                [](std::string list) {
                  const std::size_t end = list.find('d') + 1;  // behind it is what was put in
                  return "d" + list.erase(end - 1, 1);
                }},
               {"", [](const std::string&) { return ""; }}};
  for (const auto& [is, act] : cases)
    for (const int read : {0, 2}) {
      FakeServer fake("abcd");
      fake.foreign = act;
      fake.foreignAt = read;
      EXPECT_EQ(edit(fake), std::string(is) + " unchanged") << read;
    }
}

TEST(MpdListEdit, IsTakenOutOfWhatAListHasBecomeSince) {
  const Entries before = entriesOf("abcdef");
  const auto steps =
      stepsOf(before, {{1, true, "x"}, {3, true, {}}, {4, true, {}}, {6, false, "y"}});
  const struct {
    const char *found, *is;
  } cases[] = {{"axcfy", "abcdef"}, {"naxcfy", "nabcdef"},  {"axcnfy", "abcdenf"},
               {"acfy", "acdef"},   {"yaxcf", "abcdef"},    {"axfy", "abfde"},
               {"fcxay", "fcdeba"}, {"xxaxcfy", "xxabcdef"}};
  ASSERT_EQ(afterSteps(before, steps), entriesOf("axcfy"));
  for (const auto& [found, is] : cases) {
    const Entries now = entriesOf(found);
    EXPECT_EQ(afterSteps(now, stepsOf(now, changesWithout(steps, before, now))), entriesOf(is))
        << found;
  }
  for (std::size_t done = 0; done <= steps.size(); ++done) {
    const std::span part(steps.data(), done);
    const Entries now = afterSteps(before, {part.begin(), part.end()});
    EXPECT_EQ(afterSteps(now, stepsOf(now, changesWithout(part, before, now))), before) << done;
  }
}

TEST(MpdListEdit, SaysThatItDoesNotKnowWhenTheServerIsGone) {
  FakeServer fake("abcd");
  fake.breaksAt = 3;
  fake.forGood = true;
  EXPECT_TRUE(edit(fake).ends_with(" unknown"));
}

TEST(MpdListEdit, BrokenOffIsTheBeginningOfTheOldListAndTheEndOfTheNew) {
  const Entries before = entriesOf("abcabd"), after = entriesOf("xbyabz");
  const auto steps = stepsOf(before, {{0, true, "x"}, {2, true, "y"}, {5, true, "z"}});
  for (std::size_t count = 0; count <= steps.size(); ++count) {
    const Entries now =
        afterSteps(before, {steps.begin(), steps.begin() + static_cast<int>(count)});
    const auto kept = std::mismatch(now.begin(), now.end(), before.begin(), before.end()).first;
    const auto made = std::mismatch(now.rbegin(), now.rend(), after.rbegin(), after.rend()).first;
    EXPECT_GE(kept, made.base()) << count;
  }
}

}  // namespace
}  // namespace kestrel::testing
