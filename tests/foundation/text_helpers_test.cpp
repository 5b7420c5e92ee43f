#include "foundation/text_helpers.h"

#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <vector>

#include "foundation/identifiers.h"

namespace kestrel {
namespace {

using namespace TextSorter;

constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
constexpr auto highest = std::numeric_limits<std::int64_t>::max();
constexpr auto highestId = std::numeric_limits<std::uint64_t>::max();

struct NumberCase {
  std::int64_t number;
  const char* text;
};

void expectTexts(std::string (*helper)(std::int64_t), std::span<const NumberCase> cases) {
  for (const auto& [number, text] : cases) EXPECT_EQ(helper(number), text) << number;
}

TEST(TextHelpers, DurationsReadAsClockTexts) {
  // The last: single precision rounds it up to the half.
  const NumberCase durations[] = {{0, "0:00"},          {499, "0:00"},
                                  {500, "0:01"},        {59499, "0:59"},
                                  {59500, "1:00"},      {61000, "1:01"},
                                  {3599000, "59:59"},   {3600000, "0:00"},
                                  {3600499, "0:00"},    {3600500, "1:00:01"},
                                  {3725000, "1:02:05"}, {36000000, "10:00:00"},
                                  {-5000, "0:00"},      {highest, "596523:12:00"},
                                  {27852499, "7:44:13"}};
  expectTexts(makeTimeHumanReadable, durations);
}

TEST(TextHelpers, SampleRatesAndRatings) {
  // The last: single precision keeps some seven digits.
  const NumberCase rates[] = {
      {0, ""},          {44100, "44.100 kHz"},        {22050, "22.050 kHz"}, {11025, "11.025 kHz"},
      {8, "0.008 kHz"}, {123456789, "123456.789 kHz"}};
  expectTexts(makeSampleHumanReadable, rates);
  const NumberCase ratings[] = {{0, ""},     {1, "½"},     {19, "½"},      {20, "★"}, {41, "★★½"},
                                {50, "★★½"}, {61, "★★★½"}, {100, "★★★★★"}, {-30, ""}};
  expectTexts(makeRatingHumanReadable, ratings);
  EXPECT_LT(makeRatingHumanReadable(highest).size(), 1000U);
}

TEST(TextHelpers, ByteCountsChooseTheUnitAfterRounding) {
  const NumberCase sizes[] = {{0, "Zero KB"},          {1, "1 byte"},
                              {999, "999 bytes"},      {1000, "1 KB"},
                              {1499, "1 KB"},          {1500, "2 KB"},
                              {999499, "999 KB"},      {999500, "1 MB"},
                              {4249999, "4.2 MB"},     {12345678, "12.3 MB"},
                              {999949999, "999.9 MB"}, {999950000, "1 GB"},
                              {4000000000, "4 GB"},    {1500000000, "1.5 GB"},
                              {1054999999, "1.05 GB"}, {2345678901234, "2.35 TB"},
                              {highest, "9.22 EB"},    {lowest, "-9.22 EB"}};
  expectTexts(makeSizeHumanReadable, sizes);
  EXPECT_EQ(ByteCountFormatter("de_DE").text(12345678), "12,3 MB");
  EXPECT_EQ(ByteCountFormatter("ar_EG").text(1500000), "١٫٥ MB");
}

TEST(TextHelpers, NumberOfCountTexts) {
  EXPECT_EQ(figNumb(3, 12), "3 of 12");
  EXPECT_EQ(figNumb(3, 0), "3");
  EXPECT_EQ(figNumb(0, 12), "");
  EXPECT_EQ(figNumb(lowest, highest), "-9223372036854775808 of 9223372036854775807");
}

TEST(TextHelpers, TextsReadAsTheNumberTheyBeginWith) {
  using Case = std::pair<Value, std::int64_t>;
  const std::vector<Case> cases = {{"256 kbps", 256},
                                   {" \t-7", -7},
                                   {"+5", 5},
                                   {"+-5", 0},
                                   {"abc", 0},
                                   {"", 0},
                                   {Value(), 0},
                                   {Value::Null{}, 0},
                                   {true, 1},
                                   {42, 42},
                                   {"99999999999999999999", highest},
                                   {"-99999999999999999999", lowest}};
  for (const auto& [value, number] : cases) EXPECT_EQ(integerValue(value), number);
}

TEST(TextHelpers, LengthsCountUtf16Units) {
  const std::vector<std::pair<std::string_view, std::size_t>> cases = {
      {"", 0},           {"song", 4},   {"Motörhead", 9}, {"e\u0301", 2},
      {"\U0001F3B5", 2}, {"a\xFFz", 3}, {"\xE2\x99", 1}};
  for (const auto& [text, length] : cases) EXPECT_EQ(utf16Length(text), length) << text;
}

TEST(Identifiers, BothFormsLeadBackToTheNumber) {
  const struct {
    std::uint64_t number;
    std::string decimal, hex;
  } cases[] = {{0, "0", "0"},
               {255, "255", "FF"},
               {4294967296, "4294967296", "100000000"},
               {1234567890123456789, "1234567890123456789", "112210F47DE98115"},
               {highestId, "18446744073709551615", "FFFFFFFFFFFFFFFF"}};
  std::vector<std::uint64_t> numbers;
  std::vector<std::string> hexes;
  for (const auto& [number, decimal, hex] : cases) {
    EXPECT_EQ(decimalText(number), decimal);
    EXPECT_EQ(decToHex(number), hex);
    EXPECT_EQ(numberFromDecimal(decimal), number);
    EXPECT_EQ(numberFromHex(hex), number);
    numbers.push_back(number);
    hexes.emplace_back(hex);
  }
  EXPECT_EQ(batchDecToHex(numbers), hexes);
}

TEST(Identifiers, ReadersTakePaddedFormsAndNothingElse) {
  EXPECT_EQ(numberFromHex("00000000000000ff"), 255U);
  EXPECT_EQ(numberFromHex("0000000000000000FFFFFFFFFFFFFFFF"), highestId);
  EXPECT_EQ(numberFromDecimal("007"), 7U);
  for (const char* text : {"", " 1", "1 ", "+1", "-1", "1.0", "0x1", "18446744073709551616"})
    EXPECT_EQ(numberFromDecimal(text), std::nullopt) << text;
  for (const char* text : {"", "0x1", "-1", "G", "1FFFFFFFFFFFFFFFF", " F"})
    EXPECT_EQ(numberFromHex(text), std::nullopt) << text;
}

}  // namespace
}  // namespace kestrel
