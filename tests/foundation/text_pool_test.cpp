#include "foundation/text_pool.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kestrel {
namespace {

TEST(TextPool, KeepsEveryTextWhereItIs) {
  TextPool pool;
  std::vector<std::pair<Text, std::string>> all;
  for (std::size_t i = 0; i < 60'000; ++i) {
    // Some beyond a block's size, all shared ones with repeats near and far.
    std::string text = std::to_string(i % 7000) + std::string(i % 5000 ? i % 90 : i * 40, 'x');
    all.emplace_back(i % 2 ? pool.share(text) : pool.add(text), text);
  }
  pool.doneSharing();
  const TextPool moved = std::move(pool);
  for (const auto& [text, expected] : all) ASSERT_EQ(text.view(), expected);
  EXPECT_GT(moved.memory(), 10'000'000U);
}

TEST(TextPool, SharesRepeatsAndTellsNullFromEmpty) {
  TextPool pool;
  const Text first = pool.share("album");
  EXPECT_TRUE(pool.share(std::string("album")).sameAs(first));
  EXPECT_FALSE(pool.add("album").sameAs(first));
  EXPECT_EQ(pool.add("album"), first);

  const Text empty = pool.share("");
  EXPECT_FALSE(empty.isNull());
  EXPECT_TRUE(Text().isNull());
  EXPECT_NE(empty, Text());
  EXPECT_EQ(Text(), Text());
  // Texts that end in zero bytes are not those without.
  EXPECT_NE(pool.share("a"), pool.share(std::string("a\0", 2)));

  // A million repeats of few texts take no room of their own.
  const std::size_t before = pool.memory();
  for (int i = 0; i < 1'000'000; ++i) pool.share(i % 2 ? "one artist" : "another artist");
  EXPECT_EQ(pool.memory(), before);
}

}  // namespace
}  // namespace kestrel
