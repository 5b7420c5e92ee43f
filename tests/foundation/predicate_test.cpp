#include "foundation/predicate.h"

#include <gtest/gtest.h>
#include <map>
#include <stdexcept>
#include <vector>

#include "foundation/index_search.h"

namespace kestrel {
namespace {

struct Record {
  std::map<std::string, Value, std::less<>> entries;
  [[nodiscard]] Value value(std::string_view key) const {
    const auto found = entries.find(key);
    if (found == entries.end()) return {};
    return found->second;
  }
};

bool holds(const Record& record, std::string_view text,
           const std::vector<PredicateArgument>& arguments = {}) {
  const Predicate predicate = Predicate::parse(text, arguments);
  return predicate.evaluate([&record](std::string_view key) { return record.value(key); });
}

const Record track{{{"tGroupID", "12"},
                    {"tLoc", "Cloud"},
                    {"tBit", 256},
                    {"tPurch", "YES"},
                    {"tKind", "MPEG-Audiodatei"},
                    {"tCheckbox", true},
                    {"tAddDate", Date{5}},
                    {"empty", ""},
                    {"nothing", Value::Null{}},
                    {"Playlist Persistent ID", "FF"},
                    {"persistentID.description", "255"}}};

TEST(Predicate, OperatorsSelectTheRecordsTheyDescribe) {
  const std::vector<Value> groups = {"7", "12"}, numbers = {1, 256};
  const struct {
    const char* text;
    std::vector<PredicateArgument> arguments;
    bool holds;
  } cases[] = {
      {"tGroupID == %@", {"12"}, true},
      {"tGroupID == %@", {"012"}, false},
      {"tGroupID = %@", {12}, true},
      {"tGroupID != %i", {12}, false},
      {"tPurch == %@", {"yes"}, false},
      {"tBit = %@", {"256"}, true},
      {"tBit = %@", {"256 "}, false},
      {"tBit == \"256\"", {}, true},
      {"tCheckbox == 1", {}, true},
      {"tCheckbox == '1'", {}, true},
      {"tAddDate == %@", {Date{5}}, true},
      {"tAddDate == %@", {5}, false},
      {"missing == %@", {""}, false},
      {"missing != %@", {""}, true},
      {"persistentID.description == %@", {"255"}, true},
      {"%K == %@", {"Playlist Persistent ID", "FF"}, true},
      {"tPurch BEGINSWITH %@", {"Y"}, true},
      {"tPurch BEGINSWITH %@", {""}, true},
      {"tBit BEGINSWITH %@", {"2"}, false},
      {"missing BEGINSWITH %@", {""}, false},
      {"tKind CONTAINS %@", {"Audio"}, true},
      {"tKind contains %@", {"audio"}, false},
      {"tLoc LIKE %@", {"Cloud"}, true},
      {"tLoc LIKE %@", {"Clou"}, false},
      {"NOT(tLoc LIKE %@)", {"Cloud"}, false},
      {"NOT(missing LIKE %@)", {"Cloud"}, true},
      {"%K MATCHES %@", {"tGroupID", "1"}, false},  // the whole text, or none
      {"%K MATCHES %@", {"tGroupID", "1[0-9]"}, true},
      {"%K IN %@", {"tGroupID", groups}, true},
      {"%K IN %@", {"tBit", groups}, false},
      {"%K IN %@", {"tBit", numbers}, true},
      {"%K IN %@", {"missing", groups}, false},
      {"%@ IN tKind", {"Audio"}, true},
  };
  for (const auto& [text, arguments, expected] : cases)
    EXPECT_EQ(holds(track, text, arguments), expected) << text;
}

TEST(Predicate, NullAsksOnlyWhetherTheKeyIsThere) {
  for (const Value& null : {Value(), Value(Value::Null{})}) {
    for (const char* key : {"tLoc", "empty", "nothing", "tCheckbox"}) {
      EXPECT_TRUE(holds(track, "%K != %@", {key, null})) << key;
      EXPECT_FALSE(holds(track, "%K == %@", {key, null})) << key;
    }
    EXPECT_TRUE(holds(track, "%K == %@", {"missing", null}));
    EXPECT_FALSE(holds(track, "%K != %@", {"missing", null}));
  }
}

TEST(Predicate, AndBindsCloserThanOr) {
  for (int bits = 0; bits < 8; ++bits) {
    const bool a = bits & 1;
    const bool b = bits & 2;
    const bool c = bits & 4;
    const Record record{{{"a", a}, {"b", b}, {"c", c}}};
    EXPECT_EQ(holds(record, "a == 1 OR b == 1 AND c == 1"), a || (b && c));
    EXPECT_EQ(holds(record, "(a=1 or b=1) and not c=1"), (a || b) && !c);
    EXPECT_EQ(holds(record, "NOT NOT (a = 1) AND b = 1 OR c = 1"), (a && b) || c);
  }
}

TEST(Predicate, WildcardsCoverTheWholeText) {
  const struct {
    std::string text, pattern;
    bool matches;
  } cases[] = {
      {"", "", true},           {"", "*", true},           {"", "?", false},
      {"abc", "a?c", true},     {"abc", "a*", true},       {"abc", "*b", false},
      {"aab", "*ab", true},     {"abcbcd", "a*bcd", true}, {"abc", "a**c*", true},
      {"Ärzte", "?rzte", true}, {"日本", "??", true},      {"日本", "*?本", true},
      {"日本", "???", false},   {"a.c", "a.c", true},      {"abc", "a.c", false},
  };
  for (const auto& [text, pattern, matches] : cases)
    EXPECT_EQ(holds({{{"k", text}}}, "k LIKE %@", {pattern}), matches) << text << ' ' << pattern;
  // Backtracking over every star would take longer than the universe has had.
  const std::string many(20000, 'a');
  EXPECT_FALSE(holds({{{"k", many}}}, "k LIKE '*a*a*a*a*a*a*a*a*a*a*a*a*b'"));
}

TEST(Predicate, FaultyTextsSayWhere) {
  const struct {
    const char* text;
    std::vector<PredicateArgument> arguments;
    std::size_t position;
  } cases[] = {
      {"", {}, 0},
      {"a ==", {}, 4},
      {"a == 1 b", {}, 7},
      {"a ~ 1", {}, 2},
      {"a === 1", {}, 2},
      {"(a == 1", {}, 7},
      {"a == 'x", {}, 5},
      {"a == 99999999999999999999", {}, 5},
      {"a == %@", {}, 5},
      {"a == %d", {1}, 5},
      {"a == %i", {"1"}, 5},
      {"%K == 1", {1}, 0},
      {"a == 1", {1}, 6},
      {"a == %@", {std::vector<Value>{1}}, 5},
      {"a MATCHES %@", {"("}, 10},
      {"a MATCHES b", {}, 10},
  };
  for (const auto& [text, arguments, position] : cases) {
    try {
      Predicate::parse(text, arguments);
      ADD_FAILURE() << text;
    } catch (const PredicateError& error) {
      EXPECT_EQ(error.position, position) << error.what();
    }
  }
  EXPECT_THROW(Predicate::parse(std::string(100000, '(')), PredicateError);
}

TEST(Predicate, KeepsItsOwnCopyOfTheArguments) {
  std::string text = "Cloud";
  const Predicate predicate = Predicate::parse("%K == %@", {"tLoc", std::string_view(text)});
  text = "xxxxx";
  EXPECT_TRUE(predicate.evaluate([](std::string_view key) { return track.value(key); }));
}

TEST(IndexSearch, FindsEveryIndexInOrderHoweverLongTheList) {
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
  const std::vector<Record> records = {track, {}, track};
  EXPECT_EQ(TextManipulator::indexesFromArray(records, Predicate::parse("tBit == 256")),
            (std::vector<std::size_t>{0, 2}));
  const std::vector<int> many(50000);
  const auto fails = [](int) -> bool { throw std::runtime_error("no"); };
  EXPECT_THROW(TextManipulator::indexesFromArray(many, fails), std::runtime_error);
}

}  // namespace
}  // namespace kestrel
