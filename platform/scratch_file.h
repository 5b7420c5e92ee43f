/// A place for bytes that are too many for memory and needed only for a moment.
#pragma once

#include <string>
#include <string_view>

#include "platform/descriptor.h"
#include "platform/mapped_file.h"

namespace kestrel {

/// A file in the folder for temporary files that has no name and goes when it is no longer used.
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
