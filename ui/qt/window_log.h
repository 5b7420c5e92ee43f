/// The log as a window shows it: the latest lines, kept in memory.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/log.h"
#include "ui/models/observers.h"

namespace kestrel {

class TaskQueue;

class WindowLog final : public Log {
 public:
  /// `mainQueue` must outlive it.
  explicit WindowLog(TaskQueue& mainQueue, std::size_t kept = 2000)
      : mainQueue_(mainQueue), kept_(kept) {}

  void line(std::string_view text) noexcept override;

  /// The lines that came since the last call, oldest first. On the main thread.
  [[nodiscard]] std::vector<std::string> takeNew();
  [[nodiscard]] std::size_t kept() const noexcept { return kept_; }

  /// New lines have come; told once until they are taken.
  Observers observers;

 private:
  TaskQueue& mainQueue_;
  std::size_t kept_;
  std::mutex mutex_;
  std::deque<std::string> lines_;
  bool told_ = false;
};

}  // namespace kestrel
