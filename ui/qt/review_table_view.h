/// A review table on the screen: the toolkit's table, behaving as the table's delegate decides.
#pragma once

#include <QTableView>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "ui/geometry.h"
#include "ui/qt/result_table_model.h"

namespace kestrel {

class ReviewTableView final : public QTableView {
  Q_OBJECT

 public:
  /// Calls its argument when no task reads the rows: at once, or later.
  using WhenIdle = std::function<void(std::function<void()>)>;

  /// Both must outlive the view, as must the model's own.
  ReviewTableView(ResultTableModel& rows, const ReviewTableDelegate& delegate, ReviewTable table,
                  WhenIdle whenIdle);

  /// Positions in the controller's content, in table order.
  [[nodiscard]] std::vector<std::uint32_t> selectedRows() const;
  /// How many rows are selected; what is filtered away is not.
  [[nodiscard]] std::size_t selectedCount() const { return selectedPositions().size(); }
  /// The row that single-track commands are about: the current one if it is selected, else the
  /// first selected one.
  [[nodiscard]] std::optional<int> commandRow() const;
  /// Selects a row alone and scrolls it to the middle; nothing happens without such a row.
  void selectInMiddle(int row);
  /// Shows the flags of the visible rows anew, and nothing else.
  void reloadFlags();
  /// The desktop's colours have changed.
  void reloadPalette();
  /// The arrow in the header that says what the rows are sorted by.
  void showSortIndicator();

  /// Which columns are shown, where, and how wide.
  [[nodiscard]] QByteArray columnState() const;
  void restoreColumnState(const QByteArray& state);
  /// As they are at first.
  void resetColumns();
  /// Column positions go by the table of columns.
  void setColumnShown(int column, bool shown);
  [[nodiscard]] QMenu* makeColumnMenu(QWidget* parent);

  ResultTableModel& rows() const { return rows_; }

 Q_SIGNALS:
  void tracksSelected();
  void makeOnlyKeeperRequested(std::uint32_t row);
  void contextMenuRequested(const QPoint& global);

 protected:
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event) const override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& gone) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Typing letters commands; it does not search a million rows for names.
  void keyboardSearch(const QString&) override {}
  void changeEvent(QEvent* event) override;

 private:
  /// The delegate's answer for this event.
  [[nodiscard]] bool allowsSelection(const QEvent& event) const;
  /// Positions in the table, ascending.
  [[nodiscard]] std::vector<int> selectedPositions() const;
  /// What the operations that scroll have to know of the table.
  [[nodiscard]] TableGeometry geometry() const;
  void setUpHeader();
  void clickHeader(int column);
  void guardMove(int from, int to);
  void toggleTicks();
  void restoreSelection();
  void applyStyle();

  ResultTableModel& rows_;
  const ReviewTableDelegate& delegate_;
  ReviewTable table_;
  WhenIdle whenIdle_;
  bool restoring_ = false;
  bool pressRefused_ = false;  ///< the last press of a button left the selection as it was
};

}  // namespace kestrel
