#include "ui/uncalled_operations.h"

#include <gtest/gtest.h>
#include <map>
#include <stdexcept>
#include <utility>

#include "tests/platform/scripted_programs.h"

namespace kestrel {
namespace {

using TextSorter::parseWork, TextSorter::romain;

TEST(UncalledOperations, RomanNumeralsHoldTheirValue) {
  const std::map<char, int> letters = {{'M', 1000}, {'D', 500}, {'C', 100}, {'L', 50},
                                       {'X', 10},   {'V', 5},   {'I', 1}};
  for (int value = 1; value < 10000; ++value) {
    const std::string numeral = romain(value);
    int sum = 0;
    for (std::size_t i = 0; i < numeral.size(); ++i) {
      const int letter = letters.at(numeral[i]);
      const bool subtracted = i + 1 < numeral.size() && letter < letters.at(numeral[i + 1]);
      sum += subtracted ? -letter : letter;
    }
    ASSERT_EQ(sum, value) << numeral;
  }
  const std::pair<int, const char*> numerals[] = {
      {1994, "MCMXCIV"}, {3888, "MMMDCCCLXXXVIII"}, {9999, "MMMMMMMMMCMXCIX"}, {0, ""}, {-4, ""},
      {10000, ""}};
  for (const auto& [number, text] : numerals) EXPECT_EQ(romain(number), text) << number;
}

TEST(UncalledOperations, WorksNeedBothNames) {
  using Entries = std::map<std::string_view, Value>;
  const std::vector<std::pair<Entries, const char*>> cases = {
      {{{"Work", "a"}, {"Movement Name", "b"}, {"Movement Number", 2}}, "a: II. b"},
      {{{"Work", "a"}, {"Movement Name", "b"}, {"Movement Number", "4x"}}, "a: IV. b"},
      {{{"Work", "a"}, {"Movement Name", "b"}, {"Movement Number", 0}}, "a: . b"},
      {{{"Work", "a"}, {"Movement Name", ""}}, "a: "},
      {{{"Work", "a"}, {"Movement Number", 2}}, ""},
      {{{"Movement Name", "b"}, {"Movement Number", 2}}, ""},
  };
  for (const auto& [entries, title] : cases) {
    EXPECT_EQ(parseWork([&work = entries](std::string_view key) {
                const auto found = work.find(key);
                if (found == work.end()) return Value();
                return found->second;
              }),
              title);
  }
}

TEST(UncalledOperations, KindColors) {
  EXPECT_EQ(TextSorter::buildKindColor(0), "mycolor_darkred");
  EXPECT_EQ(TextSorter::buildKindColor(2), "mycolor_darkblue");
  for (const int code : {-1, 1, 3}) EXPECT_EQ(TextSorter::buildKindColor(code), "");
}

TEST(UncalledOperations, FindsEveryIndexInOrderHoweverLongTheList) {
  for (const std::size_t size : {0U, 1U, 16383U, 16384U, 100003U}) {
    std::vector<std::size_t> list(size);
    std::vector<std::size_t> expected;
    for (std::size_t i = 0; i < size; ++i) {
      list[i] = i * 7919 % 1000;
      if (list[i] < 100) expected.push_back(i);
    }
    EXPECT_EQ(TextManipulator::indexesFromArray(list, [](std::size_t v) { return v < 100; }),
              expected);
  }
  const std::vector<int> many(50000);
  const auto fails = [](int) -> bool { throw std::runtime_error("no"); };
  EXPECT_THROW(TextManipulator::indexesFromArray(many, fails), std::runtime_error);
}

TEST(UncalledOperations, KeysAreFoundWithoutRegardToCase) {
  const std::vector<std::string> keys = {"Name", "Künstler"};
  EXPECT_TRUE(TextSorter::objectForCaseInsensitiveKey("KÜNSTLER", keys));
  EXPECT_FALSE(TextSorter::objectForCaseInsensitiveKey("Nam", keys));
  EXPECT_FALSE(TextSorter::objectForCaseInsensitiveKey("Name", {}));
}

TEST(UncalledOperations, TextsChangeTheirPattern) {
  constexpr auto iso = "yyyy-MM-dd'T'HH:mm:ss'Z'";
  using TextManipulator::dateStringFromString;
  EXPECT_EQ(dateStringFromString("2012-02-29T18:05:09Z", iso, "dd.MM.yy HH-mm"), "29.02.12 18-05");
  EXPECT_EQ(dateStringFromString("31/12/1999", "dd/MM/yyyy", iso), "1999-12-31T00:00:00Z");
  for (const char* text : {"", "never", "2011-02-29T00:00:00Z", "2012-01-01T00:00:00Zulu"})
    EXPECT_EQ(dateStringFromString(text, iso, "yyyy"), std::nullopt) << text;
  EXPECT_EQ(dateStringFromString("2012", "no 'end", "yyyy"), std::nullopt);
}

TEST(UncalledOperations, HexFromStrGivesTheSameTextWithAndWithoutTheProgram) {
  SystemPrograms system;
  ScriptedPrograms none;
  for (const auto& [decimal, hex] : {std::pair{"0", "0"},
                                     {"255", "FF"},
                                     {"4294967296", "100000000"},
                                     {"18446744073709551615", "FFFFFFFFFFFFFFFF"}}) {
    EXPECT_EQ(TextSorter::hexFromStr(decimal, system), hex);
    EXPECT_EQ(TextSorter::hexFromStr(decimal, none), hex);
  }
  EXPECT_EQ(none.calls.front().program, "/usr/bin/printf");
  // What the program complains of is part of the text.
  EXPECT_NE(TextSorter::hexFromStr("abc", system).find("abc"), std::string::npos);
  EXPECT_EQ(TextSorter::hexFromStr("abc", none), "");
}

TEST(UncalledOperations, SendToTrashHandsOverTheLastComponentOnly) {
  struct : Trash {
    TrashedItem reserve(const std::string& path) override {
      recycled.push_back(path);
      return {};
    }
    void move(const TrashedItem& /*item*/) override {}
    bool release(const TrashedItem& /*item*/) override { return true; }
    void restore(const TrashedItem& /*item*/) override {}
    std::vector<std::string> recycled;
  } trash;
  for (const char* path : {"/music/Album/song.mp3", "song.mp3", "/music/Album/", "/", ""})
    TextManipulator::sendToTrash(path, trash);
  EXPECT_EQ(trash.recycled, (std::vector<std::string>{"song.mp3", "song.mp3", "Album", "/", ""}));
}

}  // namespace
}  // namespace kestrel
