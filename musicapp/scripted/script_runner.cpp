#include "musicapp/scripted/script_runner.h"

#include <utility>

namespace kestrel {

Message ScriptError::whole() const {
  Message text = message;
  if (place.line != 0)
    text = Message::tr("Line %1, column %2: %3")
               .arg(place.line)
               .arg(place.column)
               .arg(std::move(text));
  return CommandFailure{std::move(text), number}.whole();
}

std::string ScriptError::description() const { return lineOf(whole()); }

}  // namespace kestrel
