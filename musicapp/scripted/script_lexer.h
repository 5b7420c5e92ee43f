/// The words, texts and marks of a script, one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kestrel::script {

/// A fault in a script, at a byte offset.
class ScriptFault : public std::runtime_error {
 public:
  ScriptFault(std::size_t offset_, const std::string& problem)
      : std::runtime_error(problem), offset(offset_) {}
  std::size_t offset;
};

struct Token {
  enum class Kind : std::uint8_t {
    word,     ///< ASCII letters
    text,     ///< between quotation marks; the marks are not in `content`
    number,   ///< digits, perhaps with a decimal point in between
    mark,     ///< one of & ( ) { } :
    lineEnd,  ///< any number of line ends, with the blanks in between
    end,      ///< of the script
  };

  Kind kind = Kind::end;
  std::string_view content;
  std::size_t offset = 0;
  std::size_t endOffset = 0;

  /// As a message about it says it.
  [[nodiscard]] std::string described() const;
};

/// Reads from front to back; tokens are views into the script.
class Lexer {
 public:
  explicit Lexer(std::string_view script) noexcept : script_(script) {}
  /// Throws ScriptFault at what starts no token; at the end gives the end again and again.
  Token next();

 private:
  [[nodiscard]] Token take(Token::Kind kind, std::size_t length);

  std::string_view script_;
  std::size_t at_ = 0;
};

}  // namespace kestrel::script
