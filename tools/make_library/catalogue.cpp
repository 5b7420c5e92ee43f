#include "tools/make_library/catalogue.h"

#include <algorithm>

namespace kestrel::make_library {
namespace {

constexpr std::uint32_t kSecond = 1000;
constexpr std::uint32_t kMinute = 60 * kSecond;

Media pickMedia(Random& random) {
  const std::uint32_t roll = random.below(1000);
  if (roll < 860) return Media::song;
  if (roll < 900) return Media::podcast;
  if (roll < 925) return Media::stream;
  if (roll < 945) return Media::musicVideo;
  if (roll < 960) return Media::movie;
  if (roll < 975) return Media::tvShow;
  if (roll < 990) return Media::audiobook;
  return Media::homeVideo;
}

std::uint32_t songsOnAlbum(Media media, Random& random) {
  switch (media) {
    case Media::song:
      return random.between(8, 16);
    case Media::podcast:
    case Media::tvShow:
      return random.between(3, 12);
    case Media::audiobook:
      return random.between(2, 9);
    default:
      return 1;
  }
}

const Language& languageOf(std::uint64_t seed, std::uint32_t artist) {
  Random random(seed, Stream::artist, artist);
  return pickLanguage(random);
}

}  // namespace

Catalogue::Catalogue(const Options& options, std::uint32_t songs)
    : options_(options), songs_(songs), artists_(std::max(12U, songs / (options.demo ? 10 : 60))) {
  for (std::uint32_t first = 0; first < songs;) {
    Random random(options.seed, Stream::album, albums_.size());
    const Media media = options.oneKey || first == 0 ? Media::song : pickMedia(random);
    albums_.push_back({first, media});
    first += std::min(songsOnAlbum(media, random), songs - first);
  }
}

std::size_t Catalogue::albumOf(std::uint32_t song) const {
  const auto after = std::upper_bound(
      albums_.begin(), albums_.end(), song,
      [](std::uint32_t wanted, const Place& place) { return wanted < place.firstSong; });
  return static_cast<std::size_t>(after - albums_.begin()) - 1;
}

std::string Catalogue::artistName(std::uint32_t artist) const {
  Random random(options_.seed, Stream::artist, artist);
  const Language& language = pickLanguage(random);
  return fillPattern(random.pick(random.chance(400) ? language.bands : language.people), language,
                     random);
}

Album Catalogue::album(std::size_t index) const {
  Random random(options_.seed, Stream::album, index);
  random.next();  // decided the media
  Album album;
  album.media = albums_[index].media;
  const std::uint32_t artist = random.popular(artists_);
  album.artist = artistName(artist);
  album.language = &languageOf(options_.seed, artist);
  album.title = fillPattern(random.pick(album.language->albums), *album.language, random);
  album.year = random.chance(20) ? random.between(1902, 1955) : random.between(1956, 2025);
  const std::uint32_t end = index + 1 < albums_.size() ? albums_[index + 1].firstSong : songs_;
  album.songs = end - albums_[index].firstSong;
  album.genre = random.pick(genres());
  if (album.media == Media::song) {
    album.discs = album.songs > 12 && random.chance(200) ? 2 : 1;
    album.compilation = random.chance(60);
  } else if (album.media == Media::podcast) {
    album.genre = "Podcast";
  } else if (album.media == Media::audiobook) {
    album.genre = "Audiobook";
  }
  return album;
}

std::uint32_t Catalogue::length(Media media, Random& random) const {
  if (options_.demo && media != Media::movie && media != Media::tvShow) {
    return random.between(2000, 6000);
  }
  switch (media) {
    case Media::podcast:
      return random.between(8 * kMinute, 130 * kMinute);
    case Media::audiobook:
      return random.between(20 * kMinute, 460 * kMinute);
    case Media::tvShow:
      return random.between(20 * kMinute, 60 * kMinute);
    case Media::movie:
      return random.between(75 * kMinute, 190 * kMinute);
    case Media::stream:
      return 0;
    default:
      break;
  }
  if (options_.oneKey) return random.between(kMinute, 60 * kMinute);
  if (random.chance(5)) return random.between(15 * kMinute, 80 * kMinute);
  // The sum of two even spreads heaps up around four minutes.
  return random.between(40 * kSecond, 3 * kMinute) + random.between(40 * kSecond, 3 * kMinute);
}

Song Catalogue::song(std::uint32_t index, const Album& album) const {
  Random random(options_.seed, Stream::song, index);
  Song song;
  song.milliseconds = length(album.media, random);
  if (options_.oneKey) {
    song.name = "Always the Same Song";
    song.artist = "Always the Same Artist";
    return song;
  }
  song.name = fillPattern(random.pick(album.language->songs), *album.language, random);
  song.artist = album.compilation ? artistName(random.popular(artists_)) : album.artist;
  if (album.media == Media::song && random.chance(450)) {
    song.composer = fillPattern(random.pick(album.language->people), *album.language, random);
    if (random.chance(300)) {
      song.composer += " & " + fillPattern("%g %f", *album.language, random);
    }
  }
  return song;
}

}  // namespace kestrel::make_library
