/// Value transformers: what tables and controls show for the values of records and selections.
///
/// Windows name them by their exact class names. They turn one value into another and never back,
/// hold no state and may be called from any thread; no input makes one fail.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "foundation/message.h"
#include "foundation/value.h"

namespace kestrel {

class ValueTransformer {
 public:
  enum class ResultClass { string, mutableString, number };

  /// One value, or the elements of a collection; what was not given counts as absent or empty.
  class Input {
   public:
    Input() = default;
    Input(Value value) : data_(std::move(value)) {}
    /// Borrowed for the call.
    Input(std::span<const Value> elements) : data_(elements) {}

    /// 0 for a collection, an absent value, and a text that does not begin with a number.
    [[nodiscard]] std::int64_t integer() const noexcept;
    /// Empty for a single value.
    [[nodiscard]] std::span<const Value> elements() const noexcept;

   private:
    std::variant<Value, std::span<const Value>> data_;
  };

  virtual ~ValueTransformer() = default;

  [[nodiscard]] virtual ResultClass resultClass() const noexcept = 0;
  [[nodiscard]] static constexpr bool allowsReverseTransformation() noexcept { return false; }
  [[nodiscard]] virtual Value transformedValue(const Input& input) const = 0;

  /// The transformer with exactly this name; nullptr when there is none.
  static const ValueTransformer* named(std::string_view name);
};

template <ValueTransformer::ResultClass Class>
class TransformerTo : public ValueTransformer {
 public:
  [[nodiscard]] ResultClass resultClass() const noexcept final { return Class; }
};

/// Milliseconds as a clock text; an absent value reads "0:00".
struct TimeTransformer final : TransformerTo<ValueTransformer::ResultClass::string> {
  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

/// Bytes as a byte count, or "Stream" where there is no file.
struct SizeTransformer final : TransformerTo<ValueTransformer::ResultClass::string> {
  /// In place of a size of 0.
  static constexpr const char* stream = Message::literal("Stream");

  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

/// A rating of 0 to 100 as stars.
struct RatingTransformer final : TransformerTo<ValueTransformer::ResultClass::string> {
  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

/// A sample rate in hertz as kilohertz; empty for 0.
struct HertzTransformer final : TransformerTo<ValueTransformer::ResultClass::mutableString> {
  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

/// A bit rate in kbps. Unlike in the sample rate, 0 is shown.
struct KilobytesTransformer final : TransformerTo<ValueTransformer::ResultClass::mutableString> {
  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

/// Whether a collection holds exactly 2 distinct values, as a selection with ticked and unticked
/// boxes does.
struct CountCheckboxValue final : TransformerTo<ValueTransformer::ResultClass::number> {
  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

/// Whether a collection holds exactly 1 element.
struct CountIsOne final : TransformerTo<ValueTransformer::ResultClass::number> {
  [[nodiscard]] Value transformedValue(const Input& input) const override;
};

}  // namespace kestrel
