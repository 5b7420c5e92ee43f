/// What the groups of a result are ordered by.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "app/controller/group_knowledge.h"
#include "app/controller/result_groups.h"
#include "musicapp/media_library.h"
#include "ui/models/grouped_rows.h"

namespace kestrel {

/// By group number; the highest come first. `rows` is the content that `groups` is about;
/// `playlists`, the library's, and `knowledge` may be unknown. Looks at every row: for the worker,
/// while nobody changes ticks.
std::vector<std::uint64_t> groupKeys(GroupOrder order, const ResultGroups& groups,
                                     std::span<const ResultTrack> rows,
                                     const std::vector<Playlist>* playlists,
                                     const GroupKnowledge* knowledge);

}  // namespace kestrel
