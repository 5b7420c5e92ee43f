#include "foundation/identifiers.h"

#include <array>
#include <charconv>

namespace kestrel {
namespace {

std::optional<std::uint64_t> number(std::string_view digits, int base) noexcept {
  std::uint64_t result = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, result, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return result;
}

}  // namespace

std::string decimalText(std::uint64_t number) {
  std::array<char, 20> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return {digits.data(), end};
}

std::optional<std::uint64_t> numberFromDecimal(std::string_view text) noexcept {
  return number(text, 10);
}

std::optional<std::uint64_t> numberFromHex(std::string_view text) noexcept {
  return number(text, 16);
}

std::string paddedHex(std::uint64_t number) {
  const std::string digits = TextSorter::decToHex(number);
  return std::string(16 - digits.size(), '0') + digits;
}

}  // namespace kestrel

namespace kestrel::TextSorter {

std::string decToHex(std::uint64_t number) {
  std::array<char, 16> digits;
  std::size_t first = digits.size();
  do {
    digits[--first] = "0123456789ABCDEF"[number & 0xF];
    number >>= 4;
  } while (number != 0);
  return {digits.data() + first, digits.size() - first};
}

std::vector<std::string> batchDecToHex(std::span<const std::uint64_t> numbers) {
  std::vector<std::string> texts;
  texts.reserve(numbers.size());
  for (const std::uint64_t number : numbers) texts.push_back(decToHex(number));
  return texts;
}

}  // namespace kestrel::TextSorter
