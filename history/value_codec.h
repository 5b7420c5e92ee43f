/// The values of tracks as texts for the history.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "musicapp/track_values.h"

namespace kestrel {

/// JSON; what is not there is left out. Later versions only add to it.
std::string textOfValues(const TrackValues& values);
/// Nothing for a text that no values were written as.
std::optional<TrackValues> valuesOfText(std::string_view text);

/// The words of a set, with spaces between them.
std::string wordsOf(TrackValueSet values);
/// Words that are none are passed over.
TrackValueSet valuesOfWords(std::string_view words);

}  // namespace kestrel
