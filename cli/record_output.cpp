#include "cli/record_output.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <limits>

#include "foundation/dates.h"
#include "foundation/identifiers.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

const DateFormatter& utc() {
  static const DateFormatter formatter("UTC");
  return formatter;
}

}  // namespace

Json json(const Value& value) {
  if (value.isText()) return std::string(value.text());
  if (value.isBoolean()) return value.number() != 0;
  if (value.isNumber()) return value.number();
  if (value.isDate()) return utc().text(value.date().seconds);
  return nullptr;
}

std::string momentText(Moment moment) {
  static const DateFormatter local;
  constexpr std::size_t toTheMinute = 16;
  std::string text =
      local.text(std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count());
  text.resize(toTheMinute);
  std::replace(text.begin(), text.end(), 'T', ' ');
  return text;
}

std::int64_t sizesAdded(std::int64_t sum, std::int64_t size) {
  return sum + std::clamp<std::int64_t>(size, 0, std::numeric_limits<std::int64_t>::max() - sum);
}

std::string dump(const Json& value, int indent) {
  return replacingControls(
      value.dump(indent, ' ', false, Json::error_handler_t::replace),
      [](char32_t control, std::string& out) {
        if (control == '\n') return out.push_back('\n');  // of the indentation
        std::u16string units;
        if (control > 0xFFFF) units += static_cast<char16_t>(0xD7C0 + (control >> 10));
        units += static_cast<char16_t>(control > 0xFFFF ? 0xDC00 + (control & 0x3FF) : control);
        for (const char16_t unit : units) {
          std::array<char, 8> escape{};
          std::snprintf(escape.data(), escape.size(), "\\u%04x", unsigned{unit});
          out += escape.data();
        }
      });
}

std::string csvField(const Value& value) {
  if (value.isText()) return csvField(value.text());
  if (value.isAbsent() || value.isNull()) return {};
  const Json held = json(value);
  return held.is_string() ? held.get<std::string>() : held.dump();
}

CopyTexts textsOf(const TrackStore& tracks, std::uint64_t track) {
  const TrackRecord* record = tracks.find(track);
  if (!record) return {TextSorter::decToHex(track), "not a song of the library"};
  const MediaItem& item = record->item();
  CopyTexts texts{std::string(item.title.view()), std::string(item.kind.view())};
  if (!item.artist.view().empty()) texts.song.append(" · ").append(item.artist.view());
  const auto add = [&copy = texts.copy](const std::string& text) {
    copy.append(copy.empty() ? "" : ", ").append(text);
  };
  if (item.bitrate) add(std::to_string(item.bitrate) + " kbit/s");
  if (record->availability() == FileAvailability::cloud) add("in the cloud");
  return texts;
}

}  // namespace kestrel
