/// Carrying commands out on a library document, in memory.
#pragma once

#include <utility>

#include "musicapp/command.h"

namespace kestrel {

class DocumentSession;

/// What went wrong with a command; nothing was changed by it.
class CommandError : public MessageError {
 public:
  CommandError(int number_, Message message_)
      : MessageError(std::move(message_)), number(number_) {}
  int number;
};

/// Returns what comes of the command. Throws CommandError, and LibraryError when the document
/// cannot be changed at all.
CommandResult carryOut(const Command& command, DocumentSession& session);

}  // namespace kestrel
