#include "musicapp/script_runner.h"

#include <algorithm>

namespace kestrel {

std::string ScriptError::description() const {
  std::string line;
  if (place.line != 0)
    line = "Line " + std::to_string(place.line) + ", column " + std::to_string(place.column) + ": ";
  line += message;
  if (number != 0) line += " (" + std::to_string(number) + ")";
  const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
  std::replace_if(line.begin(), line.end(), isLineEnd, ' ');
  return line;
}

}  // namespace kestrel
