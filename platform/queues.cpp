#include "platform/queues.h"

#include <utility>

namespace kestrel {

void TaskQueue::post(std::function<void()> task) {
  Lock lock(mutex_);
  entries_.push_back({std::move(task)});
  posted(lock);
}

void TaskQueue::postAdvance(Advanceable& target, double by) {
  Lock lock(mutex_);
  if (entries_.empty() || entries_.back().target != &target)
    entries_.push_back({{}, &target, 0, 0});
  entries_.back().total += by;
  ++entries_.back().times;
  posted(lock);
}

std::size_t TaskQueue::waiting() const {
  const Lock lock(mutex_);
  return entries_.size();
}

bool TaskQueue::runNext(Lock& lock) {
  if (entries_.empty()) return false;
  {
    const Entry entry = std::move(entries_.front());
    entries_.pop_front();
    lock.unlock();
    if (entry.target)
      entry.target->advance(entry.total, entry.times);
    else
      entry.task();
  }  // what the task held may post in its destructor
  lock.lock();
  return true;
}

void InlineQueue::posted(Lock& lock) {
  if (std::exchange(running_, true)) return;
  while (runNext(lock)) {
  }
  running_ = false;
}

std::size_t ManualQueue::drain() {
  Lock lock = locked();
  std::size_t count = 0;
  while (runNext(lock)) ++count;
  return count;
}

WorkerQueue::WorkerQueue() : thread_([this](const std::stop_token& stop) { work(stop); }) {}

WorkerQueue::~WorkerQueue() = default;

void WorkerQueue::posted(Lock& lock) {
  lock.unlock();
  wake_.notify_one();
}

void WorkerQueue::waitUntilIdle() {
  Lock lock = locked();
  idle_.wait(lock, [this] { return isEmpty() && !running_; });
}

void WorkerQueue::work(const std::stop_token& stop) {
  Lock lock = locked();
  while (wake_.wait(lock, stop, [this] { return !isEmpty(); })) {
    running_ = true;
    runNext(lock);
    running_ = false;
    if (isEmpty()) idle_.notify_all();
  }
}

}  // namespace kestrel
