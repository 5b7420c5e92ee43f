#include "foundation/plist_error.h"

#include <algorithm>
#include <utility>

namespace kestrel {
namespace {

/// Line and column of a byte offset in UTF-16.
TextPlace placeInUtf16(std::string_view document, std::size_t offset, bool bigEndian) {
  TextPlace place{1, 1};
  unsigned before = 0;
  for (std::size_t i = 0; i + 1 < std::min(offset, document.size()); i += 2) {
    const auto first = static_cast<unsigned char>(document[i]);
    const auto second = static_cast<unsigned char>(document[i + 1]);
    const unsigned unit = bigEndian ? first << 8U | second : second << 8U | first;
    if (unit == '\n' && before == '\r') {
      place.column = 1;  // the line has been counted
    } else if (unit == '\n' || unit == '\r') {
      ++place.line;
      place.column = 1;
    } else if (unit != 0xFEFF && (unit < 0xDC00 || unit > 0xDFFF)) {
      ++place.column;
    }
    before = unit;
  }
  return place;
}

/// Faults in a document that is not UTF-8 are met before it is converted, or behind that in the
/// converted text. A Latin-1 document converts without faults.
TextPlace placeInAny(std::string_view document, std::size_t offset) {
  using namespace std::string_view_literals;
  for (const auto start : {"\xFF\xFE"sv, "<\0"sv})
    if (document.starts_with(start)) return placeInUtf16(document, offset, false);
  for (const auto start : {"\xFE\xFF"sv, "\0<"sv})
    if (document.starts_with(start)) return placeInUtf16(document, offset, true);
  return placeOf(document, offset);
}

}  // namespace

LibraryError libraryError(const std::string& name, std::string_view document,
                          const PlistError& fault) {
  Message remedy = Message::tr("Export the library again, or repair the document at that place.");
  if (document.starts_with("bplist"))
    remedy = Message::tr(
        "Export the library from the music application as XML, or convert the file to an XML "
        "property list.");
  else if (fault.offset >= document.size())
    remedy = Message::tr("The file may be incomplete: export or copy it again.");
  return {name, placeInAny(document, fault.offset), fault.message, std::move(remedy)};
}

}  // namespace kestrel
