/// A scripted application over a library document, which a stand-in changes as the scripts say.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/scripted/script_language.h"
#include "musicapp/scripted/scripted_application.h"
#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {

/// Runs scripts on a library document, as a scripted application would on its own library.
class StandIn final : public ScriptRunner {
 public:
  explicit StandIn(MusicApplication& application) : application_(application) {}
  ScriptResult run(std::string_view script) override {
    scripts.emplace_back(script);
    return script::interpret(script, application_);
  }
  std::vector<std::string> scripts;

 private:
  MusicApplication& application_;
};

struct ScriptedWorld : DocumentWorld {
  explicit ScriptedWorld(const std::string& document) : DocumentWorld(document) { open(); }
  void open() {
    DocumentWorld::open();
    runner.emplace(*app);
    scripted.emplace(app->library(), script::ReplacingServices{&*runner, log, clock, files,
                                                               folder / "support/Kestrel/", true});
  }
  std::optional<StandIn> runner;
  std::optional<ScriptedApplication> scripted;
};

}  // namespace kestrel::testing
