/// The rows of a review table for the toolkit's table views.
///
/// Nothing is copied or stored for a row: what a cell shows is worked out when it is painted, from
/// the array controller's rows, the table of columns and the table's delegate. A filter narrows the
/// rows without the controller knowing, so that the keeper pass still sees them all.
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "foundation/dates.h"
#include "ui/models/array_controller.h"
#include "ui/review_tables.h"
#include "ui/row_filter.h"

namespace kestrel {

class Preferences;
struct TableColumn;

class ResultTableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Roles beside the toolkit's own.
  enum Role {
    RowBackgroundRole = Qt::UserRole + 1,  ///< of the whole row; invalid: the table's own
    TextBackgroundRole,  ///< what the text must stand on to be read; invalid: the row's
  };

  /// Asked to give rows, by position in the content, this keeper flag; returns whether it did.
  using Tick = std::function<bool(std::span<const std::uint32_t> rows, bool ticked)>;

  /// All but `tick` must outlive the model.
  ResultTableModel(ArrayController<ResultTrack>& rows, const ReviewTableDelegate& delegate,
                   ReviewTable table, Preferences& preferences, Tick tick);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

  /// The same as `setData` for many rows of the table at once: what follows from a tick, such as a
  /// new sum, follows once.
  bool setTicks(std::span<const int> rows, bool ticked);

  /// Shows the rows that hold each word of `text`; an empty text shows all. The result comes a
  /// moment later when there are many rows.
  void setFilter(const QString& text);
  [[nodiscard]] bool isFiltered() const noexcept { return filtered_; }
  [[nodiscard]] bool isFiltering() const { return slices_.isActive(); }
  /// Waits for the result, for what acts on the rows that are shown.
  void finishFiltering();

  [[nodiscard]] const ResultTrack& track(int row) const;
  /// Position in the controller's content.
  [[nodiscard]] std::uint32_t contentRow(int row) const;
  /// Position in the controller's arrangement, and back; -1 for a row that is filtered away.
  [[nodiscard]] std::size_t arrangedRow(int row) const;
  [[nodiscard]] int rowOfArranged(std::size_t arranged) const;
  /// -1 when it is filtered away.
  [[nodiscard]] int rowOfContent(std::uint32_t content) const;
  [[nodiscard]] ArrayController<ResultTrack>& controller() const { return rows_; }

  /// Tells views that keeper flags have changed in these rows: colours, boxes and symbols.
  void flagsChanged(int first, int last);

 private:
  void rowsChanged();
  void continueFilter();
  void showFiltered();
  [[nodiscard]] QVariant text(const TableColumn& column, const ResultTrack& track) const;
  [[nodiscard]] QString symbols(const ResultTrack& track) const;
  [[nodiscard]] QString stateText(const ResultTrack& track) const;
  [[nodiscard]] QColor rowBackground(const ResultTrack& track) const;

  ArrayController<ResultTrack>& rows_;
  const ReviewTableDelegate& delegate_;
  ReviewTable table_;
  Preferences& preferences_;
  Tick tick_;
  mutable ShortDateTimeFormatter dates_;
  QString filterText_;
  RowFilter filter_;
  QTimer slices_;
  bool filtered_ = false;
  std::vector<std::uint32_t> visible_;  ///< arranged positions, ascending, while filtered
};

}  // namespace kestrel
