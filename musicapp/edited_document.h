/// A library document with the changes that were made to it in memory, ready to be written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/document_edit.h"
#include "musicapp/document_index.h"
#include "musicapp/document_text.h"
#include "musicapp/edited_playlists.h"
#include "musicapp/edited_tracks.h"
#include "musicapp/media_library.h"

namespace kestrel {

class Random;

/// Holds the document's old bytes, which stay readable after the file is replaced: all that is
/// ever written is them with every change since.
class EditedDocument {
 public:
  /// The lists are those that the document's reader gave. Throws PlistError.
  EditedDocument(DocumentText text, std::shared_ptr<const MediaItems> items,
                 std::shared_ptr<const std::vector<Playlist>> playlists, Random& random);
  EditedDocument(const EditedDocument&) = delete;
  EditedDocument& operator=(const EditedDocument&) = delete;

  [[nodiscard]] EditedTracks& tracks() noexcept { return tracks_; }
  [[nodiscard]] EditedPlaylists& playlists() noexcept { return playlists_; }
  [[nodiscard]] const EditedPlaylists& playlists() const noexcept { return playlists_; }

  /// A persistent ID that no track or playlist has.
  [[nodiscard]] std::uint64_t newPersistentID();
  /// A Track ID or Playlist ID above all others; documents draw both from one sequence. Throws
  /// std::overflow_error when the document's are too large to go on.
  [[nodiscard]] std::int64_t newID();

  /// The changed document. Throws FileError when another program changes it meanwhile.
  void write(TextSink& sink) const;

 private:
  DocumentText text_;
  DocumentIndex index_;
  DocumentLayout layout_;
  EditedTracks tracks_;
  EditedPlaylists playlists_;
  Random& random_;
  std::int64_t largestID_;
};

}  // namespace kestrel
