/// How tables and outlines are painted, on light and on dark desktops: the named colours, the
/// titles of their headers, and the marks and symbols in their rows.
#pragma once

#include <QHeaderView>
#include <QPalette>
#include <cstdint>

#include "ui/custom_views.h"

namespace kestrel {

/// Whether the desktop shows light text on dark.
bool isDark(const QPalette& palette);

QColor toQt(const Color& color, const QPalette& palette);

/// The palette of a table whose rows use the named colours.
QPalette tablePalette(const QPalette& desktop);

/// A flat header: titles where the header cell wants them, in line with the words below, and the
/// arrow of the sort beside its title. Columns can be clicked and moved as the caller says; by
/// themselves they cannot.
class TitleHeader final : public QHeaderView {
 public:
  explicit TitleHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setTextElideMode(Qt::ElideRight);
    setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  }
  /// How much further in the first title stands.
  void setIndent(int pixels) { indent_ = pixels; }

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  [[nodiscard]] QSize sectionSizeFromContents(int section) const override;

 private:
  int indent_ = 0;
};

/// Marks the row that the keys are in, along its start.
void paintCurrentRow(QPainter& painter, const QRect& row, bool rightToLeft,
                     const QPalette& palette);

/// What a track's file is, as a small symbol.
enum class FileSymbol : std::uint8_t { none, cloud, missing, stream };
void paintFileSymbol(QPainter& painter, const QRect& place, FileSymbol symbol, const QColor& color);

/// A triangle, or the two bars of a pause, in the colour of a button's text: also of one that is
/// off.
QIcon playIcon(bool pauses, const QPalette& palette);
/// Where a cover would be: a note in its middle.
void paintNote(QPainter& painter, const QRect& place);

/// The mark in a table's first column. It behaves as a check box does.
struct KeepMark {
  bool ticked = false;
  bool keeper = false;  ///< whose mark has the accent
  bool picked = false;  ///< by the user's own hand: a pin beside it
};
void paintKeepMark(QPainter& painter, const QRect& cell, const KeepMark& mark, bool rightToLeft,
                   const QPalette& palette);
/// Where the round mark itself stands in its cell; a press counts a little beside it, too.
QRect keepMarkPlace(const QRect& cell, bool rightToLeft);

}  // namespace kestrel
