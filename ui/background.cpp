#include "ui/background.h"

#include <utility>

#include "platform/queues.h"
#include "ui/process.h"

namespace kestrel {

void runInBackground(std::function<void()> task, std::exception_ptr& failure) {
  TaskQueue* queue = process().with.backgroundQueue;
  if (!queue) return task();
  queue->post([task = std::move(task), &failure] {
    failure = nullptr;
    try {
      task();
    } catch (...) {
      failure = std::current_exception();
    }
  });
}

}  // namespace kestrel
