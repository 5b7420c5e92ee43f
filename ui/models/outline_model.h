/// The rows of an outline: a tree of shared records, what is selected in it, and whether the user
/// may change that.
///
/// The tree itself is immutable and replaced as a whole, so that a background task builds it and
/// hands it over without a copy. The model is changed by tasks of the main queue only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "library/playlist_tree.h"
#include "ui/models/observers.h"

namespace kestrel {

/// Positions from the top level down.
using IndexPath = std::vector<std::size_t>;

template <typename Record>
class OutlineModel {
 public:
  using Node = OutlineNode<Record>;
  using Content = std::shared_ptr<const std::vector<Node>>;

  /// The top level.
  [[nodiscard]] const std::vector<Node>& content() const noexcept { return *content_; }
  /// Another number after each change of the content: a view that has shown this one need not
  /// build its rows again.
  [[nodiscard]] std::uint64_t contentVersion() const noexcept { return contentVersion_; }
  /// Replaces all rows; nothing is selected then, and nothing expanded. nullptr is no rows.
  void setContent(Content content) {
    content_ = content ? std::move(content) : std::make_shared<const std::vector<Node>>();
    ++contentVersion_;
    selection_.clear();
    expanded_ = false;
    observers.notify();
  }

  /// Whether all rows were asked to show their children, at any depth. The user may close single
  /// ones after that, which is between them and the view.
  [[nodiscard]] bool isExpanded() const noexcept { return expanded_; }
  void expandAll() {
    expanded_ = true;
    observers.notify();
  }

  [[nodiscard]] bool isEnabled() const noexcept { return enabled_; }
  void setEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    observers.notify();
  }

  /// nullptr when the path leads nowhere.
  [[nodiscard]] const Node* node(const IndexPath& path) const noexcept {
    const std::vector<Node>* level = content_.get();
    const Node* found = nullptr;
    for (const std::size_t position : path) {
      if (!level || position >= level->size()) return nullptr;
      found = &(*level)[position];
      level = found->Child ? &*found->Child : nullptr;
    }
    return found;
  }

  [[nodiscard]] const std::vector<IndexPath>& selection() const noexcept { return selection_; }
  /// In the order of selecting. Paths that lead nowhere are left out.
  void setSelection(std::vector<IndexPath> paths) {
    std::erase_if(paths, [this](const IndexPath& path) { return !node(path); });
    if (paths == selection_) return;
    selection_ = std::move(paths);
    observers.notify();
  }
  /// In the order of selecting.
  [[nodiscard]] std::vector<std::shared_ptr<const Record>> selectedRecords() const {
    std::vector<std::shared_ptr<const Record>> records;
    records.reserve(selection_.size());
    for (const IndexPath& path : selection_) records.push_back(node(path)->record);
    return records;
  }

  Observers observers;

 private:
  Content content_ = std::make_shared<const std::vector<Node>>();
  std::uint64_t contentVersion_ = 0;
  std::vector<IndexPath> selection_;
  bool expanded_ = false;
  bool enabled_ = true;
};

}  // namespace kestrel
