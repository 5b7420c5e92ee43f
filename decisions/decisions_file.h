/// Where the decisions about a library are kept: one file for each in the application-support
/// folder, found by the library's identity as its history is.
#pragma once

#include <functional>
#include <string>

#include "decisions/decisions.h"
#include "musicapp/library_identity.h"

namespace kestrel {

class FileService;

/// Any number of programs may have one at a time: each change is made to what the file holds then.
/// Everything throws LibraryError or FileError, which say the file and what to do; a file that
/// cannot be read is never overwritten.
class DecisionsFile {
 public:
  /// `files` must outlive this. Touches nothing yet.
  DecisionsFile(FileService& files, LibraryIdentity library);

  /// Empty when nothing has been decided. Decisions of a library of the same ID whose file is no
  /// longer where it was count for this one.
  [[nodiscard]] Decisions load() const;
  /// Reads, lets `edit` change what was read, and writes that, while no other program can. On the
  /// disk upon return. Returns what was written.
  Decisions change(const std::function<void(Decisions&)>& edit);

  /// Empty when the system names no folder for it.
  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  FileService& files_;
  LibraryIdentity library_;
  std::string folder_, path_;
};

}  // namespace kestrel
