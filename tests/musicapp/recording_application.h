/// Pretends to be a music application: keeps the commands and gives a fixed answer.
#pragma once

#include <memory>
#include <stdexcept>
#include <vector>

#include "musicapp/music_application.h"

namespace kestrel::testing {

class RecordingApplication final : public MusicApplication {
 public:
  MediaLibrary& library() override { throw std::logic_error("this application has no library"); }
  CommandResult run(const Command& command) override {
    commands.push_back(command);
    return answer;
  }
  [[nodiscard]] Capabilities capabilities() const override { return {}; }
  std::unique_ptr<Batch> beginBatch() override { return nullptr; }

  std::vector<Command> commands;
  CommandResult answer;
};

}  // namespace kestrel::testing
