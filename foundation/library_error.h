/// What went wrong with a library, said so that a user can act on it.
#pragma once

#include <cstddef>
#include <string>

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

}  // namespace kestrel
