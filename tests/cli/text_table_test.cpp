#include "cli/text_table.h"

#include <gtest/gtest.h>
#include <sstream>

namespace kestrel {
namespace {

TEST(TextTable, AlignsWhateverTheScript) {
  TextTable table({{"Name", TextTable::Align::left, 8}, {"Plays", TextTable::Align::right}});
  table.add({"abc", "1"});
  table.add({"東京", "10"});            // two columns a character
  table.add({"e\u0301te\u0301", "5"});  // accents of their own take none
  table.add({"far too long", "7"});
  std::ostringstream out;
  table.write(out, "> ");
  EXPECT_EQ(out.str(),
            "> Name      Plays\n"
            "> abc           1\n"
            "> 東京         10\n"
            "> e\u0301te\u0301           5\n"
            "> far too…      7\n");
}

TEST(TextTable, LetsNoTextMoveTheCursor) {
  EXPECT_EQ(printable("a\nb\tc\x1B[2Jd\x7F"), "a b c?[2Jd?");
  EXPECT_EQ(printable("bad \xFF byte"), "bad \uFFFD byte");
  EXPECT_EQ(displayWidth(""), 0U);
}

}  // namespace
}  // namespace kestrel
