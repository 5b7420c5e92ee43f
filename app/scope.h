/// What an action is about: all groups of the result, those that the filter shows, or those that
/// are selected. A copy that is shown or selected stands for its group.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrel {

/// The groups by their numbers, each once, ascending.
struct ActionScope {
  std::optional<std::vector<std::int32_t>> shown;  ///< nothing without a filter
  std::vector<std::int32_t> selected;
  bool takeSelected = false;  ///< the command names the selection: it is what is taken at first
};

}  // namespace kestrel
