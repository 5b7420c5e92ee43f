#include "library/track_record.h"

#include "foundation/identifiers.h"
#include "foundation/text_helpers.h"
#include "library/result_track.h"

namespace kestrel {
namespace {

/// `tType`, by location type. The names stand one place off what the types mean; filters and
/// windows show and compare exactly these texts, so they stay. "URL" is never seen, because items
/// of unknown location get no record.
constexpr std::string_view typeNames[] = {"URL", "File", "Remote", "Unknown"};

Value dateValue(OptionalDate date) { return date ? Value(*date) : Value(); }

/// The prefix tests of the kind text are case-sensitive, as the application writes it.
std::string_view yesIfStartsWith(Text kind, std::string_view prefix) {
  return kind.view().starts_with(prefix) ? "YES" : "NO";
}

}  // namespace

std::string TrackRecord::location() const {
  switch (availability_) {
    case FileAvailability::reachable:
      return filePath(*item_);
    case FileAvailability::cloud:
      return "Cloud";
    case FileAvailability::missing:
      break;
  }
  return {};
}

std::string TrackRecord::dateText(OptionalDate date) const {
  return date ? dates_->text(date.seconds) : std::string(missingDateText);
}

Value TrackRecord::value(TrackKey key) const {
  const MediaItem& item = *item_;
  switch (key) {
    case TrackKey::tName:
      return item.title.view();
    case TrackKey::tArtist:
      return item.artist.view();
    case TrackKey::tAlbumArtist:
      return item.albumArtist.view();
    case TrackKey::tAlbum:
      return item.album.view();
    case TrackKey::tComposer:
      return item.composer.view();
    case TrackKey::tGenre:
      return item.genre.view();
    case TrackKey::tGrouping:
      return item.grouping.view();
    case TrackKey::tComments:
      return item.comments.view();
    case TrackKey::tKind:
      return item.kind.view();
    case TrackKey::tType:
      return typeNames[static_cast<std::size_t>(item.locationType) & 3];
    case TrackKey::tYear:
      return item.year;
    case TrackKey::tYearString:
      return item.year ? std::to_string(item.year) : std::string();
    case TrackKey::realRating:
      return item.rating;
    case TrackKey::tBit:
      return item.bitrate;
    case TrackKey::tSample:
      return item.sampleRate;
    case TrackKey::tPlayCount:
      return item.playCount;
    case TrackKey::tSkipCount:
      return item.skipCount;
    case TrackKey::tBPM:
      return item.beatsPerMinute;
    case TrackKey::tCompilation:
      return item.isCompilation;
    case TrackKey::tPurch:
      return yesIfStartsWith(item.kind, "Purchase");
    case TrackKey::tProtected:
      return yesIfStartsWith(item.kind, "Protect");
    case TrackKey::tTrackNum:
      return item.trackNumber;
    case TrackKey::tTrackCount:
      return item.trackCount;
    case TrackKey::tTrackNumString:
      return TextSorter::figNumb(item.trackNumber, item.trackCount);
    case TrackKey::tDiscNum:
      return item.discNumber;
    case TrackKey::tDiscCount:
      return item.discCount;
    case TrackKey::tDiscNumString:
      return TextSorter::figNumb(item.discNumber, item.discCount);
    case TrackKey::realPlayDate:
      return dateText(item.lastPlayed);
    case TrackKey::realSkipDate:
      return dateText(item.skipped);
    case TrackKey::realModDate:
      return dateText(item.modified);
    case TrackKey::realAddDate:
      return dateText(item.added);
    case TrackKey::tAddDate:
      return dateValue(item.added);
    case TrackKey::realTime:
      return item.totalTime;
    case TrackKey::realSize:
      return item.fileSize;
    case TrackKey::tSize:
      return item.fileSize ? TextSorter::makeSizeHumanReadable(item.fileSize) : std::string();
    case TrackKey::tLoc:
      return location();
    case TrackKey::tFileName:
      return fileName();
    case TrackKey::hexpid:
      return TextSorter::decToHex(item.persistentID);
    case TrackKey::decpid:
      return decimalText(item.persistentID);
    case TrackKey::tCheckbox:
      return checkbox_;
    case TrackKey::fileAvail:
      return availability_ == FileAvailability::missing     ? "0"
             : availability_ == FileAvailability::reachable ? "1"
                                                            : "2";
    // Columns offer these, but no source fills them.
    case TrackKey::tCloudStatus:
    case TrackKey::tWork:
    case TrackKey::tMovement:
    case TrackKey::tMoveNumString:
      return "";
    case TrackKey::tMoveNum:
      return 0;
    case TrackKey::tPlayDate:
      return dateValue(item.lastPlayed);
    case TrackKey::tSkipDate:
      return dateValue(item.skipped);
    case TrackKey::tModDate:
      return dateValue(item.modified);
    case TrackKey::tGroupID:
    case TrackKey::checkBox:
    case TrackKey::dupeSort:
      break;  // a search adds them to result tracks
  }
  return {};
}

Value TrackRecord::value(std::string_view key) const {
  const auto known = trackKey(key);
  return known ? value(*known) : Value();
}

Value ResultTrack::value(TrackKey key) const {
  switch (key) {
    case TrackKey::tGroupID:
      return std::to_string(tGroupID);
    case TrackKey::checkBox:
      return checkBox ? "1" : "0";
    case TrackKey::dupeSort:
      return dupeSort ? Value(dupeSort) : Value();
    case TrackKey::tCheckbox:
      return tCheckbox;
    default:
      return record->value(key);
  }
}

Value ResultTrack::value(std::string_view key) const {
  const auto known = trackKey(key);
  return known ? value(*known) : Value();
}

void appendTextForm(const Value& value, const DateFormatter& dates, std::string& out) {
  if (value.isText()) {
    out.append(value.text());
  } else if (value.isBoolean()) {
    out.push_back(value.number() ? '1' : '0');
  } else if (value.isNumber()) {
    out.append(std::to_string(value.number()));
  } else if (value.isDate()) {
    dates.append(value.date().seconds, out);
  }
}

}  // namespace kestrel
