/// Which song each entry of the library is, and how a copy differs from the first one.
///
/// The plan is a few bytes an entry and is all that is held in memory: the track of an entry is
/// made from it when it is written, and the playlists are made from it afterwards.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/make_library/options.h"

namespace kestrel::make_library {

enum class Variant : std::uint8_t {
  original,
  // Copies: the same name and artist but for letter case.
  otherBitRate,
  otherKind,
  otherFolder,
  letterCase,
  otherTime,     ///< from one millisecond to a few seconds longer
  numberedFile,  ///< "Song (1).mp3": the file was added twice
  cloudCopy,
  otherYear,
  // Near-misses: look alike, but are not the same by name and artist.
  decomposed,  ///< the same letters, the accents as characters of their own
  concert,
  otherArtist,
  noArtist,
};

struct Entry {
  std::uint32_t song = 0;
  std::uint16_t copyNumber = 0;  ///< 0 for the first entry of a song
  Variant variant = Variant::original;
};

struct Plan {
  std::vector<Entry> entries;  ///< in library order
  std::uint32_t songs = 0;
};

/// Copies come in runs, as when an album is added twice; some songs have many.
Plan makePlan(const Options& options);

}  // namespace kestrel::make_library
