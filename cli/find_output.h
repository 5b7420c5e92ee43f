/// Writes what a search found: as tables to read, as JSON and as CSV.
#pragma once

#include <iosfwd>

#include "cli/search.h"

namespace kestrel {

void writeText(std::ostream& out, const SearchResult& result);
void writeJson(std::ostream& out, const SearchResult& result);
/// A line of titles, then one line per track: group, keeper and reason, then every record key.
void writeCsv(std::ostream& out, const SearchResult& result);

}  // namespace kestrel
