#include "app/shortcut_help.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

#include "ui/qt/look.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int symbolSide = 24;

/// A menu's title or a command, as a text that is read and not pressed.
QString plain(QString title) {
  title.replace(QStringLiteral("&&"), QStringLiteral("\x01")).remove(QLatin1Char('&'));
  title.replace(QLatin1Char('\x01'), QLatin1Char('&'));
  return title.remove(QStringLiteral("…"));
}

/// A symbol as the table draws it.
template <typename Paint>
QLabel* newSymbol(const QWidget* of, Paint&& paint) {
  const double ratio = of->devicePixelRatioF();
  QPixmap picture(QSize(symbolSide, symbolSide) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  paint(painter, QRect(0, 0, symbolSide, symbolSide));
  painter.end();
  auto* label = new QLabel;
  label->setPixmap(picture);
  return label;
}

/// Lines of a key or a symbol, and what it means.
class Lines {
 public:
  explicit Lines(QVBoxLayout* column) : column_(column) {}

  void head(const QString& title) {
    auto* heading = new QLabel(title);
    heading->setFont(titleFont(heading->font()));
    heading->setContentsMargins(0, gridStep, 0, 0);
    column_->addWidget(heading);
    grid_ = new QGridLayout;
    grid_->setHorizontalSpacing(2 * gridStep);
    grid_->setVerticalSpacing(4);
    grid_->setColumnMinimumWidth(0, 22 * gridStep);
    grid_->setColumnStretch(1, 1);
    column_->addLayout(grid_);
  }
  void add(QLabel* sign, const QString& meaning) {
    auto* text = new QLabel(meaning);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    const int line = grid_->rowCount();
    grid_->addWidget(sign, line, 0, Qt::AlignTop);
    grid_->addWidget(text, line, 1);
  }
  void add(const QString& keys, const QString& meaning) {
    auto* label = new QLabel(keys);
    label->setTextFormat(Qt::PlainText);
    setTextColor(label, "grayText");
    add(label, meaning);
  }

 private:
  QVBoxLayout* column_;
  QGridLayout* grid_ = nullptr;
};

}  // namespace

ShortcutHelp::ShortcutHelp(const QList<QMenu*>& menus, QWidget* parent) : QDialog(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Keys and Symbols"));
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(3 * gridStep, gridStep, 3 * gridStep, 2 * gridStep);
  column->setSpacing(gridStep);
  Lines lines(column);

  const auto key = [](Qt::Key which) {
    return QKeySequence(which).toString(QKeySequence::NativeText);
  };
  lines.head(tr("In the table"));
  lines.add(key(Qt::Key_Space), tr("Tick or untick; over several rows, one of each group"));
  lines.add(QStringLiteral("K"), tr("Keep this copy, and no other of its group"));
  lines.add(QStringLiteral("P"), tr("Play this copy, and pause it; a double click does the same"));
  lines.add(key(Qt::Key_Left) + QStringLiteral(", ") + key(Qt::Key_Right),
            tr("Fold and unfold the group"));
  lines.add(key(Qt::Key_Escape), tr("Stop what is running, or leave the filter"));
  lines.add(key(Qt::Key_Down) + QStringLiteral(", ") + key(Qt::Key_Return),
            tr("From the filter to the table"));
  for (const QMenu* menu : menus) {
    bool headed = false;
    for (const QAction* action : menu->actions()) {
      if (action->isSeparator() || action->shortcut().isEmpty()) continue;
      if (!std::exchange(headed, true)) lines.head(plain(menu->title()));
      QStringList keys;
      for (const QKeySequence& sequence : action->shortcuts())
        keys << sequence.toString(QKeySequence::NativeText);
      keys.removeDuplicates();
      lines.add(keys.join(QStringLiteral(", ")), plain(action->iconText()));
    }
  }

  const QPalette palette = parent->palette();
  const QColor text = lookColor("labelText", palette);
  const auto mark = [&](bool kept, bool pinned) {
    return newSymbol(this, [&](QPainter& painter, const QRect& place) {
      // Where the table indents it.
      painter.translate(-20, 0);
      paintKeepMark(painter, place.adjusted(0, 0, 2 * symbolSide, 0), {kept, kept, pinned}, false,
                    palette);
    });
  };
  const auto symbol = [&](FileSymbol what) {
    return newSymbol(this, [&](QPainter& painter, const QRect& place) {
      paintFileSymbol(painter, place, what, text);
    });
  };
  lines.head(tr("Symbols"));
  lines.add(mark(true, false), tr("The copy that is kept: in full contrast"));
  lines.add(mark(false, false), tr("A copy that is not kept: quieter"));
  lines.add(symbol(FileSymbol::cloud), tr("In the cloud, without a file here: blue"));
  lines.add(symbol(FileSymbol::missing), tr("The file is missing: red"));
  lines.add(symbol(FileSymbol::stream), tr("A stream from the net: there is no file to keep"));
  column->addStretch(1);

  auto* scroll = new QScrollArea;
  scroll->setWidget(content);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setAccessibleName(tr("Keys and Symbols"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  buttons->setContentsMargins(2 * gridStep, 0, 2 * gridStep, 2 * gridStep);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(scroll, 1);
  all->addWidget(buttons);
  resizeWithinScreen(this, {76 * gridStep, 84 * gridStep});
}

}  // namespace kestrel
