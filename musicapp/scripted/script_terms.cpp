#include "musicapp/scripted/script_terms.h"

#include <algorithm>

#include "foundation/identifiers.h"
#include "foundation/utf8.h"

namespace kestrel::script {
namespace {

constexpr int maximumDepth = 64;

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

constexpr std::string_view blanks = " \t";
constexpr std::string_view blanksAndLineEnds = " \t\r\n";
constexpr std::string_view marks = "&(){}:";
constexpr std::string_view digits = "0123456789";

constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// How many characters `rest` begins with that are among `set`.
std::size_t lengthOf(std::string_view rest, std::string_view set) {
  return std::min(rest.find_first_not_of(set), rest.size());
}

std::size_t numberLength(std::string_view rest) {
  const std::size_t whole = lengthOf(rest, digits);
  if (whole >= rest.size() || rest[whole] != '.') return whole;
  const std::size_t fraction = lengthOf(rest.substr(whole + 1), digits);
  return fraction == 0 ? whole : whole + 1 + fraction;
}

}  // namespace

std::string Token::described() const {
  switch (kind) {
    case Kind::text:
      return "the text \"" + quotedStart(content) + "\"";
    case Kind::lineEnd:
      return "the end of the line";
    case Kind::end:
      return "the end of the script";
    case Kind::word:
    case Kind::number:
    case Kind::mark:
      break;
  }
  return "'" + quotedStart(content) + "'";
}

Token Lexer::take(Token::Kind kind, std::size_t length) {
  const Token token{kind, script_.substr(at_, length), at_};
  at_ += length;
  return token;
}

Token Lexer::next() {
  at_ += lengthOf(script_.substr(at_), blanks);
  const std::string_view rest = script_.substr(at_);
  if (rest.empty()) return take(Token::Kind::end, 0);
  const char first = rest.front();
  if (first == '"') {
    const std::size_t closing = rest.find('"', 1);
    if (closing == std::string_view::npos)
      throw ScriptFault(at_, "this text has no closing quotation mark");
    Token token = take(Token::Kind::text, closing + 1);
    token.content = token.content.substr(1, closing - 1);
    return token;
  }
  if (first == '\n' || first == '\r')
    return take(Token::Kind::lineEnd, lengthOf(rest, blanksAndLineEnds));
  if (marks.find(first) != std::string_view::npos) return take(Token::Kind::mark, 1);
  if (digits.find(first) != std::string_view::npos)
    return take(Token::Kind::number, numberLength(rest));
  if (isLetter(first)) {
    const auto end = std::find_if_not(rest.begin(), rest.end(), isLetter);
    return take(Token::Kind::word, static_cast<std::size_t>(end - rest.begin()));
  }
  std::size_t length = 1;
  while (length < rest.size() && (rest[length] & 0xC0) == 0x80) ++length;
  throw ScriptFault(at_, "'" + quotedStart(rest.substr(0, length)) + "' means nothing here");
}

TermReader::Nested::Nested(TermReader& reader) : reader_(reader) {
  if (reader.depth_ == maximumDepth)
    throw ScriptFault(reader.token_.offset, "this is nested too deeply");
  ++reader.depth_;
}

void TermReader::advance() {
  previousIsText_ = token_.kind == Token::Kind::text;
  token_ = lexer_.next();
}

void TermReader::failExpecting(std::string_view what) const {
  throw ScriptFault(token_.offset,
                    "expected " + std::string(what) + ", found " + token_.described() +
                        (previousIsText_ ? " (a quotation mark within a text ends it)" : ""));
}

bool TermReader::at(std::string_view content) const {
  if (token_.kind != Token::Kind::word && token_.kind != Token::Kind::mark) return false;
  return std::equal(content.begin(), content.end(), token_.content.begin(), token_.content.end(),
                    [](char a, char b) { return lower(a) == lower(b); });
}

bool TermReader::accept(std::string_view content) {
  if (!at(content)) return false;
  advance();
  return true;
}

void TermReader::expect(std::string_view words) {
  while (!words.empty()) {
    const std::string_view word = words.substr(0, words.find(' '));
    if (!accept(word)) failExpecting("'" + std::string(word) + "'");
    words.remove_prefix(std::min(words.size(), word.size() + 1));
  }
}

std::uint64_t TermReader::expectInteger(std::string_view what) {
  std::optional<std::uint64_t> value;
  if (token_.kind == Token::Kind::number) value = numberFromDecimal(token_.content);
  if (!value) failExpecting(what);
  advance();
  return *value;
}

void TermReader::expectEndOfLine() {
  if (token_.kind == Token::Kind::end) return;
  if (token_.kind != Token::Kind::lineEnd) failExpecting("the end of the line");
  advance();
}

Reference TermReader::reference() {
  const Nested guard(*this);
  const std::size_t offset = token_.offset;
  if (accept("(")) {
    const Reference inner = reference();
    expect(")");
    return inner;
  }
  accept("get");
  expect("some");
  Reference result{Reference::Kind::playlist, 0, std::nullopt, offset};
  if (accept("track")) {
    result.kind = Reference::Kind::track;
    expect("of");
    result.playlist = container();
  } else {
    if (accept("user"))
      result.kind = Reference::Kind::userPlaylist;
    else if (accept("folder"))
      result.kind = Reference::Kind::folderPlaylist;
    if (!accept("playlist")) failExpecting("'track' or a sort of playlist");
  }
  expect("whose persistent ID is");
  const std::string digits = text();
  const auto number = numberFromHex(digits);
  if (!number && !firstUnknown_.given) firstUnknown_ = {true, quotedStart(digits)};
  result.id = number.value_or(0);
  return result;
}

/// Where a track is looked for; nothing is the library.
std::optional<std::uint64_t> TermReader::container() {
  if (!accept("library")) return playlist().id;
  expect("playlist");
  const std::size_t offset = token_.offset;
  if (expectInteger("1") != 1) throw ScriptFault(offset, "there is one library playlist only");
  return std::nullopt;
}

Reference TermReader::playlist() {
  const Reference result = reference();
  if (result.kind == Reference::Kind::track)
    throw ScriptFault(result.offset, "expected a playlist, found a track");
  return result;
}

std::string TermReader::file() {
  const Nested guard(*this);
  std::string path;
  if (accept("(")) {
    path = file();
    expect(")");
  } else if (accept("POSIX")) {
    expect("file");
    path = text();
  } else {
    path = text();
    expect("as POSIX file");
  }
  if (accept("as")) expect("alias");
  return path;
}

std::string TermReader::name() {
  const std::size_t offset = token_.offset;
  std::string result = text();
  if (firstInvalidUtf8(result) != std::string::npos)
    throw ScriptFault(offset, "this name is not in UTF-8");
  return result;
}

std::string TermReader::text() {
  const Nested guard(*this);
  std::string result = operand();
  while (accept("&")) result += operand();
  return result;
}

std::string TermReader::operand() {
  if (token_.kind == Token::Kind::text) {
    std::string result(token_.content);
    advance();
    return result;
  }
  if (accept("quote")) return "\"";
  if (accept("character")) return character();
  if (!accept("(")) failExpecting("a text");
  std::string inner = text();
  expect(")");
  return inner;
}

std::string TermReader::character() {
  expect("id");
  const std::size_t offset = token_.offset;
  const std::uint64_t code = expectInteger("a character's number");
  if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
    throw ScriptFault(offset, "there is no character of this number");
  std::string result;
  appendUtf8(static_cast<char32_t>(code), result);
  return result;
}

}  // namespace kestrel::script
