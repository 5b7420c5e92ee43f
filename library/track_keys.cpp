#include "library/track_keys.h"

#include <algorithm>
#include <iterator>

#include "foundation/edit_distance.h"
#include "foundation/identifiers.h"
#include "foundation/text_helpers.h"
#include "library/track_record.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;
using enum TrackValueType;
using K = TrackKey;

constexpr TrackKeyInfo key(K key, std::string_view name, std::string_view word, TrackValueType type,
                           Value (*value)(const TrackRecord&)) {
  return {key, name, word, type, TrackKeyOrigin::record, value, nullptr};
}

template <Text MediaItem::*target>
constexpr TrackKeyInfo itemText(K key, std::string_view name, std::string_view word) {
  const auto value = [](const TrackRecord& record) {
    return Value((record.item().*target).view());
  };
  return {key, name, word, text, TrackKeyOrigin::record, value, target};
}

template <auto target>
constexpr TrackKeyInfo number(K name, std::string_view text, std::string_view word) {
  return key(name, text, word, integer,
             [](const TrackRecord& record) { return Value(numberOf<target>(record.item())); });
}

/// "3 of 12".
template <auto numb, auto count>
constexpr TrackKeyInfo numberOfCount(K name, std::string_view string, std::string_view word) {
  return key(name, string, word, text, [](const TrackRecord& record) {
    const MediaItem& item = record.item();
    return Value(TextSorter::figNumb(item.*numb, item.*count));
  });
}

template <OptionalDate MediaItem::*target>
constexpr TrackKeyInfo moment(K name, std::string_view text, std::string_view word) {
  return key(name, text, word, date, [](const TrackRecord& record) {
    const OptionalDate date = record.item().*target;
    return date ? Value(*date) : Value();
  });
}

template <OptionalDate MediaItem::*target>
constexpr TrackKeyInfo momentText(K name, std::string_view string, std::string_view word) {
  return key(name, string, word, text, [](const TrackRecord& record) {
    return Value(record.dateText(record.item().*target));
  });
}

/// Columns offer such keys, but no source fills them.
constexpr TrackKeyInfo unfilledText(K name, std::string_view string) {
  return key(name, string, {}, text, [](const TrackRecord&) { return Value(""); });
}

/// Added to result tracks by a search.
constexpr TrackKeyInfo ofSearch(K name, std::string_view text, TrackValueType type) {
  return {
      name,   text, {}, type, TrackKeyOrigin::search, [](const TrackRecord&) { return Value(); },
      nullptr};
}

/// The prefix tests of the kind text are case-sensitive, as the application writes it.
Value yesIfStartsWith(const TrackRecord& record, std::string_view prefix) {
  return record.item().kind.view().starts_with(prefix) ? "YES" : "NO";
}

/// By location type. The names stand one place off what the types mean; filters and windows show
/// and compare exactly these texts, so they stay. "URL" is never seen, because items of unknown
/// location get no record.
Value typeName(const TrackRecord& record) {
  constexpr std::string_view names[] = {"URL", "File", "Remote", "Unknown"};
  return names[static_cast<std::size_t>(record.item().locationType) & 3];
}

Value yearText(const TrackRecord& record) {
  const std::int64_t year = record.item().year;
  return year ? std::to_string(year) : std::string();
}

Value sizeText(const TrackRecord& record) {
  const std::int64_t bytes = record.item().fileSize;
  return bytes ? TextSorter::makeSizeHumanReadable(bytes) : std::string();
}

Value availabilityText(const TrackRecord& record) {
  constexpr std::string_view texts[] = {"0", "1", "2"};
  return texts[static_cast<std::size_t>(record.availability())];
}

using Record = const TrackRecord&;
using Item = MediaItem;
#define KEY(name) K::name, #name

constexpr TrackKeyInfo keys[] = {
    itemText<&Item::title>(KEY(tName), "name"),
    itemText<&Item::artist>(KEY(tArtist), "artist"),
    itemText<&Item::albumArtist>(KEY(tAlbumArtist), "album-artist"),
    itemText<&Item::album>(KEY(tAlbum), "album"),
    itemText<&Item::composer>(KEY(tComposer), "composer"),
    itemText<&Item::genre>(KEY(tGenre), "genre"),
    itemText<&Item::grouping>(KEY(tGrouping), "grouping"),
    itemText<&Item::comments>(KEY(tComments), "comments"),
    itemText<&Item::kind>(KEY(tKind), "kind"),
    key(KEY(tType), "type", text, typeName),
    number<&Item::year>(KEY(tYear), "year"),
    key(KEY(tYearString), "", text, yearText),
    number<&Item::rating>(KEY(realRating), "rating"),
    number<&Item::bitrate>(KEY(tBit), "bit-rate"),
    number<&Item::sampleRate>(KEY(tSample), "sample-rate"),
    number<&Item::playCount>(KEY(tPlayCount), "plays"),
    number<&Item::skipCount>(KEY(tSkipCount), "skips"),
    number<&Item::beatsPerMinute>(KEY(tBPM), "bpm"),
    key(KEY(tCompilation), "compilation", boolean,
        [](Record r) { return Value(r.item().isCompilation); }),
    key(KEY(tPurch), "purchased", text, [](Record r) { return yesIfStartsWith(r, "Purchase"); }),
    key(KEY(tProtected), "protected", text, [](Record r) { return yesIfStartsWith(r, "Protect"); }),
    number<&Item::trackNumber>(KEY(tTrackNum), "track-number"),
    number<&Item::trackCount>(KEY(tTrackCount), "track-count"),
    numberOfCount<&Item::trackNumber, &Item::trackCount>(KEY(tTrackNumString), ""),
    number<&Item::discNumber>(KEY(tDiscNum), "disc-number"),
    number<&Item::discCount>(KEY(tDiscCount), "disc-count"),
    numberOfCount<&Item::discNumber, &Item::discCount>(KEY(tDiscNumString), ""),
    momentText<&Item::lastPlayed>(KEY(realPlayDate), "last-played"),
    momentText<&Item::skipped>(KEY(realSkipDate), "last-skipped"),
    momentText<&Item::modified>(KEY(realModDate), "modified"),
    momentText<&Item::added>(KEY(realAddDate), "added"),
    moment<&Item::added>(KEY(tAddDate), ""),
    number<&Item::totalTime>(KEY(realTime), "time"),
    number<&Item::fileSize>(KEY(realSize), "size"),
    key(KEY(tSize), "", text, sizeText),
    key(KEY(tLoc), "location", text, [](Record r) { return Value(r.originalLocation()); }),
    key(KEY(tFileName), "file-name", text, [](Record r) { return Value(r.fileName()); }),
    key(KEY(hexpid), "", text, [](Record r) { return Value(decToHex(r.item().persistentID)); }),
    key(KEY(decpid), "", text, [](Record r) { return Value(decimalText(r.item().persistentID)); }),
    key(KEY(tCheckbox), "ticked", boolean, [](Record r) { return Value(r.checkbox()); }),
    key(KEY(fileAvail), "", text, availabilityText),
    unfilledText(KEY(tCloudStatus)),
    unfilledText(KEY(tWork)),
    unfilledText(KEY(tMovement)),
    unfilledText(KEY(tMoveNumString)),
    key(KEY(tMoveNum), "", integer, [](Record) { return Value(0); }),
    moment<&Item::lastPlayed>(KEY(tPlayDate), ""),
    moment<&Item::skipped>(KEY(tSkipDate), ""),
    moment<&Item::modified>(KEY(tModDate), ""),
    ofSearch(KEY(tGroupID), text),
    ofSearch(KEY(checkBox), text),
    ofSearch(KEY(dupeSort), integer),
    ofSearch(KEY(tSound), text),
    ofSearch(KEY(tAgreement), text),
};

#undef KEY

constexpr bool inOrder() {
  for (std::size_t i = 0; i < std::size(keys); ++i)
    if (keys[i].key != static_cast<K>(i)) return false;
  return std::size(keys) == static_cast<std::size_t>(K::count);
}
static_assert(inOrder(), "the table has a line for each key, in the order of the enumeration");

}  // namespace

std::span<const TrackKeyInfo> trackKeys() noexcept { return keys; }

const TrackKeyInfo& trackKeyInfo(TrackKey key) noexcept {
  return keys[static_cast<std::size_t>(key)];
}

std::optional<TrackKey> trackKey(std::string_view name) noexcept {
  for (const TrackKeyInfo& info : keys)
    if (info.name == name) return info.key;
  return std::nullopt;
}

std::optional<TrackKey> fieldNamed(std::string_view text) {
  std::string word;
  for (const char c : text)
    word += c == ' ' || c == '_' ? '-' : 'A' <= c && c <= 'Z' ? static_cast<char>(c + 32) : c;
  for (const TrackKeyInfo& info : keys)
    if (info.origin == TrackKeyOrigin::record &&
        (info.name == text || (!word.empty() && info.word == word)))
      return info.key;
  return std::nullopt;
}

std::vector<std::string_view> nearestFields(std::string_view name, std::size_t most) {
  std::vector<std::pair<std::size_t, std::string_view>> ranked;
  for (const TrackKeyInfo& info : keys) {
    if (info.origin != TrackKeyOrigin::record) continue;
    const std::string_view word = fieldWord(info.key);
    ranked.emplace_back(std::min(editDistance(name, info.name), editDistance(name, word)), word);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string_view> nearest;
  for (std::size_t i = 0; i < std::min(most, ranked.size()); ++i)
    nearest.push_back(ranked[i].second);
  return nearest;
}

}  // namespace kestrel
