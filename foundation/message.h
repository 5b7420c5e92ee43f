/// A sentence for users, kept as a pattern and what fills it until it is known in which language.
///
/// The core, which knows no toolkit, makes English sentences; programs, logs and files show them as
/// `english()`, and windows look the pattern up in the user's language before they fill it
/// (ui/qt/text.h). Patterns are literals, so that they are found in the sources: lupdate reads the
/// calls of `tr`, and a test tells which patterns lack a translation.
///
/// Values; may be used from any thread.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrel {

class Message {
#ifdef KESTREL_LUPDATE  // For lupdate, which heeds no conditions: the name that patterns go under.
  Q_DECLARE_TR_FUNCTIONS(Message)
#endif
 public:
  struct Argument;

  /// Says nothing.
  Message();
  // Where the arguments are known, which may hold messages.
  Message(const Message&);
  Message(Message&&) noexcept;
  Message& operator=(const Message&);
  Message& operator=(Message&&) noexcept;
  ~Message();
  /// A text that is the same in all languages: a name, a path, what another program has said.
  static Message verbatim(std::string text);
  /// A moment in local time, "2009-08-13", "2009-08-13 20:05" or "2009-08-13 20:05:15": English
  /// texts have it so, windows as the user writes dates.
  static Message moment(std::string local);
  /// A pattern with places %1 to %9 for what `arg` adds, each as often as is wanted.
  static Message tr(const char* pattern) { return {pattern, nullptr, 0}; }
  /// A pattern that depends on a number, which %Ln stands for: for several and for one.
  static Message tr(const char* several, const char* one, std::int64_t count) {
    return {several, one, count};
  }

  /// A text as a constant of a table, where translators find it; `tr` makes it a message.
  static constexpr const char* literal(const char* text) noexcept { return text; }

  /// Fills the next place. Names stay as they are, messages are translated too, and numbers are
  /// written as the user's language does, in English without separators.
  [[nodiscard]] Message arg(std::string_view name) &&;
  [[nodiscard]] Message arg(Message message) &&;
  template <std::integral Number>
  [[nodiscard]] Message arg(Number number) && {
    return std::move(*this).argNumber(static_cast<std::int64_t>(number));
  }

  [[nodiscard]] bool empty() const noexcept { return !pattern_ && arguments_.empty(); }
  [[nodiscard]] std::string english() const;

  // For translators.

  /// nullptr for a text as it stands, which is then the only argument.
  [[nodiscard]] const char* pattern() const noexcept { return pattern_; }
  /// The pattern for one; nullptr when there is no number.
  [[nodiscard]] const char* patternForOne() const noexcept { return one_; }
  [[nodiscard]] std::int64_t count() const noexcept { return count_; }
  [[nodiscard]] std::span<const Argument> arguments() const noexcept;

  /// Equal are messages that say the same in English, such as one and what a file holds of it.
  friend bool operator==(const Message& a, const Message& b) { return a.english() == b.english(); }

 private:
  Message(const char* pattern, const char* one, std::int64_t count);
  Message argNumber(std::int64_t number) &&;

  const char* pattern_ = nullptr;
  const char* one_ = nullptr;
  std::int64_t count_ = 0;
  std::vector<Argument> arguments_;
};

struct Message::Argument {
  enum class Kind : std::uint8_t { text, number, message, moment };
  Kind kind = Kind::text;
  std::string text;
  std::int64_t number = 0;
  Message message;
};

inline std::span<const Message::Argument> Message::arguments() const noexcept { return arguments_; }

/// How a message reads where it is shown, for what makes texts of several.
using MessageText = std::string (*)(const Message&);
inline std::string inEnglish(const Message& message) { return message.english(); }

/// One after the other, with a space between those that say something.
Message joined(Message first, Message second);
/// "A, B and C"; with some that are only counted, "A, B and 5 more".
Message listed(std::span<const Message> parts, std::size_t more = 0);
std::vector<std::string> english(std::span<const Message> messages);
/// In the language's quotation marks.
Message inQuotes(std::string_view name);
/// In English on one line, for the log.
std::string lineOf(const Message& message);
/// With a full stop where it has none: messages of errors are whole sentences, reasons are not.
Message ended(Message message);

/// An exception whose text is for users. `what()` is its English.
class MessageError : public std::runtime_error {
 public:
  explicit MessageError(Message message_);
  Message message;
};

/// What an exception says; of one that is not for translation, as it stands.
Message messageOf(const std::exception& error);

}  // namespace kestrel
