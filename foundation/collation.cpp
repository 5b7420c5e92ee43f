#include "foundation/collation.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <unicode/coll.h>
#include <unicode/unistr.h>

#include "foundation/user_locale.h"

namespace kestrel {

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
  const icu::UnicodeString units =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
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

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b,
                                    const TextCollator& collator) {
  return collator.compare(a, b);
}

int localizedStandardCompare(std::string_view a, std::string_view b) {
  return TextCollator::users(TextOrder::standard).compare(a, b);
}

}  // namespace kestrel
