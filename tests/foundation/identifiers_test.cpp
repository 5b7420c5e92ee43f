#include "foundation/identifiers.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>

namespace kestrel {
namespace {

constexpr auto most = std::numeric_limits<std::uint64_t>::max();

TEST(Identifiers, BothFormsLeadBackToTheNumber) {
  struct Case {
    std::uint64_t number;
    const char* decimal;
    const char* hex;
  };
  const std::array<Case, 5> cases = {
      {{0, "0", "0"},
       {255, "255", "FF"},
       {4294967296, "4294967296", "100000000"},
       {1234567890123456789, "1234567890123456789", "112210F47DE98115"},
       {most, "18446744073709551615", "FFFFFFFFFFFFFFFF"}}};
  std::vector<std::uint64_t> numbers;
  std::vector<std::string> hexes;
  for (const auto& [number, decimal, hex] : cases) {
    EXPECT_EQ(decimalText(number), decimal);
    EXPECT_EQ(TextSorter::decToHex(number), hex);
    EXPECT_EQ(numberFromDecimal(decimal), number);
    EXPECT_EQ(numberFromHex(hex), number);
    numbers.push_back(number);
    hexes.emplace_back(hex);
  }
  EXPECT_EQ(TextSorter::batchDecToHex(numbers), hexes);
}

TEST(Identifiers, ReadersTakePaddedFormsAndNothingElse) {
  EXPECT_EQ(numberFromHex("00000000000000ff"), 255U);
  EXPECT_EQ(numberFromHex("0000000000000000FFFFFFFFFFFFFFFF"), most);
  EXPECT_EQ(numberFromDecimal("007"), 7U);
  for (const char* text : {"", " 1", "1 ", "+1", "-1", "1.0", "0x1", "18446744073709551616"})
    EXPECT_EQ(numberFromDecimal(text), std::nullopt) << text;
  for (const char* text : {"", "0x1", "-1", "G", "1FFFFFFFFFFFFFFFF", " F"})
    EXPECT_EQ(numberFromHex(text), std::nullopt) << text;
}

}  // namespace
}  // namespace kestrel
