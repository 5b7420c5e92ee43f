/// What a search would find with another field, or when more is passed over.
#pragma once

#include <iosfwd>

#include "cli/search.h"
#include "cli/session.h"

namespace kestrel {

/// Numbers of groups, as a search counts them before the user's decisions.
struct SearchPreview {
  using Counts = std::vector<std::pair<std::string, std::size_t>>;  ///< by word
  std::size_t groups = 0;                                           ///< of the search itself
  Counts with;     ///< each field that is not matched by, too
  Counts without;  ///< each that is, unless it is the only one
  Counts loose;    ///< each thing that is not passed over, too
};
/// Of the tracks that `result` was found among. Stops early when the user interrupts.
SearchPreview previewOf(Session& session, MediaLibrary& library, const SearchResult& result);

Json json(const SearchPreview& preview);
void writeText(std::ostream& out, const SearchPreview& preview);

}  // namespace kestrel
