#include "replaylist/tracks_panel_order.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <unicode/coll.h>
#include <unicode/unistr.h>
#include <unordered_map>

#include "foundation/user_locale.h"

namespace kestrel {
namespace {

std::unique_ptr<icu::Collator> standardCollator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(localeNamed({}), status));
  if (U_FAILURE(status)) throw std::runtime_error("The collation rules of ICU are not installed.");
  collator->setStrength(icu::Collator::TERTIARY);
  collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
  collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
  return collator;
}

/// Bytes whose order is that of the texts.
std::string sortKey(const icu::Collator& collator, std::string_view text) {
  const icu::UnicodeString units =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  std::string key(text.size() * 2 + 16, '\0');
  const auto fill = [&] {
    return collator.getSortKey(units, reinterpret_cast<std::uint8_t*>(key.data()),
                               static_cast<std::int32_t>(key.size()));
  };
  const std::int32_t size = fill();
  const bool fits = size <= static_cast<std::int32_t>(key.size());
  key.resize(static_cast<std::size_t>(size));
  if (!fits) fill();
  return key;
}

}  // namespace

std::vector<std::uint32_t> localizedStandardPlaces(std::span<const std::string_view> texts) {
  struct Different {
    std::string key;
    std::uint32_t place = 0;
  };
  std::unordered_map<std::string_view, Different> different;
  for (const std::string_view text : texts)
    if (!text.empty()) different.try_emplace(text);

  const auto collator = standardCollator();
  std::vector<Different*> sorted;
  sorted.reserve(different.size());
  for (auto& [text, entry] : different) {
    entry.key = sortKey(*collator, text);
    sorted.push_back(&entry);
  }
  std::sort(sorted.begin(), sorted.end(),
            [](const Different* a, const Different* b) { return a->key < b->key; });
  for (std::size_t i = 0; i < sorted.size(); ++i)
    sorted[i]->place = i == 0                                 ? 1
                       : sorted[i - 1]->key == sorted[i]->key ? sorted[i - 1]->place
                                                              : sorted[i - 1]->place + 1;
  std::vector<std::uint32_t> places;
  places.reserve(texts.size());
  for (const std::string_view text : texts)
    places.push_back(text.empty() ? 0 : different.find(text)->second.place);
  return places;
}

}  // namespace kestrel
