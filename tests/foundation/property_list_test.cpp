#include "foundation/property_list.h"

#include <cmath>
#include <gtest/gtest.h>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"

namespace kestrel {
namespace {

using Data = PropertyList::Data;
using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;

PropertyList parsed(const std::string& body) {
  return parsePropertyList("<plist>" + body + "</plist>", "test");
}

/// Where and why a document cannot be read; "none" when it can.
std::string problemOf(const std::string& document) {
  try {
    parsePropertyList(document, "test");
  } catch (const LibraryError& error) {
    return std::to_string(error.place.line) + ":" + std::to_string(error.place.column) + " " +
           error.problem.english();
  }
  return "none";
}

std::string everyByte() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(i));
  return bytes;
}

TEST(PropertyList, IsWrittenInTheLayoutOfLibraryDocuments) {
  const PropertyList list(Dictionary{
      {"Name", "Tom & \"Jerry\" <1>"},
      {"Items", Array{Dictionary{{"Track ID", 7}}, "x"}},
      {"Smart Info", Data{std::string(55, '\0')}},
      {"Visible", false},
      {"Date", Date{0}},
      {"Empty", Dictionary{}},
  });
  EXPECT_EQ(writePropertyList(list),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\">\n"
            "<dict>\n"
            "\t<key>Name</key><string>Tom &amp; \"Jerry\" &lt;1&gt;</string>\n"
            "\t<key>Items</key>\n"
            "\t<array>\n"
            "\t\t<dict>\n"
            "\t\t\t<key>Track ID</key><integer>7</integer>\n"
            "\t\t</dict>\n"
            "\t\t<string>x</string>\n"
            "\t</array>\n"
            "\t<key>Smart Info</key>\n"
            "\t<data>\n"
            "\t" +
                std::string(72, 'A') +
                "\n"
                "\tAA==\n"
                "\t</data>\n"
                "\t<key>Visible</key><false/>\n"
                "\t<key>Date</key><date>1970-01-01T00:00:00Z</date>\n"
                "\t<key>Empty</key>\n"
                "\t<dict>\n"
                "\t</dict>\n"
                "</dict>\n"
                "</plist>\n");
}

TEST(PropertyList, ComesBackFromItsDocumentAsItWas) {
  Array values = {INT64_MIN, INT64_MAX, 0.1, -0.0, 1e300, 5e-324, HUGE_VAL, true, false, ""};
  for (const char* text : {" a\tb\nc\r\r\n d\x01 ", "]]>&amp;<!-- -->", "\u00E9\U0001F600 e\u0301"})
    values.push_back(text);
  for (const Date date : {Date{-62135596800}, Date{253402300799}}) values.push_back(date);
  for (const std::string& bytes : {std::string(), std::string("a"), everyByte()})
    values.push_back(Data{bytes});
  for (const PropertyList& nested : std::initializer_list<PropertyList>{
           PropertyList::Moment{Date{-1}, ".250"}, Dictionary{}, Array{Array{Array{}}},
           Dictionary{{"b", 1}, {"a", 2}, {"", 3}, {"b", 4}, {"<&\r>", Array{1, "1", 1.0}}}})
    values.push_back(nested);
  for (const PropertyList& value : values) {
    const std::string document = writePropertyList(value);
    EXPECT_EQ(parsePropertyList(document, "test"), value) << document;
  }
  EXPECT_EQ(parsePropertyList(writePropertyList(values), "test"), PropertyList(values));
  EXPECT_TRUE(std::signbit(parsePropertyList(writePropertyList(-0.0), "test").real()));
  EXPECT_TRUE(std::isnan(parsePropertyList(writePropertyList(std::nan("")), "test").real()));

  EXPECT_EQ(parsePropertyList(writePropertyList("caf\xE9!"), "test").text(), "caf\uFFFD!");
  EXPECT_THROW(writePropertyList(Date{253402300800}), std::out_of_range);
}

TEST(PropertyList, ReadsEverySpelling) {
  const PropertyList list = parsed(
      "<!-- c --><dict a='1'><key>A<!-- c --></key ><string><![CDATA[<&>]]>&#x41;\r\nz</string>"
      "<key>B</key><data>\n AAEC\r\n\t/w == </data><key>C</key><array/><key/><true></true>"
      "<key>D</key><real> +1.5 </real><key>E</key><integer> 0x1F </integer><key>F</key><data/>"
      "<key>A</key><date>2010-01-02T03:04:05.006Z</date></dict>");
  EXPECT_EQ(list, PropertyList(Dictionary{{"A", "<&>A\nz"},
                                          {"B", Data{std::string("\0\1\2\xFF", 4)}},
                                          {"C", Array{}},
                                          {"", true},
                                          {"D", 1.5},
                                          {"E", 31},
                                          {"F", Data{}},
                                          {"A", PropertyList::Moment{Date{1262401445}, ".006"}}}));
  EXPECT_EQ(list.find("A")->date(), Date{1262401445}) << "of a repeated key, the last one counts";

  const PropertyList plain = Dictionary{
      {"a", "x\ny"}, {"b", Array{true, false, 31, Array{}}}, {"", ""}, {"c", Dictionary{}}};
  for (const char* other : {
           "\xEF\xBB\xBF<?xml version='1.0'?><!DOCTYPE plist [<!ENTITY e '>]'><!-- ]>' -->]>\r\n"
           "<!-- -- ><plist> --><plist ><dict\n><key>a</key>\r\n<string>x\r\ny</string><key>b</key>"
           "<array><true/><false/><integer>+31</integer><array/></array><key/><string/>"
           "<key>c</key><dict/></dict></plist>\n<!-- end -->",
           "<plist><dict a=\"/dict>\" b='\"'><?x <key> ?><key t=''>&#x61;</key ><!----><string>"
           "<![CDATA[x]]><!-- y -->&#10;<![CDATA[]]>&#00000000000000000121;</string ><key>b</key>"
           "<array><true /><false></false><integer> 0x1F\n</integer><array a='/'/></array>"
           "<key><![CDATA[]]></key><string></string><key><?x ?>c</key><dict\t/></dict>\n</plist >",
       })
    EXPECT_EQ(parsePropertyList(other, "test"), plain) << other;

  const std::string latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?><plist><string>\xE9";
  EXPECT_EQ(parsePropertyList(latin1 + "</string></plist>", "test").text(), "\u00E9");
}

TEST(PropertyList, EditsInPlace) {
  PropertyList list = parsed(
      "<dict><key>A</key><integer>1</integer><key>B</key><integer>2</integer>"
      "<key>A</key><integer>3</integer></dict>");
  list.set("B", "two");
  list.set("C", Array{}).append(1).set("D", true);
  EXPECT_EQ(list, PropertyList(Dictionary{
                      {"A", 1}, {"B", "two"}, {"A", 3}, {"C", Array{Dictionary{{"D", true}}}}}));
  EXPECT_TRUE(list.remove("A"));
  EXPECT_FALSE(list.remove("A"));
  EXPECT_EQ(list.find("A"), nullptr);
  EXPECT_EQ(list.textAt("B"), "two");

  // What a value is not reads as nothing.
  EXPECT_EQ(list.text(), "");
  EXPECT_EQ(PropertyList("1").integer(), 0);
  EXPECT_EQ(PropertyList(2).real(), 2.0);
  EXPECT_EQ(PropertyList(1).find("A"), nullptr);
}

TEST(PropertyList, SaysWhereADocumentIsWrong) {
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text += "<array>";
    for (std::size_t i = 0; i < depth; ++i) text += "</array>";
    return text;
  };
  EXPECT_NO_THROW(parsed(nested(512)));
  const std::string date = "expected a date such as 2019-02-28T23:59:59Z";
  const struct {
    std::string body, problem;
  } cases[] = {
      {"\n<dict><key>A</key>\n <date>2010-13-01T00:00:00Z</date></dict>", "3:8 " + date},
      {"<date>2010-01-01</date>", "1:14 " + date},
      {"<real>1,5</real>", "1:14 expected a number"},
      {"<real/>", "1:15 expected a number"},
      {"<data>A?==</data>", "1:14 expected bytes in Base64"},
      {"<string>a</string><string/>", "1:26 expected </plist>, found \"<string/></plist>\""},
      {nested(513), "1:3599 values are nested more than 512 deep"},
      {nested(100'000), "1:3599 values are nested more than 512 deep"},
  };
  for (const auto& [body, problem] : cases)
    EXPECT_EQ(problemOf("<plist>" + body + "</plist>"), problem) << body.substr(0, 100);
  for (std::size_t at = 0; at < 50; ++at) {
    std::string text(50, 'x');
    text[at] = '\xE9';
    EXPECT_EQ(problemOf("<plist><string>" + text + "</string></plist>"),
              "1:" + std::to_string(16 + at) + " this byte is not valid UTF-8");
  }
  for (const char* document :
       {"<plist></plist>", "<plist><true/>", "<plist><true/></dict>", "<plist>x<true/></plist>",
        "<plist><True/></plist>", "<!DOCTYPE plist [", "<plist><true/><true/></plist>",
        "<plist><true></false></plist>", "<plist a='<'><true/></plist>",
        "<plist><true/></plist a='b'>", "<plist><true/></plist><!--",
        "<!-- - -> <plist><true/></plist>", "", "<plist/>", "</plist>"})
    EXPECT_NE(problemOf(document), "none") << document;
  for (const char* value :
       {"<string>a<string/></string>", "<dict><key>a</key>x<true/></dict>", "<dict><key>a</dict>",
        "<string>&#0;</string>", "<string>&#x110000;</string>", "<string>&#xZ;</string>",
        "<integer></integer>", "<integer>-</integer>", "<integer>+-1</integer>",
        "<integer>0x</integer>", "<string><![CDATA[]]</string>"})
    EXPECT_NE(problemOf(std::string("<plist>") + value + "</plist>"), "none") << value;
}

TEST(PlistScanner, ChecksWhatItPassesOver) {
  for (const char* bad : {"<array><string>&e;</string></array>", "<dict><string/></dict>",
                          "<array><dict></array></dict>", "<array><string>\xFF</string></array>"}) {
    const std::string text = std::string("<plist>") + bad + "</plist>";
    PlistScanner skipping(text);
    skipping.beginDocument();
    const PlistType type = skipping.beginValue();
    EXPECT_THROW(skipping.skip(type), PlistError) << bad;
  }
}

TEST(PlistScanner, CountsLinesAndCharacters) {
  const std::string text = "ab\ncd\r\ne\u00E9\U0001F600f\r\rg";
  const struct {
    std::size_t offset;
    TextPlace place;
  } cases[] = {{0, {1, 1}},  {2, {1, 3}},  {3, {2, 1}},  {5, {2, 3}},  {7, {3, 1}},  {8, {3, 2}},
               {10, {3, 3}}, {14, {3, 4}}, {16, {4, 1}}, {17, {5, 1}}, {18, {5, 2}}, {99, {5, 2}}};
  for (const auto& [offset, place] : cases) {
    EXPECT_EQ(placeOf(text, offset).line, place.line) << offset;
    EXPECT_EQ(placeOf(text, offset).column, place.column) << offset;
  }
}

TEST(Base64, RejectsWhatIsNone) {
  EXPECT_EQ(bytesOfBase64("QUI"), "AB") << "padding may be missing";
  for (const char* text : {"A", "QUIDA", "QUI==", "Q=UI", "QQ===", "QQ=", "Q-I=", "QUID===="})
    EXPECT_EQ(bytesOfBase64(text), std::nullopt) << text;
}

}  // namespace
}  // namespace kestrel
