#include "tests/musicapp/document_world.h"

namespace kestrel::testing {
namespace {

std::string track(int number) {
  const std::string id = std::to_string(number);
  const std::string title(1, static_cast<char>('a' + number - 1));
  return "\t\t<key>" + id + "</key>\n\t\t<dict>\n\t\t\t<key>Track ID</key><integer>" + id +
         "</integer>\n\t\t\t<key>Unknown Key</key><string>k &#233;</string>\n"
         "\t\t\t<key>Persistent ID</key><string>000000000000000" +
         static_cast<char>('A' + number - 1) + "</string>\n\t\t\t<key>Name</key><string>" + title +
         "</string>\n\t\t\t<key>Track Type</key><string>File</string>\n\t\t\t<key>Location</key>"
         "<string>file:///music/" +
         title + ".mp3</string>\n\t\t</dict>\n";
}

std::string playlist(const std::string& name, const std::string& id, const std::string& more,
                     const std::vector<int>& tracks) {
  std::string text = "\t\t<dict>\n\t\t\t<key>Name</key><string>" + name +
                     "</string>\n\t\t\t<key>Playlist ID</key><integer>" + id +
                     "</integer>\n\t\t\t<key>Playlist Persistent ID</key><string>" + id +
                     "</string>\n" + more;
  if (!tracks.empty()) {
    text += "\t\t\t<key>Playlist Items</key>\n\t\t\t<array>\n";
    for (const int number : tracks)
      text += "\t\t\t\t<dict>\n\t\t\t\t\t<key>Track ID</key><integer>" + std::to_string(number) +
              "</integer>\n\t\t\t\t</dict>\n";
    text += "\t\t\t</array>\n";
  }
  return text + "\t\t</dict>\n";
}

std::string flag(const std::string& key) { return "\t\t\t<key>" + key + "</key><true/>\n"; }

}  // namespace

std::string smallLibrary() {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
      "\t<key>Major Version</key><integer>1</integer>\n\t<key>Tracks</key>\n\t<dict>\n";
  for (int i = 1; i <= 4; ++i) text += track(i);
  text += "\t</dict>\n\t<key>Playlists</key>\n\t<array>\n";
  text += playlist("Library", "10", flag("Master"), {1, 2, 3, 4});
  text += playlist("Purchased", "11", "\t\t\t<key>Distinguished Kind</key><integer>19</integer>\n",
                   {4});
  text += playlist("Mix", "12", "", {1, 2, 1, 3});
  text += playlist("Empty", "13", "", {});
  text += playlist("Folder", "14", flag("Folder"), {2});
  text +=
      playlist("Inner", "15", "\t\t\t<key>Parent Persistent ID</key><string>14</string>\n", {2});
  text += playlist("Smart", "16",
                   "\t\t\t<key>Smart Info</key>\n\t\t\t<data>\n\t\t\tAQ==\n"
                   "\t\t\t</data>\n",
                   {3});
  text += playlist("Mix", "17", "", {4});
  return text + "\t</array>\n</dict>\n</plist>\n";
}

}  // namespace kestrel::testing
