#include "library/unsearched.h"

#include <gtest/gtest.h>

#include "tests/musicapp/playlist_builders.h"

namespace kestrel::testing {
namespace {

TEST(UnsearchedSongs, AreThoseOfNoKnownTypeAndThoseThatTheListOfAllLacks) {
  MediaItems items;
  std::vector<MediaItem> block(6);
  for (std::size_t i = 0; i < block.size(); ++i) {
    block[i].persistentID = i + 1;
    block[i].locationType = i == 1 ? LocationType::unknown : LocationType::file;
  }
  block[4].mediaKind = MediaKind::movie;
  items.append(block);
  const std::string type =
      "1 song is not searched: the library gives no \"Track Type\" for it, so "
      "that it is not known whether it is a file";
  using IDs = std::vector<std::uint64_t>;
  const std::pair<IDs, std::string> cases[] = {
      {{1, 2, 3, 4, 5, 6}, ""},
      {{6, 4, 3, 1}, ""},
      {{1, 2, 3, 6, 99}, "1 song is not searched: the library's list of all songs is without it"},
      {{}, "4 songs are not searched: the library's list of all songs is without them"}};
  for (const auto& [listed, expected] : cases) {
    const auto lists = playlists({playlist("x", 10, {1}), playlist("All", 11, listed).master()});
    const auto found = english(unsearchedSongs(items, *lists).sentences());
    ASSERT_EQ(found.size(), expected.empty() ? 1U : 2U);
    EXPECT_EQ(found.front(), type);
    if (!expected.empty()) {
      EXPECT_EQ(found.back(), expected);
    }
  }
  EXPECT_EQ(unsearchedSongs(items, {}).unlisted, 0) << "without such a list none lacks";
}

}  // namespace
}  // namespace kestrel::testing
