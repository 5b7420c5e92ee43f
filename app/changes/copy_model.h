/// The copies of an offer as a table: which goes, what is kept in its place, and what it frees.
#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "app/controller/removal_offer.h"
#include "foundation/function_ref.h"

namespace kestrel {

class CopyModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { copy, kept, size, columns };
  /// `changed` is called when the user has checked or unchecked copies.
  explicit CopyModel(std::function<void()> changed);

  void show(RemovalOffer offer);
  /// Changes what goes; the copies stay the same.
  void edit(FunctionRef<void(RemovalOffer&)> change);
  [[nodiscard]] const RemovalOffer& offer() const noexcept { return offer_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  [[nodiscard]] QString text(const OfferedCopy& one, Column column) const;
  [[nodiscard]] static QString reason(const OfferedCopy& one);
  /// What goes with it, in a line of its own; empty for nothing.
  [[nodiscard]] static QString lossOf(const OfferedCopy& one);

  std::function<void()> changed_;
  RemovalOffer offer_;
};

}  // namespace kestrel
