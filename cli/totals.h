/// What a search comes to, in numbers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "cli/record_output.h"
#include "cli/search.h"

namespace kestrel {

struct Totals {
  std::size_t groups = 0;
  std::size_t tracks = 0;
  std::size_t toActOn = 0;  ///< tracks that are not kept
  std::size_t files = 0;    ///< of those, as far as they are here; two tracks may have one
  std::int64_t bytes = 0;   ///< of the files
  std::size_t missing = 0;  ///< tracks without their files
  std::size_t withoutKeeper = 0, severalKeepers = 0, doubtful = 0;  ///< groups
};
Totals totalsOf(const SearchResult& result);
/// Of one group.
Totals totalsOf(const SearchResult& result, const FoundGroup& group);

Json json(const Totals& totals);

}  // namespace kestrel
