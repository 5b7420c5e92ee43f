/// The Tracks section of a library document: track dictionaries to media items.
///
/// This is where a large library spends its loading time. One table names the keys that matter;
/// values of all other keys are passed over without being looked at.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/plist_scanner.h"
#include "musicapp/document/document_index.h"
#include "musicapp/media_library.h"

namespace kestrel {

class DateFormatter;
class LayoutWriter;

/// An entry's key in the Tracks dictionary when it is no decimal number; no playlist can name it.
inline constexpr std::int64_t noTrackID = std::numeric_limits<std::int64_t>::min();

/// A run of entries of the Tracks dictionary.
struct TrackRun {
  std::vector<std::vector<MediaItem>> blocks;  ///< document order
  std::vector<std::int64_t> trackIDs;          ///< one per item
  AscendingOffsets ends;                       ///< behind each entry
  std::size_t end = 0;                         ///< offset after the last entry, or the section
  bool sectionEnded = false;                   ///< the section's closing tag was passed
};

/// Reads entries of the Tracks dictionary from `scanner`, which stands between two of them, until
/// the section ends or an entry ends at or behind `limit`. Texts go to `pool`. Flags for what the
/// playlists decide (audiobooks and the like) are not known here. Throws PlistError.
TrackRun readTracks(PlistScanner& scanner, std::size_t limit, TextPool& pool);

/// Offset of a place at or behind `from` that looks like the end of a track entry followed by the
/// next one; npos when none is near. Only a guess: the text of a comment may look the same.
std::size_t guessTrackBoundary(std::string_view document, std::size_t from) noexcept;

/// The number that an entry's key is; noTrackID when it is none.
std::int64_t trackIDOf(std::string_view key) noexcept;

/// The place of a key in the order in which music applications write them; npos for one that is not
/// read.
std::size_t orderOfTrackKey(std::string_view key) noexcept;

/// Writes the entry of a track that is a music file, by the same table; it has none of the flags of
/// videos and of the cloud. `dates` writes UTC.
void writeTrack(const MediaItem& item, std::int64_t trackID, const DateFormatter& dates,
                LayoutWriter& out);

}  // namespace kestrel
