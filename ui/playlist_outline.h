/// The playlists as a tree of folders, for the outline and the menus.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/playlist_catalogue.h"

namespace kestrel {

/// A row of the outline. `Child` is absent in top-level playlists that are no folders; everywhere
/// else it is there, and holds nothing (written as an empty dictionary) when there are no children.
struct OutlineRow {
  PlaylistRecord record;
  std::optional<std::vector<OutlineRow>> Child;
};

class KSPlaylistController {
 public:
  /// The catalogue of the stored playlists, in catalogue order.
  [[nodiscard]] std::vector<PlaylistRecord> formatPlaylists() const;

  /// Fills `childPlaylists` and `thePlaylistDataSource` from catalogue records: at top level the
  /// folders, then genius, smart and user playlists, each in catalogue order; the library itself
  /// and distinguished playlists are left out. So is what no top-level folder leads to.
  void buildDatasource(std::span<const PlaylistRecord> records);

  /// The children of the folder with this decimal ID, each with its own, recursively. In a damaged
  /// library, where folders may share an ID or contain themselves, each ID is opened once.
  [[nodiscard]] std::vector<OutlineRow> getFolders(std::string_view decpid) const;

  /// All playlists inside a folder: genius, folders, smart, user.
  [[nodiscard]] const std::vector<PlaylistRecord>& childPlaylists() const {
    return childPlaylists_;
  }
  /// The top level of the tree.
  [[nodiscard]] const std::vector<OutlineRow>& thePlaylistDataSource() const {
    return thePlaylistDataSource_;
  }

 private:
  std::vector<PlaylistRecord> childPlaylists_;
  std::vector<OutlineRow> thePlaylistDataSource_;
};

}  // namespace kestrel
