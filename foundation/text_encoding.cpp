#include "foundation/text_encoding.h"

#include <algorithm>
#include <cctype>

#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

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
