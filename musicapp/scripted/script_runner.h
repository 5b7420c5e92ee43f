/// How a scripted application is driven: by short script texts, run synchronously.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/library_error.h"
#include "musicapp/command.h"

namespace kestrel {

struct ScriptError : CommandFailure {
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
