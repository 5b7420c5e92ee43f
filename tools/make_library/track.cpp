#include "tools/make_library/track.h"

#include <array>
#include <limits>

#include "tools/make_library/media_path.h"
#include "tools/make_library/variants.h"

namespace kestrel::make_library {
namespace {

constexpr std::int64_t kDay = 86'400;
constexpr std::int64_t kYear = 31'556'952;
constexpr std::int64_t kFirstAdded = 1'070'236'800;   // 2003-12-01
constexpr std::int64_t kLastAdded = 1'735'689'600;    // 2025-01-01
constexpr std::int64_t kOldestDate = -2'082'844'800;  // 1904-01-01
constexpr std::int64_t kLatestDate = 2'212'122'495;   // 2040-02-06T06:28:15Z

constexpr std::array<std::uint32_t, 9> kBitRates{64, 96, 128, 128, 160, 192, 256, 320, 320};

void addSound(Track& track, Random& random) {
  const Format& format = *track.format;
  track.sampleRate = random.chance(80) ? 48'000 : random.chance(10) ? 96'000 : 44'100;
  track.bitRate = format.bitRate;
  if (format.kind == "Apple Lossless audio file") {
    track.bitRate = random.between(380, 1100);
  } else if (isVideo(track.media)) {
    track.bitRate = random.between(128, 256);
  } else if (track.bitRate == 0) {
    track.bitRate = random.chance(150) ? random.between(118, 265) : random.pick(kBitRates);
  }
  const std::uint32_t kilobits = isVideo(track.media) ? random.between(1200, 9000) : track.bitRate;
  track.size = std::uint64_t{track.totalTime} * kilobits / 8 + random.between(2'000, 90'000);
  track.normalization = random.between(200, 9000);
  track.volumeAdjustment =
      random.chance(30) ? static_cast<std::int32_t>(random.below(510)) - 255 : 0;
}

void addUse(Track& track, Random& random) {
  track.dateAdded =
      kFirstAdded + random.below(static_cast<std::uint32_t>(kLastAdded - kFirstAdded));
  track.dateModified = track.dateAdded - random.below(2000 * kDay);
  if (random.chance(700)) {
    track.playCount = 1 + random.popular(60);
    track.playDate = track.dateAdded + random.below(900 * kDay);
  }
  if (random.chance(200)) {
    track.skipCount = 1 + random.popular(12);
    track.skipDate = track.dateAdded + random.below(900 * kDay);
  }
  if (random.chance(350)) {
    track.rating = random.between(1, 5) * 20;
    track.ratingComputed = random.chance(300);
  }
  if (random.chance(3)) track.dateAdded = kOldestDate;
  if (random.chance(2)) track.dateModified = kLatestDate;
  if (random.chance(1)) track.playDate = kLatestDate;
  track.disabled = random.chance(25);
  track.loved = random.chance(30);
}

void addTexts(Track& track, Random& random) {
  if (random.chance(180)) track.comments = random.pick(remarks());
  if (random.chance(2)) {
    while (track.comments.size() < 230) track.comments += "na na na & ";
  }
  if (random.chance(60)) track.grouping = random.pick(groupings());
  if (random.chance(120)) track.bpm = random.between(60, 190);
  track.explicitWords = random.chance(40);
  track.artworkCount = random.chance(750) ? 1 : 0;
  track.partOfGapless = random.chance(30);
}

// Where the file is, or why there is none.
void addPlace(Track& track, const Entry& entry, const Options& options, Random& random) {
  if (track.media == Media::stream) {
    track.trackType = "URL";
    track.url = "http://radio.example:8000/" + std::to_string(track.id) + "/live?format=mp3&q=5";
    track.size = 0;
    track.bitRate = 128;
    track.sampleRate = 0;
    return;
  }
  if (track.format->cloud) {
    track.trackType = "Remote";
    track.matched = track.format->kind.starts_with("Matched");
    track.playlistOnly = random.chance(50);
    return;
  }
  track.trackType = "File";
  if (random.chance(3)) {
    track.trackType = random.chance(500) ? "" : "Shared";
  } else if (random.chance(8)) {
    return;  // the application has lost the file
  }
  track.path = mediaPath(options.mediaFolder, track, entry);
}

// What only some entries have. Drawn last, so that the rest of a track does not depend on it.
void leaveOut(Track& track, Random& random) {
  if (!random.chance(350)) track.normalization = 0;
  if (track.discCount == 1 && random.chance(700)) track.discNumber = track.discCount = 0;
  if (random.chance(200)) track.trackCount = 0;
  if (!isFromStore(track) && track.media != Media::podcast) track.releaseDate = 0;
}

}  // namespace

bool isFromStore(const Track& track) { return track.format->purchased || track.format->cloud; }

TrackMaker::TrackMaker(const Options& options, const Catalogue& catalogue, const Plan& plan)
    : options_(options),
      catalogue_(catalogue),
      plan_(plan),
      albumIndex_(std::numeric_limits<std::size_t>::max()) {}

std::uint64_t TrackMaker::persistentId(std::uint32_t entry) const {
  Random random(options_.seed, Stream::persistentId, entry);
  const std::uint64_t id = random.next();
  return random.chance(10) ? id >> 24 : id;  // some begin with several zeros
}

const Album& TrackMaker::albumOf(std::uint32_t song) {
  const std::size_t index = catalogue_.albumOf(song);
  if (index != albumIndex_) {
    album_ = catalogue_.album(index);
    albumIndex_ = index;
  }
  return album_;
}

Track TrackMaker::make(std::uint32_t index) {
  const Entry& entry = plan_.entries[index];
  const Album& album = albumOf(entry.song);
  Song song = catalogue_.song(entry.song, album);
  // What a track shares with its copies comes from `ofSong`, what is its own from `random`.
  Random ofSong(options_.seed, Stream::songFile, entry.song);
  Random random(options_.seed, Stream::track, index);

  Track track;
  track.media = album.media;
  track.id = trackId(index);
  track.persistentId = persistentId(index);
  track.name = std::move(song.name);
  track.artist = std::move(song.artist);
  track.composer = std::move(song.composer);
  track.totalTime = song.milliseconds;
  track.album = album.title;
  track.albumArtist = album.compilation || ofSong.chance(700) ? album.artist : "";
  track.genre = album.genre;
  track.compilation = album.compilation;
  track.year = album.media == Media::stream || ofSong.chance(30) ? 0 : album.year;
  const std::uint32_t number = entry.song - catalogue_.firstSong(albumIndex_);
  const std::uint32_t perDisc = (album.songs + album.discs - 1) / album.discs;
  if (album.songs > 1) {
    track.trackNumber = number % perDisc + 1;
    track.trackCount = perDisc;
    track.discNumber = number / perDisc + 1;
    track.discCount = album.discs;
  }
  if (album.media == Media::tvShow) track.series = album.artist;
  if (track.year != 0) {
    track.releaseDate = (std::int64_t{track.year} - 1970) * kYear;
  }
  track.format = &pickFormat(album.media, options_.demo, ofSong);
  if (!options_.oneKey) vary(track, entry.variant, *album.language, options_.demo, random);
  addSound(track, entry.variant == Variant::otherBitRate ? random : ofSong);
  addUse(track, random);
  addTexts(track, random);
  addPlace(track, entry, options_, random);
  leaveOut(track, random);
  return track;
}

}  // namespace kestrel::make_library
