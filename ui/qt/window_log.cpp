#include "ui/qt/window_log.h"

#include <new>

#include "platform/queues.h"

namespace kestrel {

void WindowLog::line(std::string_view text) noexcept {
  try {
    bool tell = false;
    {
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(text);
      if (lines_.size() > kept_) lines_.pop_front();
      tell = !std::exchange(told_, true);
    }
    if (tell) mainQueue_.post([this] { observers.notify(); });
  } catch (const std::bad_alloc&) {  // a line that there is no room for is dropped
  }
}

std::vector<std::string> WindowLog::takeNew() {
  const std::lock_guard lock(mutex_);
  told_ = false;
  std::vector<std::string> lines(std::make_move_iterator(lines_.begin()),
                                 std::make_move_iterator(lines_.end()));
  lines_.clear();
  return lines;
}

}  // namespace kestrel
