/// How far two words are apart, to suggest what a user may have meant.
#pragma once

#include <cstddef>
#include <string_view>

namespace kestrel {

/// The fewest letters to be put in, taken out or replaced that make one of the other (Levenshtein);
/// the case of ASCII letters does not count.
std::size_t editDistance(std::string_view a, std::string_view b);

}  // namespace kestrel
