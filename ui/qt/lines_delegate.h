/// Cells of several lines in which what differs from a cell beside it stands out.
#pragma once

#include <QList>
#include <QPoint>
#include <QStyledItemDelegate>

namespace kestrel {

/// Draws a cell's lines below each other. Where the model names parts that stand out, those are
/// bold and the rest is quieter; elsewhere a line that is too long goes on in the lines that are
/// left. Else it is cut where the view says, and one that begins with "…" at its beginning, since
/// paths are told apart by their ends.
class LinesDelegate final : public QStyledItemDelegate {
 public:
  /// QList<QPoint>: where each part begins in the text, and how long it is.
  static constexpr int StandOutRole = Qt::UserRole + 40;
  /// bool: the cell is quieter as a whole.
  static constexpr int QuietRole = Qt::UserRole + 41;

  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  /// As high as the rows of the tables of tracks, at least.
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

/// The height of rows of so many lines.
int rowHeightOf(int lines, const QFontMetrics& metrics);

}  // namespace kestrel
