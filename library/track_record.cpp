#include "library/track_record.h"

#include <algorithm>
#include <iterator>

namespace kestrel {
namespace {

constexpr const char* words[] = {
    Message::literal("YES"),          Message::literal("NO"),        Message::literal("File"),
    Message::literal("Remote"),       Message::literal("Cloud"),     Message::literal("Unknown"),
    Message::literal("Matched"),      Message::literal("Purchased"), Message::literal("Uploaded"),
    Message::literal("Subscription"),
};

Message figure(std::int64_t number, std::int64_t count) {
  if (number == 0) return {};
  if (count == 0) return Message::tr("%1").arg(number);
  return Message::tr("%1 of %2").arg(number).arg(count);
}

}  // namespace

std::string TrackRecord::location() const {
  switch (availability()) {
    case FileAvailability::reachable:
      return filePath(*item_);
    case FileAvailability::cloud:
      return "Cloud";
    case FileAvailability::missing:
      break;
  }
  return {};
}

std::string TrackRecord::originalLocation() const {
  return availability() == FileAvailability::reachable ? originalPath(*item_) : location();
}

std::string TrackRecord::dateText(OptionalDate date) const {
  return date ? state_->dates->text(date.seconds) : std::string(missingDateText);
}

Value TrackRecord::value(std::string_view key) const {
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

Message worded(std::string_view text) {
  const auto* word = std::find(std::begin(words), std::end(words), text);
  return word != std::end(words) ? Message::tr(*word) : Message::verbatim(std::string(text));
}

Message wordedText(const TrackRecord& record, TrackKey key) {
  const MediaItem& item = record.item();
  switch (key) {
    case TrackKey::tTrackNumString:
      return figure(item.trackNumber, item.trackCount);
    case TrackKey::tDiscNumString:
      return figure(item.discNumber, item.discCount);
    case TrackKey::tPurch:
    case TrackKey::tProtected:
    case TrackKey::tType:
    case TrackKey::tLoc:  // a path begins with a slash
      return worded(record.value(key).text());
    default:
      return Message::verbatim(std::string(record.value(key).text()));
  }
}

}  // namespace kestrel
