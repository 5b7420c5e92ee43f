#include "musicapp/file_url.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(FileUrl, NamesThePathOnDisk) {
  const std::pair<const char*, const char*> cases[] = {
      {"file:///Music/A%20B/Caf%c3%A9.mp3", "/Music/A B/Caf\u00E9.mp3"},
      {"FILE://LocalHost/L:/Music/a+b", "/L:/Music/a+b"},
      {"file://nas/Music/a", "//nas/Music/a"},
      {"file:///a%00b%G1%1g%%41%2", "/a%00b%G1%1g%A%2"},
      {"file:///", "/"}};
  for (const auto& [url, expected] : cases) {
    std::string path = "left over";
    EXPECT_TRUE(pathOfFileUrl(url, path)) << url;
    EXPECT_EQ(path, expected) << url;
  }
  using namespace std::string_view_literals;
  for (const std::string_view url :
       {""sv, "file:/a"sv, "file://localhost"sv, "/a"sv, "xfile:///a"sv, "http://example.org/a"sv,
        "file:///a.mp3\0x"sv}) {
    std::string path = "left over";
    EXPECT_FALSE(pathOfFileUrl(url, path)) << url;
    EXPECT_EQ(path, "") << url;
  }
}

TEST(FileUrl, OfAPathLeadsBackToIt) {
  std::string everything = "/";
  for (int byte = 1; byte < 256; ++byte) everything.push_back(static_cast<char>(byte));
  std::string path;
  ASSERT_TRUE(pathOfFileUrl(fileUrlOfPath(everything), path));
  EXPECT_EQ(path, everything);
  EXPECT_EQ(fileUrlOfPath("/Music/A B/50%#?\u00E9.mp3"),
            "file:///Music/A%20B/50%25%23%3F%C3%A9.mp3");
}

}  // namespace
}  // namespace kestrel
