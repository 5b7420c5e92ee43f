#include "library/worded_values.h"

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
