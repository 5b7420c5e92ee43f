/// How texts compare: letter case, which is the same in every locale, and the orders in which a
/// user expects names, by the rules of a locale. Everything here may be called from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unicode/utypes.h>

U_NAMESPACE_BEGIN
class Collator;
class Locale;
class UnicodeString;
U_NAMESPACE_END

namespace kestrel {

/// The text in the form that ICU works on; bytes that are not UTF-8 become U+FFFD.
icu::UnicodeString utf16(std::string_view text);

/// Lower case without normalisation; a capital sigma at the end of a word becomes a final one, so
/// the case of joined texts may differ from the join of their lower cases. Bytes that are not UTF-8
/// have no case and stay as they are.
std::string lowercase(std::string_view text);
/// The same into a buffer that a loop keeps using; its former content is lost. `text` must not lie
/// in it.
void lowercaseInto(std::string_view text, std::string& out);

/// Equal but for letter case and for the way accents are composed.
bool sameIgnoringCase(std::string_view a, std::string_view b);
/// The same for texts that are equal by `sameIgnoringCase`, for tables of them. Bytes that are not
/// UTF-8 stand for themselves.
std::string comparisonKey(std::string_view text);

/// The locale with this name; the user's for an empty one. A user without a locale ("C", as in
/// containers and on build machines) gets plain English: ICU's locale for that case orders texts
/// by code point, upper case first, which no list for people should show.
icu::Locale localeNamed(const std::string& name);

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

}  // namespace kestrel
