/// A trash that only writes down what it is given, for tests.
#pragma once

#include "platform/trash.h"

namespace kestrel {

class RecordingTrash final : public Trash {
 public:
  TrashedItem reserve(const std::string& path) override {
    recycled.push_back(path);
    return {path, "/trash" + path, "/info" + path};
  }
  void move(const TrashedItem& /*item*/) override {}
  bool release(const TrashedItem& /*item*/) override { return true; }
  void restore(const TrashedItem& /*item*/) override {}

  std::vector<std::string> recycled;  ///< every path, in order
};

}  // namespace kestrel
