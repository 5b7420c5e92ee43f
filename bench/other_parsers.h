/// What general XML libraries take for the same document, to compare with.
#pragma once

#include <string>

namespace kestrel::bench {

/// Seconds to parse the document, already in memory, into a tree in place.
double domParseSeconds(const std::string& path);
/// Seconds to parse the document, already in memory, with handlers that do nothing.
double saxParseSeconds(const std::string& path);

}  // namespace kestrel::bench
