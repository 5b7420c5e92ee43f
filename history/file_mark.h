/// What a file is known by long after it was seen.
///
/// Not by the numbers that a system gives it: they change when a disk is plugged in again, and are
/// given to others when the file is gone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/descriptor.h"

namespace kestrel {

struct FileMark {
  std::uint64_t size = 0;  ///< bytes; 0 for a link
  Moment modified;
  /// Stands for all the bytes of a small file, for beginning, middle and end of a large one, for
  /// where a link leads. Fixed for good: the history holds it.
  std::uint64_t content = 0;
  friend bool operator==(const FileMark&, const FileMark&) = default;
};

/// Nothing when there is no file or link, or it cannot be read. Never waits for a pipe.
std::optional<FileMark> markOf(const std::string& path);

/// Whether size and time are those of the mark. Times may have been rounded to whole seconds by a
/// disk meanwhile, to even ones by some.
bool mayBe(const FileMark& mark, const FileStatus& status) noexcept;
/// Whether the file at `path` is the marked one; reads it.
bool isMarked(const std::string& path, const FileMark& mark);

}  // namespace kestrel
