#include "app/result/scope_notice.h"

#include <QLabel>
#include <QPushButton>

#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {

ScopeNotice::ScopeNotice(AppDelegate& delegate, std::function<void()> wholeLibrary)
    : NoticeBar(Weight::remark), delegate_(delegate) {
  setObjectName(QStringLiteral("scopeNotice"));
  addButton(tr("Whole Library"), std::move(wholeLibrary))
      ->setToolTip(tr("Look in the whole library again (Ctrl+Shift+M)"));
  observe(this, delegate_.observers, [this] { reload(); });
  observe(this, delegate_.libraryObservers, [this] { reload(); });
  reload();
}

void ScopeNotice::reload() {
  const bool isPart = delegate_.application() && delegate_.canSearch() && delegate_.choosesPart();
  if (isPart) setText(tr("Only in %1").arg(toQt(delegate_.chosenPlaylistName())));
  for (QPushButton* button : findChildren<QPushButton*>()) button->setEnabled(!delegate_.isBusy());
  setVisible(isPart);
}

}  // namespace kestrel
