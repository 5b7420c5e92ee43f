/// Invented names in several languages and scripts: artists, albums, songs, playlists.
///
/// Each language is a set of word lists and of patterns over them. A pattern is a text with
/// placeholders: %a adjective, %n noun, %p place, %g given name, %f family name (one of each
/// half, joined), %d a number from 1 to 40.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tools/make_library/random.h"

namespace kestrel::make_library {

using Words = std::span<const std::string_view>;

struct Language {
  Words adjectives, nouns, places, givenNames, familyStarts, familyEnds;
  Words people, bands;    ///< patterns of artist names
  Words songs, albums;    ///< patterns of titles
  std::string_view live;  ///< what a concert recording adds to the title
};

/// All languages; English first.
std::span<const Language> languages();

/// A language, the common ones more often.
const Language& pickLanguage(Random& random);

/// The words put into `pattern`.
std::string fillPattern(std::string_view pattern, const Language& language, Random& random);

/// Genres and remarks of any library; remarks hold line breaks, quotes and markup characters.
Words genres();
Words remarks();
Words groupings();

}  // namespace kestrel::make_library
