/// The playlists as a tree of folders, for the outline and the menus.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "foundation/message.h"
#include "library/playlist_catalogue.h"
#include "ui/models/outline_model.h"

namespace kestrel {

/// A row of the outline. `Child` is absent in top-level playlists that are no folders; everywhere
/// else it is there, and holds nothing (written as an empty dictionary) when there are no children.
struct OutlineRow {
  PlaylistRecord record;
  std::optional<std::vector<OutlineRow>> Child;
};

/// What a playlist is called where people read it: the whole library in the user's language.
Message shownName(const PlaylistRecord& playlist);

/// The rows as an outline view takes them.
OutlineModel<PlaylistRecord>::Content outlineContent(std::span<const OutlineRow> rows);

}  // namespace kestrel
