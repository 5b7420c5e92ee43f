/// Pretends to run programs, for tests.
#pragma once

#include <cerrno>
#include <functional>

#include "platform/file_error.h"
#include "platform/programs.h"

namespace kestrel {

class ScriptedPrograms final : public ProgramRunner {
 public:
  ProgramResult run(const ProgramCall& call) override {
    calls.push_back(call);
    if (!answer) throw FileError::fromCode(call.program, Message::tr("cannot be started"), ENOENT);
    return answer(call);
  }

  std::vector<ProgramCall> calls;
  std::function<ProgramResult(const ProgramCall&)> answer;  ///< without one no program is there
};

}  // namespace kestrel
