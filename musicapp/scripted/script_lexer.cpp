#include "musicapp/scripted/script_lexer.h"

#include <algorithm>

#include "foundation/utf8.h"

namespace kestrel::script {
namespace {

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
  Token token{kind, script_.substr(at_, length), at_, at_ + length};
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

}  // namespace kestrel::script
