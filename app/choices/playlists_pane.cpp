#include "app/choices/playlists_pane.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "app/parts/playlist_entry_model.h"
#include "foundation/identifiers.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

PlaylistsPane::PlaylistsPane(AppDelegate& delegate, Commands commands)
    : delegate_(delegate),
      commands_(std::move(commands)),
      outline_(new PlaylistOutlineView(
          delegate.process().state<PlaylistWindowReferences>().playlistsOutlineView)),
      halves_(nullptr),
      title_(newPlainLabel(tr("Entries of the playlist"))),
      entries_(new QTreeView),
      model_(std::make_unique<PlaylistEntryModel>()) {
  entries_->setModel(model_.get());
  entries_->setRootIsDecorated(false);
  entries_->setUniformRowHeights(true);
  entries_->setStyleSheet(QStringLiteral("QTreeView::item { padding: 4px 2px }"));
  entries_->setFrameShape(QFrame::NoFrame);
  entries_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  entries_->setTextElideMode(Qt::ElideRight);
  entries_->setAccessibleName(tr("Entries of the playlist"));
  entries_->setContextMenuPolicy(Qt::CustomContextMenu);
  QHeaderView* header = entries_->header();
  header->setStretchLastSection(false);
  header->setSectionResizeMode(PlaylistEntryModel::position, QHeaderView::ResizeToContents);
  header->setSectionResizeMode(PlaylistEntryModel::name, QHeaderView::Stretch);
  header->setSectionResizeMode(PlaylistEntryModel::artist, QHeaderView::Stretch);
  // Measuring all of a long list would take its time.
  header->setResizeContentsPrecision(0);
  header->setMinimumSectionSize(5 * gridStep);
  outline_->setContextMenuPolicy(Qt::CustomContextMenu);
  title_->setContentsMargins(12, gridStep, 12, 4);
  setTextColor(title_, "grayText");
  QWidget* below = newColumn({title_, entries_}, entries_);
  below->layout()->setSpacing(0);
  halves_ = newSplitter(Qt::Vertical, {outline_, below});
  halves_->setHandleWidth(1);
  halves_->setSizes({300, 300});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(halves_);

  connect(outline_, &QTreeWidget::currentItemChanged, this, [this] {
    isDue_ = true;
    showEntries();
  });
  connect(outline_, &QWidget::customContextMenuRequested, this, &PlaylistsPane::showOutlineMenu);
  connect(entries_, &QWidget::customContextMenuRequested, this, &PlaylistsPane::showEntryMenu);
  observe(this, delegate_.observers, [this] { showEntries(); });
  observe(this, delegate_.libraryObservers, [this] {
    isDue_ = true;
    showEntries();
  });
  showEntries();
}

PlaylistsPane::~PlaylistsPane() = default;

bool PlaylistsPane::showPlaylist(const std::string& decpid) {
  return outline_->showPlaylist(decpid);
}

std::string PlaylistsPane::current() const { return outline_->current(); }

void PlaylistsPane::showEntries() {
  // A task may be making the lists anew; at its end this is asked again.
  if (!isDue_ || delegate_.isBusy()) return;
  isDue_ = false;
  std::vector<std::uint64_t> entries;
  const auto playlists = TextSorter::storedPlaylistArray();
  const std::string id = current();
  if (playlists && delegate_.application() && !id.empty()) {
    const auto found = std::find_if(
        playlists->begin(), playlists->end(),
        [&](const Playlist& playlist) { return decimalText(playlist.persistentID) == id; });
    if (found != playlists->end() && found->kind != PlaylistKind::folder) entries = found->items;
  }
  const std::size_t count = entries.size();
  model_->show(delegate_.application() ? TextSorter::groomedTracksDictionary() : nullptr,
               std::move(entries));
  QString title = toQt(Message::tr("%Ln tracks", "%Ln track", static_cast<std::int64_t>(count)));
  if (const auto repeats = static_cast<std::int64_t>(model_->repeats()); repeats > 0)
    title += QStringLiteral(" · ") + toQt(Message::tr("%Ln repeats", "%Ln repeat", repeats));
  title_->setText(id.empty() ? tr("Choose a playlist to see what it holds.") : title);
  entries_->setVisible(count > 0);
}

void PlaylistsPane::showOutlineMenu(const QPoint& at) {
  const std::string id = outline_->at(at);
  if (id.empty()) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const bool idle = !delegate_.isBusy();
  connect(menu->addAction(tr("&Find Duplicates in It")), &QAction::triggered, this, [this, id] {
    delegate_.choosePlaylist(id);
    commands_.find();
  });
  connect(menu->addAction(tr("&Look in It")), &QAction::triggered, this,
          [this, id] { Q_EMIT outline_->playlistChosen(id); });
  for (QAction* action : menu->actions()) action->setEnabled(idle && delegate_.canSearch());
  menu->addSeparator();
  connect(menu->addAction(tr("&Copy Name")), &QAction::triggered, this, [this, at] {
    if (const QTreeWidgetItem* item = outline_->itemAt(at))
      QGuiApplication::clipboard()->setText(item->text(0));
  });
  menu->popup(outline_->viewport()->mapToGlobal(at));
}

void PlaylistsPane::showEntryMenu(const QPoint& at) {
  const QModelIndex index = entries_->indexAt(at);
  const TrackRecord* record = index.isValid() ? model_->track(index.row()) : nullptr;
  if (!record) return;
  const std::string track = std::string(record->value(TrackKey::hexpid).text());
  const std::string path = record->location();
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  QAction* show = menu->addAction(tr("&Show in Folder"));
  show->setEnabled(!delegate_.isBusy() && delegate_.application()->capabilities().reveals);
  connect(show, &QAction::triggered, this, [this, track] { commands_.showInPlayer(track); });
  menu->addSeparator();
  connect(menu->addAction(tr("&Copy")), &QAction::triggered, this, [this] {
    QStringList lines;
    for (const QModelIndex& row :
         entries_->selectionModel()->selectedRows(PlaylistEntryModel::name))
      if (const TrackRecord* entry = model_->track(row.row()))
        lines << toQt(entry->value(TrackKey::tName).text()) + '\t' +
                     toQt(entry->value(TrackKey::tArtist).text());
    QGuiApplication::clipboard()->setText(lines.join('\n'));
  });
  QAction* copyPath = menu->addAction(tr("Copy P&ath"));
  copyPath->setEnabled(!path.empty());
  connect(copyPath, &QAction::triggered, this,
          [path] { QGuiApplication::clipboard()->setText(pathToQt(path)); });
  menu->popup(entries_->viewport()->mapToGlobal(at));
}

}  // namespace kestrel
