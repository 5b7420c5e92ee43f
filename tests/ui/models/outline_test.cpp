#include <gtest/gtest.h>

#include "ui/models/array_controller.h"
#include "ui/models/outline_model.h"
#include "ui/models/styled_text.h"

namespace kestrel {
namespace {

/// "<b>" and "</b>" around bold runs, "[12]" in front of runs with a size, "|" around centred ones.
std::string marked(const StyledText& styled) {
  std::string out;
  for (const StyledRun& run : styled.runs) {
    const std::size_t begin = byteOffset(styled.text, run.start);
    const std::size_t end = byteOffset(styled.text, run.start + run.length);
    const std::string part = styled.text.substr(begin, end - begin);
    if (run.style.points) out += "[" + std::to_string(run.style.points) + "]";
    out += run.style.bold ? "<b>" + part + "</b>" : run.style.centred ? "|" + part + "|" : part;
  }
  return out;
}

TEST(StyledText, PropertiesOfPartsAddUp) {
  const auto text = [](std::string words) { return StyledText{std::move(words), {}}; };
  EXPECT_EQ(marked(text("one two").setPoints(12).makeBold(4, 3)), "[12]one [12]<b>two</b>");
  EXPECT_EQ(marked(text("abcdef").makeBold(1, 2).makeBold(3, 2)), "a<b>bcde</b>f");
  EXPECT_EQ(marked(text("abcdef").makeBold(0, 4).makeBold(2, 4)), "<b>abcdef</b>");
  EXPECT_EQ(marked(text("ab").makeBold(1, 99)), "a<b>b</b>");
  EXPECT_EQ(marked(text("ab").centre()), "|ab|");
  EXPECT_TRUE(text("ab").makeBold(2, 1).makeBold(0, 0).runs.empty());
  EXPECT_TRUE(text("").setPoints(11).runs.empty());
  // A character beyond U+FFFF has two units, and bold that begins after it does not split it.
  EXPECT_EQ(marked(text("a\U0001F3B5é!").makeBold(3, 1)), "a\U0001F3B5<b>é</b>!");
}

TEST(StyledText, PositionsLeadToBytes) {
  const std::string_view text = "é\U0001F3B5x";  // 2, 4 and 1 bytes; 1, 2 and 1 units
  const std::vector<std::size_t> bytes = {0, 2, 2, 6, 7, 7};
  for (std::size_t unit = 0; unit < bytes.size(); ++unit)
    EXPECT_EQ(byteOffset(text, unit), bytes[unit]) << unit;
}

using Outline = OutlineModel<std::string>;

Outline::Node node(std::string name, std::vector<Outline::Node> children = {}) {
  return {std::make_shared<const std::string>(std::move(name)), std::move(children)};
}

TEST(OutlineModel, SelectionFollowsPathsUntilTheContentChanges) {
  Outline outline;
  int changes = 0;
  const auto subscription = outline.observers.add([&] { ++changes; });
  const auto content = std::make_shared<const std::vector<Outline::Node>>(
      std::vector<Outline::Node>{node("a", {node("b"), node("c")}), node("d")});
  outline.setContent(content);
  outline.expandAll();
  const std::uint64_t version = outline.contentVersion();
  outline.setSelection({{1}, {0, 1}, {0, 2}, {1, 0}, {}});
  EXPECT_EQ(outline.selection(), (std::vector<IndexPath>{{1}, {0, 1}}));
  std::string names;
  for (const auto& record : outline.selectedRecords()) names += *record;
  EXPECT_EQ(names, "dc");
  EXPECT_EQ(outline.contentVersion(), version);
  EXPECT_TRUE(outline.isExpanded());
  EXPECT_EQ(changes, 3);
  outline.setContent(content);
  EXPECT_TRUE(outline.selection().empty());
  EXPECT_FALSE(outline.isExpanded());
  EXPECT_NE(outline.contentVersion(), version);
  outline.setContent(nullptr);
  EXPECT_TRUE(outline.content().empty());
}

TEST(ArrayController, SelectedRowsStaySelectedWhereverTheyAreSorted) {
  ArrayController<int> table;
  int told = 0;
  const auto subscription = table.selectionObservers.add([&] { ++told; });
  using Positions = std::vector<std::size_t>;
  table.add(std::vector{30, 10, 20});
  table.setSelection(Positions{2, 0, 2, 7});
  EXPECT_EQ(table.selection(), (Positions{0, 2}));
  EXPECT_EQ(table.selectedCount(), 2U);
  table.setSortOrder({plainSortKey<int>("value", true, [](int row) { return row; })});
  EXPECT_EQ(table.selection(), (Positions{1, 2}));  // 20 and 30
  table.add(std::vector{5});
  EXPECT_EQ(table.selection(), Positions());
  table.setSelection(Positions{3});
  EXPECT_EQ(table.selection(), Positions{3});
  EXPECT_EQ(told, 2);
  table.removeAll();
  EXPECT_EQ(table.selectedCount(), 0U);
}

}  // namespace
}  // namespace kestrel
