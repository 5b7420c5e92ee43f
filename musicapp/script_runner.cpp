#include "musicapp/script_runner.h"

#include <algorithm>
#include <utility>

namespace kestrel {

Message ScriptError::whole() const {
  Message text = message;
  if (place.line != 0)
    text = Message::tr("Line %1, column %2: %3")
               .arg(place.line)
               .arg(place.column)
               .arg(std::move(text));
  if (number != 0) text = Message::tr("%1 (%2)").arg(std::move(text)).arg(std::to_string(number));
  return text;
}

std::string ScriptError::description() const {
  std::string line = whole().english();
  const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
  std::replace_if(line.begin(), line.end(), isLineEnd, ' ');
  return line;
}

}  // namespace kestrel
