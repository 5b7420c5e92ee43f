/// The library document from which playlist documents are made, ready to be excerpted.
///
/// A playlist document repeats the track entries of the library's own document whole and
/// unchanged. This keeps the small values of that document in memory and of its tracks only where
/// each stands in the mapped file: 36 bytes a track beside the file's pages, which the system
/// reads when an entry is copied and takes back when it likes.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/property_list.h"
#include "musicapp/document/document_text.h"

namespace kestrel {

class FileService;

/// Reads as the root dictionary of a library document, of which "Tracks" is not a value but a place
/// to look entries up. The empty one has no keys. Moves; does not copy. Not thread-safe.
class StoredDocument {
 public:
  /// Scans the document at `path` once, front to back. Throws LibraryError when it cannot be read
  /// or is no property list with a dictionary at its root. A document that is not in UTF-8 is
  /// converted in a file without a name first, so that what is copied out of it is UTF-8.
  static StoredDocument ofFile(const std::string& path, FileService& files);
  /// The same of a document in memory, for sources that have no file. `name` is for messages.
  static StoredDocument ofBytes(std::string bytes, const std::string& name);

  /// The root's values but "Tracks" and "Playlists", in document order. `script::refresh`
  /// adds what very old libraries lack of them.
  PropertyList header;

  [[nodiscard]] std::size_t trackCount() const noexcept { return places_.size() + others_.size(); }
  /// A key of "Tracks" with its value, as the bytes of both elements stand in the document. Of a
  /// repeated key the last one counts. Valid as long as this object.
  [[nodiscard]] std::optional<std::string_view> entry(std::string_view key) const;
  /// The key of the track with this persistent ID, as it stands in the document; of several tracks
  /// that share a damaged one, that with the lowest number. Tracks without one have the ID that
  /// the library's reader derives for them. Keys that are no numbers do not count, since no
  /// playlist can list their tracks; those with an unusual spelling of one do, after the others.
  [[nodiscard]] std::optional<std::string> keyOf(std::uint64_t persistentID) const;

  /// The file that was read; nothing for documents in memory.
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  [[nodiscard]] const std::optional<FileStatus>& status() const noexcept { return status_; }

 private:
  struct Place {
    std::uint64_t key;
    std::uint64_t offset;
    std::uint64_t persistentID;
    std::uint64_t length;
  };
  class Scan;

  void scan(const std::string& name, MappedFile file);

  std::optional<DocumentText> text_;
  std::string path_;
  std::optional<FileStatus> status_;
  std::vector<Place> places_;                                      ///< by key
  std::map<std::string, Place, std::less<>> others_;               ///< whose key is no plain number
  std::vector<std::uint32_t> byPersistentID_;                      ///< numbers of places
  std::unordered_map<std::uint64_t, std::string_view> otherKeys_;  ///< numbers by persistent ID
};

}  // namespace kestrel
