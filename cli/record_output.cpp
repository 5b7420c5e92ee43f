#include "cli/record_output.h"

#include <algorithm>
#include <limits>

#include "foundation/dates.h"

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

std::int64_t sizesAdded(std::int64_t sum, std::int64_t size) {
  return sum + std::clamp<std::int64_t>(size, 0, std::numeric_limits<std::int64_t>::max() - sum);
}

std::string dump(const Json& value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::string csvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted.push_back('"');
    quoted.push_back(c);
  }
  return quoted.append(1, '"');
}

std::string csvField(const Value& value) {
  if (value.isText()) return csvField(value.text());
  if (value.isAbsent() || value.isNull()) return {};
  const Json held = json(value);
  return held.is_string() ? held.get<std::string>() : held.dump();
}

}  // namespace kestrel
