#include "foundation/plist_scanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <bitset>
#include <charconv>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

struct ElementName {
  string_view name;
  PlistType type;
};

constexpr std::array<ElementName, 9> elements{{
    {"dict", PlistType::dictionary},
    {"array", PlistType::array},
    {"string", PlistType::string},
    {"integer", PlistType::integer},
    {"real", PlistType::real},
    {"date", PlistType::date},
    {"data", PlistType::data},
    {"true", PlistType::boolTrue},
    {"false", PlistType::boolFalse},
}};

bool isContainer(PlistType type) {
  return type == PlistType::dictionary || type == PlistType::array;
}
bool isBoolean(PlistType type) {
  return type == PlistType::boolTrue || type == PlistType::boolFalse;
}

bool isSpace(char c) { return c == '\n' || c == '\t' || c == ' ' || c == '\r'; }
bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_' || c == ':' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

/// The first '<', '&' or CR, or `end`; notes in `high` whether a byte beyond ASCII was passed.
const char* findMarkup(const char* p, const char* end, bool& high) noexcept {
#if defined(__SSE2__)
  const __m128i less = _mm_set1_epi8('<'), amp = _mm_set1_epi8('&'), cr = _mm_set1_epi8('\r');
  while (end - p >= 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const auto hits = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, less), _mm_cmpeq_epi8(bytes, amp)),
                     _mm_cmpeq_epi8(bytes, cr))));
    const auto highs = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    if (hits) {
      const int at = std::countr_zero(hits);
      high |= (highs & ((1U << at) - 1)) != 0;
      return p + at;
    }
    high |= highs != 0;
    p += 16;
  }
#endif
  for (; p != end && *p != '<' && *p != '&' && *p != '\r'; ++p)
    high |= static_cast<unsigned char>(*p) >= 0x80;
  return p;
}

}  // namespace

void PlistScanner::failAt(const char* place, Message problem) const {
  throw PlistError(static_cast<size_t>(place - begin_), std::move(problem));
}

void PlistScanner::failExpecting(Message expected) const {
  if (p_ == end_)
    fail(Message::tr("expected %1, but the document ends here").arg(std::move(expected)));
  // No more is shown, and what follows may be gigabytes without a line end.
  const char* shown = p_ + std::min<std::ptrdiff_t>(end_ - p_, 1024);
  const char* stop = std::find_if(p_, shown, [](char c) { return c == '\n' || c == '\r'; });
  fail(Message::tr("expected %1, found %2")
           .arg(std::move(expected))
           .arg(inQuotes(quotedStart({p_, static_cast<size_t>(stop - p_)}))));
}

void PlistScanner::checkUtf8(const char* from, const char* to) const {
  const size_t bad = firstInvalidUtf8({from, static_cast<size_t>(to - from)});
  if (bad != string_view::npos) failAt(from + bad, Message::tr("this byte is not valid UTF-8"));
}

// ---------------------------------------------------------------------------------- the hot path

template <size_t size>
string_view PlistScanner::content(const char (&closing)[size], std::string& scratch) {
  bool high = false;
  const char* start = p_;
  const char* stop = findMarkup(p_, end_, high);
  p_ = stop;
  if (at(closing)) {
    if (high) checkUtf8(start, stop);
    p_ += size - 1;
    return {start, static_cast<size_t>(stop - start)};
  }
  return contentSlowly(start, {closing + 2, size - 4}, scratch);
}

PlistType PlistScanner::beginValue() {
  emptyElement_ = false;
  skipSpace();
  if (end_ - p_ >= 10 && *p_ == '<') {
    switch (p_[1]) {
      case 's':
        if (at("<string>")) return p_ += 8, PlistType::string;
        break;
      case 'i':
        if (at("<integer>")) return p_ += 9, PlistType::integer;
        break;
      case 'd':
        if (at("<date>")) return p_ += 6, PlistType::date;
        if (at("<dict>")) return p_ += 6, PlistType::dictionary;
        if (at("<data>")) return p_ += 6, PlistType::data;
        break;
      case 't':
        if (at("<true/>")) return p_ += 7, PlistType::boolTrue;
        break;
      case 'f':
        if (at("<false/>")) return p_ += 8, PlistType::boolFalse;
        break;
      case 'a':
        if (at("<array>")) return p_ += 7, PlistType::array;
        break;
      default:
        break;
    }
  }
  return beginValueSlowly();
}

bool PlistScanner::nextKey(string_view& key) {
  if (emptyElement_) return emptyElement_ = false;
  skipSpace();
  if (at("<key>")) {
    p_ += 5;
    key = content("</key>", keyScratch_);
    return true;
  }
  if (at("</dict>")) return p_ += 7, false;
  return nextKeySlowly(key);
}

bool PlistScanner::nextItem(PlistType& type) {
  if (emptyElement_) return emptyElement_ = false;
  skipSpace();
  if (at("</array>")) return p_ += 8, false;
  skipMisc();
  if (at("</")) {
    const char* start = p_;
    const Tag tag = readTag();
    if (tag.name == "array") return false;
    p_ = start;
    failExpecting(Message::tr("a value or </array>"));
  }
  type = beginValue();
  return true;
}

string_view PlistScanner::text(PlistType type) {
  if (emptyElement_) return emptyElement_ = false, string_view{};
  switch (type) {
    case PlistType::string:
      return content("</string>", textScratch_);
    case PlistType::integer:
      return content("</integer>", textScratch_);
    case PlistType::date:
      return content("</date>", textScratch_);
    case PlistType::data:
      return content("</data>", textScratch_);
    default:
      return content("</real>", textScratch_);
  }
}

std::int64_t PlistScanner::integer() {
  const char* place = p_;
  string_view digits = text(PlistType::integer);
  while (!digits.empty() && isSpace(digits.front())) digits.remove_prefix(1);
  while (!digits.empty() && isSpace(digits.back())) digits.remove_suffix(1);
  const bool signedPlus = digits.size() > 1 && digits.front() == '+' && digits[1] != '-';
  if (signedPlus) digits.remove_prefix(1);
  std::int64_t value = 0;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc() && stop == digits.data() + digits.size()) return value;
  bool tooLarge = error == std::errc::result_out_of_range;
  // The platform's own reader takes hexadecimal as well.
  if (digits.size() > 2 && (digits.starts_with("0x") || digits.starts_with("0X"))) {
    std::uint64_t bits = 0;
    const char* end = digits.data() + digits.size();
    const auto hex = std::from_chars(digits.data() + 2, end, bits, 16);
    if (hex.ec == std::errc() && hex.ptr == end && bits <= INT64_MAX)
      return static_cast<std::int64_t>(bits);
    tooLarge = hex.ec != std::errc::invalid_argument && hex.ptr == end;
  }
  if (tooLarge) failAt(place, Message::tr("this number does not fit into 64 bits"));
  failAt(place, Message::tr("expected a whole number"));
}

// ------------------------------------------------------------------- every other legal spelling

string_view PlistScanner::contentSlowly(const char* start, string_view name, std::string& scratch) {
  scratch.clear();
  p_ = start;
  for (;;) {
    bool high = false;
    const char* stop = findMarkup(p_, end_, high);
    if (high) checkUtf8(p_, stop);
    scratch.append(p_, stop);
    p_ = stop;
    if (p_ == end_) failExpecting(Message::verbatim("</" + std::string(name) + ">"));
    if (*p_ == '\r') {  // CR and CRLF read as LF
      scratch.push_back('\n');
      p_ += p_ + 1 != end_ && p_[1] == '\n' ? 2 : 1;
    } else if (*p_ == '&') {
      appendReference(scratch);
    } else if (at("<!--")) {
      skipComment();
    } else if (at("<![CDATA[")) {
      p_ += 9;
      const string_view rest(p_, static_cast<size_t>(end_ - p_));
      const size_t length = rest.find("]]>");
      if (length == string_view::npos) failExpecting(Message::tr("]]> after this CDATA section"));
      checkUtf8(p_, p_ + length);
      for (size_t i = 0; i < length; ++i) {
        if (rest[i] != '\r') {
          scratch.push_back(rest[i]);
        } else {
          scratch.push_back('\n');
          if (i + 1 < length && rest[i + 1] == '\n') ++i;
        }
      }
      p_ += length + 3;
    } else if (at("<?")) {
      skipInstruction();
    } else {
      const char* place = p_;
      if (at("</")) {
        const Tag tag = readTag();
        if (tag.name == name) return scratch;
      }
      p_ = place;
      failExpecting(Message::verbatim("</" + std::string(name) + ">"));
    }
  }
}

void PlistScanner::appendReference(std::string& out) {
  const char* stop = p_ + 1;
  while (stop != end_ && (*stop == '#' || isNameCharacter(*stop))) ++stop;
  if (stop == end_ || *stop != ';') fail(Message::tr("a bare & must be written &amp;"));
  const string_view name(p_ + 1, static_cast<size_t>(stop - p_ - 1));
  if (name == "amp") {
    out.push_back('&');
  } else if (name == "lt") {
    out.push_back('<');
  } else if (name == "gt") {
    out.push_back('>');
  } else if (name == "quot") {
    out.push_back('"');
  } else if (name == "apos") {
    out.push_back('\'');
  } else if (name.size() > 1 && name[0] == '#') {
    const bool hex = name[1] == 'x';
    const string_view digits = name.substr(hex ? 2 : 1);
    std::uint32_t code = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
    if (error != std::errc() || digits.empty() || end != digits.data() + digits.size() ||
        code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
      fail(Message::tr("&%1; is no character").arg(quotedStart(name)));
    appendUtf8(code, out);
  } else {
    fail(Message::tr("the entity &%1; is not one of the five that every document has")
             .arg(quotedStart(name)));
  }
  p_ = stop + 1;
}

void PlistScanner::skipComment() {
  const string_view rest(p_, static_cast<size_t>(end_ - p_));
  const size_t stop = rest.find("-->", 4);
  if (stop == string_view::npos) fail(Message::tr("this comment has no end"));
  checkUtf8(p_, p_ + stop);
  p_ += stop + 3;
}

void PlistScanner::skipInstruction() {
  const string_view rest(p_, static_cast<size_t>(end_ - p_));
  const size_t stop = rest.find("?>", 2);
  if (stop == string_view::npos) fail(Message::tr("this processing instruction has no end"));
  checkUtf8(p_, p_ + stop);
  p_ += stop + 2;
}

void PlistScanner::skipMisc() {
  for (;;) {
    skipSpace();
    if (at("<!--")) {
      skipComment();
    } else if (at("<?")) {
      skipInstruction();
    } else {
      return;
    }
  }
}

void PlistScanner::skipDocumentType() {
  const char* start = p_;
  p_ += 9;  // <!DOCTYPE
  bool subset = false;
  while (p_ != end_) {
    if (at("<!--")) {
      skipComment();
    } else if (at("<?")) {
      skipInstruction();
    } else if (*p_ == '"' || *p_ == '\'') {
      const auto* closing =
          static_cast<const char*>(std::memchr(p_ + 1, *p_, static_cast<size_t>(end_ - p_ - 1)));
      if (!closing) break;
      p_ = closing + 1;
    } else if (*p_ == '[') {
      subset = true;
      ++p_;
    } else if (*p_ == ']') {
      subset = false;
      ++p_;
    } else if (*p_ == '>' && !subset) {
      checkUtf8(start, p_);
      ++p_;
      return;
    } else {
      ++p_;
    }
  }
  failAt(start, Message::tr("this document type has no end"));
}

PlistScanner::Tag PlistScanner::readTag() {
  Tag tag;
  if (p_ == end_ || *p_ != '<') failExpecting(Message::tr("a tag"));
  const char* start = p_++;
  if (p_ != end_ && *p_ == '/') {
    tag.closing = true;
    ++p_;
  }
  const char* name = p_;
  while (p_ != end_ && isNameCharacter(*p_)) ++p_;
  tag.name = {name, static_cast<size_t>(p_ - name)};
  if (tag.name.empty()) {
    p_ = start;
    failExpecting(Message::tr("an element of a property list"));
  }
  while (p_ != end_ && *p_ != '>') {
    if (*p_ == '"' || *p_ == '\'') {
      if (tag.closing) fail(Message::tr("a closing tag has no attributes"));
      const char* closing = p_ + 1;
      while (closing != end_ && *closing != *p_ && *closing != '<') ++closing;
      if (closing == end_ || *closing == '<') fail(Message::tr("this attribute has no end"));
      p_ = closing + 1;
    } else if (*p_ == '/' && p_ + 1 != end_ && p_[1] == '>') {
      if (tag.closing) fail(Message::tr("a closing tag cannot be empty"));
      tag.selfClosed = true;
      ++p_;
    } else if (*p_ == '=' || isSpace(*p_) || isNameCharacter(*p_)) {
      if (tag.closing && !isSpace(*p_)) fail(Message::tr("a closing tag has no attributes"));
      ++p_;
    } else {
      fail(Message::tr("expected > at the end of this tag"));
    }
  }
  if (p_ == end_) failAt(start, Message::tr("this tag has no end"));
  checkUtf8(start, p_);
  ++p_;
  return tag;
}

PlistType PlistScanner::beginValueSlowly() {
  skipMisc();
  const char* place = p_;
  if (p_ == end_ || *p_ != '<' || at("</") || at("<!")) failExpecting(Message::tr("a value"));
  const Tag tag = readTag();
  const auto* known = std::find_if(elements.begin(), elements.end(),
                                   [&](const ElementName& e) { return e.name == tag.name; });
  if (known == elements.end()) {
    p_ = place;
    failExpecting(Message::tr("a value"));
  }
  if (isBoolean(known->type)) {
    if (!tag.selfClosed) {
      skipMisc();
      const Tag closing = readTag();
      if (!closing.closing || closing.name != known->name)
        failAt(place, Message::tr("expected %1").arg("</" + std::string(known->name) + ">"));
    }
  } else {
    emptyElement_ = tag.selfClosed;
  }
  return known->type;
}

bool PlistScanner::nextKeySlowly(string_view& key) {
  skipMisc();
  const char* place = p_;
  if (p_ == end_ || *p_ != '<' || at("<!")) failExpecting(Message::tr("<key> or </dict>"));
  const Tag tag = readTag();
  if (tag.closing && tag.name == "dict") return false;
  if (tag.closing || tag.name != "key") {
    p_ = place;
    failExpecting(Message::tr("<key> or </dict>"));
  }
  key = tag.selfClosed ? string_view{} : content("</key>", keyScratch_);
  return true;
}

void PlistScanner::skip(PlistType type) {
  if (isBoolean(type)) return;
  if (!isContainer(type)) {
    text(type);
    return;
  }
  // One bit a level: containers are only dictionaries and arrays.
  std::bitset<maximumDepth> isDictionary;
  size_t depth = 0;
  isDictionary[0] = type == PlistType::dictionary;
  string_view key;
  for (;;) {
    bool more;
    if (isDictionary[depth]) {
      more = nextKey(key);
      if (more) type = beginValue();
    } else {
      more = nextItem(type);
    }
    if (!more) {
      if (depth-- == 0) return;
    } else if (isContainer(type)) {
      if (++depth == maximumDepth)
        fail(Message::tr("values are nested more than %1 deep").arg(maximumDepth));
      isDictionary[depth] = type == PlistType::dictionary;
    } else if (!isBoolean(type)) {
      text(type);
    }
  }
}

void PlistScanner::beginDocument() {
  if (at("\xEF\xBB\xBF")) p_ += 3;
  if (at("bplist"))
    fail(Message::tr("this is a binary property list, and an XML one was expected"));
  skipMisc();
  if (at("<!DOCTYPE")) {
    skipDocumentType();
    skipMisc();
  }
  const char* place = p_;
  if (p_ == end_ || *p_ != '<' || at("<!")) failExpecting(Message::verbatim("<plist>"));
  const Tag tag = readTag();
  if (tag.closing || tag.selfClosed || tag.name != "plist") {
    p_ = place;
    failExpecting(Message::verbatim("<plist>"));
  }
}

void PlistScanner::endDocument() {
  skipMisc();
  const char* place = p_;
  if (!at("</")) failExpecting(Message::verbatim("</plist>"));
  const Tag tag = readTag();
  if (tag.name != "plist") {
    p_ = place;
    failExpecting(Message::verbatim("</plist>"));
  }
  skipMisc();
  if (p_ != end_) failExpecting(Message::tr("nothing after </plist>"));
}

}  // namespace kestrel
