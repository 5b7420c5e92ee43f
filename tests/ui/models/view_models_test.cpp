#include "ui/models/view_models.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>

#include "tests/ui/models/marked_text.h"
#include "ui/models/alert.h"
#include "ui/models/array_controller.h"
#include "ui/models/outline_model.h"

namespace kestrel {
namespace {

using testing::marked;

TEST(Observers, MayComeAndGoDuringANotification) {
  Observers observers;
  std::string story;
  std::optional<Observers::Subscription> first;
  std::optional<Observers::Subscription> second;
  std::optional<Observers::Subscription> late;
  first = observers.add([&] {
    story += "first ";
    first.reset();
    second.reset();
    late = observers.add([&] { story += "late "; });
  });
  second = observers.add([&] { story += "second "; });
  const auto third = observers.add([&] { story += "third "; });
  observers.notify();
  EXPECT_EQ(story, "first third ");
  observers.notify();
  EXPECT_EQ(story, "first third third late ");
}

TEST(Observers, MayDestroyTheModelAndOutliveIt) {
  auto bar = std::make_unique<ProgressBar>();
  int calls = 0;
  const auto destroyer = bar->observers.add([&] { bar.reset(); });
  const auto other = bar->observers.add([&] { ++calls; });
  bar->setValue(1);
  EXPECT_FALSE(bar);
}

TEST(Alert, ButtonsStandInTheOrderThatCallersCountOn) {
  const auto made = [text = Message::verbatim](std::optional<Message> b, std::optional<Message> c) {
    return TextSorter::alertWithMessage(text("M"), text("A"), std::move(b), std::move(c),
                                        text("I"));
  };
  const Message a = Message::verbatim("A"), b = Message::verbatim("B"), c = Message::verbatim("C");
  EXPECT_EQ(made(b, c).buttons, (std::vector{a, c, b}));
  EXPECT_EQ(made(b, {}).buttons, (std::vector{a, b}));
}

TEST(StyledText, PropertiesOfPartsAddUp) {
  const auto text = [](std::string words) { return StyledText{std::move(words), {}}; };
  EXPECT_EQ(marked(text("one two").setPoints(12).makeBold(4, 3)), "[12]one [12]<two>");
  EXPECT_EQ(marked(text("abcdef").makeBold(1, 2).makeBold(3, 2)), "a<bcde>f");
  EXPECT_EQ(marked(text("abcdef").makeBold(0, 4).makeBold(2, 4)), "<abcdef>");
  EXPECT_EQ(marked(text("ab").makeBold(1, 99)), "a<b>");
  EXPECT_EQ(marked(text("ab").centre()), "|ab");
  EXPECT_TRUE(text("ab").makeBold(2, 1).makeBold(0, 0).runs.empty());
  EXPECT_TRUE(text("").setPoints(11).runs.empty());
  // A character beyond U+FFFF has two units, and is whole on the side where its second one is.
  EXPECT_EQ(marked(text("a\U0001F3B5é!").makeBold(3, 1)), "a\U0001F3B5<é>!");
  EXPECT_EQ(marked(text("a\U0001F3B5é!").makeBold(2, 1)), "a<\U0001F3B5>é!");
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

struct Row {
  std::string artist;
  int year = 0;
  int number = 0;  ///< order of adding
};

SortKey<Row> byArtist(bool ascending) {
  return plainSortKey<Row>("artist", ascending, [](const Row& row) { return row.artist; });
}
SortKey<Row> byYear(bool ascending) {
  return plainSortKey<Row>("year", ascending, [](const Row& row) { return row.year; });
}

template <typename Rows>
std::string numbers(const Rows& rows) {
  std::string numbers;
  for (const Row& row : rows) numbers += std::to_string(row.number);
  return numbers;
}
std::string order(const ArrayController<Row>& table) { return numbers(table.arrangedRows()); }

TEST(ArrayController, SortsStablyByAllKeysInTheirDirections) {
  std::mt19937 random(1);
  using Keys = std::vector<std::pair<bool, bool>>;  // by artist or by year; ascending
  for (const Keys& keys : {Keys{},
                           {{true, true}},
                           {{true, false}},
                           {{true, true}, {false, false}},
                           {{false, true}, {true, false}}})
    for (const int size : {0, 6, 5000}) {
      ArrayController<Row> table;
      std::vector<SortKey<Row>> order;
      for (const auto& [artist, up] : keys) order.push_back(artist ? byArtist(up) : byYear(up));
      table.setSortOrder(order);
      std::vector<Row> rows;
      for (int i = 0; i < size; ++i)
        rows.push_back({random() % 2 ? "a" : "b", static_cast<int>(random() % 10), i});
      const std::size_t half = rows.size() / 2;
      table.add(std::span(rows).first(half));
      table.add(std::span(rows).subspan(half));
      EXPECT_EQ(numbers(table.content()), numbers(rows));
      const std::vector<Row> added = rows;
      std::ranges::stable_sort(rows, [&](const Row& a, const Row& b) {
        for (const auto& [artist, up] : keys) {
          const int difference = artist ? a.artist.compare(b.artist) : a.year - b.year;
          if (difference != 0) return (difference < 0) == up;
        }
        return false;
      });
      EXPECT_EQ(numbers(table.arrangedRows()), numbers(rows));
      table.setSortOrder({});
      EXPECT_EQ(numbers(table.arrangedRows()), numbers(added));
    }
}

TEST(ArrayController, RowsChangedInPlaceMoveWhenArrangedAgain) {
  ArrayController<Row> table;
  int notified = 0;
  const auto subscription = table.observers.add([&] { ++notified; });
  table.setSortOrder({byYear(true)});
  table.add({{"", 1, 0}, {"", 2, 1}});
  table.arrangedRows()[0].year = 3;
  EXPECT_EQ(order(table), "01");
  EXPECT_EQ(notified, 2);
  table.rearrange();
  EXPECT_EQ(order(table), "10");
  table.removeAll();
  EXPECT_EQ(table.size(), 0U);
  EXPECT_TRUE(std::as_const(table).arrangedRows().empty());
  EXPECT_EQ(notified, 4);
}

}  // namespace
}  // namespace kestrel
