/// One track of the library with everything its entry in the document says.
///
/// Numbers and dates that are 0, texts that are empty and flags that are false are not written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/make_library/catalogue.h"
#include "tools/make_library/formats.h"
#include "tools/make_library/plan.h"

namespace kestrel::make_library {

struct Track {
  const Format* format = nullptr;
  Media media = Media::song;
  std::uint32_t id = 0;
  std::uint64_t persistentId = 0;

  std::string name, artist, albumArtist, composer, album, genre, grouping, comments, series;
  std::string path;  ///< the file's absolute path, empty where the track has none
  std::string url;   ///< of a stream
  std::string_view trackType;

  std::uint64_t size = 0;
  std::uint32_t totalTime = 0;  ///< milliseconds
  std::uint32_t discNumber = 0, discCount = 0, trackNumber = 0, trackCount = 0;
  std::uint32_t year = 0, bpm = 0, bitRate = 0, sampleRate = 0;
  std::uint32_t playCount = 0, skipCount = 0, rating = 0, artworkCount = 0, normalization = 0;
  std::int32_t volumeAdjustment = 0;
  std::int64_t dateModified = 0, dateAdded = 0, playDate = 0, skipDate = 0, releaseDate = 0;
  bool ratingComputed = false, compilation = false, partOfGapless = false, disabled = false;
  bool explicitWords = false, loved = false, matched = false, playlistOnly = false;
};

/// What is written of a track's names: under a key in the document, and as a tag into its file
/// (nullptr: not there).
struct NameField {
  const char* key;
  const char* tag;
  std::string Track::*name;
};
inline constexpr NameField nameFields[] = {{"Name", "TITLE", &Track::name},
                                           {"Artist", "ARTIST", &Track::artist},
                                           {"Album Artist", "ALBUMARTIST", &Track::albumArtist},
                                           {"Composer", "COMPOSER", &Track::composer},
                                           {"Album", "ALBUM", &Track::album},
                                           {"Grouping", nullptr, &Track::grouping},
                                           {"Genre", "GENRE", &Track::genre}};

/// Tracks that were bought or are in the cloud: their entries say more.
bool isFromStore(const Track& track);

/// Makes the tracks of a plan, in any order and each always the same.
class TrackMaker {
 public:
  /// All three must outlive it.
  TrackMaker(const Options& options, const Catalogue& catalogue, const Plan& plan);

  Track make(std::uint32_t entry);

  /// Track IDs are not in a row: the odd numbers from 201 are used, the even ones are free.
  static std::uint32_t trackId(std::uint32_t entry) { return 201 + 2 * entry; }
  std::uint64_t persistentId(std::uint32_t entry) const;

 private:
  const Album& albumOf(std::uint32_t song);

  const Options& options_;
  const Catalogue& catalogue_;
  const Plan& plan_;
  std::size_t albumIndex_;
  Album album_;  // of the track made last; the next one is usually on it too
};

}  // namespace kestrel::make_library
