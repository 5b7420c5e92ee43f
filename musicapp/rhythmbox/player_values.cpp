#include "musicapp/rhythmbox/player_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "foundation/utf8.h"
#include "musicapp/rhythmbox/xml_events.h"

namespace kestrel::rhythmbox {
namespace {

using std::string;
using std::string_view;

constexpr std::pair<string_view, TrackValue> elementNames[] = {{"first-seen", TrackValue::added},
                                                               {"rating", TrackValue::rating},
                                                               {"play-count", TrackValue::plays},
                                                               {"last-played", TrackValue::plays},
                                                               {"comment", TrackValue::comments}};

bool isValue(string_view name) {
  return std::any_of(std::begin(elementNames), std::end(elementNames),
                     [&](const auto& one) { return one.first == name; });
}

double realIn(const ValueElements& elements, const char* name) {
  const auto found = elements.find(name);
  double value = 0;
  if (found != elements.end())
    std::from_chars(found->second.data(), found->second.data() + found->second.size(), value);
  return value > -9e15 && value < 9e15 ? value : 0;
}

OptionalDate dateIn(const ValueElements& elements, const char* name) {
  const std::int64_t seconds = std::llround(realIn(elements, name));
  return seconds > 0 ? OptionalDate{seconds} : OptionalDate{};
}

/// Empty: no element.
string textOf(string_view name, const TrackValues& values) {
  const auto date = [](const OptionalDate& moment) {
    return moment && moment.seconds > 0 ? std::to_string(moment.seconds) : string();
  };
  if (name == "first-seen") return date(values.added);
  if (name == "last-played") return date(values.lastPlayed);
  if (name == "comment") return values.comments;
  if (name == "play-count") return values.plays == 0 ? string() : std::to_string(values.plays);
  if (values.rating == 0) return {};
  char digits[32];
  const auto end =
      std::to_chars(std::begin(digits), std::end(digits), static_cast<double>(values.rating) / 20);
  return {digits, end.ptr};
}

/// Follows a document, song by song.
class Songs final : public XmlReader {
 public:
  struct Element {
    std::size_t begin = 0, end = 0;  ///< with the white space before it
    std::size_t tag = 0;
    string text;
  };
  struct Song {
    string uri;
    std::map<string, Element> values;
    std::size_t first = 0, last = 0;  ///< of its elements: where the first begins and the last ends
  };
  Songs(string_view document, std::function<void(const Song&)> visit)
      : document_(document), visit_(std::move(visit)) {}

 private:
  void beginElement(const Tag& tag) override {
    ++depth_;
    if (depth_ == 2) {
      isSong_ = tag.name == "entry" && tag.attribute("type") == "song";
      song_ = {};
      song_.last = tag.end;
    }
    if (depth_ != 3 || !isSong_) return;
    if (song_.first == 0) song_.first = tag.begin;
    element_ = {song_.last, 0, tag.begin, {}};
    tagEnd_ = tag.end;
    takes_ = tag.name == "location" || isValue(tag.name);
  }
  void text(string_view piece) override {
    if (depth_ == 3 && isSong_ && takes_) element_.text.append(piece);
  }
  void endElement(const Tag& tag) override {
    if (depth_ == 3 && isSong_) {
      song_.last = element_.end = std::max(tag.end, tagEnd_);
      if (tag.name == "location")
        song_.uri = element_.text;
      else if (takes_)
        song_.values[string(tag.name)] = element_;
    }
    if (depth_ == 2 && isSong_ && !song_.uri.empty()) visit_(song_);
    --depth_;
  }

  string_view document_;
  std::function<void(const Song&)> visit_;
  Song song_;
  Element element_;
  std::size_t tagEnd_ = 0;
  int depth_ = 0;
  bool isSong_ = false, takes_ = false;
};

struct TextEdit {
  std::size_t begin, end;
  string text;
};

/// What a song's elements become, of those that are to be others.
void editSong(string_view document, const Songs::Song& song, const GivenByUri& given,
              std::vector<TextEdit>& edits) {
  const auto stored = nlohmann::json::parse(given.values.stored, nullptr, false);
  // A new element stands as the others do.
  string_view space = song.first == 0
                          ? string_view()
                          : document.substr(0, song.first)
                                .substr(document.find_last_not_of(" \t\r\n", song.first - 1) + 1);
  for (const auto& [name, value] : elementNames) {
    if (!given.which.has(value)) continue;
    string text = textOf(name, given.values);
    bool isThere = !text.empty();
    if (stored.is_object()) {
      isThere = stored.contains(name);
      text = isThere ? stored[string(name)].get<string>() : string();
    }
    const auto old = song.values.find(string(name));
    const string made = "<" + string(name) + ">" + xmlEscaped(text) + "</" + string(name) + ">";
    if (old == song.values.end()) {
      if (isThere) edits.push_back({song.last, song.last, string(space) + made});
    } else if (!isThere) {
      edits.push_back({old->second.begin, old->second.end, {}});
    } else if (old->second.text != text) {
      edits.push_back({old->second.tag, old->second.end, made});
    }
  }
}

}  // namespace

Message whyNoComments() {
  return Message::tr(
      "Rhythmbox, while it runs, would write comments into the audio file itself: close it first");
}

TrackValues valuesOf(const ValueElements& elements) {
  TrackValues values;
  values.plays = std::llround(realIn(elements, "play-count"));
  values.rating = std::llround(realIn(elements, "rating") * 20);
  values.lastPlayed = dateIn(elements, "last-played");
  values.added = dateIn(elements, "first-seen");
  if (const auto comment = elements.find("comment"); comment != elements.end())
    values.comments = comment->second;
  nlohmann::json json = nlohmann::json::object();
  for (const auto& [name, text] : elements) json[name] = writableText(text);
  values.stored = json.dump();
  return values;
}

ValueElements valueElements(const std::map<string, string>& properties) {
  ValueElements elements;
  for (const auto& [name, text] : properties)
    if (isValue(name) && !text.empty()) elements.emplace(name, text);
  return elements;
}

std::map<string, SessionBus::Property> propertiesOf(TrackValueSet which,
                                                    const TrackValues& values) {
  std::map<string, SessionBus::Property> properties;
  const auto number = [](std::int64_t value) {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(value, 0, UINT32_MAX));
  };
  const auto date = [&](const OptionalDate& moment) { return number(moment ? moment.seconds : 0); };
  if (which.has(TrackValue::plays)) {
    properties["play-count"] = number(values.plays);
    properties["last-played"] = date(values.lastPlayed);
  }
  // In the player's own words where it has told them: they may lie between two hundredths.
  if (which.has(TrackValue::rating)) {
    const auto stored = nlohmann::json::parse(values.stored, nullptr, false);
    double rating = static_cast<double>(values.rating) / 20;
    if (stored.is_object() && stored.contains("rating"))
      rating = realIn({{"rating", stored["rating"].get<string>()}}, "rating");
    properties["rating"] = rating;
  }
  if (which.has(TrackValue::added)) properties["first-seen"] = date(values.added);
  return properties;
}

std::map<string, ValueElements> storedValues(string_view document, const string& file,
                                             const std::map<string, TrackValues>& wanted) {
  std::map<string, ValueElements> found;
  Songs(document, [&](const Songs::Song& song) {
    if (!wanted.contains(song.uri)) return;
    ValueElements elements;
    for (const auto& [name, element] : song.values) elements.emplace(name, element.text);
    found.try_emplace(song.uri, std::move(elements));
  }).read(document, "rhythmdb", file);
  return found;
}

string withValues(string_view document, const string& file,
                  const std::map<string, GivenByUri>& given) {
  std::vector<TextEdit> edits;
  std::map<string, bool> done;  // of two songs at one place the first counts
  Songs(document, [&](const Songs::Song& song) {
    if (const auto found = given.find(song.uri);
        found != given.end() && !std::exchange(done[song.uri], true))
      editSong(document, song, found->second, edits);
  }).read(document, "rhythmdb", file);
  std::stable_sort(edits.begin(), edits.end(),
                   [](const TextEdit& a, const TextEdit& b) { return a.begin < b.begin; });
  string out;
  std::size_t at = 0;
  for (const TextEdit& edit : edits) {
    out.append(document.substr(at, edit.begin - at)).append(edit.text);
    at = edit.end;
  }
  return out.append(document.substr(at));
}

}  // namespace kestrel::rhythmbox
