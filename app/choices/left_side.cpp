#include "app/choices/left_side.h"

#include <QGuiApplication>
#include <QPainter>
#include <QStyle>
#include <QTabBar>

#include "ui/qt/look.h"

namespace kestrel {
namespace {

/// Titles on the pane's ground, with a line in the accent under the one that is shown.
class TitleTabs final : public QTabBar {
 public:
  TitleTabs() {
    setDrawBase(false);
    setExpanding(false);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  /// Who chooses a side by its key goes on in it.
  bool event(QEvent* event) override {
    const bool isTaken = QTabBar::event(event);
    if (isTaken && event->type() == QEvent::Shortcut) setFocus(Qt::ShortcutFocusReason);
    return isTaken;
  }
  /// The first title begins where the pane's sections do.
  static int before(int index) { return index == 0 ? gridStep : 0; }
  [[nodiscard]] QSize tabSizeHint(int index) const override {
    const QString title = tabText(index).remove(QLatin1Char('&'));
    return {QFontMetrics(titleFont(font())).horizontalAdvance(title) + 2 * gridStep + before(index),
            5 * gridStep};
  }
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QPalette palette = QGuiApplication::palette();
    const bool underlines = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
    for (int index = 0; index < count(); ++index) {
      const QRect tab = tabRect(index).adjusted(before(index), 0, 0, 0);
      const bool shown = index == currentIndex();
      const bool near = tab.contains(mapFromGlobal(QCursor::pos())) && underMouse();
      painter.setFont(shown ? titleFont(font()) : font());
      painter.setPen(lookColor(shown || near ? "labelText" : "grayText", palette));
      painter.drawText(
          tab, int{Qt::AlignCenter} | int{underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic},
          tabText(index));
      const QRect under = tab.adjusted(gridStep, 0, -gridStep, -4);
      if (shown)
        painter.fillRect(QRect(under.left(), under.bottom() - 1, under.width(), 2),
                         lookColor("accent", palette));
      if (shown && hasFocus()) {
        painter.setPen(QPen(lookColor("accent", palette), 1));
        painter.drawRoundedRect(QRectF(tab).adjusted(1.5, 3.5, -1.5, -1.5), 4, 4);
      }
    }
  }
};

}  // namespace

LeftSide::LeftSide(QWidget* decisions, QWidget* playlists) {
  setTabBar(new TitleTabs);
  setDocumentMode(true);
  // Narrower, the counts beside the fields would be cut.
  setMinimumWidth(leastWidth);
  addTab(decisions, tr("De&cide"));
  addTab(playlists, tr("&Playlists"));
  tabBar()->setAccessibleName(tr("Decisions and playlists"));
  setGround(this, "paneGround");
}

}  // namespace kestrel
