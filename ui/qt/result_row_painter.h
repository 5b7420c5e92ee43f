/// Paints the cells of the review tables.
#pragma once

#include <QPixmap>
#include <QStyledItemDelegate>

namespace kestrel {

class ReviewTableView;
struct ResultTrack;

/// Covers for rows: what there is at once, the rest when it has been read.
class CoverSource {
 public:
  virtual ~CoverSource() = default;
  /// A square of this many pixels a side, or nothing as long as there is none.
  virtual QPixmap cover(const ResultTrack& track, int side) = 0;
};

class ResultRowPainter final : public QStyledItemDelegate {
 public:
  explicit ResultRowPainter(ReviewTableView* table);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

 private:
  void paintCover(QPainter& painter, const QRect& place, const QModelIndex& index) const;
  void paintText(QPainter& painter, QRect place, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const;

  ReviewTableView* table_;
};

}  // namespace kestrel
