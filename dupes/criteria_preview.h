/// How many groups a search would make, without making them: for counts beside the fields that a
/// user may tick.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dupes/grouping.h"

namespace kestrel {

/// For each list of criteria, in which texts join in their order, the number of groups that
/// `groupTracks` would form of `tracks`; nothing for lists that were not reached when `cancelled`
/// held, which threads ask now and then. Lists may share criteria, which are read once. A key that
/// no record has adds nothing, and the word "Filename" counts none.
std::vector<std::optional<std::size_t>> previewCriteria(
    const TrackStore& store, std::span<const TrackRecord* const> tracks,
    std::span<const std::vector<std::string>> lists, const GroupingOptions& options,
    FunctionRef<bool()> cancelled);

/// The records of the items (persistent IDs in playlist order) that are songs of the store, as a
/// search takes them.
std::vector<const TrackRecord*> tracksOf(const TrackStore& store,
                                         std::span<const std::uint64_t> items);

}  // namespace kestrel
