/// Looser matching: what may be passed over when values are compared.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unicode/utypes.h>
#include <unordered_map>

U_NAMESPACE_BEGIN
class Transliterator;
U_NAMESPACE_END

namespace kestrel {

/// Each a bit of a `LooseSet`.
enum class Loose : std::uint8_t {
  accents,      ///< é is e, ß is ss
  punctuation,  ///< and spaces: AC/DC is ACDC
  brackets,     ///< what stands in round, square or curly ones
  featuring,    ///< "feat. ..." and its like, to the end or in brackets
  articles,     ///< at the beginning, such as "The"; of several languages
  ampersand,    ///< & is "and"
  width,        ///< full and half width forms
  emptyValues,  ///< what is empty is equal; else a track with an empty value matches none
};
using LooseSet = std::uint8_t;
constexpr LooseSet bitOf(Loose loose) noexcept {
  return static_cast<LooseSet>(1U << static_cast<unsigned>(loose));
}

struct LooseInfo {
  Loose loose;
  const char* word;  ///< on the command line and in settings
  const char* name;  ///< for people, in English
};
std::span<const LooseInfo> loosenings() noexcept;
std::optional<Loose> looseNamed(std::string_view word) noexcept;
/// Of words; those that are none are passed over.
LooseSet looseSetOf(std::span<const std::string> words) noexcept;

class LetterTable;

/// Brings values into the form in which they are compared. Holds buffers, so that each thread needs
/// one of its own.
class Loosener {
 public:
  explicit Loosener(LooseSet set);

  /// Appends the text without what is passed over, but for letter case. Of a text that would lose
  /// everything, such as "(Intro)" without brackets, what the last step that leaves something made
  /// of it: an empty value matches nothing by itself.
  void append(std::string_view text, std::string& out);

 private:
  void loosen(std::string_view text, std::string& out);
  bool has(Loose loose) const noexcept { return (set_ & bitOf(loose)) != 0; }

  LooseSet set_;
  unsigned asked_ = 0;  ///< what a text must hold, as bits, for a step to change anything in it
  const LetterTable* letters_ = nullptr;
  std::string folded_, a_, b_;
};

}  // namespace kestrel
