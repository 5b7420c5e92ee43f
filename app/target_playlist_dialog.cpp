#include "app/target_playlist_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "library/process.h"
#include "ui/qt/playlist_widgets.h"

namespace kestrel {

TargetPlaylistDialog::TargetPlaylistDialog(QWidget* parent, AppDelegate& delegate,
                                           std::size_t tracks)
    : QDialog(parent) {
  setWindowTitle(tr("Add to Playlist"));
  delegate.fillTargetMenu();
  auto& menu = delegate.process().state<PlaylistWindowReferences>().selectionToHookPlaylistPopup;
  auto* popup = new PlaylistPopupBox(menu, delegate.process().with.log);
  popup->setMinimumContentsLength(30);
  auto* label =
      new QLabel(tr("&Add the selected tracks (%n) to the end of", "", static_cast<int>(tracks)));
  label->setBuddy(popup);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  QPushButton* add = buttons->addButton(tr("Add"), QDialogButtonBox::AcceptRole);
  add->setDefault(true);
  add->setEnabled(menu.selectedIndex().has_value());
  connect(popup, &PlaylistPopupBox::playlistChosen, this,
          [&delegate] { delegate.targetPlaylistChosen(); });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(popup);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace kestrel
