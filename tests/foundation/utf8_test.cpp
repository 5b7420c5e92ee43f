
#include "foundation/utf8.h"

#include <gtest/gtest.h>

#include "foundation/library_error.h"

namespace kestrel {
namespace {

using namespace std::string_literals;

TEST(TextEncoding, IsKnownByMarkThenLookThenDeclaration) {
  const struct {
    std::string document;
    TextEncoding encoding;
  } cases[] = {
      {"", TextEncoding::utf8},
      {"<plist>", TextEncoding::utf8},
      {"\xEF\xBB\xBF<?xml encoding='iso-8859-1'?>", TextEncoding::utf8},
      {"\xFF\xFE<\0"s, TextEncoding::utf16LittleEndian},
      {"\xFE\xFF\0<"s, TextEncoding::utf16BigEndian},
      {"<\0?\0"s, TextEncoding::utf16LittleEndian},
      {"\0<\0?"s, TextEncoding::utf16BigEndian},
      {"<?xml version='1.0' encoding=\"UTF-8\"?>", TextEncoding::utf8},
      {"<?xml version='1.0' encoding = 'us-ascii'?>", TextEncoding::utf8},
      {"<?xml version='1.0' encoding='ISO-8859-1'?>", TextEncoding::latin1},
      {"<?xml version='1.0'?><a encoding='ISO-8859-1'/>", TextEncoding::utf8},
      {"<?xml version='1.0' encoding='ISO-8859-1", TextEncoding::utf8},
  };
  for (const auto& [document, encoding] : cases)
    EXPECT_EQ(encodingOf(document), encoding) << document;
  EXPECT_THROW(encodingOf("<?xml version='1.0' encoding='UTF-16'?>"), PlistError);
  EXPECT_THROW(encodingOf("<?xml version='1.0' encoding='Shift_JIS'?>"), PlistError);
}

std::string converted(std::string_view document, TextEncoding encoding) {
  std::string all;
  convertToUtf8(document, encoding, [&](std::string_view piece) { all += piece; });
  return all;
}

TEST(TextEncoding, ConvertsEveryCharacterInPiecesOfAnySize) {
  std::u32string points;
  for (char32_t c = 0; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 17)
    if (c < 0xD800 || c > 0xDFFF) points += c;
  std::string utf8, little, big = "\xFE\xFF";
  const auto unit = [&](char32_t u) {
    const char high = static_cast<char>(u >> 8), low = static_cast<char>(u & 0xFF);
    little.append({low, high});
    big.append({high, low});
  };
  for (int round = 0; round < 20; ++round)
    for (const char32_t c : points) {
      appendUtf8(c, utf8);
      if (c >= 0x10000)
        unit(0xD7C0 + (c >> 10)), unit(0xDC00 + (c & 0x3FF));
      else
        unit(c);
    }
  ASSERT_GT(utf8.size(), 4U << 20);
  EXPECT_TRUE(converted(little, TextEncoding::utf16LittleEndian) == utf8);
  EXPECT_TRUE(converted(big, TextEncoding::utf16BigEndian) == utf8);
  EXPECT_EQ(firstInvalidUtf8(utf8), std::string::npos);
  EXPECT_EQ(converted("a\xE9\xFF\x80", TextEncoding::latin1), "a\u00E9\u00FF\u0080");
}

TEST(Utf8, FindsTheFirstByteThatIsWrong) {
  for (const char* bad : {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80",
                          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xC3",
                          "\xE2\x82", "\xF0\x9F\x98", "\xC3\xC3", "\xE2\x82z", "\xFF"})
    for (const std::string before : {"", "0123456789abcde\u00E9"})
      EXPECT_EQ(firstInvalidUtf8(before + bad + "z"), before.size());
  EXPECT_EQ(quotedStart("a\x01\xFFz"), "a?\uFFFDz");
  EXPECT_EQ(quotedStart("0123456789012345678901\u20ACz"), "0123456789012345678901");
}

TEST(PrintableText, ShowsControlsAndLeavesEveryScript) {
  struct Case {
    std::string text, shown;
  };
  for (const auto& [text, shown] : std::initializer_list<Case>{
           {"a\nb\tc\r\n\x1B[2Jd\x7F\b", "a b c  ?[2Jd??"},
           {std::string("a\0b", 3), "a?b"},
           {"\u0085\u009B31m", "??31m"},
           {"\u202A\u202E\u2066\u2069\u200E\u200F\u061C", "???????"},
           {"\u200B\u2060\uFEFF\u00AD\U000E0041", "?????"},
           {"a\u2028b\u2029", "a b "},
           {"bad \xFF\xC3 byte \xED\xA0\x80", "bad \uFFFD\uFFFD byte \uFFFD\uFFFD\uFFFD"},
           {"~ Ä 東京 שלום می\u200Cروم 👩\u200D🎤 ❤️ \u0600",
            "~ Ä 東京 שלום می\u200Cروم 👩\u200D🎤 ❤️ \u0600"},
           {"", ""},
       })
    EXPECT_EQ(printable(text), shown);
  EXPECT_EQ(printableLines("a\x1B\r\nb\rc\n\nd\t\r"), "a?\r\nb c\n\nd  ");
}

}  // namespace
}  // namespace kestrel
