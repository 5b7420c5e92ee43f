#include "app/top_bar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>

#include "app/controller/app_delegate.h"
#include "app/libraries/library_button.h"
#include "app/parts/library_title.h"
#include "app/result/filter_field.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// A button of the style's own that follows an action.
QPushButton* newActionButton(QAction* action) {
  auto* button = new QPushButton;
  button->setAutoDefault(false);
  const auto follow = [button, action] {
    // Its letter is the menu's.
    button->setText(QString(action->text()).remove(QStringLiteral("…")).remove('&'));
    button->setToolTip(action->toolTip());
    button->setEnabled(action->isEnabled());
  };
  QObject::connect(action, &QAction::changed, button, follow);
  QObject::connect(button, &QPushButton::clicked, action, &QAction::trigger);
  follow();
  return button;
}

}  // namespace

TopBar::TopBar(AppDelegate& delegate, QAction* find, QAction* history, QMenu* libraryMenu)
    : delegate_(delegate),
      library_(new LibraryButton),
      playlists_(new PlaylistPopupBox(
          delegate.process().state<PlaylistWindowReferences>().mainPlaylistPopup, drawings_)),
      filter_(new FilterField) {
  setGround(this, "tableBackground");
  playlists_->setAccessibleName(tr("Playlist to search"));
  auto* lookIn = new QLabel(tr("Look &in"));
  lookIn->setBuddy(playlists_);
  setTextColor(lookIn, "grayText");
  auto* primary = new PrimaryButton(find);
  auto* past = newActionButton(history);
  connect(library_, &QPushButton::clicked, this, [this, libraryMenu] {
    libraryMenu->popup(library_->mapToGlobal(QPoint(0, library_->height() + 4)));
  });

  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(10, 4, 2 * gridStep, 4);
  line->setSpacing(12);
  // As wide as it likes to be, whatever its texts, before anything else is spread.
  line->addWidget(library_);
  line->addWidget(lookIn);
  line->addWidget(playlists_);
  line->addWidget(primary);
  line->addStretch(3);
  line->addWidget(filter_, 2);
  line->addWidget(past);
  // One height for all that stands on the line.
  const int height = std::max(4 * gridStep, primary->sizeHint().height());
  for (QWidget* part : QList<QWidget*>{playlists_, primary, filter_, past})
    part->setFixedHeight(height);
  // Not as wide as what it holds: nothing moves when another library is opened.
  playlists_->setFixedWidth(24 * gridStep);
  setFixedHeight(7 * gridStep);
  ofLibrary_ = {lookIn, playlists_, primary, filter_, past};
  for (QWidget* part : ofLibrary_) {
    QSizePolicy policy = part->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    part->setSizePolicy(policy);
  }
  filter_->setMaximumWidth(40 * gridStep);
  reload();
}

void TopBar::reload() {
  for (QWidget* part : ofLibrary_) part->setVisible(delegate_.application() != nullptr);
  if (!delegate_.application()) {
    library_->show(tr("Open a library"), tr("None is open"), QStringLiteral("library-none"));
    library_->setToolTip({});
    return;
  }
  const std::string& address = delegate_.libraryPath();
  const LibraryTitle title = libraryTitle(address, delegate_.process().with.files);
  QStringList details;
  if (const auto count = delegate_.trackCount())
    details << toQt(Message::tr("%Ln songs", "%Ln song", static_cast<std::int64_t>(*count)));
  details << (title.name == title.kind ? title.place : title.kind);
  details.removeAll(QString());
  library_->show(title.name, details.join(QStringLiteral(" · ")), title.icon);
  library_->setToolTip(pathToQt(address));
}

}  // namespace kestrel
