#include "platform/files.h"

#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>

#include "platform/file_error.h"
#include "temporary_folder.h"
#include "tests/platform/memory_files.h"

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

TEST(Files, AReplacedFileKeepsWhatItHadAndItsLinks) {
  const TemporaryFolder folder;
  SystemFiles files;
  const std::string file = folder.write("library.xml", "old");
  ::chmod(file.c_str(), 0640);
  // Version 2; the owner, user 12345, the group, the mask and others, each with tag and rights.
  const std::string list =
      std::string("\x02\0\0\0", 4) + std::string("\x01\0\x06\0\xFF\xFF\xFF\xFF", 8) +
      std::string("\x02\0\x04\0\x39\x30\0\0", 8) + std::string("\x04\0\x04\0\xFF\xFF\xFF\xFF", 8) +
      std::string("\x10\0\x04\0\xFF\xFF\xFF\xFF", 8) + std::string("\x20\0\0\0\xFF\xFF\xFF\xFF", 8);
  const std::map<std::string, std::string> given{{"system.posix_acl_access", list},
                                                 {"user.note", "kept"}};
  std::map<std::string, std::string> before, after;
  const auto attributes = [&](auto& into) {
    for (const auto& [name, value] : given) {
      into[name].resize(1000);
      const ssize_t size = ::getxattr(file.c_str(), name.c_str(), into[name].data(), 1000);
      into[name].resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }
  };
  for (const auto& [name, value] : given)
    ::setxattr(file.c_str(), name.c_str(), value.data(), value.size(), 0);
  attributes(before);  // nothing where the file system has none
  const std::string link = folder / "link.xml";
  fs::create_symlink("library.xml", link);

  files.writeAtomically(link, "new");

  EXPECT_EQ(files.readAll(file), "new");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  attributes(after);
  EXPECT_EQ(after, before);
  EXPECT_EQ(folder.count(), 2U);
}

TEST(Files, NewOnesAreForTheUserAloneAndKestrelsOwnFolderIsClosed) {
  const TemporaryFolder folder;
  SystemFiles files;
  const auto modeOf = [&](const std::string& name) {
    return static_cast<unsigned>(fs::status(folder / name).permissions());
  };
  files.createDirectories(folder / "new/Kestrel");
  files.writeAtomically(folder / "new/Kestrel/export", "");
  EXPECT_EQ(modeOf("new"), 0700U);
  EXPECT_EQ(modeOf("new/Kestrel/export"), 0600U);

  for (const std::string place : {"Kestrel", "Others"}) {
    fs::permissions(fs::path(folder.write(place + "/wide", "")).parent_path(), fs::perms(0755));
    ::chmod((folder / (place + "/wide")).c_str(), 0664);
    fs::create_hard_link(folder.write(place + "/two", ""), folder / (place + "-name"));
    ::chmod((folder / (place + "/two")).c_str(), 0664);
    files.createDirectories(folder / place);
  }
  EXPECT_EQ(modeOf("Kestrel"), 0700U);
  EXPECT_EQ(modeOf("Kestrel/wide"), 0600U);
  EXPECT_EQ(modeOf("Kestrel/two"), 0664U);
  EXPECT_EQ(modeOf("Others"), 0755U);
  EXPECT_EQ(modeOf("Others/wide"), 0664U);
}

TEST(Files, AFailedWriteLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  SystemFiles files;
  const std::string file = folder.write("document", "old");
  fs::create_directory(folder / "folder");
  fs::create_symlink("nowhere", folder / "dangling");

  const FileError onFolder = errorOf([&] { files.writeAtomically(folder / "folder", "new"); });
  EXPECT_EQ(onFolder.code, EISDIR);
  EXPECT_EQ(onFolder.file, folder / "folder");
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

TEST(Files, CutShortOrWrittenToWhileTheyAreReadAreAnErrorAndNoCrash) {
  const TemporaryFolder folder;
  const std::string path = folder.write("big", std::string(3'000'000, 'x'));
  const auto sumOf = [](const MappedFile& file, std::size_t from) {
    return std::accumulate(file.bytes().begin() + static_cast<std::ptrdiff_t>(from),
                           file.bytes().end(), 0UL);
  };
  const MappedFile other(path);
  for (const bool cut : {true, false}) {
    MappedFile first(path);
    const MappedFile file = std::move(first);
    if (cut) {
      fs::resize_file(path, 100'000);
      std::vector<std::jthread> readers;
      for (const std::size_t from : {2'000'000U, 1'000'000U, 500'000U})
        readers.emplace_back([&, from] { EXPECT_EQ(sumOf(file, from), 0U); });
    } else {
      std::fstream(path, std::ios::in | std::ios::out) << "y";
    }
    EXPECT_NE(sumOf(file, 0), 0U);
    file.release(0, SIZE_MAX);
    EXPECT_NE(sumOf(file, 0), 0U);
    const FileError error = errorOf([&] { file.checkUnchanged(); });
    EXPECT_EQ(error.file, path);
    EXPECT_NE(std::string(error.what()).find("changed by another program"), std::string::npos);
    // It counts more than what comes of it.
    EXPECT_EQ(errorOf([&] { file.checked([]() -> int { throw std::runtime_error("x"); }); }).file,
              path);
    EXPECT_EQ(errorOf([&] { file.checked([] { return 1; }); }).file, path);
  }
  EXPECT_EQ(sumOf(other, 200'000), 0U);
  SystemFiles().writeAtomically(path, "replaced");
  EXPECT_NE(sumOf(other, 0), 0U);
  const MappedFile unchanged(path);
  EXPECT_EQ(unchanged.checked([] { return 7; }), 7);
}

TEST(Files, PagesThatAreLostElsewhereStillEndTheProgram) {
  const TemporaryFolder folder;
  const std::string path = folder.write("big", std::string(100'000, 'x'));
  const MappedFile watched(path);
  const Descriptor file = openForReading(path);
  const auto* bytes = static_cast<const volatile char*>(
      ::mmap(nullptr, 100'000, PROT_READ, MAP_SHARED, file.number(), 0));
  fs::resize_file(path, 0);
  EXPECT_EQ(watched.bytes()[50'000], '\0');
  // Sanitizers report the signal and exit.
  const auto endsBySignal = [](int status) {
    return testing::KilledBySignal(SIGBUS)(status) || (WIFEXITED(status) && WEXITSTATUS(status));
  };
  EXPECT_EXIT(static_cast<void>(bytes[50'000]), endsBySignal, "");
  EXPECT_EXIT(::raise(SIGBUS), endsBySignal, "");
}

TEST(Files, OnlyFilesThatCanBeReadAreMapped) {
  const TemporaryFolder folder;
  ::mkfifo((folder / "pipe").c_str(), 0600);
  for (const std::string& path : {folder / "pipe", std::string("/dev/zero")})
    EXPECT_EQ(errorOf([&] { (void)SystemFiles().readAll(path); }).problem.english(),
              "cannot be read: it is not an ordinary file");
  fs::resize_file(folder.write("sparse", ""), std::uintmax_t{20} << 30);
  EXPECT_EQ(errorOf([&] { (void)SystemFiles().readAll(folder / "sparse"); }).problem.english(),
            "cannot be read: it is too large");
  EXPECT_EQ(errorOf([&] { SystemFiles().writeAtomically("/dev/null", ""); }).problem.english(),
            "cannot be written: it is not an ordinary file");
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
