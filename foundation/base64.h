/// Base64, the text form of bytes in property lists.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestrel {

/// Appends the text of `bytes`, padded, without line breaks.
void appendBase64(std::string_view bytes, std::string& out);

/// The bytes of a text. White space may stand anywhere, the padding may be missing. Nothing when
/// the text holds anything else or ends within a byte.
std::optional<std::string> bytesOfBase64(std::string_view text);

}  // namespace kestrel
