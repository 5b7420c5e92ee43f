/// UTF-8 for bytes that come from outside: checks, and what a message may show of them.
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

/// The start of a text of any size, as a message quotes it: up to 24 bytes of whole characters, as
/// `printable` shows them.
std::string quotedStart(std::string_view text);

/// The text as XML can hold it: control characters and bytes that are not UTF-8 become U+FFFD.
std::string writableText(std::string_view text);

}  // namespace kestrel
