// The library document reader against a second, independent reader, value by value.
#include "musicapp/document/document_reader.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <pthread.h>
#include <set>
#include <system_error>
#include <thread>

#include "musicapp/document/document_tracks.h"
#include "platform/files.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

constexpr std::size_t partSizes[] = {300, 1000, 5000, std::size_t{1} << 20};

TEST(DocumentReader, ReadsWhatASecondReaderReadsInAnyPartsAndThreads) {
  for (std::uint32_t seed = 0; seed < 250; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    // A few of them are large.
    const std::string document = randomDocument(seed, seed % 60 == 7 ? 4000 : 30);
    const Lines expected = expectedLines(document);
    ASSERT_EQ(firstDifference(expected, outcome(document, 1, onePart)), "");
    for (const std::size_t partSize : partSizes) {
      const unsigned threads = 1 + (seed + static_cast<unsigned>(partSize)) % 4;
      ASSERT_EQ(firstDifference(expected, outcome(document, threads, partSize)), "")
          << threads << " threads, parts of " << partSize;
    }
  }
}

TEST(DocumentReader, ReadsFilesOfEveryEncodingAsItReadsMemory) {
  const TemporaryFolder folder;
  // Documents of 100 kB and more, so that pages are given back while reading.
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const std::string bytes = randomDocument(seed, 300);
    const std::string path = folder.write("Library.xml", bytes);
    const LibraryDocument document = readLibraryDocument(SystemFiles().map(path), path);
    EXPECT_EQ(firstDifference(outcome(bytes, 1, onePart), described(document)), "")
        << "seed " << seed;
  }
}

TEST(DocumentReader, ReadsOnTheCallingThreadWhenTheSystemGivesNoOther) {
  const std::string document = randomDocument(1, 3000);
  pthread_attr_t usual, impossible;
  ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
  ASSERT_EQ(::pthread_attr_init(&impossible), 0);
  // No room in the address space for such a stack.
  ASSERT_EQ(::pthread_attr_setstacksize(&impossible, std::size_t{1} << 50), 0);
  ASSERT_EQ(::pthread_setattr_default_np(&impossible), 0);
  EXPECT_THROW(std::thread([] {}).join(), std::system_error);
  const Lines lines = outcome(document, 4, 1000);
  ::pthread_setattr_default_np(&usual);
  EXPECT_EQ(firstDifference(outcome(document, 1, onePart), lines), "");
}

TEST(DocumentReader, ReadsTheDocumentsInTheFolderThatTheEnvironmentNames) {
  const char* folder = std::getenv("KESTREL_TEST_LIBRARIES");
  if (!folder) GTEST_SKIP() << "KESTREL_TEST_LIBRARIES names no folder";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path().string());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string document{std::istreambuf_iterator<char>(file), {}};
    const Lines serial = outcome(document, 1, onePart);
    for (const std::size_t partSize : partSizes)
      EXPECT_EQ(firstDifference(serial, outcome(document, 4, partSize)), "");
    // What stands in folders of their own may be damaged.
    if (entry.path().parent_path() == folder) {
      EXPECT_EQ(firstDifference(expectedLines(document), serial), "");
    }
  }
}

TEST(DocumentReader, DerivesMissingPersistentIDsFromTheTrack) {
  const auto document = [](const std::string& tracks) {
    return "<plist><dict><key>Tracks</key><dict>" + tracks + "</dict></dict></plist>";
  };
  const auto ids = [](const std::string& text) {
    std::vector<std::uint64_t> all;
    readLibraryDocument(text, "test").items->forEach([&](const MediaItem& item) {
      all.push_back(item.persistentID);
    });
    return all;
  };
  const std::string location = "<key>Location</key><string>file:///a%26b</string>";
  const std::vector<std::uint64_t> first =
      ids(document("<key>1</key><dict>" + location + "</dict><key>2</key><dict>" + location +
                   "</dict><key>3</key><dict/><key>31</key><dict><key>Persistent ID</key>"
                   "<string>0000000000000000</string></dict>"));
  EXPECT_EQ(std::set(first.begin(), first.end()).size(), 4U);
  EXPECT_EQ(std::count(first.begin(), first.end(), 0U), 0);
  // The same track in another document, spelled otherwise.
  EXPECT_EQ(ids(document("<key>2</key><dict><key>Name</key><string>x</string><key>Location</key>"
                         "<string><![CDATA[file:///a%26b]]></string></dict>")),
            std::vector<std::uint64_t>{first[1]});
}

}  // namespace
}  // namespace kestrel::testing
