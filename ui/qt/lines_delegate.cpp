#include "ui/qt/lines_delegate.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

#include "ui/qt/look.h"

namespace kestrel {
namespace {

constexpr int linePadding = 4;
constexpr int leastRow = 28;
constexpr int leastToWrap = 3;  // lines
constexpr int numberMargin = 16;

/// The place of a part within a line that begins at `start` and of which `cut` letters are left out
/// behind its first one.
QTextLayout::FormatRange rangeIn(QPoint part, qsizetype start, qsizetype length, qsizetype cut,
                                 const QTextCharFormat& format) {
  const qsizetype begin = std::max<qsizetype>(part.x() - start - cut, cut > 0 ? 1 : 0);
  const qsizetype end = std::min(part.x() + part.y() - start - cut, length);
  QTextLayout::FormatRange range;
  range.start = static_cast<int>(begin);
  range.length = static_cast<int>(std::max<qsizetype>(end - begin, 0));
  range.format = format;
  return range;
}

/// How many letters behind the first one a line loses so that its end fits.
qsizetype cutOf(const QString& line, const QFontMetrics& metrics, int width) {
  if (!line.startsWith(QChar(0x2026)) || metrics.horizontalAdvance(line) <= width) return 0;
  const QString end = metrics.elidedText(line.mid(1), Qt::ElideLeft, width);
  const qsizetype cut = std::max<qsizetype>(line.size() - end.size(), 0);
  // Between two folders rather than within the name of one; a file's name is shown as far as it
  // goes.
  const qsizetype slash = line.indexOf(QLatin1Char('/'), cut + 1);
  return slash > 0 ? slash - 1 : cut;
}

/// Words of lines that are too wide go on in the line below, as far as the cell has lines left.
QStringList wrapped(const QStringList& lines, const QFontMetrics& metrics, int width,
                    qsizetype room) {
  QStringList shown;
  qsizetype spare = room - lines.size();
  for (QString line : lines) {
    while (spare > 0 && !line.startsWith(QChar(0x2026)) &&
           metrics.horizontalAdvance(line) > width) {
      qsizetype end = line.lastIndexOf(QLatin1Char(' '));
      while (end > 0 && metrics.horizontalAdvance(line.left(end)) > width)
        end = line.lastIndexOf(QLatin1Char(' '), end - 1);
      if (end <= 0) break;
      shown << line.left(end);
      line = line.mid(end + 1);
      --spare;
    }
    shown << line;
  }
  return shown;
}

}  // namespace

void LinesDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given,
                          const QModelIndex& index) const {
  QStyleOptionViewItem option = given;
  initStyleOption(&option, index);
  const QWidget* widget = option.widget;
  const QStyle* style = widget ? widget->style() : QApplication::style();
  // The place of the text depends on there being one.
  const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, widget) + 1;
  QRect place = style->subElementRect(QStyle::SE_ItemViewItemText, &option, widget)
                    .adjusted(margin, 0, -margin, 0);
  if (option.displayAlignment.testFlag(Qt::AlignRight) && place.width() > numberMargin)
    place.adjust(0, 0, margin - numberMargin, 0);
  const QString text = index.data(Qt::DisplayRole).toString();
  option.text.clear();
  style->drawControl(QStyle::CE_ItemViewItem, &option, painter, widget);
  if (text.isEmpty()) return;

  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const auto group = !option.state.testFlag(QStyle::State_Enabled) ? QPalette::Disabled
                     : option.state.testFlag(QStyle::State_Active) ? QPalette::Normal
                                                                   : QPalette::Inactive;
  const QColor full =
      option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
  const QColor quiet = selected ? full : lookColor("grayText", QGuiApplication::palette());
  const auto parts = index.data(StandOutRole).value<QList<QPoint>>();
  QTextCharFormat standOut;
  standOut.setForeground(full);
  standOut.setFontWeight(QFont::Bold);

  // As wide as what stands out may be.
  QFont widest = option.font;
  widest.setBold(!parts.isEmpty());
  const QFontMetrics metrics(widest);
  QStringList lines = text.split(QLatin1Char('\n'));
  const int spacing = option.fontMetrics.lineSpacing();
  // Rows of one line stay so, and have room around it.
  if (const int room = place.height() / spacing; parts.isEmpty() && room >= leastToWrap)
    lines = wrapped(lines, metrics, place.width(), room);
  int top =
      place.top() + std::max((place.height() - spacing * static_cast<int>(lines.size())) / 2, 0);
  painter->save();
  painter->setClipRect(place);
  const bool isQuiet = !parts.isEmpty() || index.data(QuietRole).toBool();
  painter->setPen(isQuiet ? quiet : full);
  qsizetype start = 0;
  for (const QString& line : lines) {
    const bool hasBold = std::any_of(parts.begin(), parts.end(), [&](QPoint part) {
      return part.x() < start + line.size() && part.x() + part.y() > start;
    });
    const QFontMetrics& letters = hasBold ? metrics : option.fontMetrics;
    const qsizetype cut = cutOf(line, letters, place.width());
    const QString shown = cut > 0 ? QChar(0x2026) + line.mid(cut + 1)
                                  : letters.elidedText(line, option.textElideMode, place.width());
    QList<QTextLayout::FormatRange> formats;
    for (const QPoint& part : parts)
      if (const auto range = rangeIn(part, start, shown.size(), cut, standOut); range.length > 0)
        formats << range;
    QTextLayout layout(shown, option.font);
    QTextOption textOption;
    textOption.setWrapMode(QTextOption::NoWrap);
    textOption.setTextDirection(option.direction);
    textOption.setAlignment(QStyle::visualAlignment(option.direction, option.displayAlignment) &
                            Qt::AlignHorizontal_Mask);
    layout.setTextOption(textOption);
    layout.setFormats(formats);
    layout.beginLayout();
    if (QTextLine drawn = layout.createLine(); drawn.isValid()) drawn.setLineWidth(place.width());
    layout.endLayout();
    layout.draw(painter, QPointF(place.left(), top));
    top += spacing;
    start += line.size() + 1;
  }
  painter->restore();
}

QSize LinesDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return QStyledItemDelegate::sizeHint(option, index).expandedTo({0, leastRow}) +
         QSize(numberMargin, 0);
}

int rowHeightOf(int lines, const QFontMetrics& metrics) {
  return lines * metrics.lineSpacing() + 2 * linePadding;
}

}  // namespace kestrel
