/// Lines of comma-separated values.
#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// A field of a CSV line after RFC 4180: printable, in quotes when it has to be, and behind an
/// apostrophe when a spreadsheet would calculate it.
std::string csvField(std::string_view text);

}  // namespace kestrel
