#include "library/result_track.h"

#include <string>

namespace kestrel {

Message agreementText(const ResultTrack& track) {
  if (track.rulesThatChoose == 0) return {};
  return Message::tr("%1 of %2").arg(track.rulesThatAgree).arg(track.rulesThatChoose);
}

Value ResultTrack::value(TrackKey key) const {
  switch (key) {
    case TrackKey::tGroupID:
      return std::to_string(tGroupID);
    case TrackKey::checkBox:
      return checkBox ? "1" : "0";
    case TrackKey::dupeSort:
      return dupeSort ? Value(dupeSort) : Value();
    case TrackKey::tSound:
      if (const Message text = textOf(sound); !text.empty()) return text.english();
      return {};
    case TrackKey::tAgreement:
      return rulesThatChoose == 0 ? Value() : agreementText(*this).english();
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

}  // namespace kestrel
