/// A second reader of library documents, as simple as possible: a general XML parser makes a tree,
/// and each rule of the mapping is applied to it with maps and plain loops.
#pragma once

#include <string_view>

#include "tests/musicapp/document/described_document.h"

namespace kestrel::testing {

/// What the reader should read from a document without faults. Throws std::runtime_error when the
/// XML parser refuses it.
Lines expectedLines(std::string_view bytes);

}  // namespace kestrel::testing
