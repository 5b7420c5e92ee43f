/// Where a library document says what a track has been given (track_values.h), and changing that in
/// place: no byte of the entry beside the elements that change is touched.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "musicapp/document/document_edit.h"
#include "musicapp/track_values.h"

namespace kestrel {

/// Keys of a track's dictionary with their elements, such as "<integer>12</integer>"; nothing for a
/// key that is not there.
using ValueElements = std::vector<std::pair<std::string, std::optional<std::string>>>;

/// What the entry that begins at `entry`, with its key, has for the keys of values; each of them
/// once. Of a repeated key the last one counts.
ValueElements valueElements(std::string_view document, std::size_t entry);

/// The elements that are to be others so that a track, which has `before` in `elements`, has these
/// values. "Play Date", which tells local time, moves by as much as "Play Date UTC".
ValueElements elementsOf(TrackValueSet which, const TrackValues& values, const TrackValues& before,
                         const ValueElements& elements);

/// As a text, for TrackValues::stored.
std::string storedElements(const ValueElements& elements);
/// Those of them for values of these sorts; nothing for a text that is none.
std::optional<ValueElements> elementsOfStored(TrackValueSet which, std::string_view text);

struct EntryEdit {
  ByteRange old;
  std::string text;
};
/// What gives an entry these elements, in the order of the document. A key that was not there comes
/// behind those that music applications write before it.
std::vector<EntryEdit> editsOf(std::string_view document, std::size_t entry,
                               const ValueElements& elements, const DocumentLayout& layout);

}  // namespace kestrel
