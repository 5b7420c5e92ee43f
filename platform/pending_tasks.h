/// The waiting entries of a task queue, with neighbouring advances merged. Not synchronised: each
/// queue guards its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>

namespace kestrel {

/// Something that counts, such as a progress bar.
class Advanceable {
 public:
  virtual ~Advanceable() = default;
  /// Advances by `total`, which stands for `times` single advances.
  virtual void advance(double total, std::uint64_t times) = 0;
};

class PendingTasks {
 public:
  /// A task, or (without one) the advances of `target`.
  struct Entry {
    std::function<void()> task;
    Advanceable* target = nullptr;
    double total = 0;
    std::uint64_t times = 0;

    void run() const {
      if (target)
        target->advance(total, times);
      else
        task();
    }
  };

  void add(std::function<void()> task) { entries_.push_back({std::move(task)}); }
  void addAdvance(Advanceable& target, double by) {
    if (entries_.empty() || entries_.back().target != &target)
      entries_.push_back({{}, &target, 0, 0});
    entries_.back().total += by;
    ++entries_.back().times;
  }
  /// Removes and returns the oldest entry; there must be one.
  Entry take() {
    Entry entry = std::move(entries_.front());
    entries_.pop_front();
    return entry;
  }
  [[nodiscard]] bool empty() const noexcept { return entries_.empty(); }
  [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }

 private:
  std::deque<Entry> entries_;
};

}  // namespace kestrel
