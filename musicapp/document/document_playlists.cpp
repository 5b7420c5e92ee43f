#include "musicapp/document/document_playlists.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

bool isFlag(PlistType type) { return type == PlistType::boolTrue || type == PlistType::boolFalse; }

/// The entries of "Playlist Items": dictionaries with a Track ID.
void readItems(PlistScanner& scanner, std::vector<std::uint64_t>& items) {
  PlistType type;
  string_view key;
  while (scanner.nextItem(type)) {
    if (type != PlistType::dictionary) {
      scanner.skip(type);
      continue;
    }
    std::optional<std::int64_t> trackID;  // of a repeated key, the last one counts
    while (scanner.nextKey(key)) {
      const bool wanted = key == "Track ID";
      type = scanner.beginValue();
      if (wanted && type == PlistType::integer)
        trackID = scanner.integer();
      else
        scanner.skip(type);
    }
    if (trackID) items.push_back(static_cast<std::uint64_t>(*trackID));
  }
  items.shrink_to_fit();
}

struct Marks {
  bool folder = false, genius = false, smart = false, hasID = false;
};

bool takeText(PlistScanner& scanner, string_view key, Playlist& playlist, Marks& marks) {
  if (key == "Name") {
    playlist.name = scanner.text(PlistType::string);
  } else if (key == "Playlist Persistent ID") {
    playlist.persistentID = numberFromHex(scanner.text(PlistType::string)).value_or(0);
    marks.hasID = playlist.persistentID != 0;
  } else if (key == "Parent Persistent ID") {
    if (const auto id = numberFromHex(scanner.text(PlistType::string)).value_or(0))
      playlist.parentID = id;
  } else {
    return false;
  }
  return true;
}

Playlist readPlaylist(PlistScanner& scanner, DocumentIndex& index) {
  Playlist playlist;
  Marks marks;
  std::string key;
  string_view nextKey;
  while (scanner.nextKey(nextKey)) {
    key.assign(nextKey);
    const PlistType type = scanner.beginValue();
    const bool truth = type == PlistType::boolTrue;
    if (type == PlistType::string && takeText(scanner, key, playlist, marks)) continue;
    if (key == "Playlist Items" && type == PlistType::array) {
      playlist.items.clear();
      readItems(scanner, playlist.items);
      continue;
    }
    if (key == "Playlist ID" && type == PlistType::integer) {
      index.largestID = std::max(index.largestID, scanner.integer());
      continue;
    }
    if (key == "Distinguished Kind" && type == PlistType::integer) {
      playlist.distinguishedKind = scanner.integer();
      continue;
    }
    // Flags may be present and false; the marks below count by presence, as their values are data.
    if (key == "Master" && isFlag(type)) playlist.isMaster = truth;
    if (key == "Visible" && isFlag(type)) playlist.isVisible = truth;
    if (key == "Folder" && isFlag(type)) marks.folder = truth;
    if (key == "Genius Track ID") marks.genius = true;
    if (key == "Smart Info" || key == "Smart Criteria") marks.smart = true;
    scanner.skip(type);
  }
  // Folders may carry smart criteria too, so the order decides.
  playlist.kind = marks.folder   ? PlaylistKind::folder
                  : marks.genius ? PlaylistKind::genius
                  : marks.smart  ? PlaylistKind::smart
                                 : PlaylistKind::regular;
  if (!marks.hasID)
    playlist.persistentID =
        derivedPersistentID(std::to_string(index.playlistEnds.size()), playlist.name);
  index.playlistEnds.push_back({scanner.offset(), marks.hasID});
  return playlist;
}

}  // namespace

std::vector<Playlist> readPlaylists(PlistScanner& scanner, DocumentIndex& index) {
  std::vector<Playlist> playlists;
  index.playlistEnds.clear();
  PlistType type;
  for (size_t place = scanner.offset(); scanner.nextItem(type); place = scanner.offset()) {
    if (type != PlistType::dictionary)
      throw PlistError(place, Message::tr("expected a playlist to be a <dict>"));
    playlists.push_back(readPlaylist(scanner, index));
  }
  return playlists;
}

}  // namespace kestrel
