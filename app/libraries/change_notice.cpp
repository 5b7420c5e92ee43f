#include "app/libraries/change_notice.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPushButton>

#include "app/controller/app_delegate.h"
#include "app/parts/library_title.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Between two looks while the window is the active one, in milliseconds.
constexpr int pause = 5000;

}  // namespace

void onceAsRead(AppDelegate& delegate, QWidget* window, std::function<void()> act) {
  const auto answered = [&delegate, window, act](bool changed) {
    if (!changed) return act();
    showAlert(window, ChangeNotice::tr("The library was changed by another program."),
              ChangeNotice::tr("Kestrel changes only what it has read. Read the library again, and "
                               "look at the result once more."),
              {ChangeNotice::tr("Reload"), ChangeNotice::tr("Cancel")}, [&delegate](int button) {
                if (button == 0) delegate.renew();
              });
  };
  // Where it cannot be asked now, the run itself sees to it.
  if (!delegate.lookForChanges(answered)) act();
}

ChangeNotice::ChangeNotice(AppDelegate& delegate)
    : NoticeBar(Weight::warning), delegate_(delegate) {
  setObjectName(QStringLiteral("changeNotice"));
  addButton(tr("Reload"), [this] {
    delegate_.renew();
  })->setToolTip(tr("Reads the library again; ticks and picks stay (F5)"));
  pauses_.setInterval(pause);
  connect(&pauses_, &QTimer::timeout, this, &ChangeNotice::look);
  observe(this, delegate_.observers, [this] { reload(); });
  qApp->installEventFilter(this);
  pauses_.start();
  reload();
}

bool ChangeNotice::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowActivate && watched == window()) look();
  return NoticeBar::eventFilter(watched, event);
}

void ChangeNotice::showEvent(QShowEvent* event) {
  NoticeBar::showEvent(event);
  const LibraryTitle title = libraryTitle(delegate_.libraryPath(), delegate_.process().with.files);
  setText(title.name == title.kind ? tr("The library was changed in %1.").arg(title.kind)
                                   : tr("The library changed on disk."));
}

void ChangeNotice::look() {
  // Dialogs look at the library themselves before they change it.
  if (window()->isActiveWindow() && !QApplication::activeModalWidget())
    delegate_.lookForChanges([](bool) {});
}

void ChangeNotice::reload() {
  for (QPushButton* button : findChildren<QPushButton*>()) button->setEnabled(!delegate_.isBusy());
  setVisible(delegate_.hasLibraryChanged());
}

}  // namespace kestrel
