#include "musicapp/document/document_index.h"

#include <algorithm>
#include <limits>
#include <optional>
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

/// The "Playlist Items" that were just begun.
ContainerPlace scanEntries(string_view document, PlistScanner& scanner,
                           std::vector<EntryPlace>* entries) {
  ContainerPlace items = ContainerPlace::begun(document, scanner);
  for (PlistType type; scanner.nextItem(type); items.last = scanner.offset()) {
    if (!entries || type != PlistType::dictionary) {
      scanner.skip(type);
      continue;
    }
    std::optional<std::int64_t> trackID;
    ByteRange number;
    for (string_view key; scanner.nextKey(key);) {
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
    if (trackID) entries->push_back({*trackID, {items.last, scanner.offset()}, number});
  }
  items.end = scanner.offset();
  return items;
}

}  // namespace

ContainerPlace ContainerPlace::begun(string_view document, const PlistScanner& scanner) {
  const size_t behind = scanner.offset();
  return {tagBefore(document, scanner), behind, behind, 0, scanner.begunEmpty()};
}

void AscendingOffsets::add(size_t offset) {
  constexpr size_t farthest = std::numeric_limits<std::uint32_t>::max();
  if (stretches_.empty() || offset - stretches_.back().offset > farthest)
    stretches_.push_back({distances_.size(), offset});
  distances_.push_back(static_cast<std::uint32_t>(offset - stretches_.back().offset));
}

size_t AscendingOffsets::operator[](size_t number) const {
  const auto behind =
      std::upper_bound(stretches_.begin(), stretches_.end(), number,
                       [](size_t n, const Stretch& stretch) { return n < stretch.number; });
  return std::prev(behind)->offset + distances_[number];
}

size_t DocumentIndex::entryOf(size_t number) const noexcept {
  // Before the n-th replaced entry stand as many items as its place is beyond n.
  size_t before = 0;
  for (size_t end = replaced.size(); before < end;) {
    const size_t middle = before + (end - before) / 2;
    if (replaced[middle] - middle <= number)
      before = middle + 1;
    else
      end = middle;
  }
  return number + before;
}

ByteRange DocumentIndex::trackEntry(size_t entry) const {
  return {entry == 0 ? tracks.content : trackEnds[entry - 1], trackEnds[entry]};
}

std::int64_t DocumentIndex::trackID(string_view document, size_t entry) const {
  PlistScanner scanner(document, trackEntry(entry).begin);
  string_view key;
  return scanner.nextKey(key) ? trackIDOf(key) : noTrackID;
}

ByteRange DocumentIndex::playlistEntry(size_t number) const {
  return {number == 0 ? playlists.content : playlistEnds[number - 1].offset,
          playlistEnds[number].offset};
}

PlaylistPlace DocumentIndex::playlist(string_view document, size_t number,
                                      std::vector<EntryPlace>* entries) const {
  PlistScanner scanner(document, playlistEntry(number).begin);
  scanner.beginValue();
  PlaylistPlace playlist;
  playlist.dictionary = ContainerPlace::begun(document, scanner);
  std::string key;
  for (string_view nextKey; scanner.nextKey(nextKey); playlist.dictionary.last = scanner.offset()) {
    key.assign(nextKey);
    const PlistType type = scanner.beginValue();
    if (type == PlistType::array && key == "Playlist Items") {
      if (entries) entries->clear();
      playlist.items = scanEntries(document, scanner, entries);
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
  }
  playlist.dictionary.end = scanner.offset();
  return playlist;
}

}  // namespace kestrel
