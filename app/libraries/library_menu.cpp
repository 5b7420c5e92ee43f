#include "app/libraries/library_menu.h"

#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/libraries/library_finder.h"
#include "app/parts/library_title.h"
#include "musicapp/library_identity.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {

LibraryMenu::LibraryMenu(AppDelegate& delegate, LibraryFinder& finder,
                         std::function<void(const QString&)> open, QWidget* parent)
    : QMenu(tr("&Library"), parent), delegate_(delegate), finder_(finder), open_(std::move(open)) {
  setToolTipsVisible(true);
  connect(this, &QMenu::aboutToShow, this, [this] {
    finder_.look();
    fill();
  });
  // What is found while the menu is open comes into it, but not under the pointer.
  observe(this, finder_.observers, [this] {
    if (!isVisible()) fill();
  });
}

void LibraryMenu::setActions(QList<QAction*> toOthers, QList<QAction*> ofThis) {
  toOthers_ = std::move(toOthers);
  ofThis_ = std::move(ofThis);
  fill();
}

void LibraryMenu::addLibrary(const std::string& address, const QString& details,
                             const QString& toolTip) {
  const LibraryTitle title = libraryTitle(address, delegate_.process().with.files);
  QString text = menuText(title.name);
  if (!details.isEmpty()) text += QStringLiteral("  –  ") + menuText(details);
  QAction* action = addAction(toolbarIcon(title.icon), text);
  action->setToolTip(toolTip);
  action->setEnabled(!delegate_.isBusy());
  connect(action, &QAction::triggered, this,
          [this, address] { open_(pathToQt(addressText(address))); });
}

void LibraryMenu::addFound() {
  const auto& recent = delegate_.recentLibraries();
  bool headed = false;
  for (const auto& one : finder_.found()) {
    const FoundLibrary& library = one.library;
    if (std::any_of(recent.begin(), recent.end(), [&](const std::string& address) {
          return isSameLibrary(address, library.address);
        }))
      continue;
    if (!std::exchange(headed, true)) addSection(tr("Found on this computer"));
    const LibraryTitle title = libraryTitle(library.address, delegate_.process().with.files);
    const QString address = pathToQt(addressText(library.address));
    addLibrary(library.address, libraryDetails(title, library).join(QStringLiteral(" · ")),
               library.obstacle.empty()
                   ? address
                   : toQt(Message::tr("It cannot be changed now: %1").arg(library.obstacle)));
  }
}

void LibraryMenu::fill() {
  clear();
  const auto& recent = delegate_.recentLibraries();
  if (!recent.empty()) addSection(tr("Recent"));
  for (auto one = recent.begin(); one != recent.end(); ++one) {
    const std::string& address = *one;
    if (std::any_of(recent.begin(), one,
                    [&](const std::string& before) { return isSameLibrary(before, address); }))
      continue;
    const LibraryTitle title = libraryTitle(address, delegate_.process().with.files);
    addLibrary(address, title.place, pathToQt(addressText(address)));
  }
  addFound();
  addSection(tr("Others"));
  for (QAction* action : toOthers_) addAction(action);
  addSection(tr("This library"));
  for (QAction* action : ofThis_)
    if (action)
      addAction(action);
    else
      addSeparator();
}

}  // namespace kestrel
