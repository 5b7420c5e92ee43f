#include "ui/value_transformers.h"

#include <gtest/gtest.h>
#include <vector>

namespace kestrel {
namespace {

Value transformed(std::string_view name, const ValueTransformer::Input& input) {
  return ValueTransformer::named(name)->transformedValue(input);
}

TEST(ValueTransformers, NumbersBecomeTexts) {
  struct Case {
    const char* name;
    Value value;
    const char* text;
  };
  const std::vector<Case> cases = {
      {"TimeTransformer", {}, "0:00"},
      {"TimeTransformer", 59499, "0:59"},
      {"SizeTransformer", {}, "Stream"},
      {"SizeTransformer", std::int64_t{4294967296}, "Stream"},
      {"SizeTransformer", std::int64_t{4294967297}, "4.29 GB"},
      {"SizeTransformer", 999, "999 bytes"},
      {"RatingTransformer", Value::Null{}, ""},
      {"RatingTransformer", 100, "★★★★★"},
      {"HertzTransformer", {}, ""},
      {"HertzTransformer", 22050, "22.050 kHz"},
      {"KilobytesTransformer", {}, "0 kbps"},
      {"KilobytesTransformer", std::int64_t{4294967295}, "-1 kbps"},
  };
  for (const auto& [name, value, text] : cases)
    EXPECT_EQ(transformed(name, value), Value(text)) << name << " for " << text;
}

TEST(ValueTransformers, CollectionsBecomeFlags) {
  struct Case {
    std::vector<Value> elements;
    bool two, one;
  };
  const std::vector<Case> cases = {
      {{}, false, false},
      {{1}, false, true},
      {{1, 1, 0}, true, false},
      {{true, 1, false}, true, false},
      {{1, 0, 0, 1, 2}, false, false},
      {{"a", Value::Null{}, "a"}, true, false},
  };
  for (const auto& [elements, two, one] : cases) {
    const std::span<const Value> collection(elements);
    EXPECT_EQ(transformed("CountCheckboxValue", collection), Value(two));
    EXPECT_EQ(transformed("CountIsOne", collection), Value(one));
  }
  EXPECT_EQ(transformed("CountIsOne", {}), Value(false));
}

}  // namespace
}  // namespace kestrel
