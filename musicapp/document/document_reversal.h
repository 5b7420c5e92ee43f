/// What takes a commit of a library document back, to the byte.
///
/// Written into the history before the commit takes effect, so its format (CBOR) stays readable:
/// later versions only add to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/bytes.h"
#include "musicapp/document/document_index.h"

namespace kestrel {

class TextSink;

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

/// Follows the writing of a document that is made of another one, and notes what differs.
class ReversalRecorder {
 public:
  void kept(std::string_view bytes);
  /// What is `written` until `replaced` stands in the place of these bytes.
  void replaces(std::string_view old);
  void written(std::string_view bytes);
  void replaced() { pieces_.back().place.end = at_; }
  /// To be called once, at the end.
  [[nodiscard]] DocumentReversal finish();

 private:
  std::vector<DocumentReversal::Piece> pieces_;
  ContentHash before_, after_;
  std::size_t at_ = 0;  ///< bytes written
};

/// Writes the document that `committed` was made of. Returns whether it is that, by its hash.
[[nodiscard]] bool writeReverted(std::string_view committed, const DocumentReversal& reversal,
                                 TextSink& sink);

}  // namespace kestrel
