/// Where the parts of a library document stand in its bytes, so that a change can leave all other
/// bytes alone.
///
/// One pass over the document; 24 bytes are kept for each track, and nothing for the entries of
/// playlists, which are looked up when a playlist is touched. Everything counts as it does for
/// `readLibraryDocument`: of a repeated key the last one, of a repeated Track ID too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrel {

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
};

/// A key and its value, with the white space before them: what is cut out to remove them.
struct TrackPlace {
  std::int64_t trackID = 0;  ///< noTrackID when the key is no decimal number
  ByteRange entry;
};

struct PlaylistPlace {
  ByteRange entry;  ///< with the white space before it
  ContainerPlace dictionary;
  ContainerPlace items;        ///< "Playlist Items"
  ByteRange parent;            ///< the value of "Parent Persistent ID"
  std::size_t behindID = 0;    ///< behind "Playlist Persistent ID"; 0 without one that counts
  std::size_t behindName = 0;  ///< behind "Name"; 0 without one
};

class DocumentIndex {
 public:
  /// `document` is UTF-8. Throws PlistError when it is no library document.
  explicit DocumentIndex(std::string_view document);

  /// In the order of the items that the document's reader gives.
  [[nodiscard]] const std::vector<TrackPlace>& tracks() const noexcept { return tracks_; }
  /// Entries that a later one with the same Track ID replaces.
  [[nodiscard]] const std::vector<TrackPlace>& replacedTracks() const noexcept { return replaced_; }
  [[nodiscard]] const std::vector<PlaylistPlace>& playlists() const noexcept { return playlists_; }
  [[nodiscard]] const ContainerPlace& root() const noexcept { return root_; }
  [[nodiscard]] const ContainerPlace& tracksSection() const noexcept { return tracksSection_; }
  /// May be missing.
  [[nodiscard]] const ContainerPlace& playlistsSection() const noexcept {
    return playlistsSection_;
  }
  /// Of the tracks and of the playlists, at least 0.
  [[nodiscard]] std::int64_t largestID() const noexcept { return largestID_; }

 private:
  void separateReplaced();

  std::vector<TrackPlace> tracks_;
  std::vector<TrackPlace> replaced_;
  std::vector<PlaylistPlace> playlists_;
  ContainerPlace root_, tracksSection_, playlistsSection_;
  std::int64_t largestID_ = 0;
};

struct EntryPlace {
  std::int64_t trackID = 0;
  ByteRange entry;
  ByteRange number;  ///< the digits of the Track ID, with white space around them
};

/// The entries of a playlist that have a Track ID, in order. Costs a pass over their bytes.
std::vector<EntryPlace> entriesOf(std::string_view document, const PlaylistPlace& playlist);

}  // namespace kestrel
