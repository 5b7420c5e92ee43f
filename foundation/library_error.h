/// What went wrong with a library, said so that a user can act on it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/message.h"

namespace kestrel {

/// A place in a text file; line and column count from 1, the column in characters. 0 is unknown.
struct TextPlace {
  std::size_t line = 0;
  std::size_t column = 0;
};

/// Thrown where a library cannot be read or changed, shown once at the program's edge.
/// The message is the whole: file, place, what is wrong, and the remedy.
class LibraryError : public MessageError {
 public:
  LibraryError(std::string file, TextPlace place, Message problem, Message remedy);

  std::string file;
  TextPlace place;
  Message problem;  ///< a clause without full stop
  Message remedy;   ///< a sentence, or nothing
};

/// The library is closed to who gives no password, or another one than this. `file` is the address
/// that it belongs to.
class PasswordError : public LibraryError {
 public:
  using LibraryError::LibraryError;
};

/// A fault in a property list, at a byte offset. The message says what was expected.
class PlistError : public MessageError {
 public:
  PlistError(std::size_t offset_, Message problem)
      : MessageError(std::move(problem)), offset(offset_) {}
  std::size_t offset;
};

/// Line and column of a byte offset; lines end with LF, CR or CRLF.
TextPlace placeOf(std::string_view document, std::size_t offset) noexcept;

/// The fault with line and column. `document` is what the fault's offset refers to: the file, or
/// what it was converted to. `name` stands for the file.
LibraryError libraryError(const std::string& name, std::string_view document,
                          const PlistError& fault, Message remedy);

}  // namespace kestrel
