#include "library/track_keys.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace kestrel {
namespace {

using enum TrackValueType;
using Origin = TrackKeyOrigin;
using K = TrackKey;

#define KESTREL_KEY(name, type) \
  TrackKeyInfo { K::name, #name, type, Origin::record }
#define KESTREL_SEARCH_KEY(name, type) \
  TrackKeyInfo { K::name, #name, type, Origin::search }

constexpr std::array keys{
    KESTREL_KEY(tName, text),           KESTREL_KEY(tArtist, text),
    KESTREL_KEY(tAlbumArtist, text),    KESTREL_KEY(tAlbum, text),
    KESTREL_KEY(tComposer, text),       KESTREL_KEY(tGenre, text),
    KESTREL_KEY(tGrouping, text),       KESTREL_KEY(tComments, text),
    KESTREL_KEY(tKind, text),           KESTREL_KEY(tType, text),
    KESTREL_KEY(tYear, integer),        KESTREL_KEY(tYearString, text),
    KESTREL_KEY(realRating, integer),   KESTREL_KEY(tBit, integer),
    KESTREL_KEY(tSample, integer),      KESTREL_KEY(tPlayCount, integer),
    KESTREL_KEY(tSkipCount, integer),   KESTREL_KEY(tBPM, integer),
    KESTREL_KEY(tCompilation, boolean), KESTREL_KEY(tPurch, text),
    KESTREL_KEY(tProtected, text),      KESTREL_KEY(tTrackNum, integer),
    KESTREL_KEY(tTrackCount, integer),  KESTREL_KEY(tTrackNumString, text),
    KESTREL_KEY(tDiscNum, integer),     KESTREL_KEY(tDiscCount, integer),
    KESTREL_KEY(tDiscNumString, text),  KESTREL_KEY(realPlayDate, text),
    KESTREL_KEY(realSkipDate, text),    KESTREL_KEY(realModDate, text),
    KESTREL_KEY(realAddDate, text),     KESTREL_KEY(tAddDate, date),
    KESTREL_KEY(realTime, integer),     KESTREL_KEY(realSize, integer),
    KESTREL_KEY(tSize, text),           KESTREL_KEY(tLoc, text),
    KESTREL_KEY(tFileName, text),       KESTREL_KEY(hexpid, text),
    KESTREL_KEY(decpid, text),          KESTREL_KEY(tCheckbox, boolean),
    KESTREL_KEY(fileAvail, text),       KESTREL_KEY(tCloudStatus, text),
    KESTREL_KEY(tWork, text),           KESTREL_KEY(tMovement, text),
    KESTREL_KEY(tMoveNumString, text),  KESTREL_KEY(tMoveNum, integer),
    KESTREL_KEY(tPlayDate, date),       KESTREL_KEY(tSkipDate, date),
    KESTREL_KEY(tModDate, date),        KESTREL_SEARCH_KEY(tGroupID, text),
    KESTREL_SEARCH_KEY(checkBox, text), KESTREL_SEARCH_KEY(dupeSort, integer),
};

#undef KESTREL_KEY
#undef KESTREL_SEARCH_KEY

/// Levenshtein distance, letter case ignored.
std::size_t distance(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::span<const TrackKeyInfo> trackKeys() noexcept { return keys; }

std::string_view trackKeyName(TrackKey key) noexcept {
  return keys[static_cast<std::size_t>(key)].name;
}

std::optional<TrackKey> trackKey(std::string_view name) noexcept {
  for (const TrackKeyInfo& info : keys)
    if (info.name == name) return info.key;
  return std::nullopt;
}

std::vector<std::string_view> nearestTrackKeys(std::string_view name, std::size_t most) {
  std::vector<std::pair<std::size_t, std::string_view>> ranked;
  for (const TrackKeyInfo& info : keys) {
    if (info.origin != TrackKeyOrigin::record) continue;
    // "artist" means tArtist: the prefix that the user left out costs nothing.
    const std::string_view bare = info.name.substr(info.name.starts_with('t') ? 1 : 0);
    ranked.emplace_back(std::min(distance(name, info.name), distance(name, bare)), info.name);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string_view> nearest;
  for (std::size_t i = 0; i < std::min(most, ranked.size()); ++i)
    nearest.push_back(ranked[i].second);
  return nearest;
}

}  // namespace kestrel
