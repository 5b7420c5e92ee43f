#include "ui/playlist_menus.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "tests/cleanup/playlist_builders.h"
#include "ui/launch.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
const PlaylistBuilder master = playlist("Library", 1, {}).master();

/// A window with playlists, and a controller that has not filled it yet.
struct MenuLibrary {
  explicit MenuLibrary(const std::vector<PlaylistBuilder>& lists) { become(lists); }

  void become(const std::vector<PlaylistBuilder>& lists) {
    test.library = std::make_shared<PlaylistLibrary>(playlists(lists));
    test.process.libraryOpened = false;
    TextSorter::refreshPlaylists();
  }
  void choose(std::string pid) { test.preferences.set("selectedPlaylistPid", std::move(pid)); }
  [[nodiscard]] std::string chosen() const { return test.preferences.text("selectedPlaylistPid"); }
  PlaylistWindowReferences& window() { return test.process.state<PlaylistWindowReferences>(); }
  PlaylistPopup& popup() { return window().mainPlaylistPopup; }
  PlaylistPopup& target() { return window().selectionToHookPlaylistPopup; }

  TestProcess test;
  KSPlaylistController controller;
};

/// "*Music M4/16x16 | - | Party f/17x17": the chosen one starred, then key and icon.
std::string drawn(const PlaylistPopup& popup) {
  std::string text;
  for (std::size_t i = 0; i < popup.items().size(); ++i) {
    const auto& item = popup.items()[i];
    text += text.empty() ? "" : " | ";
    text += popup.selectedIndex() == i ? "*" : "";
    text += item.isSeparator ? "-"
                             : item.title + " " + item.keyEquivalent + item.icon.name + "/" +
                                   std::to_string(std::lround(item.icon.width)) + "x" +
                                   std::to_string(std::lround(item.icon.height));
  }
  return text;
}

void expectAligned(const KSPlaylistController& controller, const PlaylistPopup& popup) {
  ASSERT_EQ(controller.playlistsArray().size(), popup.items().size());
  for (std::size_t i = 0; i < popup.items().size(); ++i)
    EXPECT_EQ(controller.playlistsArray()[i], popup.items()[i].representedObject) << i;
}

const std::vector<PlaylistBuilder> tree = {
    master,
    playlist("mix", 2, {}),
    playlist("new", 3, {}).kind(PlaylistKind::smart),
    folder("Party", 4),
    folder("Inner", 5).in(4),
    playlist("deep", 6, {}).in(5),
    playlist("loud", 7, {}).in(4),
    folder("Empty", 8),
};
const std::string treeMenu =
    "Music M4/16x16 | - | Party f/17x17 | Inner f/20x17 | deep u/30x17 | loud u/20x17 | "
    "Empty f/17x17 | new s/17x17 | mix u/17x17";

TEST(MainPopup, OffersTheLibraryThenTheTree) {
  MenuLibrary shown(tree);
  shown.choose("");
  shown.controller.fillPlaylistPopup();
  EXPECT_EQ(drawn(shown.popup()), "*" + treeMenu);
  EXPECT_EQ(shown.chosen(), "1") << "the library is chosen, and remembered";
  expectAligned(shown.controller, shown.popup());

  EXPECT_TRUE(shown.window().playlistsOutlineView.content().empty());
  shown.test.mainQueue.drain();
  const auto& outline = shown.window().playlistsOutlineView.content();
  ASSERT_EQ(outline.size(), 4U);
  EXPECT_EQ(outline[0].Child->at(0).Child->at(0).record->pnom, "deep");

  shown.popup().selectItem(3);
  EXPECT_EQ(shown.controller.getPIDFromList(), "5");
  EXPECT_EQ(shown.controller.returnSelectedPopupItem().pnom, "Inner");
  shown.controller.fillPlaylistPopup();
  EXPECT_EQ(drawn(shown.popup()), "*" + treeMenu) << "nothing twice; choosing is not storing";
  expectAligned(shown.controller, shown.popup());
  EXPECT_EQ(shown.controller.userPlaylistNames(),
            (std::vector<std::string>{"mix", "deep", "loud"}));
}

TEST(MainPopup, RestoresWhatWasChosen) {
  struct Case {
    std::optional<std::string> stored;
    std::vector<PlaylistBuilder> playlists;
    std::optional<std::size_t> selected;
    std::string storedThen;
  };
  const std::vector<PlaylistBuilder> noMaster = {playlist("mix", 2, {}), playlist("more", 3, {})};
  const std::vector<Case> cases = {
      {"6", tree, 4, "6"},
      {"99", tree, 2, "99"},        // gone, but it may come back
      {std::nullopt, tree, 2, ""},  // never set is not the same as none
      {"99", {master}, 0, "99"},    // there is no item 2
      {"", noMaster, 1, "2"},       // below the separator that has nothing above it
      {"", {tree.begin() + 1, tree.end()}, 1, "4"},
      {"", {}, std::nullopt, ""},
  };
  for (const Case& c : cases) {
    MenuLibrary shown(c.playlists);
    if (c.stored) shown.choose(*c.stored);
    shown.controller.fillPlaylistPopup();
    const std::string what = c.stored.value_or("absent") + " in " + drawn(shown.popup());
    EXPECT_EQ(shown.popup().selectedIndex(), c.selected) << what;
    EXPECT_EQ(shown.chosen(), c.storedThen) << what;
    EXPECT_EQ(shown.test.preferences.contains("selectedPlaylistPid"), c.stored.has_value());
    if (!c.selected) {
      EXPECT_THROW((void)shown.controller.getPIDFromList(), std::out_of_range);
    }
  }
}

TEST(BothPopups, SizeIconsByKindAndLevel) {
  MenuLibrary shown({});
  PlaylistRecord record;
  record.pnom = "Music";
  record.playlistIcon = "u";
  // Distinguished lists of code 4 have the smaller icon of the library; folders add what they hold.
  record.ptype = "4";
  const OutlineRow four{std::make_shared<const PlaylistRecord>(record), std::nullopt};
  record.ptype = "f";
  const auto folder = std::make_shared<const PlaylistRecord>(record);
  const OutlineRow full{folder, std::vector<OutlineRow>{four, {folder, std::vector<OutlineRow>()}}};
  shown.controller.fillUpThePopup(std::vector<OutlineRow>{full}, 1);
  EXPECT_EQ(drawn(shown.popup()), "*Music u/17x17 | Music u/20x16 | Music u/20x17");
  shown.controller.insertMenuSeparator();
  shown.controller.insertMenuSeparator();
  EXPECT_EQ(shown.controller.playlistsArray().size(), 4U) << "two are never adjacent";
  expectAligned(shown.controller, shown.popup());
  shown.controller.fillSelectPopup(std::vector<OutlineRow>{full}, 1);
  EXPECT_EQ(drawn(shown.target()), "*Music u/17x17 | Music u/20x16")
      << "an empty folder is no destination";
}

TEST(MainPopup, RefreshShowsWhatGoesOn) {
  MenuLibrary shown({master});
  shown.choose("");
  ManualQueue background;
  shown.test.process.with.backgroundQueue = &background;
  PlaylistWindowReferences& window = shown.window();
  std::string seen;
  const auto note = window.progressWheelStatusMain.observers.add([&] {
    seen += "[" + window.progressWheelStatusMain.text() + "]";
    seen += window.mainFilterStatus.isHidden() ? " status hidden" : " status shown";
    seen += window.mainProgressWheel.isHidden() ? ", no wheel; " : ", wheel; ";
  });
  const auto menu = shown.popup().observers.add([&] { seen += drawn(shown.popup()) + "; "; });
  shown.controller.refreshPopup();
  EXPECT_EQ(background.waiting(), 0U) << "the main queue starts it";
  shown.test.mainQueue.drain();
  shown.become({master, playlist("mix", 2, {})});
  EXPECT_EQ(seen, "");
  background.drain();
  shown.test.mainQueue.drain();
  EXPECT_EQ(seen,
            "[Refreshing playlists...] status hidden, wheel; "
            "*Music M4/16x16 | - | mix u/17x17; [] status hidden, no wheel; ");
  // One that breaks off leaves the menu as it is, and ends its display as well.
  const auto exhausted = std::make_shared<PlaylistLibrary>(std::vector<Playlist>{});
  exhausted->memoryIsShort = true;
  shown.test.library = exhausted;
  shown.test.process.libraryOpened = false;
  shown.controller.actionPlaylistPopup();
  background.drain();
  shown.test.mainQueue.drain();
  EXPECT_EQ(drawn(shown.popup()), "*Music M4/16x16 | - | mix u/17x17");
  EXPECT_FALSE(window.mainFilterStatus.isHidden());
  EXPECT_FALSE(window.mainProgressWheel.isAnimating() ||
               window.mainProgressWheel.isIndeterminate());
}

TEST(TargetPopup, OffersOrdinaryPlaylistsFlat) {
  MenuLibrary shown(tree);
  shown.test.preferences.set("copyToPlaylist", std::vector<std::string>{"", "second"});
  shown.controller.fillPlaylistPopup();
  shown.controller.buildUserPopup();
  EXPECT_EQ(drawn(shown.target()), "*mix u/17x17 | deep u/17x17 | loud u/17x17");
  EXPECT_EQ(shown.test.preferences.textArray("copyToPlaylist"),
            (std::vector<std::string>{"2", "second"}));
  shown.target().selectItem(1);
  EXPECT_EQ(shown.controller.pidFromSelectedPopup(), "6");
  shown.controller.buildUserPopup();
  EXPECT_EQ(shown.target().items().size(), 6U) << "emptying the menu is the caller's business";
  EXPECT_EQ(shown.controller.selPlaylistsArray().size(), 3U);
}

TEST(TargetPopup, RestoresWhatWasChosen) {
  struct Case {
    std::vector<std::string> stored;
    std::size_t playlists;
    std::optional<std::size_t> selected;
    std::vector<std::string> storedThen;
  };
  const std::vector<Case> cases = {
      {{"13", "x"}, 4, 2, {"13", "x"}},
      {{"14", "x"}, 4, 0, {"11", "x"}},  // the last one is never compared
      {{"99", "x"}, 1, 0, {"11", "x"}},  // nor is the only one
      {{}, 4, 0, {"11", ""}},
      {{"12", "x"}, 0, std::nullopt, {"12", "x"}},  // nothing to choose, nothing to store
  };
  for (const Case& c : cases) {
    std::vector<PlaylistBuilder> lists = {master};
    for (std::size_t i = 0; i < c.playlists; ++i) lists.push_back(playlist("p", 11 + i, {}));
    MenuLibrary shown(lists);
    shown.test.preferences.set("copyToPlaylist", c.stored);
    shown.controller.fillPlaylistPopup();
    shown.controller.buildUserPopup();
    EXPECT_EQ(shown.target().selectedIndex(), c.selected);
    EXPECT_EQ(shown.test.preferences.textArray("copyToPlaylist"), c.storedThen);
  }
}

PlaylistRecord record(const std::string& name, const std::string& type, const std::string& id,
                      const std::string& parent = {}) {
  PlaylistRecord made;
  made.pnom = name;
  made.ptype = type;
  made.decpid = id;
  if (!parent.empty()) made.parentID = made.hexParentID = parent;
  return made;
}

/// "name" of a playlist, "name{}" of one with no children, "name[child child]".
std::string drawn(const std::vector<OutlineRow>& rows) {
  std::string text;
  for (const OutlineRow& row : rows) {
    text += (text.empty() ? "" : " ") + row.record->pnom;
    if (row.Child) text += row.Child->empty() ? "{}" : "[" + drawn(*row.Child) + "]";
  }
  return text;
}

TEST(PlaylistOutline, ShowsFoldersFirstAndWhatTheyHold) {
  const std::vector<PlaylistRecord> catalogue = {
      record("Library", "0", "1"),       record("Podcasts", "10", "2"),
      record("user", "u", "3"),          record("smart", "s", "4"),
      record("genius", "g", "5"),        record("Folder", "f", "6"),
      record("Empty", "f", "7"),         record("in user", "u", "8", "6"),
      record("in smart", "s", "9", "6"), record("in genius", "g", "10", "6"),
      record("Inner", "f", "11", "6"),   record("deep", "u", "12", "11"),
      record("lost", "u", "13", "99"),   record("in Inner", "f", "14", "11"),
  };
  KSPlaylistController controller;
  controller.buildDatasource(catalogue);
  EXPECT_EQ(drawn(controller.thePlaylistDataSource()),
            "Folder[in genius{} Inner[in Inner{} deep{}] in smart{} in user{}] Empty{} genius "
            "smart user");
  EXPECT_EQ(drawn(controller.getFolders("11")), "in Inner{} deep{}");

  controller.buildDatasource(std::vector<PlaylistRecord>{record("only", "u", "1")});
  EXPECT_EQ(drawn(controller.thePlaylistDataSource()), "only") << "nothing of before is left";
}

TEST(PlaylistOutline, EndsInADamagedLibrary) {
  // Folders that hold themselves or each other, and a chain deeper than any stack likes.
  std::vector<PlaylistRecord> catalogue = {record("A", "f", "1"), record("B", "f", "2", "1"),
                                           record("C", "f", "1", "2"), record("D", "f", "3", "3")};
  KSPlaylistController controller;
  controller.buildDatasource(catalogue);
  EXPECT_EQ(drawn(controller.thePlaylistDataSource()), "A[B[C{}]]");

  catalogue = {record("F", "f", "1")};
  for (int i = 2; i < 200'000; ++i)
    catalogue.push_back(record("F", "f", std::to_string(i), std::to_string(i - 1)));
  controller.buildDatasource(catalogue);
  EXPECT_EQ(controller.thePlaylistDataSource().size(), 1U);
}

}  // namespace
}  // namespace kestrel
