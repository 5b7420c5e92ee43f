/// What went wrong with a file, said so that a user can act on it.
#pragma once

#include <string>
#include <utility>

#include "foundation/library_error.h"

namespace kestrel {

/// A file that cannot be read or changed, be it a library's own or another.
class FileError : public LibraryError {
 public:
  FileError(std::string path, Message problem_, Message remedy_, int code_ = 0)
      : LibraryError(std::move(path), {}, std::move(problem_), std::move(remedy_)), code(code_) {}
  /// From a system error number; `failed` is the failure, such as "cannot be read".
  static FileError fromCode(const std::string& path, Message failed, int code);

  int code;  ///< the system's error number (ENOENT ...), 0 when there is none
};

}  // namespace kestrel
