// The library document reader against a second, independent reader, value by value.
#include "musicapp/document/document_reader.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <system_error>
#include <thread>

#include "platform/files.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

constexpr std::size_t partSizes[] = {300, 1000, 5000, std::size_t{1} << 20};

#ifdef __SANITIZE_THREAD__  // which takes twenty times as long, and looks at threads, not at values
constexpr std::uint32_t seedsApart = 2;
#else
constexpr std::uint32_t seedsApart = 1;
#endif

class RandomDocuments : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(RandomDocuments, AreReadAsASecondReaderReadsThemInAnyPartsAndThreads) {
  const TemporaryFolder folder;
  for (std::uint32_t seed = GetParam(); seed < 250; seed += 3 * seedsApart) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const bool isLarge = seed % 10 == 7;
    const std::string document = randomDocument(seed, isLarge ? seed % 120 == 7 ? 4000 : 300 : 30);
    const Lines expected = expectedLines(document);
    ASSERT_EQ(firstDifference(expected, outcome(document, 1, onePart)), "");
    for (const std::size_t partSize : partSizes) {
      const unsigned threads = 1 + (seed + static_cast<unsigned>(partSize)) % 4;
      ASSERT_EQ(firstDifference(expected, outcome(document, threads, partSize)), "")
          << threads << " threads, parts of " << partSize;
    }
    if (document.size() < 100'000) continue;  // pages are given back while a large file is read
    const std::string path = folder.write("Library.xml", document);
    const LibraryDocument ofFile = readLibraryDocument(SystemFiles().map(path), path);
    EXPECT_EQ(firstDifference(expected, described(ofFile)), "");
  }
}

INSTANTIATE_TEST_SUITE_P(Many, RandomDocuments, ::testing::Range(0U, 3U));

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

}  // namespace
}  // namespace kestrel::testing
