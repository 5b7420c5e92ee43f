/// A review table on the screen: the toolkit's table, behaving as the table's delegate decides.
#pragma once

#include <QTableView>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "ui/geometry.h"
#include "ui/qt/result_row_painter.h"
#include "ui/qt/result_table_model.h"

namespace kestrel {

class ReviewTableView final : public QTableView {
  Q_OBJECT

 public:
  /// Sorts the table as a click on a column's header asks for: at once, or when no task reads the
  /// rows.
  using SortBy = std::function<void(std::string_view column)>;

  /// Both must outlive the view, as must the model's own.
  ReviewTableView(ResultTableModel& rows, const ReviewTableDelegate& delegate, ReviewTable table,
                  SortBy sortBy);

  /// Positions in the controller's content, in table order. A heading stands for its group, as far
  /// as the filter shows it.
  [[nodiscard]] std::vector<std::uint32_t> selectedRows() const;
  /// How many of them there are; what is filtered away is not.
  [[nodiscard]] std::size_t selectedCount() const { return selectedCount_; }
  /// The row that single-track commands are about: the current one if it is selected, else the
  /// first selected one.
  [[nodiscard]] std::optional<int> commandRow() const;
  /// Selects a row alone and scrolls it to the middle; nothing happens without such a row.
  void selectInMiddle(int row);
  /// Whether the keys are in the row.
  [[nodiscard]] bool isCurrentRow(int row) const;
  /// Whether the user is at a heading alone.
  [[nodiscard]] bool isAtHeading() const;
  /// Where covers come from; nullptr: rows show none, and are lower.
  void setCovers(CoverSource* covers);
  [[nodiscard]] CoverSource* covers() const { return covers_; }
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
  /// Space, over rows of several groups or several rows of one: each, by position in the content,
  /// shall have the only tick of its group that keeps it.
  void tickOnePerGroupRequested(const std::vector<std::uint32_t>& rows);
  void contextMenuRequested(const QPoint& global);
  void playRequested(std::uint32_t row);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event) const override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& gone) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Typing letters commands; it does not search a million rows for names.
  void keyboardSearch(const QString&) override {}
  void changeEvent(QEvent* event) override;

 private:
  /// The delegate's answer for this event.
  [[nodiscard]] bool allowsSelection(const QEvent& event) const;
  /// First and last rows of what is selected in the table.
  [[nodiscard]] std::vector<std::pair<int, int>> selectedSpans() const;
  /// What the operations that scroll have to know of the table.
  [[nodiscard]] TableGeometry geometry() const;
  void setUpHeader();
  void clickHeader(int column);
  void guardMove(int from, int to);
  void toggleTicks();
  /// One of each group's selected rows: a tick each, which becomes the only one that keeps.
  void tickOnePerGroup();
  /// Folds the current group; with the keys at a track, they go to its heading.
  void fold(int row, bool folded);
  /// What Left and Right do; false where they fold nothing.
  bool foldByKey(bool left);
  void restoreSelection();
  void applyStyle();
  void fitName();
  /// At first, and in which its title is not cut.
  [[nodiscard]] int widthWithTitle(int column) const;
  /// One that the keys can be in, beside the marks.
  [[nodiscard]] int shownColumn() const;

  ResultTableModel& rows_;
  const ReviewTableDelegate& delegate_;
  ReviewTable table_;
  SortBy sortBy_;
  CoverSource* covers_ = nullptr;
  std::size_t selectedCount_ = 0;
  bool fitsName_ = true;  ///< the names get the width that the other columns leave
  bool restoring_ = false;
  bool pressRefused_ = false;  ///< the last press of a button left the selection as it was
};

}  // namespace kestrel
