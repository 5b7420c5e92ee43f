#include <array>
#include <gtest/gtest.h>
#include <set>

#include "platform/file_error.h"
#include "platform/log.h"
#include "platform/random.h"
#include "temporary_folder.h"

namespace kestrel {
namespace {

TEST(Random, IsBoundedEvenAndRepeatable) {
  SeededRandom one(42);
  SeededRandom two(42);
  std::array<int, 7> counts{};
  for (int i = 0; i < 70'000; ++i) {
    const std::uint32_t number = one.below(7);
    ASSERT_LT(number, 7U);
    EXPECT_EQ(number, two.below(7));
    ++counts[number];
  }
  for (const int count : counts) EXPECT_NEAR(count, 10'000, 500);
  EXPECT_EQ(one.below(0), 0U);
  EXPECT_EQ(one.below(1), 0U);
  std::set<std::uint32_t> seeds;
  for (int i = 0; i < 20; ++i) seeds.insert(SystemRandom().below(1U << 31U));
  EXPECT_GT(seeds.size(), 15U);
}

TEST(Logs, AFileThatGrowsIsTurnedOver) {
  const TemporaryFolder folder;
  const std::string path = folder / "state/kestrel.log";
  {
    FileLog log(path, 20, 2);
    MemoryLog memory;
    TeeLog both({&log, &memory});
    for (const char* line : {"one", "two", "a line that is longer than the file may be", "three",
                             "four", "a last line of 20+ bytes"})
      both.line(line);
    EXPECT_EQ(memory.lines().size(), 6U);
  }
  EXPECT_EQ(TemporaryFolder::read(path), "a last line of 20+ bytes\n");
  EXPECT_EQ(TemporaryFolder::read(path + ".1"), "three\nfour\n");
  EXPECT_EQ(TemporaryFolder::read(path + ".2"), "a line that is longer than the file may be\n");
  EXPECT_FALSE(std::filesystem::exists(path + ".3"));
  FileLog(path, 1000).line("next run");
  FileLog(path, 1000).detail("not for keeping");
  EXPECT_EQ(TemporaryFolder::read(path), "a last line of 20+ bytes\nnext run\n");
  FileLog(folder / "other.log", 5).line("one longer line");
  EXPECT_FALSE(std::filesystem::exists(folder / "other.log.1"));
  EXPECT_THROW(FileLog(folder.path()), FileError);
}

}  // namespace
}  // namespace kestrel
