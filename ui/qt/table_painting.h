/// How tables and outlines are painted, on light and on dark desktops: the named colours, the
/// titles of their headers, and the rows of the review tables.
#pragma once

#include <QHeaderView>
#include <QPalette>
#include <QStyledItemDelegate>
#include <QTableView>

#include "ui/custom_views.h"

namespace kestrel {

/// Whether the desktop shows light text on dark.
bool isDark(const QPalette& palette);

QColor toQt(const Color& color, const QPalette& palette);

/// What a text of this colour must stand on to be readable; invalid: whatever its row stands on.
QColor backgroundOf(const Color& text, const QPalette& palette);

/// The palette of a table whose rows use the named colours.
QPalette tablePalette(const QPalette& desktop);

/// A header with sections and sort arrows as the style draws them, and titles where the header cell
/// wants them. Columns can be clicked and moved as the caller says; by themselves they cannot.
class TitleHeader final : public QHeaderView {
 public:
  explicit TitleHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setTextElideMode(Qt::ElideRight);
    setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  }

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
};

/// Paints the cells of the review tables: stripes, selection and text colours of the rows.
class ResultRowPainter final : public QStyledItemDelegate {
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
