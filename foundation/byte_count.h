/// Byte counts as file managers write them.
///
/// Decimal units: below 1000 "1 byte" or "7 bytes", then whole KB, MB with at most one decimal, GB
/// and above with at most two; zeros at the end of the decimals are dropped. Halves round up, and a
/// count that rounds to 1000 of a unit moves to the next: 999,499 is "999 KB", 999,500 is "1 MB".
/// 0 is "Zero KB". Everything here may be called from any thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kestrel {

/// With a decimal point and ASCII digits, the same on every machine. A negative count, which only
/// a damaged library holds, gets a minus sign.
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
