/// A table for reading whose rows may have check boxes in their first column.
#pragma once

#include <QTableView>

namespace kestrel {

class CheckTable final : public QTableView {
 public:
  /// Takes the model. Rows are `lines` lines high, all the same, so that a long table need not
  /// measure them.
  CheckTable(QAbstractItemModel* model, const QString& accessibleName, int lines);

 protected:
  /// Space checks or unchecks all selected rows, as the current one is not.
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kestrel
