/// The playlist catalogue: one record per playlist, for menus, outlines and the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/value.h"
#include "library/playlist_tree.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// A playlist as the interface shows and addresses it. Reads as a string-keyed dictionary whose
/// keys are the members' names.
struct PlaylistRecord {
  std::string pnom;    ///< the name; "Music" for the master playlist
  std::string hexpid;  ///< upper-case hexadecimal persistent ID
  std::string decpid;
  /// "u" user, "0" master, "f" folder, "g" genius, "s" smart, else the decimal number of a
  /// distinguished playlist.
  std::string ptype;
  std::string playlistIcon;                          ///< image asset: "u", "4", "f", "g" or "s"
  std::optional<std::string> hexParentID, parentID;  ///< both or neither
  std::int64_t itemCount = 0;

  /// Absent for a missing parent and for unknown keys. Texts are borrowed.
  [[nodiscard]] Value value(std::string_view key) const;
  /// Calls `visit(std::string_view name, const Value&)` for each key that the record holds.
  template <typename Visit>
  void forEachKey(Visit&& visit) const {
    for (const std::string_view key : {"pnom", "hexpid", "decpid", "ptype", "playlistIcon",
                                       "hexParentID", "parentID", "itemCount"})
      if (const Value held = value(key); !held.isAbsent()) visit(key, held);
  }
};

/// One record per playlist, in the same order.
std::vector<PlaylistRecord> playlistCatalogue(std::span<const Playlist> playlists);

/// For trees of folders (playlist_tree.h).
std::uint64_t idOf(const PlaylistRecord& record);
std::optional<std::uint64_t> parentOf(const PlaylistRecord& record);

using OutlineRow = OutlineNode<PlaylistRecord>;

/// The playlists as a tree of folders. `Child` is absent in top-level playlists that are no
/// folders; everywhere else it is there, and holds nothing (written as an empty dictionary) when
/// there are no children.
struct PlaylistOutline {
  std::vector<OutlineRow> rows;
  /// All playlists inside a folder: genius, folders, smart, user.
  SharedRecords<PlaylistRecord> childPlaylists;
};

/// At top level the folders, then genius, smart and user playlists, each in catalogue order; the
/// library itself and distinguished playlists are left out. So is what no top-level folder leads
/// to.
PlaylistOutline playlistOutline(std::span<const PlaylistRecord> catalogue);

/// The place of what is searched while no playlist is chosen: the whole library, or else the first
/// playlist in the order of the menus. Nothing where they offer none.
std::optional<std::size_t> defaultPlaylist(std::span<const PlaylistRecord> catalogue);

}  // namespace kestrel
