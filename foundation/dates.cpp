#include "foundation/dates.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <unicode/basictz.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>

#include "foundation/collation.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t daySeconds = 86400;

constexpr std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

/// Seconds since 1970 at the start of a day.
constexpr std::int64_t startOf(std::chrono::year_month_day day) {
  return std::chrono::sys_days(day).time_since_epoch().count() * daySeconds;
}

constexpr std::int64_t firstTabled = startOf(1900y / 1 / 1);
constexpr std::int64_t endTabled = startOf(2100y / 1 / 1);

std::unique_ptr<icu::TimeZone> zoneNamed(const std::string& name) {
  return std::unique_ptr<icu::TimeZone>(
      name.empty() ? icu::TimeZone::createDefault()
                   : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
}

std::int64_t offsetFromIcu(const icu::TimeZone& zone, std::int64_t seconds) {
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t raw = 0;
  std::int32_t daylight = 0;
  zone.getOffset(static_cast<double>(seconds) * 1000.0, false, raw, daylight, status);
  return U_SUCCESS(status) ? floorDivide(std::int64_t{raw} + daylight, 1000) : 0;
}

void writeTwo(int number, char* to) {
  to[0] = static_cast<char>('0' + number / 10);
  to[1] = static_cast<char>('0' + number % 10);
}

/// `count` digits at `at`, or -1.
int digitsAt(std::string_view text, std::size_t at, std::size_t count) noexcept {
  int number = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

}  // namespace

DateFormatter::DateFormatter(const std::string& zone) : zone_(zoneNamed(zone)) {
  changes_.push_back({firstTabled, offsetFromIcu(*zone_, firstTabled)});
  const auto* ruled = dynamic_cast<const icu::BasicTimeZone*>(zone_.get());
  icu::TimeZoneTransition next;
  auto from = static_cast<double>(firstTabled) * 1000.0;
  while (ruled && ruled->getNextTransition(from, false, next) != 0) {
    from = next.getTime();
    const auto second = static_cast<std::int64_t>(from / 1000.0);
    if (second >= endTabled) break;
    changes_.push_back({second, offsetFromIcu(*zone_, second)});
  }
}

DateFormatter::~DateFormatter() = default;
DateFormatter::DateFormatter(DateFormatter&&) noexcept = default;
DateFormatter& DateFormatter::operator=(DateFormatter&&) noexcept = default;

std::int64_t DateFormatter::offsetAt(std::int64_t seconds) const {
  if (seconds < firstTabled || seconds >= endTabled) return offsetFromIcu(*zone_, seconds);
  const auto after =
      std::upper_bound(changes_.begin(), changes_.end(), seconds,
                       [](std::int64_t s, const Change& change) { return s < change.from; });
  return std::prev(after)->offset;
}

void DateFormatter::append(std::int64_t seconds, std::string& out) const {
  // Held to some 290 million years around now, far from where the sums below would overflow.
  constexpr std::int64_t most = 9'200'000'000'000'000;
  const std::int64_t utc = std::clamp(seconds, -most, most);
  const std::int64_t local = utc + offsetAt(utc);
  const std::int64_t days = floorDivide(local, daySeconds);
  const auto second = static_cast<int>(local - days * daySeconds);
  // The calendar repeats itself every 400 years, and <chrono> knows those around now.
  constexpr std::int64_t cycleDays = 146097;
  const std::int64_t cycle = floorDivide(days, cycleDays);
  const std::chrono::year_month_day date{
      std::chrono::sys_days(std::chrono::days(days - cycle * cycleDays))};
  const std::int64_t year = cycle * 400 + static_cast<int>(date.year());
  std::array<char, 20> text = {'0', '0', '0', '0', '-', '0', '0', '-', '0', '0',
                               'T', '0', '0', ':', '0', '0', ':', '0', '0', 'Z'};
  std::size_t yearDigits = 4;
  if (year >= 0 && year <= 9999) {
    writeTwo(static_cast<int>(year / 100), text.data());
    writeTwo(static_cast<int>(year % 100), text.data() + 2);
  } else {
    out += std::to_string(year);
    yearDigits = 0;
  }
  writeTwo(static_cast<int>(unsigned{date.month()}), text.data() + 5);
  writeTwo(static_cast<int>(unsigned{date.day()}), text.data() + 8);
  writeTwo(second / 3600, text.data() + 11);
  writeTwo(second / 60 % 60, text.data() + 14);
  writeTwo(second % 60, text.data() + 17);
  const std::size_t skipped = 4 - yearDigits;
  out.append(text.data() + skipped, text.size() - skipped);
}

std::string DateFormatter::text(std::int64_t seconds) const {
  std::string text;
  append(seconds, text);
  return text;
}

std::optional<std::int64_t> parseIsoDate(std::string_view text) noexcept {
  if (text.size() < 20 || text.back() != 'Z') return std::nullopt;
  if (text.size() > 20) {
    const std::string_view fraction = text.substr(19, text.size() - 20);
    if (fraction.size() < 2 || fraction[0] != '.' ||
        fraction.find_first_not_of("0123456789", 1) != std::string_view::npos) {
      return std::nullopt;
    }
  }
  if (text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' || text[16] != ':')
    return std::nullopt;
  const int year = digitsAt(text, 0, 4), month = digitsAt(text, 5, 2), day = digitsAt(text, 8, 2);
  const int hour = digitsAt(text, 11, 2), minute = digitsAt(text, 14, 2);
  const int second = digitsAt(text, 17, 2);
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (year < 1 || month < 1 || day < 1 || !date.ok()) return std::nullopt;
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
    return std::nullopt;
  return startOf(date) + hour * 3600 + minute * 60 + second;
}

ShortDateTimeFormatter::ShortDateTimeFormatter(const std::string& locale, const std::string& zone,
                                               DateDetail detail)
    : format_(
          detail == DateDetail::day
              ? icu::DateFormat::createDateInstance(icu::DateFormat::kShort, localeNamed(locale))
              : icu::DateFormat::createDateTimeInstance(icu::DateFormat::kShort,
                                                        detail == DateDetail::second
                                                            ? icu::DateFormat::kMedium
                                                            : icu::DateFormat::kShort,
                                                        localeNamed(locale))) {
  if (!format_) throw std::runtime_error("The date formats of ICU are not installed.");
  format_->adoptTimeZone(zoneNamed(zone).release());
}

ShortDateTimeFormatter::~ShortDateTimeFormatter() = default;

std::string ShortDateTimeFormatter::text(std::int64_t seconds) {
  icu::UnicodeString units;
  format_->format(static_cast<double>(seconds) * 1000.0, units);
  std::string text;
  units.toUTF8String(text);
  return text;
}

}  // namespace kestrel
