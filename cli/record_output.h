/// Records and values as JSON and CSV.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "foundation/csv.h"
#include "foundation/value.h"
#include "library/result_track.h"
#include "platform/clock.h"

namespace kestrel {

using Json = nlohmann::ordered_json;

/// Texts as strings, numbers and booleans as such, dates as UTC texts "2019-02-28T23:59:59Z", null
/// as null. The value must not be absent.
Json json(const Value& value);

/// Every key that the record holds, in table order. Keys that are in `json` already stay.
template <typename Record>
void addKeys(Json& object, const Record& record) {
  record.forEachKey([&](std::string_view key, const Value& value) {
    if (!object.contains(key)) object[std::string(key)] = json(value);
  });
}

/// "2026-11-03 15:11", in local time: how texts for people have moments, in explanations too.
std::string momentText(Moment moment);

/// The sum with one more file size. Sizes that no file has, as damaged libraries give them, count
/// as 0, and the sum ends at the highest number.
std::int64_t sizesAdded(std::int64_t sum, std::int64_t size);

/// One line of JSON; bytes that are not UTF-8 (they occur in file names) become U+FFFD. Controls
/// (utf8.h) are escaped, so that a terminal can show it and a program reads them back.
std::string dump(const Json& value, int indent = -1);

/// A value as a CSV field: as in JSON, without its quotes; absent and null are empty.
std::string csvField(const Value& value);

/// What a track is, and what tells it from its duplicates.
struct CopyTexts {
  std::string song, copy;
};
/// Of a track by its persistent ID, which is all there is to say when it is none of `tracks`.
CopyTexts textsOf(const TrackStore& tracks, std::uint64_t track);

}  // namespace kestrel
