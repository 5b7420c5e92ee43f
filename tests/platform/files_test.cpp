#include "platform/files.h"

#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "platform/file_error.h"
#include "platform/testing/memory_files.h"
#include "temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

/// The error that `action` throws; its code is -1 when it throws none.
template <typename Action>
FileError errorOf(Action action) {
  try {
    action();
  } catch (const FileError& error) {
    return error;
  }
  return {"", Message::verbatim("no error"), {}, -1};
}

TEST(Files, AReplacedFileKeepsItsPermissionsAndItsLinks) {
  const TemporaryFolder folder;
  SystemFiles files;
  const std::string file = folder.write("library.xml", "old");
  ::chmod(file.c_str(), 0640);
  const std::string link = folder / "link.xml";
  fs::create_symlink("library.xml", link);

  files.writeAtomically(link, "new");

  EXPECT_EQ(files.readAll(file), "new");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  EXPECT_EQ(folder.count(), 2U);
}

TEST(Files, AFailedWriteLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  SystemFiles files;
  const std::string file = folder.write("document", "old");
  fs::create_directory(folder / "folder");
  fs::create_symlink("nowhere", folder / "dangling");

  const FileError onFolder = errorOf([&] { files.writeAtomically(folder / "folder", "new"); });
  EXPECT_EQ(onFolder.code, EISDIR);
  EXPECT_EQ(onFolder.path, folder / "folder");
  EXPECT_FALSE(onFolder.remedy.empty());
  EXPECT_EQ(errorOf([&] { files.writeAtomically(folder / "no/file", "new"); }).code, ENOENT);
  EXPECT_EQ(errorOf([&] { files.writeAtomically(folder / "dangling", "new"); }).code, ENOENT);

  // A disk that is full half-way.
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{4096, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  const FileError full = errorOf([&] { files.writeAtomically(file, std::string(10'000, 'n')); });
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);

  EXPECT_EQ(full.code, EFBIG);
  EXPECT_EQ(files.readAll(file), "old");
  EXPECT_EQ(folder.count(), 3U);
}

TEST(Files, MappedFilesReadAgainWhatWasReleased) {
  const TemporaryFolder folder;
  std::string bytes(1'000'003, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 4096);
  MappedFile file(folder.write("big", bytes));
  const MappedFile moved = std::move(file);
  const auto text = [&] { return std::string(moved.bytes().begin(), moved.bytes().end()); };
  EXPECT_EQ(text(), bytes);
  for (std::size_t at = 0; at < bytes.size(); at += 10'000) moved.release(at, 10'000);
  moved.release(bytes.size() - 1, SIZE_MAX);
  moved.release(SIZE_MAX, SIZE_MAX);
  EXPECT_EQ(text(), bytes);
  EXPECT_EQ(moved.status().size, bytes.size());
  EXPECT_TRUE(MappedFile(folder.write("empty", "")).bytes().empty());
}

TEST(Files, OnlyFilesThatCanBeReadAreMapped) {
  const TemporaryFolder folder;
  ::mkfifo((folder / "pipe").c_str(), 0600);
  EXPECT_EQ(errorOf([&] { MappedFile(folder.path()); }).code, EISDIR);
  EXPECT_EQ(errorOf([&] { MappedFile(folder / "missing"); }).code, ENOENT);
  const FileError pipe = errorOf([&] { MappedFile(folder / "pipe"); });
  EXPECT_EQ(pipe.what(),
            (folder / "pipe") + ": cannot be read: it is not an ordinary file. Give another file.");
}

TEST(Files, FilesWithoutASizeAreReadToTheirEnd) {
  const std::string status = SystemFiles().readAll("/proc/self/status");
  EXPECT_NE(status.find("nonvoluntary_ctxt_switches"), std::string::npos);
}

TEST(Files, UserFoldersComeFromTheEnvironment) {
  struct Case {
    const char* home;
    const char* data;
    std::optional<std::string> expected;
  };
  const std::string oldHome = std::getenv("HOME") ? std::getenv("HOME") : "";
  for (const Case& c :
       {Case{"/home/u", nullptr, "/home/u/.local/share"}, Case{"/home/u", "/data", "/data"},
        Case{"/home/u", "not/absolute", "/home/u/.local/share"},
        Case{nullptr, nullptr, std::nullopt}, Case{"", "", std::nullopt}}) {
    c.home ? ::setenv("HOME", c.home, 1) : ::unsetenv("HOME");
    c.data ? ::setenv("XDG_DATA_HOME", c.data, 1) : ::unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(SystemFiles().applicationSupportDirectory(), c.expected);
  }
  ::unsetenv("XDG_DATA_HOME");
  ::setenv("HOME", oldHome.c_str(), 1);
}

/// What tests rely on in memory must be what the system does.
class AnyFiles : public testing::TestWithParam<bool> {
 protected:
  AnyFiles() {
    if (GetParam()) memory.createDirectories(folder.path());
  }
  FileService& files() { return GetParam() ? static_cast<FileService&>(memory) : system; }

  TemporaryFolder folder;
  MemoryFiles memory;
  SystemFiles system;
};

TEST_P(AnyFiles, BehaveAlike) {
  files().createDirectories(folder / "a/b");
  files().createDirectories(folder / "a/b");
  files().writeAtomically(folder / "a/z", "zz");
  files().writeAtomically(folder / "a/k", "k");
  EXPECT_EQ(files().list(folder / "a"), (std::vector<std::string>{"b", "k", "z"}));
  EXPECT_TRUE(files().exists(folder / "a/b"));
  EXPECT_FALSE(files().exists(folder / "a/c"));
  EXPECT_EQ(files().status(folder / "a/b")->kind, FileStatus::Kind::folder);

  const auto before = files().status(folder / "a/z");
  EXPECT_EQ(before->size, 2U);
  files().writeAtomically(folder / "a/z", "yy");
  EXPECT_NE(files().status(folder / "a/z"), before);
  EXPECT_EQ(files().modificationDate(folder / "a/none"), std::nullopt);

  files().rename(folder / "a/z", folder / "a/k");
  EXPECT_EQ(files().readAll(folder / "a/k"), "yy");
  EXPECT_EQ(errorOf([&] { files().rename(folder / "a/z", folder / "x"); }).code, ENOENT);
  EXPECT_EQ(errorOf([&] { files().remove(folder / "a"); }).code, ENOTEMPTY);
  EXPECT_EQ(errorOf([&] { (void)files().readAll(folder / "a"); }).code, EISDIR);
  EXPECT_EQ(errorOf([&] { (void)files().list(folder / "none"); }).code, ENOENT);
  EXPECT_EQ(errorOf([&] { files().writeAtomically(folder / "none/x", ""); }).code, ENOENT);
  EXPECT_TRUE(files().remove(folder / "a/k"));
  EXPECT_FALSE(files().remove(folder / "a/k"));
}

INSTANTIATE_TEST_SUITE_P(Files, AnyFiles, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "InMemory" : "OfTheSystem"; });

}  // namespace
}  // namespace kestrel
