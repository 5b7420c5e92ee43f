#include "cleanup/repeats.h"

#include <gtest/gtest.h>
#include <random>
#include <unordered_map>

#include "foundation/number_table.h"
#include "tests/cleanup/playlist_builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Numbers = std::vector<std::uint64_t>;

TEST(IdMap, HoldsWhatWasInsertedSinceTheLastReset) {
  std::mt19937 random(7);
  IdMap map;
  EXPECT_EQ(map.find(0), nullptr);
  for (const std::size_t inserts : {3000U, 5U, 0U, 4000U}) {
    if (inserts != 3000U) map.reset(inserts / 3);  // the first fills one that was never reset
    std::unordered_map<std::uint64_t, std::uint32_t> expected;
    for (std::uint32_t i = 0; i < inserts; ++i) {
      const std::uint64_t id = random() % 2 ? random() % 2000 : std::uint64_t{random()} << 32;
      EXPECT_EQ(map.insert(id, i), expected.try_emplace(id, i).second);
    }
    EXPECT_EQ(map.size(), expected.size());
    for (const auto& [id, number] : expected) {
      ASSERT_NE(map.find(id), nullptr);
      EXPECT_EQ(*map.find(id), number);
    }
    for (std::uint64_t id = 2000; id < 2100; ++id) EXPECT_EQ(map.find(id), nullptr);
  }
}

TEST(Repeats, DeletingTheirPositionsLeavesFirstOccurrences) {
  using RemDupesController::figureIndexesToDelete;
  std::mt19937 random(1);
  for (int round = 0; round < 50; ++round) {
    Numbers items(random() % 200);
    for (std::uint64_t& item : items) item = random() % 60;
    Numbers left = items;
    const Numbers positions = figureIndexesToDelete(items);
    for (auto position = positions.rbegin(); position != positions.rend(); ++position)
      left.erase(left.begin() + static_cast<std::ptrdiff_t>(*position) - 1);
    Numbers firsts;
    for (const std::uint64_t item : items)
      if (std::find(firsts.begin(), firsts.end(), item) == firsts.end()) firsts.push_back(item);
    EXPECT_EQ(left, firsts);
  }
}

TEST(Repeats, TheOutlineShowsAffectedPlaylistsUnderTopLevelFolders) {
  const Numbers repeats = {5, 5}, clean = {5, 6};
  const struct {
    const char* description;
    std::vector<PlaylistBuilder> library;
    std::string outline, hidden;
    std::string whole;  ///< with all folders above
  } cases[] = {
      {"folders come first, clean playlists and empty folders stay out",
       {playlist("a", 1, repeats), folder("F", 2), playlist("b", 3, repeats).in(2),
        playlist("c", 4, clean).in(2), folder("G", 5), playlist("d", 6, clean).in(5),
        playlist("e", 7, repeats)},
       "F(b) a e",
       "",
       "F(b) a e"},
      {"only the user's own regular playlists are considered",
       {playlist("master", 1, repeats).master(), playlist("music", 2, repeats).distinguished(4),
        playlist("smart", 3, repeats).kind(PlaylistKind::smart),
        playlist("genius", 4, repeats).kind(PlaylistKind::genius), folder("F", 5, repeats),
        folder("built in", 6).distinguished(9), playlist("a", 7, repeats).in(6)},
       "",
       "a",
       "built in(a)"},
      {"no folder stands inside a folder",
       {folder("F", 1), folder("G", 2).in(1), playlist("deep", 3, repeats).in(2),
        playlist("a", 4, repeats).in(1)},
       "F(a)",
       "deep",
       "F(a G(deep))"},
      {"a parent that is no folder, or is not there",
       {playlist("p", 1, clean), playlist("a", 2, repeats).in(1), playlist("b", 3, repeats).in(99)},
       "",
       "a b",
       "a b"},
      {"folders that share an ID, a playlist that contains itself",
       {folder("F", 1), folder("G", 1), playlist("a", 2, repeats).in(1),
        playlist("b", 3, repeats).in(3)},
       "F(a) G()",
       "b",
       "F(a) b"},
      {"folders that contain each other",
       {folder("F", 1).in(2), folder("G", 2).in(1), playlist("a", 3, repeats).in(1)},
       "",
       "a",
       "a"},
      {"nothing", {}, "", "", ""},
  };
  for (const auto& c : cases) {
    const RepeatScan scan = findRepeats(playlists(c.library));
    EXPECT_EQ(outlineText(*scan.outline), c.outline) << c.description;
    EXPECT_EQ(hiddenNames(scan), c.hidden) << c.description;
    SharedRecords<RemDupesRecord> folders;
    const Playlists all = playlists(c.library);
    for (std::size_t i = 0; i < all->size(); ++i)
      if ((*all)[i].kind == PlaylistKind::folder)
        folders.push_back(std::make_shared<const RemDupesRecord>(sharedPlaylist(all, i)));
    EXPECT_EQ(outlineText(wholeOutline(scan.affected, folders)), c.whole) << c.description;
  }
}

TEST(Repeats, RecordsReadAsDictionaries) {
  const auto library = playlists({folder("F", 0xABC), playlist("in", 255, {10, 11, 10}).in(0xABC),
                                  playlist("top", std::uint64_t{1} << 63, {7, 7})});
  const RepeatScan scan = findRepeats(library);
  const auto text = [](const RemDupesRecord& record) {
    std::string all;
    record.forEachKey([&](std::string_view key, const Value& value) {
      all.append(key).append("=").append(value.text()).append(" ");
    });
    for (const std::string& item : record.items()) all += item + ",";
    for (const std::uint64_t position : record.deleteIndexes()) all += std::to_string(position);
    return all;
  };
  EXPECT_EQ(text(*scan.justFolders.at(0)),
            "ptype=f playlistname=F hexpid=ABC decpid=2748 hexParentID=0 ");
  EXPECT_EQ(text(*scan.affected.at(0)),
            "ptype=u playlistname=in hexpid=FF decpid=255 decParentID=2748 hexParentID=ABC "
            "A,B,A,3");
  EXPECT_EQ(text(*scan.affected.at(1)),
            "ptype=u playlistname=top hexpid=8000000000000000 decpid=9223372036854775808 "
            "hexParentID=0 7,7,2");
  EXPECT_EQ(&scan.affected[0]->playlist(), &(*library)[1]);  // shared, not copied
}

}  // namespace
}  // namespace kestrel
