/// Random library documents without faults, in every spelling that XML and the format allow.
#pragma once

#include <cstdint>
#include <string>

namespace kestrel::testing {

/// The same document for the same arguments. Layout, encoding, order of sections and keys, and the
/// spelling of every element and text are drawn by `seed`; half of the documents are laid out in
/// the usual way, so that the reader's short cuts are taken too. `tracks` is the largest number.
std::string randomDocument(std::uint32_t seed, int tracks);

}  // namespace kestrel::testing
