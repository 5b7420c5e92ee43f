#include "musicapp/document/document_tracks.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "foundation/dates.h"
#include "foundation/identifiers.h"
#include "foundation/text_helpers.h"
#include "foundation/utf8.h"
#include "musicapp/document/document_edit.h"
#include "musicapp/file_url.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;
constexpr size_t npos = string_view::npos;

/// What the media kind and the cloud status are decided from once a track is complete.
struct Flags {
  bool podcast = false, tvShow = false, musicVideo = false, movie = false, hasVideo = false;
  bool appleMusic = false, matched = false, uploaded = false, purchased = false;
};

/// A key of a track dictionary and where its value goes; exactly one target is set.
struct Field {
  string_view key;
  Text MediaItem::*sharedText = nullptr;  ///< likely to stand in a neighbour too
  Text MediaItem::*ownText = nullptr;
  void (*setNumber)(MediaItem&, std::int64_t) = nullptr;
  std::int64_t (*number)(const MediaItem&) = nullptr;  ///< the same back
  OptionalDate MediaItem::*date = nullptr;
  bool Flags::*flag = nullptr;
  enum class Special : std::uint8_t {
    none,
    compilation,
    ratingComputed,
    persistentID,
    trackType,
    location
  };
  Special special = Special::none;
};

constexpr Field shared(string_view key, Text MediaItem::*target) {
  return {.key = key, .sharedText = target};
}
constexpr Field own(string_view key, Text MediaItem::*target) {
  return {.key = key, .ownText = target};
}
template <auto target>
constexpr Field number(string_view key) {
  return {.key = key,
          .setNumber = [](MediaItem& item, std::int64_t value) { item.*target = value; },
          .number = numberOf<target>};
}
constexpr Field date(string_view key, OptionalDate MediaItem::*target) {
  return {.key = key, .date = target};
}
constexpr Field flag(string_view key, bool Flags::*target) { return {.key = key, .flag = target}; }
constexpr Field special(string_view key, Field::Special what) {
  return {.key = key, .special = what};
}

// In the order in which music applications write them.
constexpr std::array fields{
    number<&MediaItem::fileSize>("Size"),
    number<&MediaItem::totalTime>("Total Time"),
    number<&MediaItem::discNumber>("Disc Number"),
    number<&MediaItem::discCount>("Disc Count"),
    number<&MediaItem::trackNumber>("Track Number"),
    number<&MediaItem::trackCount>("Track Count"),
    number<&MediaItem::year>("Year"),
    number<&MediaItem::beatsPerMinute>("BPM"),
    number<&MediaItem::bitrate>("Bit Rate"),
    number<&MediaItem::sampleRate>("Sample Rate"),
    date("Date Modified", &MediaItem::modified),
    date("Date Added", &MediaItem::added),
    number<&MediaItem::playCount>("Play Count"),
    date("Play Date UTC", &MediaItem::lastPlayed),
    number<&MediaItem::skipCount>("Skip Count"),
    date("Skip Date", &MediaItem::skipped),
    number<&MediaItem::rating>("Rating"),
    special("Rating Computed", Field::Special::ratingComputed),
    special("Compilation", Field::Special::compilation),
    flag("Podcast", &Flags::podcast),
    flag("TV Show", &Flags::tvShow),
    flag("Music Video", &Flags::musicVideo),
    flag("Movie", &Flags::movie),
    flag("Has Video", &Flags::hasVideo),
    flag("Apple Music", &Flags::appleMusic),
    flag("Matched", &Flags::matched),
    flag("Uploaded", &Flags::uploaded),
    flag("Purchased", &Flags::purchased),
    special("Persistent ID", Field::Special::persistentID),
    special("Track Type", Field::Special::trackType),
    own("Name", &MediaItem::title),
    shared("Artist", &MediaItem::artist),
    shared("Album Artist", &MediaItem::albumArtist),
    shared("Composer", &MediaItem::composer),
    shared("Album", &MediaItem::album),
    shared("Grouping", &MediaItem::grouping),
    shared("Genre", &MediaItem::genre),
    shared("Kind", &MediaItem::kind),
    shared("Comments", &MediaItem::comments),
    special("Location", Field::Special::location),
};

// Keys are found by a hash over their length and four letters, with linear probing. The table is
// laid out at compile time.
constexpr size_t fieldSlots = 128;
constexpr size_t fieldSlot(string_view key) {
  const auto letter = [&](size_t at) { return static_cast<std::uint32_t>(key[at]) & 0xFF; };
  const std::uint32_t mixed = (letter(0) | letter(key.size() / 3) << 8 |
                               letter(key.size() / 2) << 16 | letter(key.size() - 1) << 24) +
                              static_cast<std::uint32_t>(key.size()) * 0x01000193;
  return (mixed * 0x9E3779B1U) >> 25;
}
constexpr auto fieldIndex = [] {
  std::array<std::uint8_t, fieldSlots> index{};  // field number + 1; 0 is free
  for (size_t i = 0; i < fields.size(); ++i) {
    size_t slot = fieldSlot(fields[i].key);
    while (index[slot]) slot = (slot + 1) % fieldSlots;
    index[slot] = static_cast<std::uint8_t>(i + 1);
  }
  return index;
}();

const Field* findField(string_view key) noexcept {
  if (key.empty()) return nullptr;
  for (size_t slot = fieldSlot(key); fieldIndex[slot]; slot = (slot + 1) % fieldSlots)
    if (const Field& field = fields[fieldIndex[slot] - 1U]; field.key == key) return &field;
  return nullptr;
}

class TrackReader {
 public:
  TrackReader(PlistScanner& scanner, TextPool& pool) : scanner_(scanner), pool_(pool) {}

  /// The track whose dictionary has just been begun. The item before must still be there.
  void read(string_view trackID, MediaItem& item) {
    flags_ = {};
    hasID_ = false;
    url_.clear();
    string_view key;
    while (scanner_.nextKey(key)) {
      const Field* field = findField(key);
      const size_t place = scanner_.offset();
      const PlistType type = scanner_.beginValue();
      if (!field || !take(*field, type, place, item)) scanner_.skip(type);
    }
    if (!hasID_) item.persistentID = derivedPersistentID(trackID, url_);
    item.mediaKind = mediaKind();
    item.cloudStatus = cloudStatus();
    before_ = &item;
  }

 private:
  /// False when the value is not of the sort that the key should have; it is then left alone,
  /// as by every reader that asks a dictionary for a text and finds a number.
  bool take(const Field& field, PlistType type, size_t place, MediaItem& item) {
    if (field.setNumber) {
      const bool isInteger = type == PlistType::integer;
      if (!isInteger && type != PlistType::real) return false;
      return field.setNumber(item, isInteger ? scanner_.integer() : wholeReal()), true;
    }
    if (field.flag) return setFlag(flags_.*field.flag, type);
    if (field.special == Field::Special::compilation) return setFlag(item.isCompilation, type);
    if (field.special == Field::Special::ratingComputed)
      return setFlag(item.isRatingComputed, type);
    if (field.date) {
      if (type != PlistType::date) return false;
      const string_view text = scanner_.text(type);
      auto seconds = parseIsoDate(text);
      if (!seconds) seconds = parseIsoDate(trimmed(text));
      if (!seconds)
        throw PlistError(place, Message::tr("expected a date such as 2019-02-28T23:59:59Z"));
      item.*field.date = OptionalDate{*seconds};
      return true;
    }
    if (type != PlistType::string) return false;
    const string_view text = scanner_.text(type);
    if (field.sharedText) {
      const Text before = before_->*field.sharedText;
      const bool same = !before.isNull() && before.view() == text;
      item.*field.sharedText = same ? before : pool_.share(text);
    } else if (field.ownText) {
      item.*field.ownText = pool_.add(text);
    } else if (field.special == Field::Special::persistentID) {
      item.persistentID = numberFromHex(text).value_or(0);
      hasID_ = item.persistentID != 0;
    } else if (field.special == Field::Special::trackType) {
      item.locationType = text == "File"     ? LocationType::file
                          : text == "URL"    ? LocationType::url
                          : text == "Remote" ? LocationType::remote
                                             : LocationType::unknown;
    } else {
      setLocation(text, item);
    }
    return true;
  }

  static bool setFlag(bool& target, PlistType type) {
    if (type != PlistType::boolTrue && type != PlistType::boolFalse) return false;
    target = type == PlistType::boolTrue;
    return true;
  }

  std::int64_t wholeReal() {
    string_view text = trimmed(scanner_.text(PlistType::real));  // it may be on a line of its own
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value > -9e18 && value < 9e18 ? static_cast<std::int64_t>(value) : 0;
  }

  void setLocation(string_view url, MediaItem& item) {
    url_.assign(url);
    // The tracks of an album share a folder, and the part of the URL that names it.
    const size_t nameAt = url.rfind('/') + 1;
    const string_view folderUrl = url.substr(0, nameAt);
    name_.clear();
    appendDecoded(url.substr(nameAt), name_);
    const bool plainName = !name_.empty() && name_.find_first_of(string_view("/\0", 2)) == npos;
    if (plainName && folderUrl == folderUrl_) {
      item.locationFolder = folder_;
      item.locationName = pool_.add(name_);
      return;
    }
    folderUrl_.clear();
    if (!pathOfFileUrl(url, path_)) {
      item.locationFolder = {};
      item.locationName = pool_.add(url);
      return;
    }
    // That of a folder, such as a bundle, may end with slashes.
    while (path_.size() > 1 && path_.back() == '/') path_.pop_back();
    const size_t slash = path_.rfind('/');  // a path of a file URL has at least its first
    item.locationFolder = pool_.share(string_view(path_).substr(0, slash));
    item.locationName = pool_.add(string_view(path_).substr(slash + 1));
    if (plainName) {
      folderUrl_ = folderUrl;
      folder_ = item.locationFolder;
    }
  }

  // The order decides: podcasts may carry Movie and Has Video as well.
  [[nodiscard]] MediaKind mediaKind() const {
    if (flags_.podcast) return MediaKind::podcast;
    if (flags_.tvShow) return MediaKind::tvShow;
    if (flags_.musicVideo) return MediaKind::musicVideo;
    if (flags_.movie) return MediaKind::movie;
    if (flags_.hasVideo) return MediaKind::homeVideo;
    return MediaKind::song;
  }
  [[nodiscard]] CloudStatus cloudStatus() const {
    if (flags_.appleMusic) return CloudStatus::subscription;
    if (flags_.matched) return CloudStatus::matched;
    if (flags_.uploaded) return CloudStatus::uploaded;
    if (flags_.purchased) return CloudStatus::purchased;
    return CloudStatus::unknown;
  }

  PlistScanner& scanner_;
  TextPool& pool_;
  Flags flags_;
  bool hasID_ = false;
  static constexpr MediaItem none{};
  const MediaItem* before_ = &none;  ///< neighbours share texts
  Text folder_;                      ///< and folders: the last one
  std::string folderUrl_;            ///< what stood for it, up to the slash; or empty
  std::string url_, path_, name_;    ///< of the track at hand
};

}  // namespace

std::size_t orderOfTrackKey(string_view key) noexcept {
  const Field* field = findField(key);
  return field ? static_cast<size_t>(field - fields.data()) : npos;
}

TrackRun readTracks(PlistScanner& scanner, size_t limit, TextPool& pool) {
  TrackRun run;
  TrackReader reader(scanner, pool);
  std::string trackID;
  string_view key;
  while (scanner.offset() < limit) {
    if (!scanner.nextKey(key)) {
      run.sectionEnded = true;
      break;
    }
    trackID.assign(key);
    const size_t place = scanner.offset();
    if (scanner.beginValue() != PlistType::dictionary)
      throw PlistError(
          place, Message::tr("expected the track %1 to be a <dict>").arg(quotedStart(trackID)));
    if (run.blocks.empty() || run.blocks.back().size() == MediaItems::itemsPerBlock)
      run.blocks.emplace_back().reserve(MediaItems::itemsPerBlock);
    reader.read(trackID, run.blocks.back().emplace_back());
    run.trackIDs.push_back(trackIDOf(trackID));
    run.ends.add(scanner.offset());
  }
  if (!run.blocks.empty()) run.blocks.back().shrink_to_fit();
  run.end = scanner.offset();
  return run;
}

size_t guessTrackBoundary(string_view document, size_t from) noexcept {
  constexpr size_t near = size_t{1} << 16;
  constexpr string_view closing = "</dict>";
  const string_view window = document.substr(0, std::min(document.size(), from + near));
  const auto afterSpace = [&](size_t at) {
    while (at < window.size() && static_cast<unsigned char>(window[at]) <= ' ') ++at;
    return at;
  };
  for (size_t at = from; (at = window.find(closing, at)) != string_view::npos;) {
    at += closing.size();
    // Only a track entry is followed by a numeric key whose value is a dictionary.
    const size_t key = afterSpace(at);
    if (window.substr(key, 5) != "<key>") continue;
    size_t digits = key + 5;
    while (digits < window.size() && window[digits] >= '0' && window[digits] <= '9') ++digits;
    if (digits == key + 5 || window.substr(digits, 6) != "</key>") continue;
    if (window.substr(afterSpace(digits + 6), 6) == "<dict>") return at;
  }
  return string_view::npos;
}

std::int64_t trackIDOf(string_view key) noexcept {
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(key.data(), key.data() + key.size(), number);
  return error == std::errc() && stop == key.data() + key.size() ? number : noTrackID;
}

void writeTrack(const MediaItem& item, std::int64_t trackID, const DateFormatter& dates,
                LayoutWriter& out) {
  constexpr size_t depth = 2;
  out.key(depth - 1, std::to_string(trackID));
  out.tag(depth - 1, "<dict>");
  out.value(depth, "Track ID", "integer", std::to_string(trackID));
  for (const Field& field : fields) {
    if (field.number) out.number(depth, field.key, field.number(item));
    if (field.date && item.*field.date)
      out.value(depth, field.key, "date", dates.text((item.*field.date).seconds));
    for (Text MediaItem::*text : {field.sharedText, field.ownText})
      if (text) out.text(depth, field.key, (item.*text).view());
    if (field.special == Field::Special::compilation && item.isCompilation)
      out.flag(depth, field.key);
    if (field.special == Field::Special::ratingComputed && item.isRatingComputed)
      out.flag(depth, field.key);
    if (field.special == Field::Special::persistentID)
      out.text(depth, field.key, paddedHex(item.persistentID));
    if (field.special == Field::Special::trackType) out.text(depth, field.key, "File");
    if (field.special == Field::Special::location)
      out.text(depth, field.key, fileUrlOfPath(filePath(item)));
  }
  out.tag(depth - 1, "</dict>");
}

}  // namespace kestrel
