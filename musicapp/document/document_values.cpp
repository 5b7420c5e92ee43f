#include "musicapp/document/document_values.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "foundation/dates.h"
#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"
#include "musicapp/document/document_tracks.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// The keys that say a value.
constexpr std::pair<string_view, TrackValue> valueKeys[] = {
    {"Date Added", TrackValue::added}, {"Play Count", TrackValue::plays},
    {"Play Date", TrackValue::plays},  {"Play Date UTC", TrackValue::plays},
    {"Rating", TrackValue::rating},    {"Rating Computed", TrackValue::rating},
    {"Comments", TrackValue::comments}};

struct KeyPlace {
  ByteRange whole;  ///< key and element, with the white space before them
  size_t element = 0;
};

/// Tells `visit(key, KeyPlace)` of each key of the entry; returns where its dictionary begins.
template <typename Visit>
size_t forEachKey(string_view document, size_t entry, Visit&& visit) {
  PlistScanner scanner(document, entry);
  string_view key;
  if (!scanner.nextKey(key) || scanner.beginValue() != PlistType::dictionary)
    scanner.fail(Message::tr("expected a track"));
  const size_t begin = scanner.offset();
  std::string name;
  for (size_t before = begin; scanner.nextKey(key); before = scanner.offset()) {
    name.assign(key);
    const PlistType type = scanner.beginValue();
    const size_t element = document.rfind('<', scanner.offset() - 1);
    scanner.skip(type);
    visit(string_view(name), KeyPlace{{before, scanner.offset()}, element});
  }
  return begin;
}

std::string element(string_view name, string_view text) {
  std::string made = "<" + std::string(name) + ">";
  escapeXml(text, [&](string_view part) { made.append(part); });
  return made.append("</").append(name).append(">");
}

std::optional<std::string> numberElement(std::int64_t number) {
  return number == 0 ? std::nullopt : std::optional(element("integer", std::to_string(number)));
}

std::optional<std::string> dateElement(const OptionalDate& date) {
  static thread_local const DateFormatter dates("UTC");
  return date ? std::optional(element("date", dates.text(date.seconds))) : std::nullopt;
}

/// "Play Date" when the date beside it moves.
std::optional<std::string> movedPlayDate(const ValueElements& elements, const OptionalDate& from,
                                         const OptionalDate& to) {
  constexpr string_view opening = "<integer>";
  const auto found = std::find_if(elements.begin(), elements.end(),
                                  [](const auto& one) { return one.first == "Play Date"; });
  if (found == elements.end() || !found->second || !from || !to) return std::nullopt;
  const std::string& text = *found->second;
  std::int64_t number = 0;
  if (!text.starts_with(opening) ||
      std::from_chars(text.data() + opening.size(), text.data() + text.size(), number).ec !=
          std::errc())
    return std::nullopt;
  return numberElement(number + to.seconds - from.seconds);
}

}  // namespace

ValueElements valueElements(string_view document, size_t entry) {
  ValueElements elements;
  for (const auto& [key, value] : valueKeys) elements.emplace_back(key, std::nullopt);
  forEachKey(document, entry, [&](string_view key, const KeyPlace& place) {
    for (auto& [known, text] : elements)
      if (known == key) text = document.substr(place.element, place.whole.end - place.element);
  });
  return elements;
}

ValueElements elementsOf(TrackValueSet which, const TrackValues& values, const TrackValues& before,
                         const ValueElements& elements) {
  ValueElements changed;
  const auto differs = [&](TrackValue value) {
    return which.has(value) && !isSame(value, values, before);
  };
  if (differs(TrackValue::plays)) {
    if (values.plays != before.plays)
      changed.emplace_back("Play Count", numberElement(values.plays));
    if (!(values.lastPlayed == before.lastPlayed)) {
      changed.emplace_back("Play Date",
                           movedPlayDate(elements, before.lastPlayed, values.lastPlayed));
      changed.emplace_back("Play Date UTC", dateElement(values.lastPlayed));
    }
  }
  if (differs(TrackValue::rating)) {
    changed.emplace_back("Rating", numberElement(values.rating));
    changed.emplace_back("Rating Computed", std::nullopt);
  }
  if (differs(TrackValue::added)) changed.emplace_back("Date Added", dateElement(values.added));
  if (differs(TrackValue::comments))
    changed.emplace_back("Comments",
                         values.comments.empty()
                             ? std::nullopt
                             : std::optional(element("string", writableText(values.comments))));
  return changed;
}

std::string storedElements(const ValueElements& elements) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const auto& [key, text] : elements)
    json[key] = text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json();
  return json.dump();
}

std::optional<ValueElements> elementsOfStored(TrackValueSet which, string_view text) {
  const auto json = nlohmann::ordered_json::parse(text, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  ValueElements elements;
  for (const auto& [key, value] : valueKeys) {
    if (!which.has(value) || !json.contains(key)) continue;
    const auto& held = json[std::string(key)];
    elements.emplace_back(key,
                          held.is_string() ? std::optional(held.get<std::string>()) : std::nullopt);
  }
  return elements;
}

std::vector<EntryEdit> editsOf(string_view document, size_t entry, const ValueElements& elements,
                               const DocumentLayout& layout) {
  constexpr size_t depth = 2;
  struct Wanted {
    const std::pair<std::string, std::optional<std::string>>* element;
    size_t order;
    std::optional<KeyPlace> place;
    size_t behind = 0;  ///< where it goes when it is not there
  };
  std::vector<Wanted> wanted;
  for (const auto& one : elements) {
    // The one that music applications write before it has its place in their order.
    const bool isLocal = one.first == "Play Date";
    wanted.push_back({&one, orderOfTrackKey(isLocal ? "Play Date UTC" : one.first), {}});
  }
  std::stable_sort(wanted.begin(), wanted.end(),
                   [](const Wanted& a, const Wanted& b) { return a.order < b.order; });
  const size_t begin = forEachKey(document, entry, [&](string_view key, const KeyPlace& place) {
    const size_t order = orderOfTrackKey(key);
    for (Wanted& one : wanted) {
      if (key == one.element->first) one.place = place;
      if (key == "Track ID" || order < one.order) one.behind = place.whole.end;
    }
  });
  std::vector<EntryEdit> edits;
  for (const Wanted& one : wanted) {
    const auto& [key, text] = *one.element;
    if (one.place && text) {
      edits.push_back({{one.place->element, one.place->whole.end}, *text});
    } else if (one.place) {
      edits.push_back({one.place->whole, {}});
    } else if (text) {
      const size_t at = one.behind == 0 ? begin : one.behind;
      EntryEdit& edit = edits.emplace_back(EntryEdit{{at, at}, {}});
      TextSink sink([&](string_view piece) { edit.text.append(piece); });
      LayoutWriter(sink, layout).key(depth, key);
      if (layout.valuesOnOwnLines) sink.append(layout.lineStart(depth));
      sink.append(*text);
      sink.flush();
    }
  }
  std::stable_sort(edits.begin(), edits.end(), [](const EntryEdit& a, const EntryEdit& b) {
    return std::pair(a.old.begin, a.old.end) < std::pair(b.old.begin, b.old.end);
  });
  return edits;
}

}  // namespace kestrel
