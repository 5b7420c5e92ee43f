#include "foundation/predicate_tree.h"

#include <algorithm>
#include <charconv>
#include <unicode/unistr.h>

namespace kestrel {
namespace {

std::optional<std::int64_t> wholeNumber(std::string_view text) noexcept {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

bool matchesWhole(const icu::RegexPattern& pattern, std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto units =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  const std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(units, status));
  return U_SUCCESS(status) && matcher->matches(status) && U_SUCCESS(status);
}

constexpr bool startsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

}  // namespace

ValueSet::ValueSet(std::span<const Value> values) {
  for (const Value& value : values) {
    if (value.isText()) {
      if (const auto number = wholeNumber(value.text())) numericTexts_.insert(*number);
      texts_.emplace(value.text());
    } else if (value.isNumber()) {
      numbers_.insert(value.number());
    } else if (value.isDate()) {
      dates_.insert(value.date().seconds);
    }
  }
}

bool ValueSet::contains(const Value& value) const {
  if (value.isText()) {
    if (texts_.find(value.text()) != texts_.end()) return true;
    if (numbers_.empty()) return false;
    const auto number = wholeNumber(value.text());
    return number && numbers_.contains(*number);
  }
  if (value.isNumber())
    return numbers_.contains(value.number()) || numericTexts_.contains(value.number());
  return value.isDate() && dates_.contains(value.date().seconds);
}

bool equalInPredicate(const Value& a, const Value& b) noexcept {
  const auto equalsText = [](const Value& number, const Value& text) {
    const auto parsed = wholeNumber(text.text());
    return parsed && *parsed == number.number();
  };
  if (a.isNumber() && b.isText()) return equalsText(a, b);
  if (a.isText() && b.isNumber()) return equalsText(b, a);
  return a == b;
}

bool matchesWildcards(std::string_view text, std::string_view pattern) noexcept {
  std::size_t t = 0;
  std::size_t p = 0;
  // Where to go on when the characters after the last star do not fit: the star takes one more.
  std::size_t afterStar = std::string_view::npos;
  std::size_t starEnd = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      afterStar = ++p;
      starEnd = t;
    } else if (p < pattern.size() && pattern[p] == '?') {
      ++p;
      do {
        ++t;
      } while (t < text.size() && !startsCharacter(text[t]));
    } else if (p < pattern.size() && pattern[p] == text[t]) {
      ++p;
      ++t;
    } else if (afterStar != std::string_view::npos) {
      p = afterStar;
      t = ++starEnd;
      while (t < text.size() && !startsCharacter(text[t])) t = ++starEnd;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool Predicate::Node::evaluate(Lookup lookup) const {
  const auto holds = [&](const Node& child) { return child.evaluate(lookup); };
  switch (kind) {
    case Kind::comparison:
      return compare(lookup);
    case Kind::conjunction:
      return std::all_of(children.begin(), children.end(), holds);
    case Kind::disjunction:
      return std::any_of(children.begin(), children.end(), holds);
    case Kind::negation:
      return !children.front().evaluate(lookup);
  }
  return false;
}

bool Predicate::Node::compare(Lookup lookup) const {
  Value room[2];
  const auto valueOf = [&](const PredicateOperand& operand, Value& found) -> const Value& {
    if (operand.kind != PredicateOperand::Kind::key) return operand.constant;
    found = lookup(operand.key);
    return found;
  };
  const Value& a = valueOf(left, room[0]);
  const Value& b = valueOf(right, room[1]);
  switch (op) {
    case PredicateOperator::equal:
      return equalInPredicate(a, b);
    case PredicateOperator::notEqual:
      return !equalInPredicate(a, b);
    case PredicateOperator::in:
      if (right.list) return right.list->contains(a);
      return a.isText() && b.isText() && b.text().find(a.text()) != std::string_view::npos;
    default:
      break;
  }
  if (!a.isText() || !b.isText()) return false;
  switch (op) {
    case PredicateOperator::beginsWith:
      return a.text().starts_with(b.text());
    case PredicateOperator::contains:
      return a.text().find(b.text()) != std::string_view::npos;
    case PredicateOperator::like:
      return matchesWildcards(a.text(), b.text());
    case PredicateOperator::matches:
      return matchesWhole(*pattern, a.text());
    default:
      return false;
  }
}

}  // namespace kestrel
