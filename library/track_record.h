/// The one in-memory form of a track that the whole system works on.
///
/// A record reads as a string-keyed dictionary, but stores nothing that its media item already
/// holds: texts such as sizes, dates and "3 of 12" are made when asked for. A million records
/// take 16 bytes each beside their items.
#pragma once

#include <string>
#include <string_view>

#include "foundation/dates.h"
#include "foundation/message.h"
#include "foundation/value.h"
#include "library/track_keys.h"
#include "musicapp/media_item.h"

namespace kestrel {

/// Reads "0", "1" and "2": neither, a reachable file, a cloud item.
enum class FileAvailability : std::uint8_t { missing, reachable, cloud };

/// Stands for a missing date in the four date texts: earlier than any date of a library, so that
/// a track that was never played sorts as the oldest.
inline constexpr std::string_view missingDateText = "1966-06-15T11:32:17Z";

/// What a record has beside its item: one of few combinations, which a store keeps for all.
struct TrackState {
  FileAvailability availability = FileAvailability::missing;
  bool checkbox = false;  ///< the keeper flag before a search
  const DateFormatter* dates = nullptr;
};

/// Immutable once its snapshot is taken. Item, state and formatter must outlive the record.
class TrackRecord {
 public:
  TrackRecord(const MediaItem& item, const TrackState& state) noexcept
      : item_(&item), state_(&state) {}

  /// The value under a key. Texts are borrowed from the item where the item has them.
  [[nodiscard]] Value value(TrackKey key) const { return trackKeyInfo(key).value(*this); }
  /// By key text; an unknown key is absent.
  [[nodiscard]] Value value(std::string_view key) const;
  /// Calls `visit(std::string_view name, const Value&)` for each key that the record holds.
  template <typename Visit>
  void forEachKey(Visit&& visit) const {
    for (const TrackKeyInfo& info : trackKeys())
      if (const Value held = value(info.key); !held.isAbsent()) visit(info.name, held);
  }

  [[nodiscard]] const MediaItem& item() const noexcept { return *item_; }
  [[nodiscard]] FileAvailability availability() const noexcept { return state_->availability; }
  /// `tCheckbox`.
  [[nodiscard]] bool checkbox() const noexcept { return state_->checkbox; }
  /// The path on this machine of a reachable file, "Cloud" for a cloud item, else empty.
  [[nodiscard]] std::string location() const;
  /// `tLoc`: the same with the path that the library has for the file, which path maps may have
  /// taken from another machine.
  [[nodiscard]] std::string originalLocation() const;
  /// `tFileName`: the last component of a reachable file's path, else empty.
  [[nodiscard]] std::string_view fileName() const noexcept {
    return availability() == FileAvailability::reachable ? item_->locationName.view()
                                                         : std::string_view();
  }
  /// A date key's text form: local time, or the text that stands for a missing date.
  [[nodiscard]] std::string dateText(OptionalDate date) const;

 private:
  const MediaItem* item_;
  const TrackState* state_;
};

/// The form in which a value enters match keys and texts: integers in decimal, booleans "1" and
/// "0", dates by their date text, absent and null empty. Appends to `out`.
void appendTextForm(const Value& value, const DateFormatter& dates, std::string& out);

// For people who read another language: the texts that the record itself words, such as "3 of 12".

/// One of the fixed words of records and of the music application's answers ("YES", "Matched") as a
/// message; any other text as it stands.
Message worded(std::string_view text);

/// The text under this key, in English the same as the record's value. What comes from the library,
/// names for instance, stays as it stands.
Message wordedText(const TrackRecord& record, TrackKey key);

}  // namespace kestrel
