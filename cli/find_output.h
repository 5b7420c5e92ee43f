/// Writes what a search found: as tables to read, as JSON and as CSV.
#pragma once

#include <iosfwd>

#include "cli/search.h"
#include "foundation/function_ref.h"

namespace kestrel {

/// Each writes until `stopped` says so, which is asked for every track.
void writeText(std::ostream& out, const SearchResult& result, FunctionRef<bool()> stopped);
void writeJson(std::ostream& out, const SearchResult& result, FunctionRef<bool()> stopped);
/// A line of titles, then one line per track: group, keeper and reason, then every record key.
void writeCsv(std::ostream& out, const SearchResult& result, FunctionRef<bool()> stopped);

}  // namespace kestrel
