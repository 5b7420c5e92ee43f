/// What the commands of a script are put together from: texts, files, tracks and playlists.
///
/// Recursive descent with one token to look ahead. Parentheses may be left out or doubled wherever
/// the language does without them. Everything throws ScriptFault on what it does not expect.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

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

/// A track or playlist by its persistent ID.
struct Reference {
  enum class Kind : std::uint8_t { track, playlist, userPlaylist, folderPlaylist };
  Kind kind;
  std::uint64_t id;
  std::optional<std::uint64_t> playlist;  ///< of a track, else it is the library's
  std::size_t offset;
};

/// A text in the place of a persistent ID that is no number. To the language it is as good as any:
/// only looking it up fails.
struct UnknownID {
  bool given = false;
  std::string start;  ///< for a message
};

class TermReader {
 public:
  explicit TermReader(std::string_view script) : lexer_(script) { advance(); }

 protected:
  /// Counts blocks and parentheses within each other, so that no script uses up the stack.
  class Nested {
   public:
    explicit Nested(TermReader& reader);
    ~Nested() { --reader_.depth_; }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;

   private:
    TermReader& reader_;
  };

  [[nodiscard]] const Token& token() const noexcept { return token_; }
  void advance();
  [[noreturn]] void failExpecting(std::string_view what) const;
  /// Whether this word, in any case, or mark comes next.
  [[nodiscard]] bool at(std::string_view content) const;
  bool accept(std::string_view content);
  /// Several words and marks, one blank between them.
  void expect(std::string_view words);
  std::uint64_t expectInteger(std::string_view what);
  void expectEndOfLine();

  Reference reference();
  /// A reference to any sort of playlist.
  Reference playlist();
  /// The path of a file.
  std::string file();
  /// The first one since the last call; the reference has the ID 0.
  UnknownID takeUnknownID() { return std::exchange(firstUnknown_, {}); }
  /// A text in UTF-8: names are written into libraries, while paths only lead to files, which may
  /// be named in any bytes.
  std::string name();
  std::string text();

 private:
  std::optional<std::uint64_t> container();
  std::string operand();
  std::string character();

  Lexer lexer_;
  Token token_;
  int depth_ = 0;
  bool previousIsText_ = false;
  UnknownID firstUnknown_;
};

}  // namespace kestrel::script
