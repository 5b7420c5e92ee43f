/// The header of the program's tables and outlines: sections and sort arrows as the style draws
/// them, titles where the header cell wants them.
#pragma once

#include <QHeaderView>

namespace kestrel {

class TitleHeader final : public QHeaderView {
  Q_OBJECT

 public:
  /// Columns can be clicked and moved as the caller says; by themselves they cannot.
  explicit TitleHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setTextElideMode(Qt::ElideRight);
    setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  }

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
};

}  // namespace kestrel
