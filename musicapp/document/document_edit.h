/// Changing a document by putting new text between its old bytes.
///
/// What is new follows the layout that the document has: line ends, indentation, and whether a
/// value stands on the line of its key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/bytes.h"
#include "musicapp/document/document_index.h"

namespace kestrel {

/// What takes a commit of a library document back, to the byte.
///
/// Written into the history before the commit takes effect, so its format (CBOR) stays readable:
/// later versions only add to it.
struct DocumentReversal {
  /// Bytes of the committed document and what stood there before.
  struct Piece {
    ByteRange place;
    std::string before;
  };
  struct Position {
    std::uint64_t playlist = 0;
    std::uint64_t position = 0;  ///< from 0, before anything went
  };
  /// A track that left the document.
  struct Track {
    std::uint64_t persistentID = 0;
    std::uint64_t behind = 0;  ///< the ID of the track before it; 0 for the first
    std::string entry;         ///< its key and dictionary, with the white space before them
    std::vector<Position> positions;
  };

  std::string before, after;  ///< hashes of the documents
  std::size_t size = 0;       ///< bytes of the one that was committed
  std::vector<Piece> pieces;  ///< in the order of their places
  std::vector<Track> tracks;  ///< in the order of the document

  [[nodiscard]] std::string encoded() const;
  /// Nothing for bytes that are none.
  static std::optional<DocumentReversal> decoded(std::string_view bytes);
};

/// Writes the document that `committed` was made of. Returns whether it is that, by its hash.
[[nodiscard]] bool writeReverted(std::string_view committed, const DocumentReversal& reversal,
                                 TextSink& sink);

/// Old bytes and what stands there instead; nothing when `text` is empty. Texts are made when they
/// are written, so that large ones never stand in memory as a whole.
struct Splice {
  ByteRange old;
  std::function<void(TextSink&)> text;
};

/// Writes `document` with the splices, which do not overlap, in whatever order; those at the same
/// place come in the order given. `passed` is told of ranges of the old bytes that were written.
/// Returns what takes the change back, without its `tracks`.
DocumentReversal writeSpliced(
    std::string_view document, std::vector<Splice> splices, TextSink& sink,
    const std::function<void(std::size_t offset, std::size_t size)>& passed);

struct DocumentLayout {
  std::string lineEnd = "\n";     ///< empty for a document on one line
  std::string rootIndent = "\t";  ///< of the keys of the root dictionary
  std::string indentUnit = "\t";
  bool valuesOnOwnLines = false;  ///< texts and numbers too

  /// A line end and the indentation of what stands `depth` levels below the root's keys.
  [[nodiscard]] std::string lineStart(std::size_t depth) const;
};

DocumentLayout layoutOf(std::string_view document, const DocumentIndex& index);

/// Writes elements in a layout; each begins with its own line start.
class LayoutWriter {
 public:
  LayoutWriter(TextSink& sink, const DocumentLayout& layout) : sink_(sink), layout_(layout) {}

  /// A key with a string, integer or date.
  void value(std::size_t depth, std::string_view key, std::string_view element,
             std::string_view text);
  /// Nothing when it is empty.
  void text(std::size_t depth, std::string_view key, std::string_view content) {
    if (!content.empty()) value(depth, key, "string", content);
  }
  /// Nothing for 0.
  void number(std::size_t depth, std::string_view key, std::int64_t number);
  void flag(std::size_t depth, std::string_view key);
  void key(std::size_t depth, std::string_view name);
  /// A tag on a line of its own.
  void tag(std::size_t depth, std::string_view tag);
  /// The dictionaries of "Playlist Items".
  void entries(std::size_t depth, std::span<const std::int64_t> trackIDs);

 private:
  TextSink& sink_;
  const DocumentLayout& layout_;
};

/// Lets `content` write into a container behind what it holds. `depth` is that of its tags;
/// `element` is "dict" or "array".
void appendInto(std::string_view document, const ContainerPlace& place, const std::string& element,
                std::size_t depth, const DocumentLayout& layout,
                std::function<void(TextSink&)> content, std::vector<Splice>& splices);

}  // namespace kestrel
