/// The orders in which a user expects names, by the rules of a locale.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unicode/utypes.h>

U_NAMESPACE_BEGIN
class Collator;
U_NAMESPACE_END

namespace kestrel {

enum class TextOrder : std::uint8_t {
  /// Letter case ignored, accents told apart.
  caseInsensitive,
  /// As file managers list names: numbers within a text by their value, and of texts that differ in
  /// letter case alone, the lower case first.
  standard,
};

/// Immutable: one serves all threads. Bytes that are not UTF-8 compare as replacement characters.
class TextCollator {
 public:
  /// A locale name such as "sv_SE"; empty is the user's. A locale without rules of its own has the
  /// common ones.
  explicit TextCollator(const std::string& locale = {},
                        TextOrder order = TextOrder::caseInsensitive);
  ~TextCollator();
  TextCollator(TextCollator&&) noexcept;
  TextCollator& operator=(TextCollator&&) noexcept;

  /// -1, 0 or 1.
  [[nodiscard]] int compare(std::string_view a, std::string_view b) const;
  /// Bytes whose order, compared as unsigned, is that of `compare`. A sort over many rows makes
  /// one per text and compares those.
  [[nodiscard]] std::string sortKey(std::string_view text) const;

  /// The user's, made on first use.
  static const TextCollator& users(TextOrder order = TextOrder::caseInsensitive);

 private:
  std::unique_ptr<const icu::Collator> collator_;
};

/// -1, 0 or 1.
int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b,
                                    const TextCollator& collator = TextCollator::users());
/// -1, 0 or 1, by the user's standard order.
int localizedStandardCompare(std::string_view a, std::string_view b);

}  // namespace kestrel
