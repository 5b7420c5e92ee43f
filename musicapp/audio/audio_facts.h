/// What an audio file tells of itself: its tags, its sound and its age. Files are only ever read.
///
/// Stateless; callable from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "musicapp/media_item.h"

namespace kestrel {

/// Texts are empty and numbers 0 where the file has none. Several values of a tag are joined by
/// ", ".
struct AudioFacts {
  std::string title, artist, albumArtist, album, composer, genre, grouping, comments;
  std::string kind;                                            ///< such as "MPEG audio file"
  std::int64_t milliseconds = 0, bitrate = 0, sampleRate = 0;  ///< kbit/s, hertz
  std::int64_t sampleDepth = 0, channels = 0;  ///< bits of a sample, where no bit is lost
  std::int64_t year = 0, trackNumber = 0, trackCount = 0, discNumber = 0, discCount = 0;
  std::int64_t beatsPerMinute = 0;
  std::int64_t rating = 0;  ///< 0-100
  std::int64_t playCount = 0;
  std::int64_t isCompilation = 0;  ///< 0 or 1
  std::int64_t hasCover = 0;       ///< 0 or 1: a picture within the file
  /// When the file came to be, in seconds since 1970; its modification where the disk does not say.
  std::int64_t added = 0;

  friend bool operator==(const AudioFacts&, const AudioFacts&) = default;
};

/// Whether the name has an ending of the audio files that can be read, in either letter case.
bool isAudioName(std::string_view name) noexcept;

/// Nothing when there is no audio in the file that can be read, or no regular file. Never throws
/// but for lack of memory.
std::optional<AudioFacts> readAudioFacts(const std::string& path);

/// Whether a file can be read as audio of some length. Opens it, if it is a regular one.
bool hasPlayingTime(const std::string& path);

/// Gives the item all that the facts say; texts go to `texts`. The rest of it stays.
void fillItem(const AudioFacts& facts, MediaItem& item, TextPool& texts);

/// Gives the item the path as its location.
void setLocation(const std::string& path, MediaItem& item, TextPool& texts);

/// The facts one by one, with what holds each in an item, for what keeps or hands them on.
struct TextFact {
  const char* name;
  std::string AudioFacts::*fact;
  Text MediaItem::*item;
};
struct NumberFact {
  const char* name;
  std::int64_t AudioFacts::*fact;
  void (*set)(MediaItem& item, std::int64_t number);
};
template <auto target>
void setNumber(MediaItem& item, std::int64_t number) {
  item.*target = number;
}
inline constexpr TextFact textFacts[] = {
    {"title", &AudioFacts::title, &MediaItem::title},
    {"artist", &AudioFacts::artist, &MediaItem::artist},
    {"album_artist", &AudioFacts::albumArtist, &MediaItem::albumArtist},
    {"album", &AudioFacts::album, &MediaItem::album},
    {"composer", &AudioFacts::composer, &MediaItem::composer},
    {"genre", &AudioFacts::genre, &MediaItem::genre},
    {"grouping", &AudioFacts::grouping, &MediaItem::grouping},
    {"comments", &AudioFacts::comments, &MediaItem::comments},
    {"kind", &AudioFacts::kind, &MediaItem::kind}};
/// Of what no item says.
inline void setNothing(MediaItem&, std::int64_t) {}
inline constexpr NumberFact numberFacts[] = {
    {"milliseconds", &AudioFacts::milliseconds, setNumber<&MediaItem::totalTime>},
    {"bitrate", &AudioFacts::bitrate, setNumber<&MediaItem::bitrate>},
    {"sample_rate", &AudioFacts::sampleRate, setNumber<&MediaItem::sampleRate>},
    {"sample_depth", &AudioFacts::sampleDepth, setNumber<&MediaItem::sampleDepth>},
    {"channels", &AudioFacts::channels, setNumber<&MediaItem::channels>},
    {"year", &AudioFacts::year, setNumber<&MediaItem::year>},
    {"track_number", &AudioFacts::trackNumber, setNumber<&MediaItem::trackNumber>},
    {"track_count", &AudioFacts::trackCount, setNumber<&MediaItem::trackCount>},
    {"disc_number", &AudioFacts::discNumber, setNumber<&MediaItem::discNumber>},
    {"disc_count", &AudioFacts::discCount, setNumber<&MediaItem::discCount>},
    {"bpm", &AudioFacts::beatsPerMinute, setNumber<&MediaItem::beatsPerMinute>},
    {"rating", &AudioFacts::rating, setNumber<&MediaItem::rating>},
    {"play_count", &AudioFacts::playCount, setNumber<&MediaItem::playCount>},
    {"is_compilation", &AudioFacts::isCompilation, setNumber<&MediaItem::isCompilation>},
    {"has_cover", &AudioFacts::hasCover, setNothing},
    {"added", &AudioFacts::added, [](MediaItem& item, std::int64_t number) {
       if (number != 0) item.added = OptionalDate{number};
     }}};

}  // namespace kestrel
