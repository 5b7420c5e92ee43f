/// Running another program of this machine and collecting what it prints.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace kestrel {

/// What to run. No shell is involved: arguments arrive as they are.
struct ProgramCall {
  std::string program;  ///< a path, or a name to be looked for in PATH
  std::vector<std::string> arguments;
  std::string input;       ///< for its standard input, which ends after it
  bool oneOutput = false;  ///< standard error goes where standard output goes, in order
  std::optional<std::chrono::milliseconds> timeout;
};

struct ProgramResult {
  int status = 0;         ///< its exit status, or 128 and the number of the signal that ended it
  bool timedOut = false;  ///< it was killed, with all that it had started
  std::string output;
  std::string errors;
};

class ProgramRunner {
 public:
  virtual ~ProgramRunner() = default;
  /// Waits until the program has ended; what others print that it has left behind is not waited
  /// for. Throws FileError when it cannot be started. From any thread.
  virtual ProgramResult run(const ProgramCall& call) = 0;
};

class SystemPrograms final : public ProgramRunner {
 public:
  ProgramResult run(const ProgramCall& call) override;
};

}  // namespace kestrel
