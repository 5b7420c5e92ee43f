/// Encodings in which an XML document may come, and their way to UTF-8.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kestrel {

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
