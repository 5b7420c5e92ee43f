/// What every rule would do with a result, as a table to sort.
#pragma once

#include <QAbstractTableModel>
#include <array>

#include "app/controller/rule_presets.h"

namespace kestrel {

class RuleOutcomeModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { rule, changed, playlists, entries, bytes, plays, ratings, columns };
  enum Role {
    SortRole = Qt::UserRole,
    ShareRole  ///< of the column's highest number, 0 to 1; none for names
  };

  using QAbstractTableModel::QAbstractTableModel;
  void show(ResultComparison comparison);
  [[nodiscard]] const ResultComparison& comparison() const noexcept { return comparison_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  [[nodiscard]] QString nameOf(std::size_t row) const;
  [[nodiscard]] qlonglong number(std::size_t row, Column column) const;

  ResultComparison comparison_;
  std::array<qlonglong, columns> highest_{};
};

}  // namespace kestrel
