/// How many of a library's files are not where it says.
#pragma once

#include <cstddef>
#include <string>

#include "foundation/message.h"

namespace kestrel {

class TrackStore;

struct MissingFiles {
  std::size_t files = 0;    ///< songs whose library gives a location
  std::size_t missing = 0;  ///< of them
  /// What most locations of those begin with, as people write it; made when `areMost` only.
  std::string beginning;

  /// So many that the library is likely to come from another machine.
  [[nodiscard]] bool areMost() const noexcept { return missing * 2 > files; }
  /// "14 of 14 files are not where this library says (C:/Users/anna/Music/...)"
  [[nodiscard]] Message sentence() const;
};

MissingFiles missingFiles(const TrackStore& tracks);

}  // namespace kestrel
