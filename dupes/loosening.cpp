#include "dupes/loosening.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <unicode/translit.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>
#include <utility>
#include <vector>

#include "foundation/collation.h"
#include "foundation/message.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

constexpr LooseInfo infos[] = {
    {Loose::accents, "accents", Message::literal("Accents")},
    {Loose::punctuation, "punctuation", Message::literal("Punctuation and spaces")},
    {Loose::brackets, "brackets", Message::literal("What is in brackets")},
    {Loose::featuring, "feat", Message::literal("Guests after \"feat.\"")},
    {Loose::articles, "articles", Message::literal("Articles at the beginning")},
    {Loose::ampersand, "and", Message::literal("& for \"and\"")},
    {Loose::width, "width", Message::literal("Full and half width forms")},
    {Loose::emptyValues, "empty", Message::literal("That values are empty")},
};

constexpr std::string_view articles[] = {"the ", "a ",   "an ", "der ", "die ", "das ", "le ",
                                         "la ",  "les ", "l'",  "el ",  "los ", "las ", "il ",
                                         "lo ",  "gli ", "os ", "as ",  "o "};
constexpr std::string_view guests[] = {"feat.", "feat ", "ft.", "ft ", "featuring "};

/// What a text holds that may have to change, as bits. One look at each letter tells of most texts
/// that nothing has, and saves all steps.
constexpr std::uint8_t sign = 1, bracket = 2, ampersand = 4, guest = 8, beyondAscii = 16;

constexpr std::uint8_t holdsAt(char c) noexcept {
  if ((c & 0x80) != 0) return beyondAscii;
  if (c == 'f' || c == 'F') return guest;  // perhaps
  if (c == '(' || c == '[' || c == '{') return sign | bracket;
  if (c == '&') return sign | ampersand;
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || (c >= '0' && c <= '9') ? 0 : sign;
}

constexpr auto holdsByByte = [] {
  std::array<std::uint8_t, 0x100> table{};
  for (std::size_t c = 0; c < table.size(); ++c) table[c] = holdsAt(static_cast<char>(c));
  return table;
}();

unsigned holdsOf(std::string_view text) noexcept {
  unsigned holds = 0;
  for (const char c : text) holds |= holdsByByte[static_cast<unsigned char>(c)];
  return holds;
}

char small(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool startsWith(std::string_view text, std::string_view lower) noexcept {
  return text.size() >= lower.size() && std::equal(lower.begin(), lower.end(), text.begin(),
                                                   [](char a, char b) { return a == small(b); });
}

bool isGuest(std::string_view text) noexcept {
  return std::any_of(std::begin(guests), std::end(guests),
                     [&](std::string_view word) { return startsWith(text, word); });
}

/// Whether a word within the text begins as those do.
bool mayHaveGuest(std::string_view text) noexcept {
  for (std::size_t i = 1; i + 2 < text.size(); ++i)
    if ((text[i] | 0x20) == 'f' && (small(text[i + 1]) == 'e' || small(text[i + 1]) == 't') &&
        !((small(text[i - 1]) >= 'a' && small(text[i - 1]) <= 'z')))
      return true;
  return false;
}

char closing(char open) noexcept { return open == '(' ? ')' : open == '[' ? ']' : '}'; }

/// Without bracketed parts, those only for which `drop(inside)` holds.
template <typename Drop>
void withoutBrackets(std::string_view text, std::string& out, Drop&& drop) {
  out.clear();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '(' || text[i] == '[' || text[i] == '{') {
      const std::size_t end = text.find(closing(text[i]), i);
      if (end != std::string_view::npos && drop(text.substr(i + 1, end - i - 1))) {
        i = end;
        continue;
      }
    }
    out.push_back(text[i]);
  }
  out = trimmed(std::string(out));
}

void withoutGuests(std::string_view text, std::string& out) {
  std::string inside;
  withoutBrackets(text, inside, isGuest);
  std::size_t end = inside.size();
  for (std::size_t i = 1; i < inside.size(); ++i)
    if (inside[i - 1] == ' ' && isGuest(std::string_view(inside).substr(i))) {
      end = i;
      break;
    }
  out = trimmed(std::string_view(inside).substr(0, end));
}

/// The article that a text begins with; empty for most, which have no short word there.
std::string_view articleOf(std::string_view text) noexcept {
  constexpr std::size_t longest = 4;
  std::size_t end = 1;
  while (end < std::min(longest, text.size()) && text[end] != ' ' && text[end] != '\'') ++end;
  if (end >= std::min(longest, text.size())) return {};
  for (const std::string_view article : articles)
    if (article.size() == end + 1 && startsWith(text, article)) return article;
  return {};
}

void withoutArticle(std::string_view text, std::string& out) {
  out = trimmed(text.substr(articleOf(text).size()));
}

void withAnd(std::string_view text, std::string& out) {
  out.clear();
  for (const char c : text) c == '&' ? out.append("and") : out.append(1, c);
}

/// Appends the text without signs and spaces of ASCII, and without U+2000 to U+206F and U+3000 to
/// U+303F.
void appendLetters(std::string_view text, std::string& out) {
  const std::size_t before = out.size();
  out.resize(before + text.size());
  char* to = out.data() + before;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c < 0x80) {
      *to = text[i];
      to += (holdsByByte[c] & sign) == 0 ? 1 : 0;
      continue;
    }
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    if ((c == 0xE2 && (next == 0x80 || next == 0x81)) || (c == 0xE3 && next == 0x80))
      i += 2;
    else
      *to++ = text[i];
  }
  out.resize(static_cast<std::size_t>(to - out.data()));
}

void withoutPunctuation(std::string_view text, std::string& out) {
  out.clear();
  appendLetters(text, out);
}

}  // namespace

std::span<const LooseInfo> loosenings() noexcept { return infos; }

LooseSet looseSetOf(std::span<const std::string> words) noexcept {
  LooseSet set = 0;
  for (const std::string& word : words)
    if (const auto loose = looseNamed(word)) set |= bitOf(*loose);
  return set;
}

std::optional<Loose> looseNamed(std::string_view word) noexcept {
  for (const LooseInfo& info : infos)
    if (word == info.word) return info.loose;
  return std::nullopt;
}

/// What becomes of single letters: ICU's transliteration, asked once for all that it changes by
/// themselves. Syllables of Hangul and voiced kana are no letters with accents and stay.
class LetterTable {
 public:
  explicit LetterTable(LooseSet set) {
    const bool accents = (set & bitOf(Loose::accents)) != 0;
    const bool width = (set & bitOf(Loose::width)) != 0;
    if (accents) fill(firstLetter, firstKana, "NFD; [:Nonspacing Mark:] Remove; Latin-ASCII; NFC");
    if (width) fill(firstKana, endOfKana, "Fullwidth-Halfwidth");
    if (width) fill(firstWide, endOfWide, "Fullwidth-Halfwidth");
  }

  /// The shared one of a set, made on first use in some 20 ms.
  static const LetterTable& of(LooseSet set) {
    static const LetterTable tables[] = {LetterTable(bitOf(Loose::accents)),
                                         LetterTable(bitOf(Loose::width)),
                                         LetterTable(bitOf(Loose::accents) | bitOf(Loose::width))};
    const bool accents = (set & bitOf(Loose::accents)) != 0;
    const bool width = (set & bitOf(Loose::width)) != 0;
    return tables[accents && width ? 2 : width ? 1 : 0];
  }

  void append(std::string_view text, std::string& out) const {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int32_t>(text.size());
    for (std::int32_t i = 0; i < size;) {
      const std::int32_t begin = i;
      UChar32 letter = bytes[i];
      if (letter < 0x80)
        ++i;
      else
        U8_NEXT(bytes, i, size, letter);
      const std::uint32_t place = letter < 0x80 ? none : placeOf(letter);
      if (place == none || !isChanged_[place])
        out.append(text, static_cast<std::size_t>(begin), static_cast<std::size_t>(i - begin));
      else
        out.append(texts_, starts_[place], lengths_[place]);
    }
  }

 private:
  static constexpr UChar32 firstLetter = 0x80, firstKana = 0x3000, endOfKana = 0x3100;
  static constexpr UChar32 firstWide = 0xFF00, endOfWide = 0xFFF0;
  static constexpr std::uint32_t none = 0xFFFFFFFF;
  static constexpr std::size_t places = endOfKana - firstLetter + endOfWide - firstWide;

  static constexpr std::uint32_t placeOf(UChar32 letter) noexcept {
    if (letter >= firstLetter && letter < endOfKana)
      return static_cast<std::uint32_t>(letter - firstLetter);
    if (letter >= firstWide && letter < endOfWide)
      return static_cast<std::uint32_t>(letter - firstWide + endOfKana - firstLetter);
    return none;
  }
  /// Of all letters of a range in one go, each on a line of its own.
  void fill(UChar32 begin, UChar32 end, const char* rules) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Transliterator> transliterator(icu::Transliterator::createInstance(
        icu::UnicodeString::fromUTF8(rules), UTRANS_FORWARD, status));
    if (U_FAILURE(status)) return;
    icu::UnicodeString units;
    // A letter before each, for marks to stand on.
    for (UChar32 letter = begin; letter < end; ++letter)
      units.append(u'\n').append(u'x').append(letter);
    transliterator->transliterate(units);
    std::string lines;
    units.toUTF8String(lines);
    std::size_t at = 0;
    for (UChar32 letter = begin; letter < end && at < lines.size(); ++letter) {
      const std::size_t next = std::min(lines.find("\nx", at + 1), lines.size());
      const std::uint32_t place = placeOf(letter);
      isChanged_[place] = true;
      starts_[place] = static_cast<std::uint32_t>(texts_.size());
      lengths_[place] = static_cast<std::uint8_t>(next - at - 2);
      texts_.append(lines, at + 2, next - at - 2);
      at = next;
    }
  }

  std::vector<bool> isChanged_ = std::vector<bool>(places);
  std::vector<std::uint32_t> starts_ = std::vector<std::uint32_t>(places);
  std::vector<std::uint8_t> lengths_ = std::vector<std::uint8_t>(places);
  std::string texts_;
};

// Whether empty values match is for the key, not for a text.
Loosener::Loosener(LooseSet set) : set_(set & static_cast<LooseSet>(~bitOf(Loose::emptyValues))) {
  if (has(Loose::accents) || has(Loose::width)) letters_ = &LetterTable::of(set);
  if (has(Loose::punctuation)) asked_ |= sign | beyondAscii;
  if (has(Loose::brackets)) asked_ |= bracket;
  if (has(Loose::ampersand)) asked_ |= ampersand;
  if (has(Loose::featuring)) asked_ |= guest;
  if (letters_) asked_ |= beyondAscii;
}

void Loosener::loosen(std::string_view text, std::string& out) {
  a_ = text;
  const unsigned holds = holdsOf(a_);
  const auto step = [&](Loose loose, bool applies, auto&& apply) {
    if (!has(loose) || !applies) return;
    apply(a_, b_);
    if (!b_.empty()) std::swap(a_, b_);
  };
  step(Loose::featuring, (holds & guest) != 0 && mayHaveGuest(a_), withoutGuests);
  step(Loose::brackets, (holds & bracket) != 0, [](std::string_view from, std::string& to) {
    withoutBrackets(from, to, [](std::string_view) { return true; });
  });
  step(Loose::articles, !articleOf(a_).empty(), withoutArticle);
  step(Loose::ampersand, (holds & ampersand) != 0, withAnd);
  step(Loose::punctuation, true, withoutPunctuation);
  out.append(a_);
}

void Loosener::append(std::string_view text, std::string& out) {
  const unsigned holds = holdsOf(text) & asked_;
  const bool hasGuest = (holds & guest) != 0 && mayHaveGuest(text);
  const bool hasArticle = has(Loose::articles) && !articleOf(text).empty();
  const bool isPlain = (holds & ~(sign | guest)) == 0 && !hasGuest && !hasArticle;
  if (!isPlain) {
    if (!letters_ || (holds & beyondAscii) == 0) return loosen(text, out);
    folded_.clear();
    letters_->append(text, folded_);
    return loosen(folded_.empty() ? text : std::string_view(folded_), out);
  }
  const std::size_t before = out.size();
  if ((holds & sign) != 0) appendLetters(text, out);
  if (out.size() == before) out.append(text);
}

}  // namespace kestrel
