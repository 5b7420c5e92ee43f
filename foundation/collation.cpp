#include "foundation/collation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string_view>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/unorm.h>

#include "foundation/utf8.h"

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

}  // namespace

icu::UnicodeString utf16(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

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

std::string comparisonKey(std::string_view text) {
  std::string key(text.size(), '\0');
  if (lowercaseAscii(text, key.data())) return key;
  if (firstInvalidUtf8(text) != std::string_view::npos) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* decomposed = icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  icu::UnicodeString folded = decomposed->normalize(utf16(text), status).foldCase();
  key.clear();
  decomposed->normalize(folded, status).toUTF8String(key);
  if (U_FAILURE(status)) throw std::bad_alloc();
  return key;
}

icu::Locale localeNamed(const std::string& name) {
  icu::Locale locale = name.empty() ? icu::Locale::getDefault() : icu::Locale(name.c_str());
  if (std::string_view(locale.getVariant()) == "POSIX") return {"en"};
  return locale;
}

TextCollator::TextCollator(const std::string& locale, TextOrder order) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(
      icu::Collator::createInstance(localeNamed(locale), status));
  if (U_FAILURE(status)) throw std::runtime_error("The collation rules of ICU are not installed.");
  const bool standard = order == TextOrder::standard;
  collator->setStrength(standard ? icu::Collator::TERTIARY : icu::Collator::SECONDARY);
  if (standard) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
  // Names from foreign libraries come decomposed in any order of accents.
  collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
  collator_ = std::move(collator);
}

TextCollator::~TextCollator() = default;
TextCollator::TextCollator(TextCollator&&) noexcept = default;
TextCollator& TextCollator::operator=(TextCollator&&) noexcept = default;

int TextCollator::compare(std::string_view a, std::string_view b) const {
  UErrorCode status = U_ZERO_ERROR;
  return collator_->compareUTF8({a.data(), static_cast<std::int32_t>(a.size())},
                                {b.data(), static_cast<std::int32_t>(b.size())}, status);
}

std::string TextCollator::sortKey(std::string_view text) const {
  const icu::UnicodeString units = utf16(text);
  std::array<std::uint8_t, 256> room;
  std::int32_t size = collator_->getSortKey(units, room.data(), room.size());
  // The key ends with a zero byte, which says nothing that the length does not.
  if (size <= static_cast<std::int32_t>(room.size()))
    return {room.begin(), room.begin() + std::max(size - 1, 0)};
  std::string key(static_cast<std::size_t>(size), '\0');
  size = collator_->getSortKey(units, reinterpret_cast<std::uint8_t*>(key.data()), size);
  key.resize(static_cast<std::size_t>(std::max(size - 1, 0)));
  return key;
}

const TextCollator& TextCollator::users(TextOrder order) {
  static const TextCollator caseInsensitive;
  static const TextCollator standard({}, TextOrder::standard);
  return order == TextOrder::standard ? standard : caseInsensitive;
}

}  // namespace kestrel
