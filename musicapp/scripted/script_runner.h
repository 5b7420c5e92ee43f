/// How a scripted application is driven: by short script texts, run synchronously.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/library_error.h"
#include "musicapp/command.h"

namespace kestrel {

class ProgramRunner;

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

/// Runs scripts by the platform's script helper, for applications that are programs of their own.
/// Each text is handed to the helper on its standard input, so that its length is not limited. The
/// result text is what the helper prints, without the last line end; one that prints nothing at all
/// gives no result. When its exit status is not 0 its standard error is the error's message, and
/// a number in parentheses at the end of it the error's number.
class HelperProgramRunner final : public ScriptRunner {
 public:
  /// `programs` must outlive the runner; `helper` is a path or a name to be found in PATH.
  explicit HelperProgramRunner(ProgramRunner& programs, std::string helper = "osascript")
      : programs_(programs), helper_(std::move(helper)) {}
  ScriptResult run(std::string_view script) override;

 private:
  ProgramRunner& programs_;
  std::string helper_;
};

}  // namespace kestrel
