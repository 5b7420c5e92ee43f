#include <gtest/gtest.h>

#include "ui/playlist_menus.h"

namespace kestrel {
namespace {

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
    text += (text.empty() ? "" : " ") + row.record.pnom;
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
