// What the main window does with keys, what is dropped on it, and what it keeps until the next
// start.

#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QSplitter>
#include <QUrl>

#include "app/choices/left_side.h"
#include "app/controller/app_delegate.h"
#include "app/main_window.h"
#include "app/result/compare_pane.h"
#include "app/result/filter_field.h"
#include "app/result/result_area.h"
#include "musicapp/applications.h"
#include "platform/preferences.h"
#include "ui/custom_views.h"
#include "ui/process.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

// The window's own settings: binary states as text.
constexpr std::string_view geometrySetting = "windowGeometry";
constexpr std::string_view sidesSetting = "windowSides";
constexpr std::string_view resultSetting = "windowResult";
constexpr std::string_view upperColumnsSetting = "upperTableColumns";
constexpr std::string_view lowerColumnsSetting = "lowerTableColumns";

std::string asText(const QByteArray& state) { return state.toBase64().toStdString(); }
QByteArray fromText(const std::string& text) {
  return QByteArray::fromBase64(QByteArray::fromStdString(text));
}

QStringList filesOf(const QMimeData* dragged) {
  QStringList files;
  for (const QUrl& url : dragged->urls())
    if (url.isLocalFile()) files << url.toLocalFile();
  return files;
}

}  // namespace

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // What is drawn in the text colour has to be drawn anew.
  if (event->type() == QEvent::PaletteChange && table_) {
    table_->reloadPalette();
    lower_->reloadPalette();
    info_->reload();
  }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  // Wherever the keys go to in this window; in other windows and menus, Esc has a meaning there.
  if (event->type() == QEvent::KeyPress && watched->isWidgetType() &&
      static_cast<const QWidget*>(watched)->window() == this &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
    KSWindow::keyDown(KSWindow::escapeKeyCode, preferences_);
  if (watched == filter_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape) filter_->clear();
    if (key == Qt::Key_Escape || key == Qt::Key_Down || key == Qt::Key_Return) {
      table_->setFocus();
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  // Drags get past modal windows, which may be working with the library at hand.
  if (!delegate_.isBusy() && !QApplication::activeModalWidget() &&
      !filesOf(event->mimeData()).isEmpty())
    event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  if (QApplication::activeModalWidget()) return event->ignore();
  event->acceptProposedAction();
  delegate_.whenIdle([this, files = filesOf(event->mimeData())] { take(files); });
}

void MainWindow::take(const QStringList& files) {
  if (applicationOf(pathFromQt(files.front()), delegate_.process().with.files) ||
      !actions_.addFiles->isEnabled())
    openPath(files.front());
  else
    addFiles(files);
}

void MainWindow::keepStateSoon() {
  // Not only when it is closed: a session may end without asking.
  if (isVisible()) stateDelay_.start();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  keepStateSoon();
}

void MainWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  keepStateSoon();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // A search is not worth waiting for.
  delegate_.cancel();
  saveState();
  QMainWindow::closeEvent(event);
}

void MainWindow::saveState() {
  preferences_.set(geometrySetting, asText(saveGeometry()));
  // Without a library the left side is hidden, and has no width.
  if (left_->isVisible()) preferences_.set(sidesSetting, asText(sides_->saveState()));
  preferences_.set(resultSetting, asText(result_->sharing()));
  preferences_.set(upperColumnsSetting, asText(table_->columnState()));
  preferences_.set(lowerColumnsSetting, asText(lower_->columnState()));
}

void MainWindow::restoreState() {
  restoreGeometry(fromText(preferences_.text(geometrySetting)));
  sides_->restoreState(fromText(preferences_.text(sidesSetting)));
  result_->restoreSharing(fromText(preferences_.text(resultSetting)));
  table_->restoreColumnState(fromText(preferences_.text(upperColumnsSetting)));
  lower_->restoreColumnState(fromText(preferences_.text(lowerColumnsSetting)));
}

}  // namespace kestrel
