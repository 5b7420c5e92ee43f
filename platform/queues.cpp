#include "platform/queues.h"

#include <utility>

namespace kestrel {

void InlineQueue::post(std::function<void()> task) {
  std::unique_lock lock(mutex_);
  waiting_.add(std::move(task));
  if (!running_) runWaiting(lock);
}

void InlineQueue::postAdvance(Advanceable& target, double by) {
  std::unique_lock lock(mutex_);
  waiting_.addAdvance(target, by);
  if (!running_) runWaiting(lock);
}

void InlineQueue::runWaiting(std::unique_lock<std::mutex>& lock) {
  running_ = true;
  while (!waiting_.empty()) {
    {
      const PendingTasks::Entry entry = waiting_.take();
      lock.unlock();
      entry.run();
    }  // what the task held may post in its destructor
    lock.lock();
  }
  running_ = false;
}

void ManualQueue::post(std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  waiting_.add(std::move(task));
}

void ManualQueue::postAdvance(Advanceable& target, double by) {
  const std::lock_guard lock(mutex_);
  waiting_.addAdvance(target, by);
}

std::size_t ManualQueue::drain() {
  std::size_t count = 0;
  std::unique_lock lock(mutex_);
  for (; !waiting_.empty(); ++count) {
    {
      const PendingTasks::Entry entry = waiting_.take();
      lock.unlock();
      entry.run();
    }  // what the task held may post in its destructor
    lock.lock();
  }
  return count;
}

std::size_t ManualQueue::waiting() const {
  const std::lock_guard lock(mutex_);
  return waiting_.size();
}

WorkerQueue::WorkerQueue() : thread_([this](const std::stop_token& stop) { work(stop); }) {}

WorkerQueue::~WorkerQueue() = default;

void WorkerQueue::post(std::function<void()> task) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.add(std::move(task));
  }
  posted_.notify_one();
}

void WorkerQueue::postAdvance(Advanceable& target, double by) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.addAdvance(target, by);
  }
  posted_.notify_one();
}

void WorkerQueue::waitUntilIdle() {
  std::unique_lock lock(mutex_);
  idle_.wait(lock, [this] { return waiting_.empty() && !running_; });
}

void WorkerQueue::work(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (posted_.wait(lock, stop, [this] { return !waiting_.empty(); })) {
    running_ = true;
    {
      const PendingTasks::Entry entry = waiting_.take();
      lock.unlock();
      entry.run();
    }
    lock.lock();
    running_ = false;
    if (waiting_.empty()) idle_.notify_all();
  }
}

}  // namespace kestrel
