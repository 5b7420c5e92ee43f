/// A trash that does what another one does and tells a test of each step, which may break it.
#pragma once

#include <functional>
#include <utility>

#include "platform/trash.h"

namespace kestrel {

class WatchedTrash final : public Trash {
 public:
  enum class Step { reserved, moving, moved };
  /// `watch` gets each step with the number of the file from 1; what it throws ends the move there.
  WatchedTrash(Trash& real, std::function<void(Step, int)> watch)
      : real_(real), watch_(std::move(watch)) {}

  TrashedItem reserve(const std::string& path) override {
    TrashedItem item = real_.reserve(path);
    watch_(Step::reserved, ++count_);
    return item;
  }
  void move(const TrashedItem& item) override {
    watch_(Step::moving, count_);
    real_.move(item);
    watch_(Step::moved, count_);
  }
  bool release(const TrashedItem& item) override { return real_.release(item); }
  void restore(const TrashedItem& item) override { real_.restore(item); }

 private:
  Trash& real_;
  std::function<void(Step, int)> watch_;
  int count_ = 0;
};

}  // namespace kestrel
