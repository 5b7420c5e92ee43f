/// A library document with the changes that were made to it in memory, ready to be written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/document/document_edit.h"
#include "musicapp/document/document_index.h"
#include "musicapp/document/document_text.h"
#include "musicapp/document/edited_playlists.h"
#include "musicapp/document/edited_tracks.h"
#include "musicapp/media_library.h"

namespace kestrel {

class Random;

/// Holds the document's old bytes, which stay readable after the file is replaced: all that is
/// ever written is them with every change since.
class EditedDocument {
 public:
  /// The others are what the document's reader gave.
  EditedDocument(DocumentText text, std::shared_ptr<const DocumentIndex> index,
                 std::shared_ptr<const MediaItems> items,
                 std::shared_ptr<const std::vector<Playlist>> playlists, Random& random);
  EditedDocument(const EditedDocument&) = delete;
  EditedDocument& operator=(const EditedDocument&) = delete;

  [[nodiscard]] EditedTracks& tracks() noexcept { return tracks_; }
  [[nodiscard]] EditedPlaylists& playlists() noexcept { return playlists_; }
  [[nodiscard]] const EditedPlaylists& playlists() const noexcept { return playlists_; }

  [[nodiscard]] const DocumentLayout& layout() const noexcept { return layout_; }

  /// A persistent ID that no track or playlist has.
  [[nodiscard]] std::uint64_t newPersistentID();
  /// A Track ID or Playlist ID above all others; documents draw both from one sequence. Throws
  /// std::overflow_error when the document's are too large to go on.
  [[nodiscard]] std::int64_t newID();

  /// Takes tracks out, of the playlists too.
  void removeTracks(std::span<const TrackNumber> tracks);
  /// Brings tracks back that an earlier state of the document had, at their places and into the
  /// playlists that still are there; those that are there again are left out.
  void restoreTracks(const DocumentReversal& reversal);

  /// The changed document. Returns what takes the change back. Throws FileError when another
  /// program changes the old one meanwhile.
  DocumentReversal write(TextSink& sink) const;
  /// The same for a document that was read in another encoding: `file` is its bytes.
  DocumentReversal write(TextSink& sink, std::string_view file) const;
  [[nodiscard]] bool isConverted() const noexcept { return text_.isConverted(); }
  /// Throws FileError when another program has changed the old one.
  void checkUnchanged() const { text_.checkUnchanged(); }

 private:
  [[nodiscard]] DocumentReversal writeChanged(TextSink& sink) const;

  DocumentText text_;
  std::shared_ptr<const DocumentIndex> index_;
  DocumentLayout layout_;
  EditedTracks tracks_;
  EditedPlaylists playlists_;
  Random& random_;
  std::int64_t largestID_;
  std::vector<EditedPlaylists::LostEntry> lostEntries_;
};

}  // namespace kestrel
