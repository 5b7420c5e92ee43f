/// Writes the library document: every track and playlist of the options, to any stream.
#pragma once

#include <functional>
#include <iosfwd>

#include "tools/make_library/options.h"
#include "tools/make_library/track.h"

namespace kestrel::make_library {

/// Throws std::runtime_error when the stream takes not all. `prepare` sees each track before it
/// is written, in document order, and may change it.
void writeDocument(std::ostream& out, const Options& options,
                   const std::function<void(Track&)>& prepare = {});

}  // namespace kestrel::make_library
