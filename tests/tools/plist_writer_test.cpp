#include "tools/make_library/plist_writer.h"

#include <gtest/gtest.h>
#include <sstream>

#include "tests/tools/written_library.h"

namespace kestrel::make_library {
namespace {

template <typename Write>
std::string written(Layout layout, const Write& write) {
  std::ostringstream out;
  PlistWriter plist(out, layout);
  plist.beginDict();
  write(plist);
  plist.endDict();
  plist.finish();
  return out.str();
}

TEST(PlistWriter, TextsComeBackAsTheyWere) {
  for (const std::string text :
       {"plain", "a < b & c > d \"e\" 'f'", "]]>", "&amp;", "line\nline\r\nline\rend", "\ttab ",
        "é 👩‍🚀 Δρόμος"}) {
    for (const Layout layout : {Layout::tabs, Layout::crlf, Layout::spaces, Layout::compact}) {
      const std::string bytes =
          written(layout, [&](PlistWriter& plist) { plist.text(text, text); });
      // Key and value, the same in both places.
      EXPECT_EQ(readLibrary(bytes).values, (Values{{text, text}})) << bytes;
    }
  }
}

TEST(PlistWriter, ValuesInTheUsualLayout) {
  const std::string bytes = written(Layout::tabs, [](PlistWriter& plist) {
    plist.integer("smallest", INT64_MIN);
    plist.date("oldest", -2'082'844'800);
    plist.date("leap", 1'709'251'199);
    plist.boolean("no", false);
    plist.key("list");
    plist.beginArray();
    plist.integer(7);
    plist.endArray();
    plist.key("bytes");
    plist.data("Man");
    plist.key("padded");
    plist.data(std::string(46, '\xFF'));
  });
  EXPECT_EQ(bytes.substr(bytes.find("<dict>")),
            "<dict>\n"
            "\t<key>smallest</key><integer>-9223372036854775808</integer>\n"
            "\t<key>oldest</key><date>1904-01-01T00:00:00Z</date>\n"
            "\t<key>leap</key><date>2024-02-29T23:59:59Z</date>\n"
            "\t<key>no</key><false/>\n"
            "\t<key>list</key>\n"
            "\t<array>\n"
            "\t\t<integer>7</integer>\n"
            "\t</array>\n"
            "\t<key>bytes</key>\n"
            "\t<data>\n"
            "\tTWFu\n"
            "\t</data>\n"
            "\t<key>padded</key>\n"
            "\t<data>\n"
            "\t////////////////////////////////////////////////////////////\n"
            "\t/w==\n"
            "\t</data>\n"
            "</dict>\n"
            "</plist>\n");
}

TEST(PlistWriter, AFullDiskIsAnError) {
  std::ostringstream out;
  PlistWriter plist(out, Layout::tabs);
  out.setstate(std::ios::badbit);
  EXPECT_THROW(plist.finish(), std::runtime_error);
}

}  // namespace
}  // namespace kestrel::make_library
