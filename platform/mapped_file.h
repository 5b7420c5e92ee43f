/// The bytes of a whole file, read by the system when they are looked at.
///
/// For files of several hundred megabytes that are read once from front to back. When another
/// program replaces the file meanwhile, as `FileService::writeAtomically` does, the old bytes stay.
/// When it writes to the file, some bytes are new, and of a file cut short some are zeros: readers
/// go on in peace, and learn from `checkUnchanged` that what they read is worth nothing.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/descriptor.h"
#include "platform/file_status.h"
#include "platform/page_guard.h"

namespace kestrel {

class MappedFile {
 public:
  /// Throws FileError when there is no such file, it cannot be read, or is no regular file.
  explicit MappedFile(const std::string& path);
  /// The same of an open file that no other program knows, and which may be closed afterwards;
  /// `path` is for messages.
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
  /// Throws FileError when another program has written to the file since it was opened, or its disk
  /// has failed. To be called when what was read is to count.
  void checkUnchanged() const;
  /// What `read` returns or throws, after `checkUnchanged`.
  template <typename Read>
  auto checked(Read&& read) const {
    try {
      auto result = read();
      checkUnchanged();
      return result;
    } catch (...) {
      checkUnchanged();
      throw;
    }
  }
  /// Gives memory back that holds these bytes, which are read again should they be looked at
  /// again. Ranges beyond the end are cut. From any thread.
  void release(std::size_t offset, std::size_t length) const noexcept;

 private:
  void map(const Descriptor& file, const std::string& path);

  const char* data_ = nullptr;
  std::size_t size_ = 0;
  bool mapped_ = false;  ///< otherwise the bytes are on the heap, made by new[]
  FileStatus status_;
  Descriptor file_;   ///< closed unless other programs may write to it
  std::string path_;  ///< for messages
  PageGuard guard_;
};

}  // namespace kestrel
