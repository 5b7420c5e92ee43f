/// Pretends to be a music application: keeps the texts and gives a fixed answer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "musicapp/scripted/script_runner.h"

namespace kestrel::testing {

class RecordingRunner final : public ScriptRunner {
 public:
  ScriptResult run(std::string_view script) override {
    scripts.emplace_back(script);
    return answer;
  }

  std::vector<std::string> scripts;
  ScriptResult answer;
};

}  // namespace kestrel::testing
