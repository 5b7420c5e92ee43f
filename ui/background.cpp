#include "ui/background.h"

#include "musicapp/requests.h"

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

void revealInBackground(std::string hexpid, std::exception_ptr& failure) {
  runInBackground(
      [pid = std::move(hexpid)] {
        const Collaborators& with = process().with;
        request::revealPlaylist(with.application, with.log, pid);
      },
      failure);
}

}  // namespace kestrel
