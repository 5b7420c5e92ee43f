/// Asks for the memory of records before it is needed.
///
/// The records of a search result lie all over a library, so that a walk over a million rows would
/// mostly wait: for each record, then for its item.
#pragma once

#include <cstddef>

#include "library/track_record.h"

namespace kestrel {

/// For a walk over `size` rows that has come to the row `at`; `recordOf(row)` is a row's record.
template <typename RecordOf>
void readAhead(std::size_t at, std::size_t size, RecordOf&& recordOf) noexcept {
  constexpr std::size_t ahead = 16;
  constexpr std::size_t cacheLine = 64;
  if (at + 2 * ahead < size) __builtin_prefetch(recordOf(at + 2 * ahead));
  if (at + ahead >= size) return;
  const auto* item = reinterpret_cast<const char*>(&recordOf(at + ahead)->item());
  for (std::size_t i = 0; i < sizeof(MediaItem); i += cacheLine) __builtin_prefetch(item + i);
}

}  // namespace kestrel
