/// Numbers as people read them, such as those of a record in tables and panels, and small
/// operations on texts.
///
/// Stateless; callable from any thread. Numbers are written as in the C locale whatever the
/// process has set, so that records compare equal on every machine.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "foundation/function_ref.h"
#include "foundation/value.h"

namespace kestrel {

/// A number as it is; of a text the whole number it begins with (spaces and a sign allowed), held
/// to the 64-bit range; 0 for anything else.
std::int64_t integerValue(const Value& value) noexcept;

/// The text without the white space at its ends.
std::string_view trimmed(std::string_view text) noexcept;

/// The bytes with all percent-encoded but ASCII letters, digits and those that are `plain`.
std::string percentEncoded(std::string_view bytes, std::string_view plain);

/// A number with so many decimals and a point before them.
std::string fixedDecimals(double number, int decimals);

/// Length in UTF-16 units, the measure in which names are compared by length. Each run of bytes
/// that is not UTF-8 counts as the one replacement character it would be shown as.
std::size_t utf16Length(std::string_view utf8) noexcept;

/// A byte count as file managers write it, with a decimal point and ASCII digits.
///
/// Decimal units: below 1000 "1 byte" or "7 bytes", then whole KB, MB with at most one decimal, GB
/// and above with at most two; zeros at the end of the decimals are dropped. Halves round up, and a
/// count that rounds to 1000 of a unit moves to the next: 999,499 is "999 KB", 999,500 is "1 MB".
/// 0 is "Zero KB". A negative count, which only a damaged library holds, gets a minus sign.
std::string byteCountText(std::int64_t bytes);

/// The same text with a locale's decimal sign and digits.
class ByteCountFormatter {
 public:
  /// A locale name such as "de_DE"; empty is the user's.
  explicit ByteCountFormatter(const std::string& locale);
  [[nodiscard]] std::string text(std::int64_t bytes) const;

 private:
  std::array<std::string, 10> digits_;
  std::string decimalSign_;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// "3 of 12"; "3" when the count is 0; empty when the number is 0.
std::string figNumb(std::int64_t numb, std::int64_t cnt);

/// Clock text of a duration: "m:ss", from 3601 s on "h:mm:ss". Seconds are rounded in single
/// precision, halves up; a negative duration reads as 0, one beyond 68 years as 68 years.
std::string makeTimeHumanReadable(std::int64_t milliseconds);

/// "44.100 kHz"; empty for 0.
std::string makeSampleHumanReadable(std::int64_t hertz);

/// The file-style byte count of `byteCountText`.
std::string makeSizeHumanReadable(std::int64_t bytes);

/// A "★" for every 20 of a rating of 0 to 100 and a "½" for any remainder. Ratings beyond 1000,
/// which only a damaged library holds, read as 1000.
std::string makeRatingHumanReadable(std::int64_t rating);

}  // namespace kestrel::TextSorter
