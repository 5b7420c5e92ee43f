/// UTF-8 checks for bytes that come from outside.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel {

/// Offset of the first byte that is not part of well-formed UTF-8 (no overlong forms, no
/// surrogates, nothing beyond U+10FFFF); npos when all is well.
std::size_t firstInvalidUtf8(std::string_view bytes) noexcept;

/// Appends a code point; the caller has checked its range.
void appendUtf8(char32_t codePoint, std::string& out);

}  // namespace kestrel
