/// Texts from outside: their way to UTF-8, checks, and what may be shown of them.
///
/// Names and paths can hold what moves a terminal's cursor, changes its state or makes a text look
/// like another one. Controls, here, are all characters that do something to a text instead of
/// standing in it: C0, DEL, C1, line and paragraph separators, and formats, which turn the
/// direction round or show nothing at all. The two joiners are none: Persian, Hindi and emoji are
/// spelled with them. Stateless; callable from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/function_ref.h"

namespace kestrel {

/// Offset of the first byte that is not part of well-formed UTF-8 (no overlong forms, no
/// surrogates, nothing beyond U+10FFFF); npos when all is well.
std::size_t firstInvalidUtf8(std::string_view bytes) noexcept;

/// Appends a code point; the caller has checked its range.
void appendUtf8(char32_t codePoint, std::string& out);

/// The start of a text of any size, as a message quotes it: up to 24 bytes of whole characters, as
/// `printable` shows them.
std::string quotedStart(std::string_view text);

/// The text in one line, with a space for each line break and tab, "?" for each other control, and
/// U+FFFD for bytes that are no UTF-8.
std::string printable(std::string_view utf8);
/// The same of a text with lines of its own: LF and CR LF stay.
std::string printableLines(std::string_view utf8);

/// The text with what `put(character, text)` appends in the place of each control.
std::string replacingControls(std::string_view utf8, FunctionRef<void(char32_t, std::string&)> put);

/// The text as XML can hold it: control characters and bytes that are not UTF-8 become U+FFFD.
std::string writableText(std::string_view text);

/// Hands the parts of a text over as XML has it between tags. A carriage return, which as itself
/// would be read as a line end, is written by its number.
void escapeXml(std::string_view text, FunctionRef<void(std::string_view)> append);

/// Encodings in which an XML document may come.
enum class TextEncoding : std::uint8_t { utf8, utf16LittleEndian, utf16BigEndian, latin1 };

/// The encoding that the byte order mark says, else the look of the first bytes, else the XML
/// declaration. US-ASCII counts as UTF-8. Throws PlistError for a declared encoding that is none
/// of these, and for a document that begins with zeros.
TextEncoding encodingOf(std::string_view document);

/// Converts a document that is not UTF-8, without its byte order mark, and hands it over in
/// pieces of about a megabyte, so that a large document never stands in memory twice. Throws
/// PlistError, with the offset in `document`, at a code unit that is no character.
void convertToUtf8(std::string_view document, TextEncoding encoding,
                   const std::function<void(std::string_view)>& piece);

}  // namespace kestrel
