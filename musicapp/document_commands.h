/// Carrying script commands out on a library document, in memory.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "foundation/message.h"
#include "musicapp/script_command.h"

namespace kestrel {

class DocumentSession;

/// What went wrong with a command; nothing was changed by it.
class CommandError : public MessageError {
 public:
  // The numbers that music applications give for the same.
  static constexpr int fileNotFound = -43;
  static constexpr int wrongFile = -1731;  ///< of a sort that cannot be added
  static constexpr int noSuchPosition = -1719;
  static constexpr int noSuchObject = -1728;
  static constexpr int notAllowed = -10004;
  static constexpr int failed = -10000;

  CommandError(int number_, Message message_)
      : MessageError(std::move(message_)), number(number_) {}
  int number;
};

/// Returns the command's result text, if it has one. Throws CommandError, and LibraryError when
/// the document cannot be changed at all.
std::optional<std::string> carryOut(const script::Command& command, DocumentSession& session);

}  // namespace kestrel
