/// Moments as texts: the sortable date text of records, short texts for people, and back.
///
/// Moments are whole seconds since 1970-01-01 00:00 UTC, negative before. Zones are named as in
/// "Europe/Berlin"; an empty name is the user's zone, an unknown one is UTC. The Gregorian calendar
/// is used for all time, before its introduction too.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unicode/utypes.h>
#include <vector>

U_NAMESPACE_BEGIN
class DateFormat;
class TimeZone;
U_NAMESPACE_END

namespace kestrel {

/// Writes moments by the pattern yyyy-MM-dd'T'HH:mm:ss'Z' in one zone. The "Z" is a plain letter
/// and does not mean UTC. For the years 0 to 9999 such texts sort as the local times do.
///
/// Immutable: one serves all threads. The zone's changes between 1900 and 2100 are looked up once,
/// when it is made (about a millisecond), so that a date costs no more than its arithmetic.
class DateFormatter {
 public:
  explicit DateFormatter(const std::string& zone = {});
  ~DateFormatter();
  DateFormatter(DateFormatter&&) noexcept;
  DateFormatter& operator=(DateFormatter&&) noexcept;

  [[nodiscard]] std::string text(std::int64_t seconds) const;
  /// The same, added to `out`.
  void append(std::int64_t seconds, std::string& out) const;
  /// What the zone's clocks are ahead of UTC at a moment, in seconds.
  [[nodiscard]] std::int64_t offsetAt(std::int64_t seconds) const;

 private:
  struct Change {
    std::int64_t from;
    std::int64_t offset;
  };
  std::unique_ptr<const icu::TimeZone> zone_;
  std::vector<Change> changes_;
};

/// Reads "2009-08-13T20:05:15Z", UTC; a fraction of a second (".123") is dropped. Years 1 to 9999;
/// every field must be in range, the day one that the month has. Nothing for any other text.
std::optional<std::int64_t> parseIsoDate(std::string_view text) noexcept;

/// How much of a moment a text tells.
enum class DateDetail : std::uint8_t { day, minute, second };

/// Writes moments in a locale's short date and time style, for people to read. Not thread-safe.
class ShortDateTimeFormatter {
 public:
  explicit ShortDateTimeFormatter(const std::string& locale = {}, const std::string& zone = {},
                                  DateDetail detail = DateDetail::minute);
  ~ShortDateTimeFormatter();
  [[nodiscard]] std::string text(std::int64_t seconds);

 private:
  std::unique_ptr<icu::DateFormat> format_;
};

}  // namespace kestrel
