/// Queues of work: how a background task reaches the main thread, and how background work starts.
///
/// Whatever changes a window's models is posted to the main queue, in order, without waiting. The
/// windows' program binds the main queue to its event loop, tests pump it by hand, measurements run
/// posts at once. Counting a million items must not cost a million allocations, so advances of a
/// progress bar have a posting operation of their own that merges neighbours.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace kestrel {

/// Something that counts, such as a progress bar.
class Advanceable {
 public:
  virtual ~Advanceable() = default;
  /// Advances by `total`, which stands for `times` single advances.
  virtual void advance(double total, std::uint64_t times) = 0;
};

/// Runs what is posted, one entry at a time, in the order of posting. Posting is allowed from any
/// thread and from a running task. Tasks must not throw.
class TaskQueue {
 public:
  virtual ~TaskQueue() = default;
  void post(std::function<void()> task);
  /// Advances `target` by `by`, like posting a task that does so. When the entry posted just
  /// before still waits and advances the same object, the two become one: sum and number of
  /// advances are kept, and nothing is allocated. `target` must outlive the entry.
  void postAdvance(Advanceable& target, double by);
  /// Entries that wait; merged advances are one.
  [[nodiscard]] std::size_t waiting() const;

 protected:
  using Lock = std::unique_lock<std::mutex>;

  /// Called when something was posted, on the posting thread, with the queue locked.
  virtual void posted(Lock& lock) = 0;
  [[nodiscard]] Lock locked() const { return Lock(mutex_); }
  [[nodiscard]] bool isEmpty() const noexcept { return entries_.empty(); }
  /// Runs the oldest entry, unlocked meanwhile. False when none waits.
  bool runNext(Lock& lock);

 private:
  /// A task, or (without one) the advances of `target`.
  struct Entry {
    std::function<void()> task;
    Advanceable* target = nullptr;
    double total = 0;
    std::uint64_t times = 0;
  };

  mutable std::mutex mutex_;
  std::deque<Entry> entries_;
};

/// Runs an entry before `post` returns, on the posting thread. What is posted while an entry runs,
/// by that entry or by another thread, is run after it by the thread that is at it.
class InlineQueue final : public TaskQueue {
 private:
  void posted(Lock& lock) override;

  bool running_ = false;
};

/// Keeps entries until they are drained: by an event loop once per wake-up, or by a test.
class ManualQueue : public TaskQueue {
 public:
  /// Runs entries until none waits, those posted meanwhile included. Returns how many ran. One
  /// thread at a time.
  std::size_t drain();

 private:
  void posted(Lock&) override {}
};

/// Runs entries on a thread of its own. The destructor runs what still waits, then joins.
class WorkerQueue final : public TaskQueue {
 public:
  WorkerQueue();
  ~WorkerQueue() override;
  WorkerQueue(const WorkerQueue&) = delete;
  WorkerQueue& operator=(const WorkerQueue&) = delete;

  /// Returns once nothing waits or runs. Not to be called by a task of this queue.
  void waitUntilIdle();

 private:
  void posted(Lock& lock) override;
  void work(const std::stop_token& stop);

  std::condition_variable_any wake_;
  std::condition_variable idle_;
  bool running_ = false;
  std::jthread thread_;  // last: it uses the members above
};

}  // namespace kestrel
