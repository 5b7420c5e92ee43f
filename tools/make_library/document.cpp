#include "tools/make_library/document.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "tools/make_library/media_path.h"
#include "tools/make_library/playlists.h"

namespace kestrel::make_library {
namespace {

constexpr std::int64_t kWritten = 1'735'732'800;  // 2025-01-01T12:00:00Z
constexpr std::uint32_t kFirstPlaylistId = 100;

std::string hexadecimal(std::uint64_t id) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text(16, '0');
  for (std::size_t i = text.size(); i-- > 0; id >>= 4) text[i] = kDigits[id & 15U];
  return text;
}

std::string_view withoutArticle(std::string_view name) {
  for (const std::string_view article : {"The ", "A ", "An ", "Les ", "Die "}) {
    if (name.starts_with(article)) return name.substr(article.size());
  }
  return name;
}

class TrackWriter {
 public:
  TrackWriter(PlistWriter& plist, const Track& track) : plist_(plist), track_(track) {}

  void write() {
    plist_.key(std::to_string(track_.id));
    plist_.beginDict();
    plist_.integer("Track ID", track_.id);
    names();
    numbers();
    dates();
    flags();
    place();
    sorting();
    plist_.endDict();
  }

 private:
  void text(std::string_view key, std::string_view value) {
    if (!value.empty()) plist_.text(key, value);
  }
  void number(std::string_view key, std::uint64_t value) {
    if (value != 0) plist_.integer(key, static_cast<std::int64_t>(value));
  }
  void date(std::string_view key, std::int64_t value) {
    if (value != 0) plist_.date(key, value);
  }
  void flag(std::string_view key, bool value) {
    if (value) plist_.boolean(key, true);
  }

  void names() {
    for (const NameField& field : nameFields) text(field.key, track_.*field.name);
    text("Kind", track_.format->kind);
  }

  void numbers() {
    number("Size", track_.size);
    number("Total Time", track_.totalTime);
    number("Disc Number", track_.discNumber);
    number("Disc Count", track_.discCount);
    number("Track Number", track_.trackNumber);
    number("Track Count", track_.trackCount);
    number("Year", track_.year);
    number("BPM", track_.bpm);
  }

  void dates() {
    date("Date Modified", track_.dateModified);
    date("Date Added", track_.dateAdded);
    number("Bit Rate", track_.bitRate);
    number("Sample Rate", track_.sampleRate);
    if (track_.volumeAdjustment != 0) plist_.integer("Volume Adjustment", track_.volumeAdjustment);
    flag("Part Of Gapless Album", track_.partOfGapless);
    number("Play Count", track_.playCount);
    if (track_.playDate != 0) {
      // Seconds since 1904 forced into 32 bits: after the middle of 1972 it should not be, but is.
      plist_.integer("Play Date", static_cast<std::int32_t>(static_cast<std::uint32_t>(
                                      track_.playDate + 2'082'844'800 + 3600)));
      plist_.date("Play Date UTC", track_.playDate);
    }
    number("Skip Count", track_.skipCount);
    date("Skip Date", track_.skipDate);
    date("Release Date", track_.releaseDate);
    number("Rating", track_.rating);
    flag("Rating Computed", track_.ratingComputed);
    if (track_.ratingComputed) {
      plist_.integer("Album Rating", track_.rating);
      plist_.boolean("Album Rating Computed", true);
    }
    number("Normalization", track_.normalization);
  }

  void flags() {
    flag("Compilation", track_.compilation);
    flag("Loved", track_.loved);
    number("Artwork Count", track_.artworkCount);
    if (isVideo(track_.media)) {
      plist_.boolean("Has Video", true);
      plist_.boolean("HD", false);
      plist_.integer("Video Width", 640);
      plist_.integer("Video Height", 360);
    }
    flag("Movie", track_.media == Media::movie);
    flag("TV Show", track_.media == Media::tvShow);
    flag("Music Video", track_.media == Media::musicVideo);
    flag("Podcast", track_.media == Media::podcast);
    text("Series", track_.series);
    flag("Explicit", track_.explicitWords);
    flag("Disabled", track_.disabled);
    flag("Purchased", track_.format->purchased);
    flag("Protected", track_.format->isProtected);
    flag("Matched", track_.matched);
    flag("Apple Music", track_.format->cloud && track_.format->isProtected);
    flag("Playlist Only", track_.playlistOnly);
  }

  void place() {
    plist_.text("Persistent ID", hexadecimal(track_.persistentId));
    text("Comments", track_.comments);
    text("Track Type", track_.trackType);
    if (!track_.path.empty()) {
      plist_.text("Location", fileUrl(track_.path));
      plist_.integer("File Folder Count", 5);
      plist_.integer("Library Folder Count", 1);
    } else {
      text("Location", track_.url);
    }
  }

  /// Names to sort by: where an article goes, and where a store has written them.
  void sorting() {
    const auto sortText = [&](std::string_view key, std::string_view name, bool always) {
      const std::string_view sorted = withoutArticle(name);
      if (always || sorted.size() < name.size()) text(key, sorted);
    };
    const bool fromStore = isFromStore(track_);
    sortText("Sort Name", track_.name, fromStore);
    sortText("Sort Album", track_.album, fromStore);
    sortText("Sort Artist", track_.artist, fromStore);
    sortText("Sort Album Artist", track_.albumArtist, false);
    sortText("Sort Composer", track_.composer, false);
  }

  PlistWriter& plist_;
  const Track& track_;
};

void writePlaylist(PlistWriter& plist, const Playlist& playlist, std::uint32_t id) {
  plist.beginDict();
  plist.text("Name", playlist.name);
  if (!playlist.description.empty()) plist.text("Description", playlist.description);
  if (playlist.master) plist.boolean("Master", true);
  plist.integer("Playlist ID", id);
  plist.text("Playlist Persistent ID", hexadecimal(playlist.persistentId));
  if (playlist.parent != 0) plist.text("Parent Persistent ID", hexadecimal(playlist.parent));
  if (playlist.master) plist.boolean("Visible", false);
  if (playlist.distinguished != 0) plist.integer("Distinguished Kind", playlist.distinguished);
  if (!playlist.flag.empty()) plist.boolean(playlist.flag, true);
  plist.boolean("All Items", true);
  if (playlist.kind == PlaylistKind::folder) plist.boolean("Folder", true);
  if (playlist.geniusTrack != 0) plist.integer("Genius Track ID", playlist.geniusTrack);
  if (!playlist.smartInfo.empty()) {
    plist.key("Smart Info");
    plist.data(playlist.smartInfo);
    plist.key("Smart Criteria");
    plist.data(playlist.smartCriteria);
  }
  if (!playlist.trackIds.empty()) {
    plist.key("Playlist Items");
    plist.beginArray();
    for (const std::uint32_t trackId : playlist.trackIds) {
      plist.beginDict();
      plist.integer("Track ID", trackId);
      plist.endDict();
    }
    plist.endArray();
  }
  plist.endDict();
}

}  // namespace

void writeDocument(std::ostream& out, const Options& options,
                   const std::function<void(Track&)>& prepare) {
  const Plan plan = makePlan(options);
  const Catalogue catalogue(options, plan.songs);
  TrackMaker tracks(options, catalogue, plan);
  Random random(options.seed, Stream::persistentId, ~std::uint64_t{0});

  PlistWriter plist(out, options.layout);
  plist.beginDict();
  plist.integer("Major Version", 1);
  plist.integer("Minor Version", 1);
  plist.date("Date", kWritten);
  plist.text("Application Version", "1.4.6.37");
  plist.integer("Features", 5);
  plist.boolean("Show Content Ratings", true);
  plist.text("Music Folder", fileUrl(options.mediaFolder + '/'));
  plist.text("Library Persistent ID", hexadecimal(random.next()));
  plist.key("Tracks");
  plist.beginDict();
  for (std::uint32_t i = 0; i < plan.entries.size(); ++i) {
    Track track = tracks.make(i);
    if (prepare) prepare(track);
    TrackWriter(plist, track).write();
  }
  plist.endDict();
  plist.key("Playlists");
  plist.beginArray();
  std::uint32_t playlistId = kFirstPlaylistId;
  makePlaylists(options, catalogue, plan, [&](const Playlist& playlist) {
    writePlaylist(plist, playlist, playlistId);
    playlistId += 3;
  });
  plist.endArray();
  plist.endDict();
  plist.finish();
}

}  // namespace kestrel::make_library
