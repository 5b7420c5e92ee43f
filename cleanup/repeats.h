/// Finds the playlists that list a track more than once, and the entries too many.
///
/// Looks at playlists only: no dupe groups, no settings, no windows. Callable from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "library/listed_playlist.h"
#include "library/playlist_tree.h"

namespace kestrel {

/// A clean-up record. Reads as a string-keyed dictionary, to which "items" and "deleteIndexes" of
/// ordinary playlists, and "Child" by its place in the outline, belong.
class RemDupesRecord final : public ListedPlaylist {
 public:
  explicit RemDupesRecord(std::shared_ptr<const Playlist> playlist,
                          std::vector<std::uint64_t> deleteIndexes = {})
      : ListedPlaylist(std::move(playlist)), deleteIndexes_(std::move(deleteIndexes)) {}

  /// Of the entries to delete: positions from 1, ascending. None for folders.
  [[nodiscard]] const std::vector<std::uint64_t>& deleteIndexes() const noexcept {
    return deleteIndexes_;
  }
  /// The keys whose values are texts; absent for others. At top level "decParentID" is absent, but
  /// "hexParentID" is "0".
  [[nodiscard]] Value value(std::string_view key) const;
  /// Calls `visit(std::string_view name, const Value&)` for each text that the record holds.
  template <typename Visit>
  void forEachKey(Visit&& visit) const {
    forEachText(*this, visit);
  }

 private:
  std::vector<std::uint64_t> deleteIndexes_;
};

using RemDupesRow = OutlineNode<RemDupesRecord>;

/// What a scan has found. What is in a folder that is itself in a folder stands nowhere in the
/// outline.
using RepeatScan = AffectedPlaylists<RemDupesRecord>;

/// Only regular playlists and folders are considered, and none that the application provides.
RepeatScan findRepeats(const Playlists& playlists);

}  // namespace kestrel

namespace kestrel::RemDupesController {

/// The positions, from 1, of the entries whose ID occurs earlier: [A, B, A, C, B, A] gives
/// [3, 5, 6]. The first occurrence of each track stays.
std::vector<std::uint64_t> figureIndexesToDelete(std::span<const std::uint64_t> items);

}  // namespace kestrel::RemDupesController
