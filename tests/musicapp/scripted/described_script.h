/// What a script says, so that readings can be compared, and a runner that keeps scripts.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "musicapp/scripted/script_language.h"

namespace kestrel::testing {

using Statements = std::vector<script::Statement>;

/// The error of a text that cannot be read; empty for another.
inline std::string scriptError(std::string_view text) {
  const auto parsed = script::parse(text);
  const auto* error = std::get_if<ScriptError>(&parsed);
  return error ? error->description() : "";
}

/// Its statements; one with the error, if it cannot be read.
inline Statements statementsOf(std::string_view text) {
  const auto parsed = script::parse(text);
  if (const auto* statements = std::get_if<Statements>(&parsed)) return *statements;
  return {{command::AddFile{"error: " + scriptError(text)}}};
}

/// Pretends to be a music application: keeps the texts and gives a fixed answer.
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
