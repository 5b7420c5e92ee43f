#include "foundation/utf8.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "foundation/library_error.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

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

constexpr size_t pieceSize = size_t{1} << 20;

/// The text of the pseudo-attribute `encoding` in an XML declaration; empty without one.
string_view declaredEncoding(string_view document) {
  if (!document.starts_with("<?xml")) return {};
  const string_view declaration = document.substr(0, document.substr(0, 1024).find("?>"));
  size_t at = declaration.find("encoding");
  if (at == string_view::npos) return {};
  at = declaration.find_first_of("\"'", at);
  if (at == string_view::npos) return {};
  const size_t stop = declaration.find(declaration[at], at + 1);
  return stop == string_view::npos ? string_view{} : declaration.substr(at + 1, stop - at - 1);
}

[[noreturn]] void failOnZeros(size_t at) {
  throw PlistError(at, Message::tr("there are zeros here instead of a text"));
}

/// Hands over a full piece and empties it. A file may hold nothing but zeros from some place on.
void passOn(std::string& out, size_t at, const std::function<void(string_view)>& piece) {
  if (out.find_first_not_of('\0') == std::string::npos) failOnZeros(at);
  piece(out);
  out.clear();
}

void convertUtf16(string_view bytes, bool bigEndian,
                  const std::function<void(string_view)>& piece) {
  const auto unit = [&](size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
  };
  std::string out;
  out.reserve(pieceSize + 4);
  size_t at = bytes.size() >= 2 && unit(0) == 0xFEFF ? 2 : 0;
  for (; at + 1 < bytes.size(); at += 2) {
    char32_t c = unit(at);
    if (c >= 0xD800 && c <= 0xDFFF) {
      if (c >= 0xDC00 || at + 3 >= bytes.size() || unit(at + 2) < 0xDC00 || unit(at + 2) > 0xDFFF)
        throw PlistError(at, Message::tr("half of a UTF-16 surrogate pair stands alone"));
      c = 0x10000 + ((c - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
      at += 2;
    }
    appendUtf8(c, out);
    if (out.size() >= pieceSize) passOn(out, at, piece);
  }
  if (at < bytes.size())
    throw PlistError(bytes.size(), Message::tr("the last UTF-16 character is cut in half"));
  piece(out);
}

void convertLatin1(string_view bytes, const std::function<void(string_view)>& piece) {
  std::string out;
  out.reserve(pieceSize + 4);
  for (size_t at = 0; at < bytes.size(); ++at) {
    appendUtf8(static_cast<unsigned char>(bytes[at]), out);
    if (out.size() >= pieceSize) passOn(out, at, piece);
  }
  piece(out);
}

}  // namespace

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

void escapeXml(std::string_view text, FunctionRef<void(std::string_view)> append) {
  for (;;) {
    const std::size_t special = text.find_first_of("&<>\r");
    append(text.substr(0, special));
    if (special == std::string_view::npos) return;
    append(text[special] == '&'   ? "&amp;"
           : text[special] == '<' ? "&lt;"
           : text[special] == '>' ? "&gt;"
                                  : "&#13;");
    text.remove_prefix(special + 1);
  }
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

TextEncoding encodingOf(string_view document) {
  // A few may be in a text, and many in a binary property list. A file of nothing else must not be
  // searched to its end for what closes its first tag.
  const size_t zeros = document.substr(0, 4096).find(string_view("\0\0\0\0\0\0\0\0", 8));
  if (zeros != string_view::npos && !document.starts_with("bplist")) failOnZeros(zeros);
  if (document.starts_with("\xEF\xBB\xBF")) return TextEncoding::utf8;
  if (document.starts_with("\xFF\xFE")) return TextEncoding::utf16LittleEndian;
  if (document.starts_with("\xFE\xFF")) return TextEncoding::utf16BigEndian;
  if (document.starts_with(string_view("<\0", 2))) return TextEncoding::utf16LittleEndian;
  if (document.starts_with(string_view("\0<", 2))) return TextEncoding::utf16BigEndian;

  const string_view declared = declaredEncoding(document);
  std::string name(declared);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (name.empty() || name == "utf-8" || name == "utf8" || name == "us-ascii" || name == "ascii")
    return TextEncoding::utf8;
  if (name == "iso-8859-1" || name == "latin1" || name == "latin-1") return TextEncoding::latin1;
  const auto place = static_cast<size_t>(declared.data() - document.data());
  if (name.starts_with("utf-16"))
    throw PlistError(place,
                     Message::tr("the document says that it is UTF-16, but its bytes are not"));
  throw PlistError(place, Message::tr("expected the encoding UTF-8, UTF-16 or ISO-8859-1, found %1")
                              .arg(inQuotes(quotedStart(declared))));
}

void convertToUtf8(string_view document, TextEncoding encoding,
                   const std::function<void(string_view)>& piece) {
  switch (encoding) {
    case TextEncoding::utf8:
      piece(document);
      break;
    case TextEncoding::latin1:
      convertLatin1(document, piece);
      break;
    case TextEncoding::utf16LittleEndian:
      convertUtf16(document, false, piece);
      break;
    case TextEncoding::utf16BigEndian:
      convertUtf16(document, true, piece);
      break;
  }
}

}  // namespace kestrel
