/// The bytes of a whole file, read by the system when they are looked at.
///
/// For files of several hundred megabytes that are read once from front to back. When another
/// program replaces the file meanwhile, as `FileService::writeAtomically` does, the old bytes stay.
/// When it writes to the file, some bytes are new, and of a file cut short some are zeros: readers
/// go on in peace, and learn from `checkUnchanged` that what they read is worth nothing.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/descriptor.h"

namespace kestrel {

class MappedFile {
 public:
  /// Throws FileError when there is no such file, it cannot be read, or is no regular file.
  explicit MappedFile(const std::string& path);
  /// The same of an open file that no other program knows, and which may be closed afterwards;
  /// `path` is for messages.
  MappedFile(const Descriptor& file, const std::string& path);
  /// Bytes that are in memory already, in the shape of a mapped file.
  MappedFile(const std::string& bytes, FileStatus status);

  /// Empty for an empty file. Valid as long as this object, and after it is moved.
  [[nodiscard]] std::span<const char> bytes() const noexcept { return bytes_; }
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

  std::shared_ptr<const void> owner_;  ///< of the bytes
  std::span<const char> bytes_;
  const std::atomic<bool>* lost_ = nullptr;  ///< whether the file has lost pages; of mapped bytes
  FileStatus status_;
  Descriptor file_;   ///< closed unless other programs may write to it
  std::string path_;  ///< for messages
};

/// A place for bytes that are too many for memory and needed only for a moment: a file in the
/// folder for temporary files that has no name and goes when it is no longer used.
class ScratchFile {
 public:
  /// Throws FileError when it cannot be made.
  ScratchFile();
  /// Throws FileError when there is no room.
  void append(std::string_view bytes);
  /// What was appended so far; may outlive this object.
  [[nodiscard]] MappedFile map() const { return MappedFile(file_, folder_); }

 private:
  std::string folder_;
  Descriptor file_;
};

}  // namespace kestrel
