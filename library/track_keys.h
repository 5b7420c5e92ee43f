/// The keys of a track record: one table with each key's name, sort of value, and how it is got.
///
/// Code names keys by the enumeration; user texts (criteria, columns) are resolved once through
/// `trackKey` or `fieldNamed`, never per track. A new key is a line here and a line in the table.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/value.h"
#include "musicapp/media_item.h"

namespace kestrel {

class TrackRecord;

enum class TrackKey : std::uint8_t {
  tName,
  tArtist,
  tAlbumArtist,
  tAlbum,
  tComposer,
  tGenre,
  tGrouping,
  tComments,
  tKind,
  tType,
  tYear,
  tYearString,
  realRating,
  tBit,
  tSample,
  tPlayCount,
  tSkipCount,
  tBPM,
  tCompilation,
  tPurch,
  tProtected,
  tTrackNum,
  tTrackCount,
  tTrackNumString,
  tDiscNum,
  tDiscCount,
  tDiscNumString,
  realPlayDate,
  realSkipDate,
  realModDate,
  realAddDate,
  tAddDate,
  realTime,
  realSize,
  tSize,
  tLoc,
  tFileName,
  hexpid,
  decpid,
  tCheckbox,
  fileAvail,
  tCloudStatus,
  tWork,
  tMovement,
  tMoveNumString,
  tMoveNum,
  tPlayDate,
  tSkipDate,
  tModDate,
  tGroupID,
  checkBox,
  dupeSort,
  tSound,
  tAgreement,
  count,  ///< no key: how many there are
};

enum class TrackValueType : std::uint8_t { text, integer, boolean, date };

/// Who gives a key its value.
enum class TrackKeyOrigin : std::uint8_t {
  record,  ///< every record holds it, though dates may be absent
  search,  ///< added to result tracks by a search
};

struct TrackKeyInfo {
  TrackKey key;
  std::string_view name;
  std::string_view word;  ///< what people call it, "album-artist"; empty: by its name only
  TrackValueType type;
  TrackKeyOrigin origin;
  Value (*value)(const TrackRecord&);  ///< absent for what a search adds
  Text MediaItem::*itemText;           ///< where the value is a text of the item; else nullptr
};

/// All keys, in the order of the enumeration, which is also the order of output.
std::span<const TrackKeyInfo> trackKeys() noexcept;
const TrackKeyInfo& trackKeyInfo(TrackKey key) noexcept;
inline std::string_view trackKeyName(TrackKey key) noexcept { return trackKeyInfo(key).name; }
/// The key with exactly this name, or nothing.
std::optional<TrackKey> trackKey(std::string_view name) noexcept;
/// The record key of a field as people write it, in any case, with "-", "_" or a space between
/// words, or by its exact name; or nothing.
std::optional<TrackKey> fieldNamed(std::string_view text);
/// What people call the field, else the name of its key.
inline std::string_view fieldWord(TrackKey key) noexcept {
  const TrackKeyInfo& info = trackKeyInfo(key);
  return info.word.empty() ? info.name : info.word;
}
/// Words of fields that a mistyped one may have meant, nearest first, at most `most`.
std::vector<std::string_view> nearestFields(std::string_view name, std::size_t most = 3);

}  // namespace kestrel
