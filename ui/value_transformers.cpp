#include "ui/value_transformers.h"

#include <algorithm>
#include <array>
#include <string>

#include "foundation/text_helpers.h"

namespace kestrel {

std::int64_t ValueTransformer::Input::integer() const noexcept {
  const auto* value = std::get_if<Value>(&data_);
  return value ? integerValue(*value) : 0;
}

std::span<const Value> ValueTransformer::Input::elements() const noexcept {
  const auto* elements = std::get_if<std::span<const Value>>(&data_);
  return elements ? *elements : std::span<const Value>();
}

const ValueTransformer* ValueTransformer::named(std::string_view name) {
  static const TimeTransformer time;
  static const SizeTransformer size;
  static const RatingTransformer rating;
  static const HertzTransformer hertz;
  static const KilobytesTransformer kilobytes;
  static const CountCheckboxValue countCheckboxValue;
  static const CountIsOne countIsOne;
  static const std::array<std::pair<std::string_view, const ValueTransformer*>, 7> transformers = {{
      {"TimeTransformer", &time},
      {"SizeTransformer", &size},
      {"RatingTransformer", &rating},
      {"HertzTransformer", &hertz},
      {"KilobytesTransformer", &kilobytes},
      {"CountCheckboxValue", &countCheckboxValue},
      {"CountIsOne", &countIsOne},
  }};
  const auto* found = std::find_if(transformers.begin(), transformers.end(),
                                   [name](const auto& entry) { return entry.first == name; });
  return found == transformers.end() ? nullptr : found->second;
}

Value TimeTransformer::transformedValue(const Input& input) const {
  return TextSorter::makeTimeHumanReadable(input.integer());
}

Value SizeTransformer::transformedValue(const Input& input) const {
  const std::int64_t bytes = input.integer();
  // Only the low half decides: an exact multiple of 4 GiB reads as a stream, too.
  if (static_cast<std::uint32_t>(bytes) == 0) return stream;
  return TextSorter::makeSizeHumanReadable(bytes);
}

Value RatingTransformer::transformedValue(const Input& input) const {
  return TextSorter::makeRatingHumanReadable(input.integer());
}

Value HertzTransformer::transformedValue(const Input& input) const {
  return TextSorter::makeSampleHumanReadable(input.integer());
}

Value KilobytesTransformer::transformedValue(const Input& input) const {
  return std::to_string(static_cast<std::int32_t>(input.integer())) + " kbps";
}

Value CountCheckboxValue::transformedValue(const Input& input) const {
  const auto elements = input.elements();
  const Value* second = nullptr;
  for (const Value& element : elements) {
    if (element == elements.front() || (second && element == *second)) continue;
    if (second) return false;
    second = &element;
  }
  return second != nullptr;
}

Value CountIsOne::transformedValue(const Input& input) const {
  return input.elements().size() == 1;
}

}  // namespace kestrel
