#include "foundation/printable_text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace kestrel {
namespace {

constexpr bool isPlain(char c) { return c >= ' ' && c <= '~'; }

bool isControl(UChar32 character) {
  constexpr UChar32 nonJoiner = 0x200C, joiner = 0x200D;
  switch (u_charType(character)) {
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return true;
    case U_FORMAT_CHAR:  // a few are signs that are seen, such as the Arabic number sign
      return character != nonJoiner && character != joiner &&
             !u_hasBinaryProperty(character, UCHAR_PREPENDED_CONCATENATION_MARK);
    default:
      return false;
  }
}

constexpr auto putMark = [](char32_t control, std::string& out) {
  constexpr std::u32string_view spaces = U"\t\n\r\u2028\u2029";
  out.push_back(spaces.find(control) == std::u32string_view::npos ? '?' : ' ');
};

}  // namespace

std::string replacingControls(std::string_view utf8,
                              FunctionRef<void(char32_t, std::string&)> put) {
  std::string out;
  out.reserve(utf8.size());
  std::size_t kept = 0;  // what comes from here on stays
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t start = at;
    if (isPlain(utf8[at])) {
      ++at;
      continue;
    }
    UChar32 character;
    U8_NEXT(utf8.data(), at, utf8.size(), character);
    const bool isInvalid = character < 0;
    if (!isInvalid && !isControl(character)) continue;
    out.append(utf8.substr(kept, start - kept));
    if (isInvalid)
      out.append("\uFFFD");
    else
      put(static_cast<char32_t>(character), out);
    kept = at;
  }
  return out.append(utf8.substr(kept));
}

std::string printable(std::string_view utf8) { return replacingControls(utf8, putMark); }

std::string printableLines(std::string_view utf8) {
  std::string out;
  while (!utf8.empty()) {
    const std::size_t end = utf8.find('\n');
    std::string_view line = utf8.substr(0, end);
    utf8.remove_prefix(end == std::string_view::npos ? utf8.size() : end + 1);
    const bool hasReturn = end != std::string_view::npos && line.ends_with('\r');
    if (hasReturn) line.remove_suffix(1);
    out += printable(line);
    if (hasReturn) out += '\r';
    if (end != std::string_view::npos) out += '\n';
  }
  return out;
}

}  // namespace kestrel
