/// Everything that changes a music library, or asks the music application something, is a short
/// script text, run synchronously.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/library_error.h"

namespace kestrel {

struct ScriptError {
  Message message;  ///< for people: what failed and, where it helps, what to do
  int number = 0;   ///< the application's, 0 when it gives none
  TextPlace place;  ///< in the script text, of an error of its language

  /// Message, place and number as far as they are known.
  [[nodiscard]] Message whole() const;
  /// The same as one line for the log.
  [[nodiscard]] std::string description() const;
};

/// A result text, nothing, or an error.
struct ScriptResult {
  std::optional<std::string> text;
  std::optional<ScriptError> error;

  [[nodiscard]] bool failed() const noexcept { return error.has_value(); }
};

class ScriptRunner {
 public:
  virtual ~ScriptRunner() = default;
  /// Compiles and runs a text on the calling thread and waits for the answer. Never throws.
  virtual ScriptResult run(std::string_view script) = 0;
};

}  // namespace kestrel
