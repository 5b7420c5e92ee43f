/// Queues of work: how a background task reaches the main thread, and how background work starts.
///
/// Whatever changes a window's models is posted to the main queue, in order, without waiting. The
/// program binds the main queue to its event loop, the command line runs posts at once, tests pump
/// them by hand. Counting a million items must not cost a million allocations, so advances of a
/// progress bar have a posting operation of their own that merges neighbours.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/pending_tasks.h"

namespace kestrel {

/// Runs what is posted, one entry at a time, in the order of posting. Posting is allowed from any
/// thread and from a running task. Tasks must not throw.
class TaskQueue {
 public:
  virtual ~TaskQueue() = default;
  virtual void post(std::function<void()> task) = 0;
  /// Advances `target` by `by`, like posting a task that does so. When the entry posted just
  /// before still waits and advances the same object, the two become one: sum and number of
  /// advances are kept, and nothing is allocated. `target` must outlive the entry.
  virtual void postAdvance(Advanceable& target, double by) = 0;
};

/// Runs an entry before `post` returns, on the posting thread. What is posted while an entry runs,
/// by that entry or by another thread, is run after it by the thread that is at it.
class InlineQueue final : public TaskQueue {
 public:
  void post(std::function<void()> task) override;
  void postAdvance(Advanceable& target, double by) override;

 private:
  void runWaiting(std::unique_lock<std::mutex>& lock);

  std::mutex mutex_;
  PendingTasks waiting_;
  bool running_ = false;
};

/// Keeps entries until somebody drains them: an event loop once per wake-up, or a test.
class ManualQueue final : public TaskQueue {
 public:
  void post(std::function<void()> task) override;
  void postAdvance(Advanceable& target, double by) override;

  /// Runs entries until none waits, those posted meanwhile included. Returns how many ran. One
  /// thread at a time.
  std::size_t drain();
  /// Entries that wait; merged advances are one.
  [[nodiscard]] std::size_t waiting() const;

 private:
  mutable std::mutex mutex_;
  PendingTasks waiting_;
};

/// Runs entries on a thread of its own. The destructor runs what still waits, then joins.
class WorkerQueue final : public TaskQueue {
 public:
  WorkerQueue();
  ~WorkerQueue() override;
  WorkerQueue(const WorkerQueue&) = delete;
  WorkerQueue& operator=(const WorkerQueue&) = delete;

  void post(std::function<void()> task) override;
  void postAdvance(Advanceable& target, double by) override;
  /// Returns once nothing waits or runs. Not to be called by a task of this queue.
  void waitUntilIdle();

 private:
  void work(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any posted_;
  std::condition_variable idle_;
  PendingTasks waiting_;
  bool running_ = false;
  std::jthread thread_;  // last: it uses the members above
};

}  // namespace kestrel
