#include "foundation/dates.h"

#include <gtest/gtest.h>
#include <limits>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <vector>

namespace kestrel {
namespace {

std::int64_t at(std::string_view iso) { return parseIsoDate(iso).value(); }

/// The same pattern by ICU's general formatter, in its calendar without a change of calendars.
class SlowFormatter {
 public:
  explicit SlowFormatter(const char* zone)
      : format_("yyyy-MM-dd'T'HH:mm:ss'Z'", icu::Locale("en"), status_),
        calendar_(icu::TimeZone::createTimeZone(zone), status_) {
    calendar_.setGregorianChange(-1e17, status_);
    format_.setCalendar(calendar_);
  }
  std::string text(std::int64_t seconds) {
    icu::UnicodeString units;
    std::string text;
    return format_.format(static_cast<double>(seconds) * 1000.0, units).toUTF8String(text);
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  icu::SimpleDateFormat format_;
  icu::GregorianCalendar calendar_;
};

TEST(Dates, TextsAgreeWithTheGeneralFormatter) {
  for (const char* zone : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                           "Africa/Casablanca", "America/Sao_Paulo", "America/St_Johns",
                           "Asia/Kathmandu", "Pacific/Kiritimati", "No/Such_Zone"}) {
    const DateFormatter fast(zone);
    SlowFormatter slow(zone);
    // Every change of the clock in a year, to the second before and after it.
    for (std::int64_t t = at("2021-01-01T00:00:00Z"); t < at("2022-01-01T00:00:00Z"); t += 1800)
      for (const std::int64_t moment : {t - 1, t})
        ASSERT_EQ(fast.text(moment), slow.text(moment)) << zone << ' ' << moment;
    // Five days and a bit, so that all times of day come by; past both ends of the tabled years.
    for (std::int64_t t = at("1890-01-01T00:00:00Z"); t < at("2110-01-01T00:00:00Z"); t += 439201)
      ASSERT_EQ(fast.text(t), slow.text(t)) << zone << ' ' << t;
    for (std::int64_t t = at("0001-01-03T00:00:00Z"); t < at("9999-12-29T00:00:00Z");
         t += 40000 * 86400LL + 12345)
      ASSERT_EQ(fast.text(t), slow.text(t)) << zone << ' ' << t;
  }
}

TEST(Dates, FarYearsAreWrittenOutAndNearOnesReadBack) {
  const DateFormatter utc("UTC");
  EXPECT_EQ(utc.text(at("9999-12-31T23:59:59Z") + 1), "10000-01-01T00:00:00Z");
  EXPECT_EQ(utc.text(at("0001-01-01T00:00:00Z") - 1), "0000-12-31T23:59:59Z");
  EXPECT_EQ(utc.text(at("0001-01-01T00:00:00Z") - 366 * 86400 - 1), "-1-12-31T23:59:59Z");
  for (const auto extreme :
       {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()})
    EXPECT_FALSE(utc.text(extreme).empty());
  for (std::int64_t t = at("1904-01-01T00:00:00Z"); t < at("2040-02-06T00:00:00Z"); t += 86399)
    ASSERT_EQ(parseIsoDate(utc.text(t)), t);
}

TEST(Dates, ReaderTakesOnlyWholeValidMoments) {
  EXPECT_EQ(parseIsoDate("1970-01-01T00:00:00Z"), 0);
  EXPECT_EQ(parseIsoDate("2010-01-02T03:04:05.000Z"), at("2010-01-02T03:04:05Z"));
  EXPECT_EQ(parseIsoDate("1969-12-31T23:59:59.999Z"), -1);
  EXPECT_TRUE(parseIsoDate("2000-02-29T00:00:00Z"));
  const char* const wrong[] = {
      "2010-01-02T03:04:05",   "2010-01-02T03:04:05z",    "2010-01-02 03:04:05Z",
      "2010-01-02T03:04:05.Z", "2010-01-02T03:04:05.1aZ", "2010-01-02T03:04:05+01Z",
      " 2010-01-02T03:04:05Z", "2010-01-02T03:04:05Z ",   "0000-01-01T00:00:00Z",
      "2010-00-01T00:00:00Z",  "2010-13-01T00:00:00Z",    "2010-04-31T00:00:00Z",
      "2010-04-00T00:00:00Z",  "1900-02-29T00:00:00Z",    "2011-02-29T00:00:00Z",
      "2010-01-01T24:00:00Z",  "2010-01-01T00:60:00Z",    "2010-01-01T00:00:60Z",
      "2010-01-01T00:0 :00Z",  "-010-01-01T00:00:00Z",    "2010-1-001T00:00:00Z"};
  for (const char* text : wrong) EXPECT_EQ(parseIsoDate(text), std::nullopt) << text;
  for (const char* text : {"", "2010-01-02"}) EXPECT_EQ(parseIsoDate(text), std::nullopt) << text;
}

TEST(Dates, ShortTextsFollowTheLocale) {
  const std::int64_t moment = at("2010-07-02T15:04:05Z");
  EXPECT_EQ(ShortDateTimeFormatter("de_DE", "Europe/Berlin").text(moment), "02.07.10, 17:04");
  EXPECT_EQ(ShortDateTimeFormatter("en_GB", "UTC").text(moment), "02/07/2010, 15:04");
}

}  // namespace
}  // namespace kestrel
