#include "app/target_playlist_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "app/scope_box.h"
#include "ui/process.h"
#include "ui/qt/playlist_widgets.h"

namespace kestrel {

TargetPlaylistDialog::TargetPlaylistDialog(QWidget* parent, AppDelegate& delegate,
                                           ActionScope scope)
    : QDialog(parent), scope_(new ScopeBox(delegate, std::move(scope))) {
  setWindowTitle(tr("Add to Playlist"));
  delegate.fillTargetMenu();
  auto& menu = delegate.process().state<PlaylistWindowReferences>().selectionToHookPlaylistPopup;
  auto* popup = new PlaylistPopupBox(menu, delegate.process().with.log);
  popup->setMinimumContentsLength(30);
  auto* label = new QLabel;
  label->setBuddy(popup);
  const auto count = [this, label, &delegate] {
    const auto tracks = static_cast<int>(delegate.tracksOf(scope_->rows()).size());
    label->setText(tr("&Add the tracks of these groups (%n) to the end of", "", tracks));
  };
  connect(scope_, &ScopeBox::changed, this, count);
  count();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  QPushButton* add = buttons->addButton(tr("Add"), QDialogButtonBox::AcceptRole);
  add->setDefault(true);
  add->setEnabled(menu.selectedIndex().has_value());
  connect(popup, &PlaylistPopupBox::playlistChosen, this,
          [&delegate] { delegate.targetPlaylistChosen(); });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(scope_);
  layout->addWidget(label);
  layout->addWidget(popup);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

std::vector<std::uint32_t> TargetPlaylistDialog::rows() const { return scope_->rows(); }

}  // namespace kestrel
