/// The playlists of a library document while they are changed.
///
/// The entries of a playlist are looked up in the document when it is first changed in a way that
/// needs them; what is done to others costs nothing.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "musicapp/document/document_edit.h"
#include "musicapp/document/document_index.h"
#include "musicapp/document/edited_tracks.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Playlists are addressed by their place in `list()`, which the caller has made sure of.
class EditedPlaylists {
 public:
  /// `playlists` are those of the indexed document, in its order; the others outlive this object.
  EditedPlaylists(std::string_view document, const DocumentIndex& index, EditedTracks& tracks,
                  std::shared_ptr<const std::vector<Playlist>> playlists);

  [[nodiscard]] const std::vector<Playlist>& list() const noexcept { return *current_; }
  /// The same to keep and to read on any thread. While it is kept, a change makes a copy.
  [[nodiscard]] std::shared_ptr<const std::vector<Playlist>> shared() const;

  /// Appends an ordinary playlist at top level.
  void add(std::string name, std::uint64_t persistentID, std::int64_t playlistID,
           std::span<const TrackNumber> tracks);
  /// `removed` has an entry for each playlist.
  void remove(const std::vector<bool>& removed);
  // Entries of tracks that the document does not define stay: no list shows them, so that no
  // command could bring them back.

  /// Which entries go when those at `positions`, counted from 0, are taken out one after the
  /// other; nothing when there is none at one of them.
  [[nodiscard]] std::optional<std::vector<bool>> entriesAt(
      std::size_t playlist, std::span<const std::uint64_t> positions) const;
  /// `removed` has an entry for each entry.
  void removeEntries(std::size_t playlist, const std::vector<bool>& removed);
  void removeAllEntries(std::size_t playlist);
  void append(std::size_t playlist, std::span<const TrackNumber> tracks);
  /// `position` counts from 0 and is one of the list's.
  void replaceEntry(std::size_t playlist, std::size_t position, TrackNumber track);
  /// Changes as few of the entries as it takes to make them these. `unknownAt`: see
  /// command::SetEntries.
  void setEntries(std::size_t playlist, std::span<const TrackNumber> tracks,
                  const std::vector<std::uint64_t>& unknownAt);

  /// An entry that went with its track.
  struct LostEntry {
    std::uint64_t playlist = 0;
    std::size_t position = 0;  ///< from 0, in the list as it was
    std::uint64_t track = 0;
  };
  struct InsertedEntry {
    std::size_t position = 0;  ///< from 0, in the list as it will be; at most at its end
    TrackNumber track = 0;
  };
  /// By position.
  void insertEntries(std::size_t playlist, std::span<const InsertedEntry> entries);
  /// Removes the tracks' entries everywhere; they must still be found by `EditedTracks`.
  std::vector<LostEntry> removeTracks(std::span<const TrackNumber> tracks);
  void move(std::size_t playlist, std::size_t folder);

  void appendSplices(const DocumentLayout& layout, std::vector<Splice>& splices) const;

 private:
  static constexpr std::size_t added = SIZE_MAX;

  /// An entry as it is to be.
  struct Slot {
    std::size_t old = added;  ///< its place among the document's entries, unless it was added
    std::int64_t trackID = 0;
    /// Of an added one, how many entries of unknown tracks stand before it; or `unsettled`, or
    /// `atEnd`.
    std::size_t unknownBefore = unsettled;
  };
  static constexpr std::size_t unsettled = SIZE_MAX - 1, atEnd = SIZE_MAX;
  /// An entry of the document whose track that does not define: it stays.
  struct UnknownEntry {
    ByteRange entry;
    std::size_t knownBefore = 0;
  };

  /// What differs from the document.
  struct Change {
    std::size_t origin = added;          ///< its place in the index, unless it was added
    std::int64_t playlistID = 0;         ///< of an added one
    std::optional<PlaylistPlace> place;  ///< looked up with `entries`
    bool moved = false;
    bool writesID = false;
    std::vector<EntryPlace> entries;  ///< the document's, of tracks that it defines
    std::vector<UnknownEntry> unknown;
    /// One for each item, the old ones in their order; without `entries` only what was appended.
    std::vector<Slot> slots;
  };

  std::vector<Playlist>& own();
  void learnEntries(std::size_t playlist);
  /// Says where added entries stand among those of unknown tracks: behind what they follow, if it
  /// is not said; and has the playlist say where those stand.
  void settleUnknown(std::size_t playlist);
  [[nodiscard]] static std::size_t unknownBefore(const Change& change, const Slot& slot);
  template <typename IsRemoved>
  void removeWhere(std::size_t playlist, IsRemoved&& isRemoved);
  /// Whether it has a persistent ID from its position.
  [[nodiscard]] bool lacksID(const Change& change) const {
    return change.origin != added && !index_.playlistEnds[change.origin].hasID;
  }
  void appendOldSplices(std::size_t playlist, const DocumentLayout& layout,
                        std::vector<Splice>& splices) const;
  /// Leaves in `appended` the Track IDs that come behind all that stays.
  void appendEntrySplices(const Change& change, const DocumentLayout& layout,
                          std::vector<Splice>& splices, std::vector<std::int64_t>& appended) const;
  void writeAdded(std::size_t first, TextSink& sink, const DocumentLayout& layout) const;

  std::string_view document_;
  const DocumentIndex& index_;
  EditedTracks& tracks_;
  std::shared_ptr<const std::vector<Playlist>> current_;
  std::shared_ptr<std::vector<Playlist>> own_;        ///< `current_`, once it is a list of our own
  std::shared_ptr<std::atomic<std::size_t>> leases_;  ///< how many hold `own_` through `shared()`
  std::vector<Change> changes_;                       ///< by place in the list
  std::vector<bool> removedOrigins_;
};

}  // namespace kestrel
