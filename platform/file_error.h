/// What went wrong with a file, said so that a user can act on it.
#pragma once

#include <string>

#include "foundation/message.h"

namespace kestrel {

/// The message is the whole: path, what is wrong, and the remedy.
class FileError : public MessageError {
 public:
  FileError(std::string path, Message problem, Message remedy, int code = 0);
  /// From a system error number; `failed` is the failure, such as "cannot be read".
  static FileError fromCode(const std::string& path, Message failed, int code);

  std::string path;
  Message problem;  ///< a clause without full stop
  Message remedy;   ///< a sentence, or nothing
  int code;         ///< the system's error number (ENOENT ...), 0 when there is none
};

}  // namespace kestrel
