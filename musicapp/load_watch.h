/// Who waits while a library is read.
#pragma once

#include <cstddef>
#include <functional>

namespace kestrel {

/// Both may be empty, and are called from any thread, one at a time.
struct LoadWatch {
  /// How many of the library's files are read; told several times a second while there is news.
  std::function<void(std::size_t done, std::size_t total)> progress;
  /// Asked between two files: whether to stop, which fails the reading.
  std::function<bool()> cancelled;
};

}  // namespace kestrel
