#include "foundation/printable_text.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

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
