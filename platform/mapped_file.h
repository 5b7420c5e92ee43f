/// The bytes of a whole file, read by the system when they are looked at.
///
/// For files of several hundred megabytes that are read once from front to back. The file must not
/// be cut shorter meanwhile (the system ends a program that looks at what is no longer there);
/// replacing it, as `FileService::writeAtomically` does, is harmless: the old bytes stay.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/file_status.h"

namespace kestrel {

class Descriptor;

class MappedFile {
 public:
  /// Throws FileError when there is no such file, it cannot be read, or is no regular file.
  explicit MappedFile(const std::string& path);
  /// The same of an open file, which may be closed afterwards; `path` is for messages.
  MappedFile(const Descriptor& file, const std::string& path);
  /// Bytes that are in memory already, in the shape of a mapped file.
  MappedFile(std::string bytes, FileStatus status);
  ~MappedFile();
  MappedFile(MappedFile&& other) noexcept;
  MappedFile& operator=(MappedFile&& other) noexcept;

  /// Empty for an empty file. Valid as long as this object, and after it is moved.
  [[nodiscard]] std::span<const char> bytes() const noexcept { return {data_, size_}; }
  /// As of the time of opening.
  [[nodiscard]] const FileStatus& status() const noexcept { return status_; }
  /// Gives memory back that holds these bytes, which are read again should they be looked at
  /// again. Ranges beyond the end are cut. From any thread.
  void release(std::size_t offset, std::size_t length) const noexcept;

 private:
  const char* data_ = nullptr;
  std::size_t size_ = 0;
  bool mapped_ = false;  ///< otherwise the bytes are on the heap, made by new[]
  FileStatus status_;
};

}  // namespace kestrel
