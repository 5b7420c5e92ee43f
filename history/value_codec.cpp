#include "history/value_codec.h"

#include <nlohmann/json.hpp>

namespace kestrel {
namespace {

using ValuesJson = nlohmann::ordered_json;

}  // namespace

std::string textOfValues(const TrackValues& values) {
  ValuesJson json = ValuesJson::object();
  if (values.plays != 0) json["plays"] = values.plays;
  if (values.lastPlayed) json["lastPlayed"] = std::int64_t{values.lastPlayed.seconds};
  if (values.rating != 0) json["rating"] = values.rating;
  if (values.added) json["added"] = std::int64_t{values.added.seconds};
  if (!values.comments.empty()) json["comments"] = values.comments;
  if (!values.stored.empty()) json["stored"] = values.stored;
  return json.dump(-1, ' ', false, ValuesJson::error_handler_t::replace);
}

std::optional<TrackValues> valuesOfText(std::string_view text) {
  const ValuesJson json = ValuesJson::parse(text, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  TrackValues values;
  const auto number = [&](const char* key) {
    const auto found = json.find(key);
    return found != json.end() && found->is_number_integer()
               ? std::optional(found->get<std::int64_t>())
               : std::nullopt;
  };
  const auto string = [&](const char* key) {
    const auto found = json.find(key);
    return found != json.end() && found->is_string() ? found->get<std::string>() : std::string();
  };
  values.plays = number("plays").value_or(0);
  values.rating = number("rating").value_or(0);
  if (const auto date = number("lastPlayed")) values.lastPlayed = OptionalDate{*date};
  if (const auto date = number("added")) values.added = OptionalDate{*date};
  values.comments = string("comments");
  values.stored = string("stored");
  return values;
}

std::string wordsOf(TrackValueSet values) {
  std::string words;
  for (const TrackValue value : values.list())
    words.append(words.empty() ? "" : " ").append(nameOf(trackValueNames, value));
  return words;
}

TrackValueSet valuesOfWords(std::string_view words) {
  TrackValueSet values;
  while (!words.empty()) {
    const std::string_view word = words.substr(0, words.find(' '));
    if (const auto value = valueNamed(trackValueNames, word)) values.add(*value);
    words.remove_prefix(std::min(words.size(), word.size() + 1));
  }
  return values;
}

}  // namespace kestrel
