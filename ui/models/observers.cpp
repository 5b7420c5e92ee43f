#include "ui/models/observers.h"

#include <algorithm>

namespace kestrel {

/// Ended observers are only marked while a notification runs: one of them may be the caller.
struct Observers::List {
  struct Entry {
    std::size_t number;
    std::function<void()> call;
    bool ended = false;
  };
  std::deque<Entry> entries;  // a deque: adding must not move the function that is running
  std::size_t lastNumber = 0;
  int notifying = 0;

  void removeEnded() {
    if (notifying == 0) std::erase_if(entries, [](const Entry& entry) { return entry.ended; });
  }
};

Observers::Observers() : list_(std::make_shared<List>()) {}
Observers::~Observers() = default;

Observers::Subscription::~Subscription() {
  const std::shared_ptr<List> list = list_.lock();
  if (!list) return;
  for (List::Entry& entry : list->entries)
    if (entry.number == number_) entry.ended = true;
  list->removeEnded();
}

Observers::Subscription Observers::add(std::function<void()> observer) {
  list_->entries.push_back({++list_->lastNumber, std::move(observer)});
  return {list_, list_->lastNumber};
}

void Observers::notify() const {
  if (list_->entries.empty()) return;
  const std::shared_ptr<List> list = list_;  // an observer may destroy the model
  ++list->notifying;
  const std::size_t count = list->entries.size();
  for (std::size_t i = 0; i < count; ++i)
    if (!list->entries[i].ended) list->entries[i].call();
  --list->notifying;
  list->removeEnded();
}

}  // namespace kestrel
