/// The rows of a review table for the toolkit's table views.
///
/// Nothing is copied or stored for a row: what a cell shows is worked out when it is painted, from
/// the array controller's rows, the table of columns and the table's delegate. A filter narrows the
/// rows without the controller knowing, so that the keeper pass still sees them all.
///
/// While the upper table is sorted by group, a heading stands over each group, which is a row of
/// the model, too. Asked for its track, a heading answers with the first one below it.
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "foundation/dates.h"
#include "ui/models/array_controller.h"
#include "ui/models/grouped_rows.h"
#include "ui/qt/group_heading.h"
#include "ui/qt/table_painting.h"
#include "ui/review_tables.h"
#include "ui/row_filter.h"

namespace kestrel {

class Preferences;
struct TableColumn;

/// What a cell shows of a track, as the user writes numbers.
QString shownText(const TableColumn& column, const ResultTrack& track,
                  ShortDateTimeFormatter& dates);

class ResultTableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Roles beside the toolkit's own.
  enum Role {
    RowBackgroundRole = Qt::UserRole + 1,  ///< of the whole row; invalid: the table's own
  };

  /// Asked to give rows, by position in the content, this keeper flag; returns whether it did.
  using Tick = std::function<bool(std::span<const std::uint32_t> rows, bool ticked)>;
  /// What the model does not know of groups and rows; asked when they are painted.
  struct Teller {
    std::function<GroupHeading(std::int32_t group)> heading;
    std::function<bool(const ResultTrack& track)> isPicked;  ///< by the user's own hand
  };

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
  /// Shows, of those, the rows of groups for which this holds; empty: of all. Asked at once for
  /// each row, and again when there are other rows.
  void setGroupFilter(std::function<bool(std::int32_t group)> isShown);
  [[nodiscard]] bool filtersGroups() const { return bool(groupFilter_); }
  [[nodiscard]] bool isFiltered() const noexcept { return filtered_; }
  [[nodiscard]] bool isFiltering() const { return slices_.isActive(); }
  /// Waits for the result, for what acts on the rows that are shown.
  void finishFiltering();

  // Groups.

  void setTeller(Teller teller) { teller_ = std::move(teller); }
  /// Whether headings may stand over groups at all; at first they do.
  void setHeadings(bool wanted);
  /// Whether they do now.
  [[nodiscard]] bool isGrouped() const noexcept { return grouped_; }
  /// Another search begins, whose groups have the same numbers: none is folded, all as found.
  void forgetGroups();
  /// Orders groups by their keys, the highest first; `keys` go by group number, those that are
  /// missing count as 0. Groups of one key stay as they were found.
  void setGroupOrder(GroupOrder order, std::vector<std::uint64_t> keys);
  [[nodiscard]] GroupOrder groupOrder() const noexcept { return groupOrder_; }
  [[nodiscard]] bool isHeading(int row) const;
  [[nodiscard]] GroupHeading heading(int row) const;
  /// The row of the heading over a row; -1 without one.
  [[nodiscard]] int headingOf(int row) const;
  [[nodiscard]] bool isFolded(int heading) const;
  /// How many rows stand below a heading, as far as they are unfolded.
  [[nodiscard]] int unfoldedRows(int heading) const;
  /// While headings are shown: how many there are, the row of each, and which one is above a row.
  [[nodiscard]] int groupCount() const { return static_cast<int>(groups_.groups().size()); }
  [[nodiscard]] int headingAt(int group) const {
    return static_cast<int>(groups_.headerOf(static_cast<std::size_t>(group)));
  }
  [[nodiscard]] int groupPlace(int row) const {
    return static_cast<int>(groups_.at(static_cast<std::size_t>(row)).group);
  }
  /// Folds the group of a heading's row, or unfolds it. Other folded groups stay so.
  void setFolded(int heading, bool folded);
  void setAllFolded(bool folded);
  [[nodiscard]] bool isAllFolded() const;
  /// The group's number, of a heading as of a track.
  [[nodiscard]] std::int32_t groupAt(int row) const { return track(row).tGroupID; }
  /// The numbers of the groups that have a row in the table, as they stand there, each once.
  [[nodiscard]] std::vector<std::int32_t> shownGroups() const;

  /// How many tracks the filter leaves; folded ones count.
  [[nodiscard]] std::size_t shownTracks() const {
    return filtered_ ? visible_.size() : rows_.size();
  }
  [[nodiscard]] const ResultTrack& track(int row) const;
  /// Position in the controller's content.
  [[nodiscard]] std::uint32_t contentRow(int row) const;
  /// Positions in the controller's arrangement of the tracks in these spans of rows, each once,
  /// ascending; a heading stands for all tracks below it. First and last row of each span.
  [[nodiscard]] std::vector<std::size_t> arrangedRows(std::vector<std::pair<int, int>> spans) const;
  /// -1 for a row that is filtered away or folded.
  [[nodiscard]] int rowOfArranged(std::size_t arranged) const;
  /// The same; for one that is folded away the heading of its group.
  [[nodiscard]] int rowOrHeadingOfArranged(std::size_t arranged) const;
  /// -1 when it is filtered away; unfolds its group if need be.
  int rowOfContent(std::uint32_t content);
  [[nodiscard]] ArrayController<ResultTrack>& controller() const { return rows_; }

  [[nodiscard]] KeepMark keepMark(int row) const;
  [[nodiscard]] FileSymbol fileSymbol(int row) const;

  /// Tells views that keeper flags have changed in these rows: colours, boxes and symbols.
  void flagsChanged(int first, int last);

 private:
  void rowsChanged();
  void continueFilter();
  void showFiltered();
  void group();
  [[nodiscard]] std::size_t arrangedOf(std::uint32_t shown) const {
    return filtered_ ? visible_[shown] : shown;
  }
  [[nodiscard]] std::optional<std::uint32_t> shownOf(std::size_t arranged) const;
  [[nodiscard]] std::uint32_t shownAt(int row) const;
  [[nodiscard]] QString text(const TableColumn& column, const ResultTrack& track) const;
  [[nodiscard]] QString stateText(const ResultTrack& track) const;
  [[nodiscard]] QVariant headingData(const QModelIndex& index, int role) const;
  /// The text, or what is to be said about it.
  [[nodiscard]] QString toolTip(const TableColumn& column, const ResultTrack& track) const;
  [[nodiscard]] QString spokenText(const TableColumn& column, const ResultTrack& track) const;

  ArrayController<ResultTrack>& rows_;
  const ReviewTableDelegate& delegate_;
  ReviewTable table_;
  Preferences& preferences_;
  Tick tick_;
  Teller teller_;
  mutable ShortDateTimeFormatter dates_;
  QString filterText_;
  RowFilter filter_;
  std::function<bool(std::int32_t)> groupFilter_;
  QTimer slices_;
  bool filtered_ = false;
  std::vector<std::uint32_t> visible_;  ///< arranged positions, ascending, while filtered
  bool headingsWanted_;
  bool grouped_ = false;
  GroupedRows groups_;        ///< over positions among the rows that the filter leaves
  std::vector<bool> folded_;  ///< by group number
  bool foldNew_ = false;      ///< groups that are not in `folded_` yet
  GroupOrder groupOrder_ = GroupOrder::found;
  std::vector<std::uint64_t> groupKeys_;
};

}  // namespace kestrel
