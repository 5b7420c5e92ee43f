#include "dupes/loosening.h"

#include <algorithm>
#include <iterator>
#include <unicode/translit.h>
#include <unicode/unistr.h>
#include <utility>

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
};

constexpr std::string_view articles[] = {"the ", "a ",   "an ", "der ", "die ", "das ", "le ",
                                         "la ",  "les ", "l'",  "el ",  "los ", "las ", "il ",
                                         "lo ",  "gli ", "os ", "as ",  "o "};
constexpr std::string_view guests[] = {"feat.", "feat ",      "ft.",
                                       "ft ",   "featuring ", "con la partecipazione"};

bool isAscii(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
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

void withoutArticle(std::string_view text, std::string& out) {
  for (const std::string_view article : articles)
    if (startsWith(text, article)) {
      out = trimmed(text.substr(article.size()));
      return;
    }
  out = text;
}

void withAnd(std::string_view text, std::string& out) {
  out.clear();
  for (const char c : text) c == '&' ? out.append("and") : out.append(1, c);
}

/// Without signs and spaces of ASCII, and without U+2000 to U+206F and U+3000 to U+303F.
void withoutPunctuation(std::string_view text, std::string& out) {
  out.clear();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const bool isSign =
        c < 0x80 && !((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'));
    if (isSign) continue;
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    if ((c == 0xE2 && (next == 0x80 || next == 0x81)) || (c == 0xE3 && next == 0x80)) {
      i += 2;
      continue;
    }
    out.push_back(text[i]);
  }
}

}  // namespace

std::span<const LooseInfo> loosenings() noexcept { return infos; }

std::optional<Loose> looseNamed(std::string_view word) noexcept {
  for (const LooseInfo& info : infos)
    if (word == info.word) return info.loose;
  return std::nullopt;
}

Loosener::Loosener(LooseSet set) : set_(set) {
  std::string rules;
  if (has(Loose::width)) rules += "Fullwidth-Halfwidth;";
  if (has(Loose::accents)) rules += "NFD; [:Nonspacing Mark:] Remove; Latin-ASCII; NFC;";
  if (rules.empty()) return;
  UErrorCode status = U_ZERO_ERROR;
  transliterator_.reset(icu::Transliterator::createInstance(icu::UnicodeString::fromUTF8(rules),
                                                            UTRANS_FORWARD, status));
  if (U_FAILURE(status)) transliterator_.reset();
}

Loosener::~Loosener() = default;
Loosener::Loosener(Loosener&&) noexcept = default;
Loosener& Loosener::operator=(Loosener&&) noexcept = default;

std::string Loosener::folded(std::string_view text) {
  icu::UnicodeString units = utf16(text);
  transliterator_->transliterate(units);
  std::string result;
  units.toUTF8String(result);
  return result;
}

void Loosener::loosen(std::string_view text, std::string& out) {
  a_ = text;
  const auto step = [&](Loose loose, auto&& apply) {
    if (!has(loose)) return;
    apply(a_, b_);
    if (!b_.empty()) std::swap(a_, b_);
  };
  step(Loose::featuring, withoutGuests);
  step(Loose::brackets, [](std::string_view from, std::string& to) {
    withoutBrackets(from, to, [](std::string_view) { return true; });
  });
  step(Loose::articles, withoutArticle);
  step(Loose::ampersand, withAnd);
  step(Loose::punctuation, withoutPunctuation);
  out.append(a_);
}

void Loosener::append(std::string_view text, std::string& out) {
  if (!transliterator_ || isAscii(text)) return loosen(text, out);
  // Transliterating costs a microsecond or more; artists and albums repeat.
  constexpr std::size_t most = 1 << 16;
  auto found = known_.find(std::string(text));
  if (found == known_.end()) {
    if (known_.size() == most) known_.clear();
    found = known_.emplace(std::string(text), folded(text)).first;
  }
  loosen(found->second.empty() ? text : std::string_view(found->second), out);
}

}  // namespace kestrel
