/// Where the parts of a library document stand in its bytes, so that a change can leave all other
/// bytes alone.
///
/// The document's reader notes it on its way: four bytes for each track, sixteen for each playlist.
/// What stands within them is looked up in the bytes when they are touched. Everything counts as it
/// does for the reader: of a repeated key the last one, of a repeated Track ID too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kestrel {

class PlistScanner;

struct ByteRange {
  std::size_t begin = 0, end = 0;
  [[nodiscard]] bool empty() const noexcept { return begin == end; }
};

/// A dictionary or array of the document.
struct ContainerPlace {
  std::size_t tag = 0;      ///< its opening tag
  std::size_t content = 0;  ///< behind the opening tag
  std::size_t last = 0;     ///< behind the last thing in it; `content` when it is empty
  std::size_t end = 0;      ///< behind the closing tag
  bool selfClosed = false;  ///< "<dict/>": there is no inside
  [[nodiscard]] bool isThere() const noexcept { return end != 0; }

  /// One that `scanner` has just begun; `end` and `last` are still to be set.
  static ContainerPlace begun(std::string_view document, const PlistScanner& scanner);
};

struct EntryPlace {
  std::int64_t trackID = 0;
  ByteRange entry;
  ByteRange number;  ///< the digits of the Track ID, with white space around them
};

struct PlaylistPlace {
  ContainerPlace dictionary;
  ContainerPlace items;        ///< "Playlist Items"
  ByteRange parent;            ///< the value of "Parent Persistent ID"
  std::size_t behindID = 0;    ///< behind "Playlist Persistent ID"; 0 without one that counts
  std::size_t behindName = 0;  ///< behind "Name"; 0 without one
};

/// Offsets in ascending order, four bytes each.
class AscendingOffsets {
 public:
  void add(std::size_t offset);
  [[nodiscard]] std::size_t operator[](std::size_t number) const;
  [[nodiscard]] std::size_t size() const noexcept { return distances_.size(); }
  void shrink() { distances_.shrink_to_fit(); }

 private:
  /// Offsets that lie less than 4 GiB behind the first of them.
  struct Stretch {
    std::size_t number = 0;  ///< of the first one
    std::size_t offset = 0;
  };
  std::vector<Stretch> stretches_;
  std::vector<std::uint32_t> distances_;
};

/// The operations look into the bytes that were read. They throw PlistError only when those have
/// changed since.
struct DocumentIndex {
  struct PlaylistEnd {
    std::size_t offset = 0;  ///< behind the playlist
    bool hasID = false;      ///< a persistent ID that counts
  };

  ContainerPlace root, tracks, playlists;  ///< `playlists` may be missing
  AscendingOffsets trackEnds;              ///< behind each entry of `tracks`
  std::vector<std::uint32_t> replaced;     ///< entries that a later one with their ID replaces
  std::vector<PlaylistEnd> playlistEnds;   ///< in the order of the reader's list
  std::vector<std::int64_t> undefinedIDs;  ///< ascending: Track IDs in playlists, but no track's
  std::int64_t largestID = 0;              ///< of the tracks and playlists, at least 0

  [[nodiscard]] std::size_t trackCount() const noexcept {
    return trackEnds.size() - replaced.size();
  }
  /// The place among the entries of the reader's item `number`.
  [[nodiscard]] std::size_t entryOf(std::size_t number) const noexcept;
  /// The key and value of an entry, with the white space before them: what is cut out to remove it.
  [[nodiscard]] ByteRange trackEntry(std::size_t entry) const;
  /// noTrackID when the key is no decimal number.
  [[nodiscard]] std::int64_t trackID(std::string_view document, std::size_t entry) const;
  /// With the white space before it.
  [[nodiscard]] ByteRange playlistEntry(std::size_t number) const;
  /// Costs a pass over the playlist's bytes. `entries` gets those that have a Track ID, in order.
  PlaylistPlace playlist(std::string_view document, std::size_t number,
                         std::vector<EntryPlace>* entries = nullptr) const;
};

}  // namespace kestrel
