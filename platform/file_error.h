/// What went wrong with a file, said so that a user can act on it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kestrel {

/// `what()` is the whole sentence: path, what is wrong, and the remedy.
class FileError : public std::runtime_error {
 public:
  FileError(std::string path, std::string problem, std::string remedy, int code = 0);
  /// From a system error number; `failed` is the failure, such as "cannot be read".
  static FileError fromCode(const std::string& path, std::string_view failed, int code);

  std::string path;
  std::string problem;
  std::string remedy;
  int code;  ///< the system's error number (ENOENT ...), 0 when there is none
};

}  // namespace kestrel
