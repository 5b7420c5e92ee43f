/// Paints the cells of the review tables: stripes, selection and text colours of the rows.
#pragma once

#include <QStyledItemDelegate>
#include <QTableView>

namespace kestrel {

class ResultRowPainter final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit ResultRowPainter(QTableView* table) : QStyledItemDelegate(table), table_(table) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  void paintBackground(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const;
  /// Behind the words only.
  static void paintTextBackground(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QColor& color);

  const QTableView* table_;
};

}  // namespace kestrel
