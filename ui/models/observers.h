/// How a view model tells that it has changed.
///
/// Models are changed by tasks of the main queue only, so observers run there too. An observer
/// reads the model's new state; nothing is passed to it.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace kestrel {

class Observers {
  struct List;

 public:
  /// Ends the observation when destroyed; may outlive the model.
  class Subscription {
   public:
    Subscription() = default;
    Subscription(Subscription&& other) noexcept
        : list_(std::exchange(other.list_, {})), number_(other.number_) {}
    Subscription& operator=(Subscription&& other) noexcept {
      std::swap(list_, other.list_);
      std::swap(number_, other.number_);
      return *this;
    }
    ~Subscription();

   private:
    friend class Observers;
    Subscription(std::weak_ptr<List> list, std::size_t number)
        : list_(std::move(list)), number_(number) {}
    std::weak_ptr<List> list_;
    std::size_t number_ = 0;
  };

  Observers();
  ~Observers();
  Observers(const Observers&) = delete;
  Observers& operator=(const Observers&) = delete;

  /// Calls `observer` at each change from now on, as long as the subscription lives.
  [[nodiscard]] Subscription add(std::function<void()> observer);
  /// Calls all observers in the order of adding. Observers may add and end subscriptions meanwhile.
  void notify() const;

 private:
  std::shared_ptr<List> list_;
};

}  // namespace kestrel
