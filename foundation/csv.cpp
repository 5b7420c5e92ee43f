#include "foundation/csv.h"

#include <algorithm>
#include <charconv>

#include "foundation/utf8.h"

namespace kestrel {
namespace {

/// Whether a spreadsheet takes the text for a formula, which a plain number is not.
bool isCalculated(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.empty() || std::string_view("=+-@").find(text.front()) == std::string_view::npos)
    return false;
  const std::string_view digits = text.substr(1);
  double number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number,
                                            std::chars_format::fixed);
  const bool isNumber = !digits.empty() && digits.front() >= '0' && digits.front() <= '9' &&
                        error == std::errc() && end == digits.data() + digits.size();
  return !isNumber || text.front() == '=' || text.front() == '@';
}

}  // namespace

std::string csvField(std::string_view text) {
  std::string shown = printable(text);
  if (isCalculated(shown)) shown.insert(0, 1, '\'');
  if (shown.find_first_of(",\"") == std::string::npos) return shown;
  std::string quoted = "\"";
  for (const char c : shown) {
    if (c == '"') quoted.push_back('"');
    quoted.push_back(c);
  }
  return quoted.append(1, '"');
}

}  // namespace kestrel
