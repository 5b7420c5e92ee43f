/// Work that a window has done behind what was asked for before.
#pragma once

#include <exception>
#include <functional>

namespace kestrel {

/// Runs a task on the background queue; what it throws is kept in `failure`, which must live as
/// long as the process, for work that is posted after it. At once in programs that have no such
/// queue.
void runInBackground(std::function<void()> task, std::exception_ptr& failure);

}  // namespace kestrel
