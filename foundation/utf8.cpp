#include "foundation/utf8.h"

#include <algorithm>
#include <cstring>

#include "foundation/printable_text.h"

namespace kestrel {

std::size_t firstInvalidUtf8(std::string_view bytes) noexcept {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t size = bytes.size();
  const auto continues = [&](std::size_t at) { return at < size && (p[at] & 0xC0) == 0x80; };
  std::size_t i = 0;
  while (i < size) {
    if (p[i] < 0x80) {
      // Skip ASCII by words: even foreign libraries are mostly ASCII between the names.
      std::uint64_t word;
      while (i + 8 <= size && (std::memcpy(&word, p + i, 8), !(word & 0x8080808080808080U))) i += 8;
      while (i < size && p[i] < 0x80) ++i;
      continue;
    }
    const unsigned lead = p[i];
    if (lead >= 0xC2 && lead <= 0xDF) {
      if (!continues(i + 1)) return i;
      i += 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      if (!continues(i + 1) || !continues(i + 2)) return i;
      if (lead == 0xE0 && p[i + 1] < 0xA0) return i;  // overlong
      if (lead == 0xED && p[i + 1] > 0x9F) return i;  // surrogate
      i += 3;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      if (!continues(i + 1) || !continues(i + 2) || !continues(i + 3)) return i;
      if (lead == 0xF0 && p[i + 1] < 0x90) return i;  // overlong
      if (lead == 0xF4 && p[i + 1] > 0x8F) return i;  // beyond U+10FFFF
      i += 4;
    } else {
      return i;
    }
  }
  return std::string_view::npos;
}

void appendUtf8(char32_t c, std::string& out) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

std::string quotedStart(std::string_view text) {
  std::size_t shown = std::min<std::size_t>(text.size(), 24);
  while (shown > 0 && shown < text.size() &&
         (static_cast<unsigned char>(text[shown]) & 0xC0) == 0x80)
    --shown;
  return printable(text.substr(0, shown));
}

std::string writableText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (;;) {
    const std::size_t bad = firstInvalidUtf8(text);
    const std::string_view good = text.substr(0, bad);
    for (std::size_t i = 0; i < good.size(); ++i) {
      const auto byte = static_cast<unsigned char>(good[i]);
      const bool control = byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
      const bool noncharacter = byte == 0xEF && (good.substr(i, 3) == "\xEF\xBF\xBE" ||
                                                 good.substr(i, 3) == "\xEF\xBF\xBF");
      if (!control && !noncharacter) {
        result += good[i];
        continue;
      }
      result += "\uFFFD";
      if (noncharacter) i += 2;
    }
    if (bad == std::string_view::npos) return result;
    result += "\uFFFD";
    text.remove_prefix(bad + 1);
  }
}

}  // namespace kestrel
