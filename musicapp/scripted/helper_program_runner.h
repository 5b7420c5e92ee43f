/// Runs scripts by the platform's script helper, for applications that are programs of their own.
#pragma once

#include <string>
#include <string_view>

#include "musicapp/scripted/script_runner.h"

namespace kestrel {

class ProgramRunner;

/// Each text is handed to the helper on its standard input, so that its length is not limited. The
/// result text is what the helper prints, without the last line end; one that prints nothing at all
/// gives no result. When its exit status is not 0 its standard error is the error's message, and
/// a number in parentheses at the end of it the error's number.
class HelperProgramRunner final : public ScriptRunner {
 public:
  /// `programs` must outlive the runner; `helper` is a path or a name to be found in PATH.
  explicit HelperProgramRunner(ProgramRunner& programs, std::string helper = "osascript");
  ScriptResult run(std::string_view script) override;

 private:
  ProgramRunner& programs_;
  std::string helper_;
};

}  // namespace kestrel
