/// Entries of playlists as compact bytes for the history.
///
/// A list is its persistent IDs, eight bytes each. A list that came from another one is only the
/// difference where that is shorter: the entries that were replaced, the positions deleted, or the
/// entries added at the end.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

std::string bytesOfEntries(std::span<const std::uint64_t> entries);
std::string bytesOfChange(std::span<const std::uint64_t> before,
                          std::span<const std::uint64_t> after);

/// The list again; `before` is what it came from, if it came from one. Nothing for bytes that no
/// list was written as.
std::optional<std::vector<std::uint64_t>> entriesOfBytes(
    std::string_view bytes, std::span<const std::uint64_t> before = {});

}  // namespace kestrel
