/// What a music application tells of one item of its library.
///
/// Plain data in the terms of the media-library interface; every implementation of
/// `MediaLibrary` fills it, and the snapshot turns songs among the items into track records.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <string>

#include "foundation/text_pool.h"
#include "foundation/value.h"

namespace kestrel {

/// The interface's numbers; others are passed through as they are.
enum class MediaKind : std::uint8_t {
  unknown = 1,
  song = 2,
  movie = 3,
  podcast = 4,
  audiobook = 5,
  musicVideo = 7,
  tvShow = 8,
  homeVideo = 12,
  ringtone = 14,
  itunesU = 18,
};

enum class LocationType : std::uint8_t { unknown = 0, file = 1, url = 2, remote = 3 };

/// Where a cloud item comes from, as far as the library says.
enum class CloudStatus : std::uint8_t { unknown, matched, purchased, uploaded, subscription };

/// A moment that may be missing, in 5 bytes; one more than 17,000 years from 1970 is held to that.
struct [[gnu::packed]] OptionalDate {
  static constexpr std::int64_t missing = -(std::int64_t{1} << 39);
  std::int64_t seconds : 40;

  constexpr OptionalDate(std::int64_t moment = missing) noexcept
      : seconds(std::clamp(moment, missing, -(missing + 1))) {}
  [[nodiscard]] explicit operator bool() const noexcept { return seconds != missing; }
  [[nodiscard]] Date operator*() const noexcept { return Date{seconds}; }
  friend constexpr bool operator==(const OptionalDate& a, const OptionalDate& b) noexcept {
    return a.seconds == b.seconds;
  }
};

/// A whole number in few bytes: one beyond their range is held to it. Reads as std::int64_t.
template <std::signed_integral Stored>
class Held {
 public:
  constexpr Held(std::int64_t number = 0) noexcept
      : number_(static_cast<Stored>(std::clamp<std::int64_t>(
            number, std::numeric_limits<Stored>::min(), std::numeric_limits<Stored>::max()))) {}
  constexpr operator std::int64_t() const noexcept { return number_; }

 private:
  Stored number_;
};

/// Texts are null where the library has none. Numbers are 0 where it has none.
struct MediaItem {
  std::uint64_t persistentID = 0;
  Text title, artist, albumArtist, album, composer, genre, grouping, comments, kind;
  /// Where the file of a file item is on this machine, as the library's path maps say where it
  /// has some (path_maps.h): its file-system path, split at its last slash (folder without the
  /// slash), so that the songs of an album share their folder. Both null when the library gives no
  /// location. A location that is not a file URL stands whole in `locationName`, with a null
  /// folder.
  Text locationFolder, locationName;
  /// The path that the library has for the file, where path maps say another; else null.
  Text originalLocation;
  std::int64_t fileSize = 0;                 ///< bytes
  Held<std::int32_t> totalTime, sampleRate;  ///< milliseconds, hertz
  Held<std::int32_t> playCount, skipCount, trackNumber;
  Held<std::int32_t> bitrate;       ///< kbit/s
  Held<std::int16_t> year, rating;  ///< rating: 0-100
  Held<std::int16_t> beatsPerMinute, trackCount, discNumber, discCount;
  Held<std::int8_t> sampleDepth, channels;  ///< sampleDepth: bits of a sample
  OptionalDate added, modified, lastPlayed, skipped;
  MediaKind mediaKind = MediaKind::song;
  LocationType locationType = LocationType::unknown;
  CloudStatus cloudStatus = CloudStatus::unknown;
  bool isCompilation = false;
  /// The rating was worked out from others, such as the album's, and not given by the user.
  bool isRatingComputed = false;
  /// Of a file whose location the application does not tell; it counts as there.
  bool isUnlocated = false;
  /// Its file was there when the library was read, by an application that looks at all files
  /// whenever it is read again.
  bool isSeen = false;
};

/// A number of an item as a function, for tables of them.
template <auto member>
constexpr std::int64_t numberOf(const MediaItem& item) noexcept {
  return item.*member;
}

/// The rating that the user gave; 0 without one.
[[nodiscard]] inline std::int64_t givenRating(const MediaItem& item) noexcept {
  return item.isRatingComputed ? 0 : std::int64_t{item.rating};
}

/// The file-system path of a file item; empty when there is none.
[[nodiscard]] inline std::string filePath(const MediaItem& item) {
  std::string path;
  if (item.locationFolder.isNull()) return path;
  const std::string_view folder = item.locationFolder.view(), name = item.locationName.view();
  path.reserve(folder.size() + 1 + name.size());
  return path.append(folder).append(1, '/').append(name);
}

/// The same as the library has it, which path maps may have taken from another machine.
[[nodiscard]] inline std::string originalPath(const MediaItem& item) {
  return item.originalLocation.isNull() ? filePath(item)
                                        : std::string(item.originalLocation.view());
}

}  // namespace kestrel
