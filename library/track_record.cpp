#include "library/track_record.h"

#include "library/result_track.h"

namespace kestrel {
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

std::string TrackRecord::dateText(OptionalDate date) const {
  return date ? state_->dates->text(date.seconds) : std::string(missingDateText);
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
