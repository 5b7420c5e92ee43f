/// The tracks of a library document while it is changed: numbered, found, added and removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/document/document_edit.h"
#include "musicapp/document/document_index.h"
#include "musicapp/document/document_values.h"
#include "musicapp/document/number_lookup.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// A track's place in the library as it was read; added ones follow. Never used again.
using TrackNumber = std::uint32_t;

class EditedTracks {
 public:
  /// `items` are those of the indexed document, in its order; the others outlive this object.
  EditedTracks(std::string_view document, const DocumentIndex& index,
               std::shared_ptr<const MediaItems> items);

  // Of repeated IDs and locations, the first track that is still there.
  [[nodiscard]] std::optional<TrackNumber> byPersistentID(std::uint64_t id);
  [[nodiscard]] std::optional<TrackNumber> byTrackID(std::int64_t id);
  /// By file-system path, or by the URL of what is no file.
  [[nodiscard]] std::optional<TrackNumber> byLocation(std::string_view location);

  [[nodiscard]] const MediaItem& item(TrackNumber number) const { return *items_[number]; }
  [[nodiscard]] std::int64_t trackID(TrackNumber number) const;

  /// Takes a copy, texts included, with an ID that no other track has.
  TrackNumber add(const MediaItem& item, std::int64_t trackID);
  void remove(TrackNumber number);
  /// Brings a track back that the document had once, with its entry's bytes as they stood there; at
  /// its place, unless the track `behind` (0: none) which it followed is gone too. Its Track ID is
  /// another one where `trackID` is not the entry's.
  TrackNumber restore(const MediaItem& item, std::int64_t trackID, std::string entry,
                      std::uint64_t behind);

  /// What the entry of a track says of its values, with what it was given; nothing for one that was
  /// added and is not in the document yet.
  [[nodiscard]] ValueElements valueElements(TrackNumber number) const;
  /// Gives a track these elements, with which it reads as `item`.
  void setValues(TrackNumber number, const ValueElements& elements, const MediaItem& item,
                 const DocumentLayout& layout);

  /// The document's tracks that were removed, each with the persistent ID of the one before it.
  struct Removed {
    TrackNumber track = 0;
    std::uint64_t behind = 0;
    ByteRange entry;
  };
  [[nodiscard]] std::vector<Removed> removed() const;

  /// The tracks as they are now, in a list that is new after each change.
  [[nodiscard]] std::shared_ptr<const MediaItems> items();
  /// What is to be cut out of and put into the document. Valid until the next change.
  void appendSplices(const DocumentLayout& layout, std::vector<Splice>& splices) const;

 private:
  /// What is written of an added track.
  struct Added {
    std::int64_t trackID = 0;
    std::string entry;                 ///< of a restored one
    std::optional<std::size_t> place;  ///< where a restored one goes; else it comes last
  };

  TrackNumber add(const MediaItem& item, Added added);
  void writeAdded(TextSink& sink, const DocumentLayout& layout) const;
  [[nodiscard]] bool isOld(TrackNumber number) const { return number < index_.trackCount(); }
  [[nodiscard]] ByteRange entryOf(TrackNumber number) const {
    return index_.trackEntry(index_.entryOf(number));
  }

  std::string_view document_;
  const DocumentIndex& index_;
  std::shared_ptr<const MediaItems> original_;
  std::shared_ptr<MediaItems> added_ = std::make_shared<MediaItems>();  ///< owns their texts
  std::shared_ptr<const MediaItems> current_;                           ///< nullptr: to be made
  std::vector<const MediaItem*> items_;                                 ///< by number
  std::vector<bool> removed_;                                           ///< by number
  std::vector<Added> addedEntries_;
  std::map<TrackNumber, ValueElements> given_;  ///< of the document's tracks
  std::optional<NumberLookup> byPersistentID_, byTrackID_, byLocation_;
};

/// The file-system path, or the URL of what is no file; empty when there is none.
std::string locationOf(const MediaItem& item);

}  // namespace kestrel
