#include "musicapp/document/document_index.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "foundation/plist_scanner.h"
#include "musicapp/document/document_tracks.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// The opening tag that ends at the scanner; attributes contain no '<'.
size_t tagBefore(string_view document, const PlistScanner& scanner) {
  return document.rfind('<', scanner.offset() - 1);
}

/// The place of a container that was just begun; `end` and `last` are still to be set.
ContainerPlace begun(string_view document, const PlistScanner& scanner) {
  ContainerPlace place;
  place.tag = tagBefore(document, scanner);
  place.content = place.last = scanner.offset();
  place.selfClosed = scanner.begunEmpty();
  return place;
}

std::int64_t trackIDOf(string_view key) {
  std::int64_t number = 0;
  const char* end = key.data() + key.size();
  const auto [stop, error] = std::from_chars(key.data(), end, number);
  return error == std::errc() && stop == end ? number : noTrackID;
}

/// Calls `take` with what `next` finds before each value of a container: a dictionary's keys, or
/// the types of an array's values. `take` passes the value.
template <typename Found, typename Take>
ContainerPlace scanContainer(string_view document, PlistScanner& scanner,
                             bool (PlistScanner::*next)(Found&), Take&& take) {
  ContainerPlace place = begun(document, scanner);
  for (Found found{}; (scanner.*next)(found);) {
    take(found);
    place.last = scanner.offset();
  }
  place.end = scanner.offset();
  return place;
}

template <typename Take>
ContainerPlace scanDictionary(string_view document, PlistScanner& scanner, Take&& take) {
  return scanContainer(document, scanner, &PlistScanner::nextKey, take);
}

template <typename Take>
ContainerPlace scanArray(string_view document, PlistScanner& scanner, Take&& take) {
  return scanContainer(document, scanner, &PlistScanner::nextItem, take);
}

PlaylistPlace scanPlaylist(string_view document, PlistScanner& scanner, std::int64_t& largestID) {
  PlaylistPlace playlist;
  std::string key;
  playlist.dictionary = scanDictionary(document, scanner, [&](string_view nextKey) {
    key.assign(nextKey);
    const PlistType type = scanner.beginValue();
    if (type == PlistType::array && key == "Playlist Items") {
      playlist.items =
          scanArray(document, scanner, [&](PlistType itemType) { scanner.skip(itemType); });
    } else if (type == PlistType::integer && key == "Playlist ID") {
      largestID = std::max(largestID, scanner.integer());
    } else if (type == PlistType::string && key == "Playlist Persistent ID") {
      const bool counts = numberFromHex(scanner.text(type)).value_or(0) != 0;
      playlist.behindID = counts ? scanner.offset() : 0;
    } else if (type == PlistType::string && key == "Parent Persistent ID") {
      const size_t tag = tagBefore(document, scanner);
      const bool counts = numberFromHex(scanner.text(type)).value_or(0) != 0;
      if (counts || playlist.parent.empty()) playlist.parent = {tag, scanner.offset()};
    } else {
      const bool isName = type == PlistType::string && key == "Name";
      scanner.skip(type);
      if (isName) playlist.behindName = scanner.offset();
    }
  });
  return playlist;
}

}  // namespace

DocumentIndex::DocumentIndex(string_view document) {
  PlistScanner scanner(document);
  scanner.beginDocument();
  if (scanner.beginValue() != PlistType::dictionary)
    scanner.fail(Message::tr("expected the library's <dict>"));
  root_ = scanDictionary(document, scanner, [&](string_view key) {
    const bool isTracks = key == "Tracks", isPlaylists = key == "Playlists";
    const PlistType type = scanner.beginValue();
    if (isTracks && type == PlistType::dictionary) {
      tracks_.clear();
      size_t from = scanner.offset();
      tracksSection_ = scanDictionary(document, scanner, [&](string_view trackKey) {
        const std::int64_t trackID = trackIDOf(trackKey);
        scanner.skip(scanner.beginValue());
        tracks_.push_back({trackID, {from, scanner.offset()}});
        from = scanner.offset();
      });
    } else if (isPlaylists && type == PlistType::array) {
      playlists_.clear();
      size_t from = scanner.offset();
      playlistsSection_ = scanArray(document, scanner, [&](PlistType itemType) {
        if (itemType != PlistType::dictionary)
          scanner.fail(Message::tr("expected a playlist to be a <dict>"));
        playlists_.push_back(scanPlaylist(document, scanner, largestID_));
        playlists_.back().entry = {from, scanner.offset()};
        from = scanner.offset();
      });
    } else {
      scanner.skip(type);
    }
  });
  if (!tracksSection_.isThere()) scanner.fail(Message::tr("this property list has no Tracks"));
  separateReplaced();
}

void DocumentIndex::separateReplaced() {
  bool ascending = true;
  for (size_t i = 0; i < tracks_.size(); ++i) {
    largestID_ = std::max(largestID_, tracks_[i].trackID);
    ascending = ascending && (i == 0 || tracks_[i - 1].trackID < tracks_[i].trackID);
  }
  if (ascending) return;  // and so without repeats
  std::vector<std::pair<std::int64_t, size_t>> byID;
  byID.reserve(tracks_.size());
  for (size_t i = 0; i < tracks_.size(); ++i) byID.emplace_back(tracks_[i].trackID, i);
  std::sort(byID.begin(), byID.end());
  std::vector<size_t> repeats;
  for (size_t i = 1; i < byID.size(); ++i)
    if (byID[i].first == byID[i - 1].first && byID[i].first != noTrackID)
      repeats.push_back(byID[i - 1].second);
  if (repeats.empty()) return;
  std::sort(repeats.begin(), repeats.end());
  std::vector<TrackPlace> kept;
  kept.reserve(tracks_.size() - repeats.size());
  auto next = repeats.begin();
  for (size_t i = 0; i < tracks_.size(); ++i) {
    const bool replaced = next != repeats.end() && *next == i;
    if (replaced) ++next;
    (replaced ? replaced_ : kept).push_back(tracks_[i]);
  }
  tracks_ = std::move(kept);
}

std::vector<EntryPlace> entriesOf(string_view document, const PlaylistPlace& playlist) {
  std::vector<EntryPlace> entries;
  if (!playlist.items.isThere() || playlist.items.selfClosed) return entries;
  PlistScanner scanner(document, playlist.items.tag);
  scanner.beginValue();
  size_t from = scanner.offset();
  scanArray(document, scanner, [&](PlistType type) {
    std::optional<std::int64_t> trackID;
    ByteRange number;
    if (type == PlistType::dictionary) {
      string_view key;
      while (scanner.nextKey(key)) {
        const bool wanted = key == "Track ID";
        const PlistType valueType = scanner.beginValue();
        if (wanted && valueType == PlistType::integer) {
          number.begin = scanner.offset();
          trackID = scanner.integer();
          number.end = tagBefore(document, scanner);
        } else {
          scanner.skip(valueType);
        }
      }
    } else {
      scanner.skip(type);
    }
    if (trackID) entries.push_back({*trackID, {from, scanner.offset()}, number});
    from = scanner.offset();
  });
  return entries;
}

}  // namespace kestrel
