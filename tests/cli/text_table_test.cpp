#include "cli/text_table.h"

#include <gtest/gtest.h>
#include <sstream>

#include "cli/record_output.h"

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

TEST(RecordOutput, DefusesWhatASpreadsheetWouldCalculate) {
  for (const auto& [text, field] : std::initializer_list<std::pair<std::string_view, std::string>>{
           {"=1+1", "'=1+1"},
           {"@SUM(1)", "'@SUM(1)"},
           {"+49 30 1", "'+49 30 1"},
           {"-1+cmd|' /C x'!A0", "'-1+cmd|' /C x'!A0"},
           {"\t=1", "' =1"},
           {"\r\n  +a", "'    +a"},
           {"-", "'-"},
           {"-inf", "'-inf"},
           {"-12", "-12"},
           {"+3.50", "+3.50"},
           {"=1", "'=1"},
           {"a=1", "a=1"},
           {"=a,\"b\"", "\"'=a,\"\"b\"\"\""},
           {"a\nb\x1B", "a b?"},
           {"", ""},
       })
    EXPECT_EQ(csvField(text), field);
  EXPECT_EQ(csvField(Value(-12)), "-12");
}

TEST(RecordOutput, EscapesInJsonWhatATerminalWouldObey) {
  const Json object = {{"\x7F", "\x1B\u009B\u202E\u2028\U000E0041 \n Ä 🎤"}};
  const std::string text = dump(object, 1);
  EXPECT_EQ(text, "{\n \"\\u007f\": \"\\u001b\\u009b\\u202e\\u2028\\udb40\\udc41 \\n Ä 🎤\"\n}");
  EXPECT_EQ(Json::parse(text), object);
}

}  // namespace
}  // namespace kestrel
