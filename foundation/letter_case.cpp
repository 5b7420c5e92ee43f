#include "foundation/letter_case.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/unistr.h>
#include <unicode/unorm.h>

namespace kestrel {
namespace {

constexpr char lowerAscii(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

/// Lower-cases into `to`; false when the text is not all ASCII, and `to` is then of no use.
bool lowercaseAscii(std::string_view text, char* to) noexcept {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t highBits = 0x80 * ones;
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + i, 8);
    if (word & highBits) return false;
    // The high bit of each byte says "at least A" and "beyond Z"; where only the first holds,
    // shifted down it is the bit that makes the letter small.
    const std::uint64_t fromA = word + (0x80 - 'A') * ones;
    const std::uint64_t beyondZ = word + (0x80 - 'Z' - 1) * ones;
    word |= (fromA & ~beyondZ & highBits) >> 2;
    std::memcpy(to + i, &word, 8);
  }
  for (; i < text.size(); ++i) {
    if (static_cast<unsigned char>(text[i]) >= 0x80) return false;
    to[i] = lowerAscii(text[i]);
  }
  return true;
}

icu::UnicodeString utf16(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

}  // namespace

void lowercaseInto(std::string_view text, std::string& out) {
  out.resize(text.size());
  if (lowercaseAscii(text, out.data())) return;
  out.clear();
  icu::StringByteSink<std::string> sink(&out);
  UErrorCode status = U_ZERO_ERROR;
  icu::CaseMap::utf8ToLower("", 0, {text.data(), static_cast<std::int32_t>(text.size())}, sink,
                            nullptr, status);
  if (U_FAILURE(status)) throw std::bad_alloc();
}

std::string lowercase(std::string_view text) {
  std::string out;
  lowercaseInto(text, out);
  return out;
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
  if (a == b) return true;
  const auto ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (std::all_of(a.begin(), a.end(), ascii) && std::all_of(b.begin(), b.end(), ascii)) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
             return lowerAscii(x) == lowerAscii(y);
           });
  }
  const icu::UnicodeString left = utf16(a);
  const icu::UnicodeString right = utf16(b);
  UErrorCode status = U_ZERO_ERROR;
  const int order = unorm_compare(left.getBuffer(), left.length(), right.getBuffer(),
                                  right.length(), U_COMPARE_IGNORE_CASE, &status);
  return U_SUCCESS(status) && order == 0;
}

}  // namespace kestrel
