/// Plans as JSON: for files that are applied later, and for other programs to read.
///
/// IDs are hexadecimal texts. A plan that was written reads back equal. What reading does not need,
/// it ignores, so that later versions may add keys; the format's "version" tells those it cannot
/// read. Plans of the earlier format are read.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <string_view>

#include "changes/plan.h"

namespace kestrel {

inline constexpr int planVersion = 2;

/// With `library`, each playlist shows its "items" and, in a replaylist, its "newItems" too; they
/// are for the reader's eyes and not read back.
nlohmann::ordered_json jsonOf(const Plan& plan, std::span<const Playlist> library = {});

/// Throws LibraryError, with `name` for the file, saying where and what is wrong: text that is no
/// JSON (with line and column), a plan of another version, a missing or impossible value.
Plan planFromJson(std::string_view text, const std::string& name);

}  // namespace kestrel
