/// An outline of playlists under their folders, with a check for each that can be chosen.
///
/// What is checked and what is highlighted are two things: the checks say what a command takes, the
/// highlight what the window tells more about. Both speak in the model's positions.
#pragma once

#include <QStringList>
#include <QTreeWidget>
#include <cstdint>
#include <functional>
#include <vector>

#include "ui/models/outline_model.h"
#include "ui/qt/bindings.h"

namespace kestrel {

class OutlineView final : public QTreeWidget {
  Q_OBJECT

 public:
  /// What a row shows.
  struct Row {
    QString icon;  ///< name of a playlist icon
    QString name;
    QStringList numbers;  ///< for the further columns, aligned to their right
    QString warning;      ///< a sign is shown with the name, and this as its explanation
    bool checkable = false;
    bool checked = false;  ///< at first
    /// Folders are checked with what they hold; the further columns are theirs all the same.
    bool isFolder = false;
  };

  /// `headers` begin with the name's.
  explicit OutlineView(const QStringList& headers);

  /// Shows `model` as long as both live. `describe` is called for each record when the content
  /// changes, and again by `describeAnew`.
  template <typename Record>
  void show(OutlineModel<Record>& model, std::function<Row(const Record&)> describe);
  /// Fills the rows again, for what `describe` knows that the model does not.
  void describeAnew() {
    shown_ = 0;
    refresh_();
  }

  /// The same of the further columns only; checks stay as they are.
  void renumber() { renumber_(); }

  /// Rows that are checked and are no folders, in the outline's order.
  [[nodiscard]] std::vector<IndexPath> checkedPaths() const;
  [[nodiscard]] std::vector<IndexPath> highlightedPaths() const;
  void setAllChecked(bool checked);
  /// The first playlist, and not the folder above it.
  void highlightFirstPlaylist();

 Q_SIGNALS:
  void checksChanged();
  void highlightChanged();

 private:
  template <typename Node, typename Describe>
  void fill(const std::vector<Node>& nodes, const Describe& describe, QTreeWidgetItem* parent);
  template <typename Node, typename Describe>
  void renumber(const std::vector<Node>& nodes, const Describe& describe, QTreeWidgetItem* parent);
  void addItem(QTreeWidgetItem* item, const Row& row);
  static void setNumbers(QTreeWidgetItem* item, const QStringList& numbers);
  [[nodiscard]] std::vector<IndexPath> pathsWhere(
      const std::function<bool(const QTreeWidgetItem*)>& test) const;
  void tellChecks();

  std::uint64_t shown_ = 0;
  bool filling_ = false;
  bool telling_ = false;
  bool expanded_ = false;
  std::function<void()> refresh_ = [] {};
  std::function<void()> renumber_ = [] {};
};

template <typename Node, typename Describe>
void OutlineView::fill(const std::vector<Node>& nodes, const Describe& describe,
                       QTreeWidgetItem* parent) {
  for (const Node& node : nodes) {
    auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    addItem(item, describe(*node.record));
    if (node.Child) fill(*node.Child, describe, item);
  }
}

template <typename Node, typename Describe>
void OutlineView::renumber(const std::vector<Node>& nodes, const Describe& describe,
                           QTreeWidgetItem* parent) {
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    QTreeWidgetItem* item = parent->child(static_cast<int>(i));
    if (!item) return;
    setNumbers(item, describe(*nodes[i].record).numbers);
    if (nodes[i].Child) renumber(*nodes[i].Child, describe, item);
  }
}

template <typename Record>
void OutlineView::show(OutlineModel<Record>& model, std::function<Row(const Record&)> describe) {
  renumber_ = [this, &model, describe] {
    if (shown_ != model.contentVersion() + 1) return;
    filling_ = true;
    renumber(model.content(), describe, invisibleRootItem());
    filling_ = false;
  };
  refresh_ = [this, &model, describe = std::move(describe)] {
    // Counted from 1: nothing has been shown at 0.
    if (shown_ != model.contentVersion() + 1) {
      shown_ = model.contentVersion() + 1;
      filling_ = true;
      clear();
      fill(model.content(), describe, nullptr);
      if (model.isExpanded()) expandAll();
      filling_ = false;
      Q_EMIT checksChanged();
      Q_EMIT highlightChanged();
    } else if (model.isExpanded() && !expanded_) {
      expandAll();
    }
    expanded_ = model.isExpanded();
    setEnabled(model.isEnabled());
  };
  observe(this, model.observers, refresh_);
  refresh_();
}

}  // namespace kestrel
