#include "foundation/byte_count.h"

#include <stdexcept>
#include <string_view>
#include <unicode/dcfmtsym.h>

#include "foundation/user_locale.h"

namespace kestrel {
namespace {

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
