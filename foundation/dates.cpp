#include "foundation/dates.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <unicode/basictz.h>
#include <unicode/datefmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>

#include "foundation/user_locale.h"

namespace kestrel {
namespace {

constexpr std::int64_t daySeconds = 86400;

struct Day {
  std::int64_t year;
  int month;  ///< 1 to 12
  int day;    ///< 1 to 31
};

constexpr std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

/// Both conversions count years from March, so that the leap day is a year's last. The days before
/// the month `m` after March are then (153 m + 2) / 5, and 400 years are 146097 days.
constexpr std::int64_t daysFrom1970(Day date) {
  const std::int64_t year = date.month > 2 ? date.year : date.year - 1;
  const std::int64_t month = (date.month + 9) % 12;
  const std::int64_t leapDays =
      floorDivide(year, 4) - floorDivide(year, 100) + floorDivide(year, 400);
  return year * 365 + leapDays + (153 * month + 2) / 5 + date.day - 1 - 719468;
}

constexpr Day dayFrom1970(std::int64_t days) {
  const std::int64_t sinceMarchOfYear0 = days + 719468;
  const std::int64_t cycle = floorDivide(sinceMarchOfYear0, 146097);
  const std::int64_t dayOfCycle = sinceMarchOfYear0 - cycle * 146097;
  const std::int64_t yearOfCycle =
      (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
  const std::int64_t dayOfYear =
      dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;
  const int calendarMonth = static_cast<int>(month < 10 ? month + 3 : month - 9);
  return {cycle * 400 + yearOfCycle + (calendarMonth <= 2 ? 1 : 0), calendarMonth,
          static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1)};
}

constexpr int daysIn(std::int64_t year, int month) {
  constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : days[static_cast<std::size_t>(month - 1)];
}

constexpr std::int64_t firstTabled =
    daysFrom1970({.year = 1900, .month = 1, .day = 1}) * daySeconds;
constexpr std::int64_t endTabled = daysFrom1970({.year = 2100, .month = 1, .day = 1}) * daySeconds;

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

icu::UnicodeString utf16(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
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
  const Day date = dayFrom1970(days);
  std::array<char, 20> text = {'0', '0', '0', '0', '-', '0', '0', '-', '0', '0',
                               'T', '0', '0', ':', '0', '0', ':', '0', '0', 'Z'};
  std::size_t yearDigits = 4;
  if (date.year >= 0 && date.year <= 9999) {
    writeTwo(static_cast<int>(date.year / 100), text.data());
    writeTwo(static_cast<int>(date.year % 100), text.data() + 2);
  } else {
    out += std::to_string(date.year);
    yearDigits = 0;
  }
  writeTwo(date.month, text.data() + 5);
  writeTwo(date.day, text.data() + 8);
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
  const int year = digitsAt(text, 0, 4);
  const int month = digitsAt(text, 5, 2);
  const int day = digitsAt(text, 8, 2);
  const int hour = digitsAt(text, 11, 2);
  const int minute = digitsAt(text, 14, 2);
  const int second = digitsAt(text, 17, 2);
  if (year < 1 || month < 1 || month > 12 || day < 1 || day > daysIn(year, month)) {
    return std::nullopt;
  }
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) {
    return std::nullopt;
  }
  const std::int64_t days = daysFrom1970({.year = year, .month = month, .day = day});
  return days * daySeconds + hour * 3600 + minute * 60 + second;
}

ShortDateTimeFormatter::ShortDateTimeFormatter(const std::string& locale, const std::string& zone)
    : format_(icu::DateFormat::createDateTimeInstance(
          icu::DateFormat::kShort, icu::DateFormat::kShort, localeNamed(locale))) {
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

namespace kestrel::TextManipulator {

std::optional<std::string> dateStringFromString(std::string_view text,
                                                std::string_view sourceFormat,
                                                std::string_view destinationFormat) {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat format(utf16(sourceFormat), localeNamed({}), status);
  if (U_FAILURE(status)) return std::nullopt;
  format.setLenient(false);
  const icu::UnicodeString source = utf16(text);
  icu::ParsePosition end(0);
  const UDate moment = format.parse(source, end);
  if (end.getErrorIndex() >= 0 || end.getIndex() != source.length()) return std::nullopt;
  format.applyPattern(utf16(destinationFormat));
  icu::UnicodeString destination;
  format.format(moment, destination);
  std::string result;
  destination.toUTF8String(result);
  return result;
}

}  // namespace kestrel::TextManipulator
