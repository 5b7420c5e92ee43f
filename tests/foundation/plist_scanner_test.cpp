#include "foundation/plist_scanner.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

/// Everything in a document, in the scanner's own terms: keys as "key=", values by their sort.
std::string scanned(const std::string& document) {
  PlistScanner scanner(document);
  std::string out;
  const auto value = [&](auto& self, PlistType type) -> void {
    if (type == PlistType::dictionary) {
      out += "{";
      for (std::string_view key; scanner.nextKey(key);) {
        out.append(key).append("=");
        self(self, scanner.beginValue());
      }
      out += "}";
    } else if (type == PlistType::array) {
      out += "[";
      while (scanner.nextItem(type)) self(self, type);
      out += "]";
    } else if (type == PlistType::integer) {
      out.append(std::to_string(scanner.integer())).append(";");
    } else if (type == PlistType::boolTrue || type == PlistType::boolFalse) {
      out += type == PlistType::boolTrue ? "true;" : "false;";
    } else {
      out.append(scanner.text(type)).append(";");
    }
  };
  scanner.beginDocument();
  value(value, scanner.beginValue());
  scanner.endDocument();
  return out;
}

TEST(PlistScanner, ReadsEveryLegalSpellingAlike) {
  const std::string plain =
      "<plist version=\"1.0\"><dict><key>a</key><string>x\ny</string><key>b</key><array><true/>"
      "<false/><integer>31</integer><array></array></array><key></key><string></string>"
      "<key>c</key><dict></dict></dict></plist>";
  const std::string expected = "{a=x\ny;b=[true;false;31;[]]=;c={}}";
  ASSERT_EQ(scanned(plain), expected);
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
    EXPECT_EQ(scanned(other), expected) << other;
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

TEST(PlistScanner, RefusesWhatIsNoPropertyList) {
  const char* const documents[] = {"<plist></plist>",
                                   "<plist><true/>",
                                   "<plist><true/></dict>",
                                   "<plist>x<true/></plist>",
                                   "<plist><True/></plist>",
                                   "<!DOCTYPE plist [",
                                   "<plist><true/><true/></plist>",
                                   "<plist><true></false></plist>",
                                   "<plist a='<'><true/></plist>",
                                   "<plist><true/></plist a='b'>",
                                   "<plist><true/></plist><!--",
                                   "<!-- - -> <plist><true/></plist>",
                                   "",
                                   "<plist/>",
                                   "</plist>"};
  for (const char* bad : documents) EXPECT_THROW(scanned(bad), PlistError) << bad;
  const char* const values[] = {"<string>a<string/></string>", "<dict><key>a</key>x<true/></dict>",
                                "<dict><key>a</dict>",         "<string>&#0;</string>",
                                "<string>&#x110000;</string>", "<string>&#xZ;</string>",
                                "<integer></integer>",         "<integer>-</integer>",
                                "<integer>+-1</integer>",      "<integer>0x</integer>",
                                "<string><![CDATA[]]</string>"};
  for (const char* bad : values)
    EXPECT_THROW(scanned(std::string("<plist>") + bad + "</plist>"), PlistError) << bad;
}

TEST(PlistScanner, FindsABadByteAnywhereInAText) {
  for (std::size_t at = 0; at < 50; ++at) {
    std::string text(50, 'x');
    text[at] = '\xE9';
    const std::string document = "<plist><string>" + text + "</string></plist>";
    try {
      scanned(document);
      ADD_FAILURE() << at;
    } catch (const PlistError& error) {
      EXPECT_EQ(error.offset, 15 + at);
    }
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

}  // namespace
}  // namespace kestrel
