#include "foundation/library_error.h"

#include <algorithm>

namespace kestrel {
namespace {

Message whole(const std::string& file, TextPlace place, const Message& problem,
              const Message& remedy) {
  Message sentence = place.line ? Message::tr("%1, line %2, column %3: %4.")
                                      .arg(file)
                                      .arg(place.line)
                                      .arg(place.column)
                                      .arg(problem)
                                : Message::tr("%1: %2.").arg(file).arg(problem);
  return joined(std::move(sentence), remedy);
}

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

LibraryError::LibraryError(std::string file_, TextPlace place_, Message problem_, Message remedy_)
    : MessageError(whole(file_, place_, problem_, remedy_)),
      file(std::move(file_)),
      place(place_),
      problem(std::move(problem_)),
      remedy(std::move(remedy_)) {}

TextPlace placeOf(std::string_view document, std::size_t offset) noexcept {
  offset = std::min(offset, document.size());
  TextPlace place{1, 1};
  // A byte order mark is no character of the first line.
  for (std::size_t i = document.starts_with("\xEF\xBB\xBF") ? 3 : 0; i < offset; ++i) {
    const char c = document[i];
    if (c == '\n' || (c == '\r' && (i + 1 == document.size() || document[i + 1] != '\n'))) {
      ++place.line;
      place.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {  // not a continuation byte
      ++place.column;
    }
  }
  return place;
}

LibraryError libraryError(const std::string& name, std::string_view document,
                          const PlistError& fault, Message remedy) {
  return {name, placeInAny(document, fault.offset), fault.message, std::move(remedy)};
}

}  // namespace kestrel
