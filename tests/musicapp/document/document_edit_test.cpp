// New text in a document follows the document's layout, and nothing else is touched.
#include "musicapp/document/document_edit.h"

#include <functional>
#include <gtest/gtest.h>
#include <regex>

#include "musicapp/scripted/script_texts.h"
#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {
namespace {

using script::scriptText;

std::string replaced(const std::string& text, const char* pattern, const std::string& by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

/// What comes out, with every new persistent ID as "ID".
std::string edited(const std::string& document, const std::vector<std::string>& scripts) {
  DocumentWorld world(document);
  for (const std::string& script : scripts)
    EXPECT_EQ(world.run(script).find("error"), std::string::npos);
  EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
  return replaced(world.bytes(), "[0-9A-F]{16}", "ID");
}

TEST(DocumentEdit, FollowsTheLayoutOfTheDocument) {
  const std::string create = scriptText(command::CreatePlaylist{"N"});
  const std::string fill = scriptText(command::DuplicateTracks{{0xA}, 0xB});
  // "#" and "@" stand where a playlist's entries and another playlist go.
  const std::string document =
      "<plist>\n<dict>\n\t<key>Version</key><integer>1</integer>\n\t<key>Tracks</key>\n\t<dict>\n"
      "\t\t<key>5</key>\n\t\t<dict>\n\t\t\t<key>Persistent ID</key><string>A</string>\n\t\t</dict>"
      "\n\t</dict>\n\t<key>Playlists</key>\n\t<array>\n\t\t<dict>\n\t\t\t<key>Playlist Persistent "
      "ID</key><string>B</string>\n#\t\t</dict>\n@\t</array>\n</dict>\n</plist>\n";
  const std::string items =
      "\t\t\t<key>Playlist Items</key>\n\t\t\t<array>\n\t\t\t\t<dict>\n\t\t\t\t\t<key>Track "
      "ID</key><integer>5</integer>\n\t\t\t\t</dict>\n\t\t\t</array>\n";
  const std::string list =
      "\t\t<dict>\n\t\t\t<key>Name</key><string>N</string>\n\t\t\t<key>Playlist ID</key><integer>6"
      "</integer>\n\t\t\t<key>Playlist Persistent ID</key><string>ID</string>\n\t\t\t<key>All Items"
      "</key><true/>\n\t\t</dict>\n";
  const std::function<std::string(const std::string&)> layouts[] = {
      [](const std::string& text) { return text; },
      [](const std::string& text) { return replaced(text, "\n", "\r\n"); },
      [](const std::string& text) { return replaced(text, "[\n\t]", ""); },
      [](const std::string& text) {  // spaces, and values on lines of their own
        return replaced(replaced(text, "(\t+)(<key>.*</key>)<", "$1$2\n$1<"), "\t", "  ");
      }};
  for (const auto& laidOut : layouts) {
    const auto with = [&](const std::string& first, const std::string& second) {
      return laidOut(replaced(replaced(document, "#", first), "@", second));
    };
    EXPECT_EQ(edited(with("", ""), {create, fill}), with(items, list));
    // Whatever is added can be cut out again.
    EXPECT_EQ(edited(with(items, ""), {fill, scriptText(command::DeleteEntries{0xB, {2}})}),
              with(items, ""));
  }
}

TEST(DocumentEdit, FindsRoomInWhateverContainersAreThere) {
  const std::string create = scriptText(command::CreatePlaylist{"N"});
  const std::string list =
      "<dict><key>Name</key><string>N</string><key>Playlist ID</key><integer>1</integer><key>"
      "Playlist Persistent ID</key><string>ID</string><key>All Items</key><true/></dict>";
  const std::string start = "<plist><dict><key>Tracks</key><dict/>";
  const std::string key = "<key>Playlists</key>";
  for (const auto& [before, after] : std::initializer_list<std::pair<std::string, std::string>>{
           {"", key + "<array>@</array>"},
           {key + "<array/>", key + "<array>@</array>"},
           {key + "<array a='/>' />", key + "<array>@</array>"},
           {key + "<array></array >", key + "<array>@</array >"},
           {key + "<array><!--<dict>--></array>", key + "<array>@<!--<dict>--></array>"}})
    EXPECT_EQ(edited(start + before + "</dict></plist>", {create}),
              start + replaced(after, "@", list) + "</dict></plist>");

  // The entries of a playlist, and cutting it out whole.
  const std::string tracks =
      "<plist><dict><key>Tracks</key><dict><key>5</key><dict><key>Persistent ID</key><string>A"
      "</string></dict></dict><key>Playlists</key><array>";
  const std::string id = "<dict><key>Playlist Persistent ID</key><string>B</string>";
  const std::string entry = "<dict><key>Track ID</key><integer>5</integer></dict>";
  const std::string end = "</array></dict></plist>";
  const std::string fill = scriptText(command::DuplicateTracks{{0xA}, 0xB});
  const std::string items = "<key>Playlist Items</key><array>";
  const auto withItems = [&](const std::string& entries) {
    return tracks + id + items + entries + "</array></dict>" + end;
  };
  const std::string odd = withItems("<integer>1</integer>" + entry);
  EXPECT_EQ(edited(tracks + id + "<key>Playlist Items</key><array/></dict>" + end, {fill}),
            withItems(entry));
  EXPECT_EQ(edited(odd, {scriptText(command::DeleteEntries{0xB, {1}}), fill}), odd);
  EXPECT_EQ(edited(odd, {scriptText(command::DeleteAllEntries{0xB}), fill, fill}),
            withItems("<integer>1</integer>" + entry + entry));
}

TEST(DocumentEdit, PlacesAreKnownInDocumentsOfAnySize) {
  constexpr std::size_t farthest = 0xFFFFFFFF;
  const std::size_t places[] = {7, 8, 7 + farthest, 8 + farthest, 9 + 2 * farthest, 20 * farthest};
  AscendingOffsets offsets;
  for (const std::size_t place : places) offsets.add(place);
  for (std::size_t i = 0; i < offsets.size(); ++i) EXPECT_EQ(offsets[i], places[i]) << i;
}

TEST(DocumentEdit, ADocumentInAnotherEncodingBecomesUtf8) {
  const std::string latin1 =
      "<?xml version='1.0' encoding='ISO-8859-1'?><plist><dict><key>Tracks</key><dict/><key>Owner"
      "</key><string>Andr\xE9</string><key>Playlists</key><array/></dict></plist>";
  const std::string after = edited(latin1, {scriptText(command::CreatePlaylist{"\u65E5\u672C"})});
  EXPECT_TRUE(after.starts_with("<?xml version='1.0' encoding='UTF-8'?><plist>")) << after;
  EXPECT_NE(after.find("<string>Andr\u00E9</string>"), std::string::npos) << after;
  EXPECT_NE(after.find("<string>\u65E5\u672C</string>"), std::string::npos) << after;
}

}  // namespace
}  // namespace kestrel::testing
