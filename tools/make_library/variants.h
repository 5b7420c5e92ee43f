/// How a copy or a near-miss differs from the song it was made from.
#pragma once

#include "tools/make_library/track.h"

namespace kestrel::make_library {

/// Changes names, format, time or year of `track`; what concerns its file is left to others.
void vary(Track& track, Variant variant, const Language& language, bool demo, Random& random);

}  // namespace kestrel::make_library
