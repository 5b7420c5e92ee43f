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
      EXPECT_EQ(parsePropertyList(bytes, "written"),
                PropertyList(PropertyList::Dictionary{{text, text}}))
          << bytes;
    }
  }
}

TEST(PlistWriter, WritesEverySortOfValueAsTheProgramDoes) {
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
  });
  const PropertyList same = PropertyList::Dictionary{
      {"smallest", INT64_MIN},          {"oldest", Date{-2'082'844'800}},
      {"leap", Date{1'709'251'199}},    {"no", false},
      {"list", PropertyList::Array{7}}, {"bytes", PropertyList::Data{"Man"}}};
  EXPECT_EQ(bytes.substr(bytes.find("<dict>")),
            writePropertyList(same).substr(writePropertyList(same).find("<dict>")));
}

TEST(PlistWriter, AFullDiskIsAnError) {
  std::ostringstream out;
  PlistWriter plist(out, Layout::tabs);
  out.setstate(std::ios::badbit);
  EXPECT_THROW(plist.finish(), std::runtime_error);
}

}  // namespace
}  // namespace kestrel::make_library
