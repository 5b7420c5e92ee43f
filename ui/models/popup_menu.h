/// A pop-up menu: its items, and the one that is chosen.
///
/// As on every desktop, a menu that has items shows one of them: the first one added to an empty
/// menu is chosen until another is. Changed by tasks of the main queue only.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/models/observers.h"

namespace kestrel {

/// An image of the program's assets, and the size of the canvas that it is drawn on.
struct PopupIcon {
  std::string name;  ///< empty for none
  double width = 0;
  double height = 0;

  friend bool operator==(const PopupIcon&, const PopupIcon&) = default;
};

template <typename Record>
struct PopupItem {
  std::string title;
  std::string keyEquivalent;  ///< empty for none; an upper-case letter asks for Shift, too
  PopupIcon icon;
  std::shared_ptr<const Record> representedObject;  ///< nullptr in menus that keep none
  bool isSeparator = false;
};

template <typename Record>
class PopupMenu {
 public:
  using Item = PopupItem<Record>;

  [[nodiscard]] const std::vector<Item>& items() const noexcept { return items_; }
  /// Nothing in a menu that has no item but separators.
  [[nodiscard]] std::optional<std::size_t> selectedIndex() const noexcept { return selected_; }

  void addItem(Item item) {
    if (!selected_ && !item.isSeparator) selected_ = items_.size();
    items_.push_back(std::move(item));
    changed();
  }
  void addSeparator() {
    Item separator;
    separator.isSeparator = true;
    addItem(std::move(separator));
  }
  void removeAllItems() {
    items_.clear();
    selected_.reset();
    changed();
  }
  /// Positions of separators and beyond the end change nothing.
  void selectItem(std::size_t index) {
    if (index >= items_.size() || items_[index].isSeparator || selected_ == index) return;
    selected_ = index;
    changed();
  }
  /// Positions beyond the end change nothing.
  void setIcon(std::size_t index, PopupIcon icon) {
    if (index >= items_.size()) return;
    items_[index].icon = std::move(icon);
    changed();
  }

  /// While one lives, changes are told together at its end, so that filling a menu with thousands
  /// of items does not make a view build itself as often.
  class Update {
   public:
    explicit Update(PopupMenu& menu) : menu_(menu) { ++menu_.updates_; }
    ~Update() {
      if (--menu_.updates_ == 0 && std::exchange(menu_.changed_, false)) menu_.observers.notify();
    }
    Update(const Update&) = delete;
    Update& operator=(const Update&) = delete;

   private:
    PopupMenu& menu_;
  };

  Observers observers;

 private:
  void changed() {
    if (updates_ == 0)
      observers.notify();
    else
      changed_ = true;
  }

  std::vector<Item> items_;
  std::optional<std::size_t> selected_;
  std::size_t updates_ = 0;
  bool changed_ = false;
};

}  // namespace kestrel
