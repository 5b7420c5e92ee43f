#include "foundation/text_helpers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/utf8.h>

#include "foundation/collation.h"

namespace kestrel {
namespace {

void appendNumber(std::int64_t number, std::string& out) {
  std::array<char, 20> digits;
  out.append(digits.data(), std::to_chars(digits.begin(), digits.end(), number).ptr);
}

/// ":07"
void appendTwoDigits(std::int64_t number, std::string& out) {
  out += ':';
  out += static_cast<char>('0' + number / 10);
  out += static_cast<char>('0' + number % 10);
}

struct Unit {
  std::string_view name;
  std::uint64_t bytes;
  unsigned decimals;
};
constexpr std::array<Unit, 6> units = {{{" KB", 1'000, 0},
                                        {" MB", 1'000'000, 1},
                                        {" GB", 1'000'000'000, 2},
                                        {" TB", 1'000'000'000'000, 2},
                                        {" PB", 1'000'000'000'000'000, 2},
                                        {" EB", 1'000'000'000'000'000'000, 2}}};

constexpr std::uint64_t powerOfTen(unsigned exponent) {
  return exponent == 0 ? 1 : 10 * powerOfTen(exponent - 1);
}

/// `bytes` in the last decimal place of the unit, halves up. The product with the place's power of
/// ten would not fit 64 bits; dividing by a smaller unit does.
std::uint64_t inLastPlaces(std::uint64_t bytes, const Unit& unit) {
  const std::uint64_t step = unit.bytes / powerOfTen(unit.decimals);
  const std::uint64_t rest = bytes % step;
  return bytes / step + (rest >= step - rest ? 1 : 0);
}

std::string scaledText(std::uint64_t bytes) {
  std::size_t i = 0;
  while (i + 1 < units.size() &&
         inLastPlaces(bytes, units[i]) >= 1000 * powerOfTen(units[i].decimals)) {
    ++i;
  }
  const std::uint64_t places = inLastPlaces(bytes, units[i]);
  const std::uint64_t one = powerOfTen(units[i].decimals);
  std::string text = std::to_string(places / one);
  if (places % one != 0) {
    std::string decimals = std::to_string(one + places % one);  // the leading 1 keeps the zeros
    decimals.front() = '.';
    if (decimals.back() == '0') decimals.pop_back();
    text += decimals;
  }
  text += units[i].name;
  return text;
}

}  // namespace

std::string_view trimmed(std::string_view text) noexcept {
  constexpr std::string_view space = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(space), text.size()));
  return text.substr(0, text.find_last_not_of(space) + 1);
}

std::string percentEncoded(std::string_view bytes, std::string_view plain) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    const char lower = static_cast<char>(code | 0x20U);
    if ((lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') ||
        plain.find(c) != std::string_view::npos)
      result += c;
    else
      result += {'%', digits[code >> 4U], digits[code & 15U]};
  }
  return result;
}

std::string fixedDecimals(double number, int decimals) {
  std::array<char, 400> digits;  // enough for every number with a few decimals
  return {
      digits.data(),
      std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed, decimals).ptr};
}

std::int64_t integerValue(const Value& value) noexcept {
  if (!value.isText()) return value.number();
  std::string_view text = value.text();
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  const bool negative = text.starts_with('-');
  if (text.starts_with('+') && !text.substr(1).starts_with('-')) text.remove_prefix(1);
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc::result_out_of_range) return number;
  return negative ? std::numeric_limits<std::int64_t>::min()
                  : std::numeric_limits<std::int64_t>::max();
}

std::size_t utf16Length(std::string_view utf8) noexcept {
  const char* bytes = utf8.data();
  const std::size_t size = utf8.size();
  std::size_t units = 0;
  for (std::size_t i = 0; i < size; ++units) {
    UChar32 codePoint;
    U8_NEXT(bytes, i, size, codePoint);
    if (codePoint > 0xFFFF) ++units;
  }
  return units;
}

std::string byteCountText(std::int64_t bytes) {
  if (bytes == 0) return "Zero KB";
  const auto bits = static_cast<std::uint64_t>(bytes);
  const std::uint64_t magnitude = bytes < 0 ? 0 - bits : bits;
  std::string text = bytes < 0 ? "-" : "";
  if (magnitude < 1000) {
    text += std::to_string(magnitude);
    text += magnitude == 1 ? " byte" : " bytes";
  } else {
    text += scaledText(magnitude);
  }
  return text;
}

ByteCountFormatter::ByteCountFormatter(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(localeNamed(locale), status);
  if (U_FAILURE(status)) throw std::runtime_error("The number symbols of ICU are not installed.");
  for (int digit = 0; digit < 10; ++digit)
    symbols.getConstDigitSymbol(digit).toUTF8String(digits_[static_cast<std::size_t>(digit)]);
  symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol)
      .toUTF8String(decimalSign_);
}

std::string ByteCountFormatter::text(std::int64_t bytes) const {
  std::string localized;
  for (const char c : byteCountText(bytes)) {
    if (c >= '0' && c <= '9') {
      localized += digits_[static_cast<std::size_t>(c - '0')];
    } else if (c == '.') {
      localized += decimalSign_;
    } else {
      localized += c;
    }
  }
  return localized;
}

}  // namespace kestrel

namespace kestrel::TextSorter {

std::string figNumb(std::int64_t numb, std::int64_t cnt) {
  std::string text;
  if (numb == 0) return text;
  appendNumber(numb, text);
  if (cnt != 0) {
    text += " of ";
    appendNumber(cnt, text);
  }
  return text;
}

std::string makeTimeHumanReadable(std::int64_t milliseconds) {
  // The division is in single precision on purpose: every place that shows a duration rounds alike.
  const float rounded = std::round(static_cast<float>(milliseconds) / 1000.0F);
  // Two billion seconds is the last round number below the range of a 32-bit count.
  const auto s = static_cast<std::int64_t>(std::clamp(rounded, 0.0F, 2147483520.0F));
  std::string text;
  // An hour sharp reads "0:00": the hour form starts a second later, and the minutes
  // are always taken modulo 60. Users know their tables by it.
  if (s >= 3601) {
    appendNumber(s / 3600, text);
    appendTwoDigits(s / 60 % 60, text);
  } else {
    appendNumber(s / 60 % 60, text);
  }
  appendTwoDigits(s % 60, text);
  return text;
}

std::string makeSampleHumanReadable(std::int64_t hertz) {
  if (hertz == 0) return {};
  const auto kilohertz = static_cast<float>(static_cast<double>(hertz) / 1000.0);
  return fixedDecimals(static_cast<double>(kilohertz), 3) + " kHz";
}

std::string makeSizeHumanReadable(std::int64_t bytes) { return byteCountText(bytes); }

std::string makeRatingHumanReadable(std::int64_t rating) {
  const std::int64_t r = std::min<std::int64_t>(rating, 1000);
  const std::int64_t stars = r / 20;
  std::string text;
  for (std::int64_t i = 0; i < stars; ++i) text += "★";
  if (r - 20 * stars > 0) text += "½";
  return text;
}

}  // namespace kestrel::TextSorter
