/// Rhythmbox's file "playlists.xml": its lists, and the file with some of them changed.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel::rhythmbox {

struct StoredList {
  std::string name;
  std::string type;               ///< "static", "automatic" or "queue"
  std::vector<std::string> uris;  ///< the entries

  // Places in the file.
  std::size_t begin = 0, end = 0;  ///< of the element, with the white space before it
  std::size_t content = 0;         ///< behind the start tag; `end` when that is all
  std::vector<std::size_t> ends;   ///< of the entries' elements
};

/// How a list was written before a change: its whole element where it was one tag, and the entries
/// that went, by URI, each with what stood before it.
struct FormerList {
  std::string oneTag;
  std::multimap<std::string, std::string> entries;
};

/// What becomes of a list.
struct ListEdit {
  std::optional<std::size_t> list;  ///< its place among the lists; a new one has none
  std::string name;                 ///< of a new one
  /// Its entries from now on; nothing: it is deleted.
  std::optional<std::vector<std::string>> uris;
  const FormerList* former = nullptr;  ///< entries that come back are written as they were
};

class PlaylistsFile {
 public:
  /// A file without lists.
  PlaylistsFile();
  /// Throws LibraryError in the name of `file`.
  PlaylistsFile(std::string document, const std::string& file);

  [[nodiscard]] const std::vector<StoredList>& lists() const noexcept { return lists_; }
  /// The file with these changes, each of another list. All else stays to the byte; entries that
  /// stay keep their spelling and the comments before them.
  [[nodiscard]] std::string edited(std::span<const ListEdit> edits) const;
  /// How a list is written, as far as `edit` changes that.
  [[nodiscard]] FormerList former(const ListEdit& edit) const;

 private:
  class Reader;
  /// Its entries with what stands before each.
  [[nodiscard]] std::multimap<std::string_view, std::string_view> entriesOf(
      const StoredList& list) const;
  void write(const StoredList& list, const ListEdit& edit, std::string& out) const;

  std::string document_;
  std::vector<StoredList> lists_;
  std::size_t rootContent_ = 0, rootEndTag_ = 0;
};

}  // namespace kestrel::rhythmbox
