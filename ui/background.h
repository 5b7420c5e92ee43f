/// Work of windows for other threads: behind what was asked for before, or on the main thread.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <utility>

#include "platform/queues.h"
#include "ui/process.h"

namespace kestrel {

/// Runs a task on the background queue; what it throws is kept in `failure`, which must live as
/// long as the process, for work that is posted after it. At once in programs that have no such
/// queue.
void runInBackground(std::function<void()> task, std::exception_ptr& failure);

/// Reveals a playlist in the music application, by its hexadecimal ID: behind what else asks the
/// application something, which takes one question at a time.
void revealInBackground(std::string hexpid, std::exception_ptr& failure);

/// A task of the main queue that changes the window in a class's containers.
template <typename State, typename Change>
void postToWindow(Change change) {
  process().with.mainQueue.post(
      [change = std::move(change)] { change(process().state<State>().window); });
}

}  // namespace kestrel
