/// What the system says about a file without opening it.
#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace kestrel {

/// Equal statuses mean that nobody wrote to the file in between, as far as the system can tell.
struct FileStatus {
  enum class Kind { file, folder, other };

  Kind kind = Kind::file;
  std::uint64_t size = 0;  ///< bytes; of folders whatever the system says
  Moment modified;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;  ///< another one after a file was replaced rather than written to

  friend bool operator==(const FileStatus&, const FileStatus&) = default;
};

}  // namespace kestrel
