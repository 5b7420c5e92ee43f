// How a changed library document gets to the disk: whole, under a lock, with a backup, never over
// another program's change.
#include <cerrno>
#include <csignal>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/library_error.h"
#include "musicapp/document/document_library.h"
#include "musicapp/library_commit.h"
#include "musicapp/library_files.h"
#include "platform/file_error.h"
#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {
namespace {

namespace fs = std::filesystem;

constexpr CommitStep steps[] = {CommitStep::check,      CommitStep::create,  CommitStep::write,
                                CommitStep::protect,    CommitStep::sync,    CommitStep::backUp,
                                CommitStep::checkAgain, CommitStep::replace, CommitStep::compare,
                                CommitStep::syncFolder, CommitStep::prune};

Command create(const std::string& name) { return command::CreatePlaylist{name}; }

/// Calls `act` before the `nth` time of a step.
auto at(CommitStep wanted, int nth, std::function<void()> act) {
  return [=, left = nth](CommitStep step) mutable {
    if (step == wanted && --left == 0) act();
  };
}

std::vector<std::string> namesIn(const std::string& folder) {
  return fs::exists(folder) ? SystemFiles().list(folder) : std::vector<std::string>();
}

/// The document's backups, oldest first.
std::vector<std::string> backups(DocumentWorld& world) {
  std::vector<std::string> found;
  const std::string folder = LibraryBackups(world.files, world.path).folder();
  for (const std::string& name : namesIn(folder))
    found.push_back(TemporaryFolder::read(folder + "/" + name));
  return found;
}

TEST(DocumentCommit, FailedAtAnyStepItLeavesTheOldDocumentOrTheNewOne) {
  using Names = std::vector<std::string>;
  for (const CommitStep step : steps) {
    SCOPED_TRACE(static_cast<int>(step));
    DocumentWorld world(smallLibrary());
    const Lines before = world.inMemory();
    const bool isNew = step >= CommitStep::syncFolder;
    world.options.onStep = at(step, 1, [] {
      throw FileError::fromCode("Library.xml", Message::verbatim("cannot be written"), ENOSPC);
    });
    world.open();
    const std::string result = world.run(create("New"));
    EXPECT_EQ(result.find("No space left") != std::string::npos, !isNew) << result;
    EXPECT_EQ(world.log.lines().size(), isNew ? 1U : 0U);
    EXPECT_EQ(world.inMemory() == before, !isNew);
    EXPECT_EQ(world.bytes() == smallLibrary(), !isNew);
    EXPECT_EQ(backups(world).size(), isNew ? 1U : 0U);
    EXPECT_EQ(world.run(create("Next")).find("error"), std::string::npos);
    EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
    EXPECT_EQ(namesIn(world.folder / "Music"), Names{"Library.xml"});
    EXPECT_EQ(backups(world).front(), smallLibrary());
  }
}

TEST(DocumentCommit, AFailedCommitOfABatchCanBeTriedAgain) {
  DocumentWorld world(smallLibrary());
  world.options.onStep =
      at(CommitStep::sync, 1, [] { throw FileError("x", Message::verbatim("is full"), {}); });
  world.open();
  const auto batch = world.app->beginBatch();
  world.run(create("New"));
  EXPECT_THROW(batch->commit(), LibraryError);
  EXPECT_EQ(world.bytes(), smallLibrary());
  batch->commit();
  EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
}

TEST(DocumentCommit, ADocumentThatAnotherProgramChangedIsNeverOverwritten) {
  const std::string others = "<plist><dict><key>Tracks</key><dict></dict></dict></plist>";
  const auto put = [&](DocumentWorld& world) {
    std::ofstream(world.path, std::ios::binary | std::ios::trunc) << others;
  };
  const auto replace = [&](DocumentWorld& world) {
    fs::rename(world.folder.write("saved", others), world.path);
  };
  using Way = std::pair<CommitStep, std::function<void(DocumentWorld&)>>;
  for (const auto& [step, save] : {Way{CommitStep::checkAgain, put}, Way{CommitStep::replace, put},
                                   Way{CommitStep::replace, replace}}) {
    SCOPED_TRACE(static_cast<int>(step));
    DocumentWorld world(smallLibrary());
    world.options.onStep = at(step, 1, [&, act = save] { act(world); });
    world.open();
    const std::string result = world.run(create("New"));
    EXPECT_NE(result.find("changed by another program"), std::string::npos) << result;
    EXPECT_NE(result.find("Reload"), std::string::npos) << result;
    EXPECT_EQ(world.bytes(), others);
    EXPECT_EQ(namesIn(world.folder / "Music"), std::vector<std::string>{"Library.xml"});
    EXPECT_THROW(world.app->beginBatch(), LibraryError);

    world.app->library().reload();
    EXPECT_EQ(world.app->library().allMediaItems()->size(), 0U);
    EXPECT_EQ(world.run(create("New")).find("error"), std::string::npos);
    EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
  }
}

TEST(DocumentCommit, AChangeThatAKilledCommitWasToPutBackBecomesABackup) {
  DocumentWorld world(smallLibrary());
  const int status = inChild([&] {
    world.options.onStep = [&](CommitStep step) {
      if (step == CommitStep::replace)
        fs::rename(world.folder.write("saved", "another program's"), world.path);
      if (step == CommitStep::compare) {
        // A living commit's file is no leftover.
        DocumentLibrary(world.path, world.services());
        ::_exit(namesIn(world.folder / "Music").size() == 2 ? 0 : 1);
      }
    };
    world.open();
    world.run(create("New"));
    ::_exit(2);
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(namesIn(world.folder / "Music").size(), 2U);
  world.open();
  EXPECT_EQ(namesIn(world.folder / "Music"), std::vector<std::string>{"Library.xml"});
  EXPECT_EQ(backups(world), (std::vector<std::string>{smallLibrary(), "another program's"}));
}

TEST(DocumentCommit, ADocumentThatIsCutShortWhileItIsWrittenStays) {
  // A track large enough to be written from the mapped file as it is.
  std::string large = smallLibrary();
  large.insert(large.find("<key>Name</key>"),
               "<key>Comments</key><string>" + std::string(20'000'000, 'x') + "</string>");
  DocumentWorld world(large);
  world.options.onStep = at(CommitStep::write, 2, [&] { fs::resize_file(world.path, 1000); });
  world.open();
  EXPECT_NE(world.run(create("New")).find("changed by another program"), std::string::npos);
  EXPECT_EQ(world.bytes(), large.substr(0, 1000));
}

TEST(DocumentCommit, ADocumentOfAnotherUserOrWithAnotherNameIsRefused) {
  DocumentWorld world(smallLibrary());
  const std::string other = world.folder / "other.xml";
  fs::create_hard_link(world.path, other);
  for (const std::string& result : {world.run(create("New")), world.run(create("New"))})
    EXPECT_NE(result.find("has 2 names (hard links)"), std::string::npos) << result;
  EXPECT_THROW(world.app->beginBatch(), LibraryError);
  EXPECT_EQ(backups(world).size(), 0U);
  fs::remove(other);
  EXPECT_EQ(world.run(create("New")).find("error"), std::string::npos);

  if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  const auto owners = [&] {
    struct stat info {};
    ::stat(world.path.c_str(), &info);
    return std::pair(info.st_uid, info.st_gid);
  };
  ::chown(world.path.c_str(), 12345, 12346);
  EXPECT_EQ(world.run(create("By root")).find("error"), std::string::npos);
  EXPECT_EQ(owners(), (std::pair<uid_t, gid_t>(12345, 12346)));

  for (const auto& [user, group] : {std::pair(12347, 12346), std::pair(12345, 12347)}) {
    const std::string before = world.bytes();
    const int status = inChild([&, user = user, group = group] {
      for (const auto& entry : fs::recursive_directory_iterator(world.folder.path()))
        ::chmod(entry.path().c_str(), entry.path() == world.path ? 0666 : 0777);
      ::chmod(world.folder.path().c_str(), 0777);
      ::setenv("XDG_DATA_HOME", (world.folder / ("support-" + std::to_string(user))).c_str(), 1);
      if (::setgroups(0, nullptr) != 0 || ::setresgid(group, group, group) != 0 ||
          ::setresuid(user, user, user) != 0)
        ::_exit(2);
      world.open();
      const bool refused =
          world.run(create("New")).find("belongs to the user 12345") != std::string::npos;
      ::_exit(refused ? 0 : 1);
    });
    EXPECT_EQ(status, 0) << user;
    EXPECT_EQ(world.bytes(), before);
    EXPECT_EQ(owners(), (std::pair<uid_t, gid_t>(12345, 12346)));
  }
}

TEST(DocumentCommit, TwoKestrelsDoNotChangeADocumentAtOnce) {
  DocumentWorld world(smallLibrary());
  const std::string link = world.folder / "link.xml";
  fs::create_symlink(world.path, link);
  DocumentLibrary other(link, world.services());
  auto batch = world.app->beginBatch();
  const CommandResult busy = other.run(create("Other"));
  ASSERT_TRUE(busy.failed());
  EXPECT_NE(busy.failure->message.english().find("another Kestrel"), std::string::npos)
      << busy.failure->message.english();
  world.run(create("Mine"));
  batch->commit();
  batch.reset();

  // The lock is free, but the document is not the one that the other had read.
  EXPECT_TRUE(other.run(create("Other")).failed());
  other.library().reload();
  EXPECT_FALSE(other.run(create("Other")).failed());
  EXPECT_TRUE(fs::is_symlink(link));
  world.app->library().reload();
  EXPECT_EQ(world.app->library().allPlaylists()->size(), 10U);
}

TEST(DocumentCommit, KeepsTheLatestStatesAsNumberedBackups) {
  using Names = std::vector<std::string>;
  // The second time the backups lie on another volume, if there is one, and so are copies.
  const TemporaryFolder elsewhere, inMemory(TemporaryFolder::inMemory());
  for (const bool mayDie : {true, false}) {
    DocumentWorld world(smallLibrary());
    ::setenv("XDG_DATA_HOME", (mayDie ? elsewhere : inMemory).path().c_str(), 1);
    world.options.keptBackups = 3;
    world.open();
    std::vector<std::string> states;
    for (int i = 0; i < 5; ++i) {
      states.push_back(world.bytes());
      // A commit dies after its backup: that is one file with the document, and no state of its
      // own.
      if (mayDie && i == 3) LibraryBackups(world.files, world.path).add();
      ASSERT_EQ(world.run(create(std::to_string(i))).find("error"), std::string::npos);
    }
    EXPECT_EQ(backups(world), std::vector(states.begin() + 2, states.end()));
    EXPECT_EQ(namesIn(LibraryBackups(world.files, world.path).folder()),
              (Names{"0003.xml", "0004.xml", "0005.xml"}));
    for (const auto& backup : fs::recursive_directory_iterator(std::getenv("XDG_DATA_HOME")))
      EXPECT_EQ(backup.status().permissions() & fs::perms(0077), fs::perms(0)) << backup.path();
    world.options.keptBackups = 0;
    world.open();
    world.run(create("last"));
    EXPECT_EQ(backups(world).size(), 1U) << "never the only one";
  }
}

TEST(DocumentCommit, ReadOnlyDocumentsAndMissingFoldersAreRefusedInTheBeginning) {
  DocumentWorld world(smallLibrary());
  ::chmod(world.path.c_str(), 0440);
  EXPECT_NE(world.run(create("New")).find("is read-only"), std::string::npos);
  EXPECT_THROW(world.app->beginBatch(), LibraryError);
  ::chmod(world.path.c_str(), 0640);
  ::setenv("XDG_DATA_HOME", "", 1);
  const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
  ::unsetenv("HOME");
  EXPECT_NE(world.run(create("New")).find("Set HOME"), std::string::npos);
  if (!home.empty()) ::setenv("HOME", home.c_str(), 1);
  ::setenv("XDG_DATA_HOME", world.folder.write("file", "").c_str(), 1);
  EXPECT_NE(world.run(create("New")).find("cannot be created"), std::string::npos);
  EXPECT_EQ(world.bytes(), smallLibrary());

  ::setenv("XDG_DATA_HOME", (world.folder / "support").c_str(), 1);
  EXPECT_EQ(world.run(create("New")).find("error"), std::string::npos);
  EXPECT_EQ(fs::status(world.path).permissions(), fs::perms(0640));
}

}  // namespace
}  // namespace kestrel::testing
