#include "dupes/criteria_preview.h"

#include <gtest/gtest.h>
#include <random>

#include "tests/dupes/builders.h"

namespace kestrel::testing {
namespace {

// Against the search itself, with few letters, so that texts join to the same in many ways.
TEST(CriteriaPreview, CountsTheGroupsThatASearchMakes) {
  std::mt19937 random(3);
  const char* pieces[] = {"a", "B", "b", "ab", "\xCE\xA3", "\xCF\x83", "\xCF\x82", "", "\xC3\x89"};
  const auto text = [&] {
    std::string made;
    for (auto left = random() % 3; left > 0; --left) made += pieces[random() % std::size(pieces)];
    return made;
  };
  std::vector<TrackBuilder> made;
  for (int i = 0; i < 400; ++i)
    made.push_back(track(text())
                       .by(text())
                       .album(text())
                       .number(random() % 3)
                       .lasts(static_cast<std::int64_t>(random() % 9) * 900));
  const World world(made);
  std::vector<const TrackRecord*> tracks = world.records();
  tracks.push_back(tracks.front());
  const std::vector<std::vector<std::string>> lists = {
      {"tName"},      {"tName", "tArtist"},           {"tArtist", "tName"}, {"tAlbum", "tTrackNum"},
      {"realTime"},   {"tName", "tArtist", "tAlbum"}, {"nothing"},          {"tName", "Filename"},
      {"realAddDate"}};
  const LooseSet looser = bitOf(Loose::accents) | bitOf(Loose::punctuation);
  for (const bool caseSensitive : {false, true})
    for (const auto& [tolerance, loose] :
         std::vector<std::pair<std::int64_t, LooseSet>>{{0, 0},
                                                        {1, 0},
                                                        {3, 0},
                                                        {0, looser},
                                                        {1, looser},
                                                        {0, looser | bitOf(Loose::emptyValues)}}) {
      const GroupingOptions options{caseSensitive, tolerance, loose};
      const auto counts =
          previewCriteria(*world.store(), tracks, lists, options, [] { return false; });
      for (std::size_t i = 0; i < lists.size(); ++i) {
        Grouping grouping =
            groupTracks(*world.store(), tracks, lists[i], options, [] { return false; });
        if (grouping.members.empty()) grouping.groups = 0;
        EXPECT_EQ(counts[i], grouping.groups) << lists[i].front() << i << tolerance;
      }
    }
  const auto none = previewCriteria(*world.store(), tracks, lists, {}, [] { return true; });
  EXPECT_EQ(none, std::vector<std::optional<std::size_t>>(lists.size()));
}

}  // namespace
}  // namespace kestrel::testing
