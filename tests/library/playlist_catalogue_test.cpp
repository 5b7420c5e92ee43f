#include "library/playlist_catalogue.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "ui/uncalled_operations.h"

namespace kestrel {
namespace {

Playlist make(std::string name, PlaylistKind kind = PlaylistKind::regular,
              std::int64_t distinguished = 0, bool master = false) {
  Playlist playlist;
  playlist.name = std::move(name);
  playlist.persistentID = 0xAB12;
  playlist.kind = kind;
  playlist.distinguishedKind = distinguished;
  playlist.isMaster = master;
  playlist.items = {7, 8, 7};
  return playlist;
}

TEST(PlaylistCatalogue, GivesEachPlaylistItsCodeAndIcon) {
  const struct {
    Playlist playlist;
    std::string_view pnom, ptype, icon;
  } cases[] = {
      {make("Road"), "Road", "u", "u"},
      {make("Library", PlaylistKind::regular, 0, true), "Music", "0", "4"},
      {make("Bibliothek", PlaylistKind::regular, 65, true), "Music", "65", "4"},
      {make("Podcasts", PlaylistKind::smart, 10), "Podcasts", "10", "u"},
      {make("Trips", PlaylistKind::folder), "Trips", "f", "f"},
      {make("Genius", PlaylistKind::genius), "Genius", "g", "g"},
      {make("Recent", PlaylistKind::smart), "Recent", "s", "s"},
      {make("Library", PlaylistKind::smart, 0, true), "Music", "s", "s"},
  };
  for (const auto& c : cases) {
    const auto catalogue = playlistCatalogue({&c.playlist, 1});
    ASSERT_EQ(catalogue.size(), 1U);
    EXPECT_EQ(catalogue[0].pnom, c.pnom);
    EXPECT_EQ(catalogue[0].ptype, c.ptype) << c.playlist.name;
    EXPECT_EQ(catalogue[0].playlistIcon, c.icon) << c.playlist.name;
  }
}

TEST(PlaylistCatalogue, ReadsAsADictionary) {
  Playlist inner = make("Inner");
  const auto top = playlistCatalogue({&inner, 1}).front();
  EXPECT_TRUE(top.value("parentID").isAbsent() && top.value("hexParentID").isAbsent());
  inner.parentID = 255;
  const auto nested = playlistCatalogue({&inner, 1}).front();
  EXPECT_EQ(nested.value("hexpid"), Value("AB12"));
  EXPECT_EQ(nested.value("decpid"), Value("43794"));
  EXPECT_EQ(nested.value("hexParentID"), Value("FF"));
  EXPECT_EQ(nested.value("parentID"), Value("255"));
  EXPECT_EQ(nested.value("itemCount"), Value(3));
  EXPECT_TRUE(nested.value("Child").isAbsent());
}

TEST(PlaylistCatalogue, FindsADictionaryByItsPersistentID) {
  const auto dictionary = [](const char* pid, const char* name) {
    PropertyList list;
    list.set("Name", name);
    list.set("Playlist Persistent ID", pid);
    return list;
  };
  const PropertyList lists[] = {PropertyList(), dictionary("A", "one"), dictionary("B", "two"),
                                dictionary("B", "three")};
  EXPECT_EQ(TextSorter::returnPlaylistRowIn(lists, "B").textAt("Name"), "two");
  EXPECT_THROW((void)TextSorter::returnPlaylistRowIn(lists, "C"), std::out_of_range);
}

}  // namespace
}  // namespace kestrel
