// The main window's commands about tracks: those that are selected in one of the two tables.

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "app/controller/app_delegate.h"
#include "app/main_window.h"
#include "app/result/compare_pane.h"
#include "app/result/export_dialog.h"
#include "app/result/group_headings.h"
#include "app/result/tick_history.h"
#include "app/result/track_player.h"
#include "platform/preferences.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/cover_store.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr std::string_view hideCoversSetting = "hideCovers";

}  // namespace

void MainWindow::setUpUpperTable() {
  constexpr int leastHeight = 240;
  table_->setMinimumHeight(leastHeight);
  history_ = new TickHistory(delegate_, this);
  rows_->setTeller(
      {[this](std::int32_t group) { return groupHeading(delegate_, group, rows_->groupOrder()); },
       [this](const ResultTrack& track) {
         return delegate_.groups().isPicked(track.tGroupID) &&
                track.tCheckbox == keeperValueBy(preferences_);
       }});
  observe(this, delegate_.observers, [this] {
    // What is read again is shown as it was; what is searched anew, in its groups.
    if (delegate_.activity() == Activity::snapshot && !rows_->isGrouped() &&
        delegate_.situation() == Situation::result) {
      const auto& order = rows_->controller().sortOrder();
      keptColumn_ = order.empty() ? std::string() : std::string(order.front().key);
      keptAscending_ = order.empty() || order.front().ascending;
    }
    if (delegate_.activity() != Activity::search) return;
    rows_->forgetGroups();
    const QModelIndex current = table_->currentIndex();
    if (current.isValid() && current.row() < rows_->rowCount())
      atTrack_ = rows_->track(current.row()).record->item().persistentID;
  });
  observe(this, delegate_.knowledgeObservers, [this] {
    table_->viewport()->update();
    info_->reload();
  });
  connect(table_, &ReviewTableView::tickOnePerGroupRequested, this,
          [this](const std::vector<std::uint32_t>& rows) { tickOnePerGroup(rows); });
}

void MainWindow::restoreCurrent() {
  const std::uint64_t wanted = std::exchange(atTrack_, 0);
  if (wanted == 0) return;
  const auto content = delegate_.content();
  for (std::uint32_t row = 0; row < content.size(); ++row)
    if (content[row].record->item().persistentID == wanted)
      return table_->selectInMiddle(rows_->rowOfContent(row));
}

void MainWindow::connectComparePane() {
  connect(info_, &ComparePane::playlistActivated, this,
          [this](const QString& decpid) { revealPlaylist(fromQt(decpid)); });
  connect(info_, &ComparePane::keepRequested, this, [this](std::uint32_t row) {
    if (!delegate_.makeOnlyKeeper(row)) tellTicksStay();
  });
  connect(info_, &ComparePane::revealRequested, this,
          [this](std::uint32_t row) { delegate_.reveal(row); });
  connect(info_, &ComparePane::playRequested, this, &MainWindow::play);
  connect(table_, &ReviewTableView::playRequested, this, &MainWindow::play);
  connect(player_, &TrackPlayer::problem, this, &MainWindow::say);
  connect(covers_, &CoverStore::loaded, this, [this] {
    table_->viewport()->update();
    info_->reloadCovers();
  });
  observe(this, delegate_.libraryObservers, [this] {
    covers_->forget();
    // What was heard is gone with the library.
    if (!delegate_.knowsSounds()) showSoundColumn(false);
  });
  observe(this, delegate_.observers, [this] {
    if (delegate_.activity() == Activity::opening) player_->stop();
  });
  showCovers(!preferences_.boolean(hideCoversSetting));
}

void MainWindow::showCurrent() {
  const QModelIndex current = table_->currentIndex();
  const auto selected = table_->commandRow();
  // Where nothing is selected the first group is compared: the pane's room is there all the same.
  const int row = selected ? *selected : std::max(current.row(), 0);
  if (row >= rows_->rowCount()) return info_->showTracks(0, 0);
  const std::uint32_t content = rows_->contentRow(row);
  info_->showTracks(std::max<std::size_t>(table_->selectedCount(), 1), content);
  if (current.isValid() && !rows_->isHeading(row)) player_->switchTo(pathOf(content));
}

void MainWindow::showCovers(bool shown) {
  actions_.covers->setChecked(shown);
  table_->setCovers(shown ? covers_ : nullptr);
  preferences_.set(hideCoversSetting, !shown);
}

QString MainWindow::pathOf(std::uint32_t row) const {
  if (row >= delegate_.content().size()) return {};
  const TrackRecord& record = *delegate_.content()[row].record;
  return record.availability() == FileAvailability::reachable ? pathToQt(filePath(record.item()))
                                                              : QString();
}

void MainWindow::play(std::uint32_t row) { player_->toggle(pathOf(row)); }

void MainWindow::setNotDuplicates() {
  const std::vector<std::int32_t> groups = delegate_.groups().groupsOf(commandRows());
  if (groups.empty()) return;
  if (!delegate_.setNotDuplicates(groups)) return tellTicksStay();
  say(toQt(Message::tr("%Ln groups are no duplicates from now on. Edit, Undo takes that back.",
                       "%Ln group is no duplicate from now on. Edit, Undo takes that back.",
                       static_cast<std::int64_t>(groups.size()))));
}

void MainWindow::showSoundColumn(bool shown) {
  const auto columns = tableColumns();
  for (std::size_t column = 0; column < columns.size(); ++column)
    if (columns[column].key == TrackKey::tSound)
      table_->setColumnShown(static_cast<int>(column), shown);
}

void MainWindow::compareSounds(bool ofAll) {
  const std::vector<std::int32_t> groups =
      ofAll ? std::vector<std::int32_t>() : delegate_.groups().groupsOf(commandRows());
  if (!ofAll && groups.empty()) return;
  delegate_.compareSounds(groups, [this](const HeardSounds& heard) {
    showSoundColumn(true);
    if (heard.stopped)
      return say(tr("Stopped. What was listened to is kept: the next comparison goes on there."));
    QStringList parts;
    if (heard.compared == 0)
      parts << tr("No copy could be compared by its sound.");
    else if (heard.different == 0)
      parts << tr("All copies that could be compared sound like the ones that are kept.");
    else
      parts << toQt(Message::tr("%Ln copies do not sound like the one that is kept.",
                                "%Ln copy does not sound like the one that is kept.",
                                static_cast<std::int64_t>(heard.different)));
    for (const Message& fault : heard.faults) parts << toQt(ended(fault));
    say(parts.join(QLatin1Char(' ')));
  });
}

void MainWindow::tickOnePerGroup(const std::vector<std::uint32_t>& rows) {
  // Where a tick removes, one goes; where it keeps, the others of the group do.
  const bool keeps = keeperValueBy(preferences_);
  if (!(keeps ? delegate_.makeOnlyKeepers(rows) : delegate_.setTicks(rows, true))) tellTicksStay();
}

ReviewTableView& MainWindow::commandTable() const {
  if (contextMenuTable_) return *contextMenuTable_;
  return selection_->isActiveWindow() ? *lower_ : *table_;
}

std::vector<std::uint32_t> MainWindow::commandRows() const {
  const ReviewTableView& table = commandTable();
  std::vector<std::uint32_t> rows = table.selectedRows();
  if (&table != table_)
    for (std::uint32_t& row : rows) row = delegate_.upperRowOf(row);
  return rows;
}

void MainWindow::withCommandRow(const std::function<void(std::uint32_t)>& command) {
  const ReviewTableView& table = commandTable();
  const auto row = table.commandRow();
  if (!row) return;
  const std::uint32_t content = table.rows().contentRow(*row);
  command(&table == table_ ? content : delegate_.upperRowOf(content));
}

void MainWindow::showGroupMenu(const QPoint& at) {
  const int heading = table_->currentIndex().row();
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const bool folded = rows_->isFolded(heading);
  connect(menu->addAction(folded ? tr("&Unfold") : tr("&Fold")), &QAction::triggered, this,
          [this, heading, folded] { rows_->setFolded(heading, !folded); });
  menu->addSeparator();
  menu->addActions({actions_.notDuplicates, actions_.compareSoundHere});
  QAction* trash = menu->addAction(tr("Move the Copies That Are Not Kept to the &Trash…"));
  trash->setEnabled(actions_.trashTracks->isEnabled());
  connect(trash, &QAction::triggered, actions_.trashTracks, &QAction::trigger);
  menu->addSeparator();
  menu->addAction(actions_.nextUndecided);
  menu->popup(at);
}

void MainWindow::showContextMenu(ReviewTableView& table, const QPoint& at) {
  if (&table == table_ && table_->isAtHeading()) return showGroupMenu(at);
  contextMenuTable_ = &table;
  // The menu closes before its command is carried out.
  connect(
      tableMenu_, &QMenu::aboutToHide, this,
      [this] {
        QMetaObject::invokeMethod(
            this, [this] { contextMenuTable_ = nullptr; }, Qt::QueuedConnection);
      },
      Qt::SingleShotConnection);
  tableMenu_->popup(at);
}

void MainWindow::showSelection() {
  const std::vector<std::uint32_t> rows = table_->selectedRows();
  delegate_.showSelection(rows);
  reload();
  selection_->show();
  selection_->raise();
  selection_->activateWindow();
  // The user goes on with the same track there.
  lower_->setFocus();
  if (const auto current = table_->commandRow()) {
    const auto found = std::find(rows.begin(), rows.end(), rows_->contentRow(*current));
    lower_->selectInMiddle(
        lowerRows_->rowOfContent(static_cast<std::uint32_t>(found - rows.begin())));
  }
}

void MainWindow::copyTracks(bool paths) {
  QStringList lines;
  for (const std::uint32_t row : commandRows()) {
    const TrackRecord& record = *delegate_.content()[row].record;
    if (paths) {
      const std::string path = record.location();
      if (!path.empty()) lines << pathToQt(path);
      continue;
    }
    QStringList fields;
    for (const TrackKey key : {TrackKey::tName, TrackKey::tArtist, TrackKey::tAlbum})
      fields << toQt(record.value(key).text());
    lines << fields.join(QLatin1Char('\t'));
  }
  if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void MainWindow::sortTable(std::string_view column) {
  delegate_.whenIdle([this, column = std::string(column)] {
    ArrayController<ResultTrack>& rows = rows_->controller();
    const TableSort sort = clickedSort(maxDel_, rows, column);
    if (sort.empty()) return;
    constexpr std::size_t many = 20000;
    if (rows.size() < many) return rows.setSortOrder(sortKeys(sort));
    const auto order = std::make_shared<std::vector<std::uint32_t>>();
    delegate_.run([content = rows.content(), sort, order] { *order = arrangement(content, sort); },
                  [&rows, sort, order] {
                    if (order->size() == rows.size())
                      rows.setSortOrder(sortKeys(sort), std::move(*order));
                  });
  });
}

ActionScope MainWindow::scopeOf(const std::vector<std::uint32_t>& selectedRows,
                                bool takeSelected) const {
  const auto ordered = [](std::vector<std::int32_t> groups) {
    std::sort(groups.begin(), groups.end());
    groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
    return groups;
  };
  std::vector<std::int32_t> selected;
  for (const std::uint32_t row : selectedRows)
    selected.push_back(delegate_.content()[row].tGroupID);
  ActionScope scope{{}, ordered(std::move(selected)), takeSelected};
  rows_->finishFiltering();
  if (rows_->isFiltered()) scope.shown.emplace(ordered(rows_->shownGroups()));
  return scope;
}

void MainWindow::addToPlaylist() {
  const std::vector<std::uint32_t> rows = commandRows();
  if (rows.empty()) return;
  auto* dialog = new QDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(tr("Add to Playlist"));
  auto* scope = new ScopeBox(delegate_, scopeOf(rows, true));
  delegate_.fillTargetMenu();
  Process& process = delegate_.process();
  auto& menu = process.state<PlaylistWindowReferences>().selectionToHookPlaylistPopup;
  auto* popup = new PlaylistPopupBox(menu, process.with.log);
  popup->setMinimumContentsLength(30);
  auto* label = new QLabel;
  label->setBuddy(popup);
  const auto count = [this, label, scope] {
    const auto tracks = static_cast<int>(delegate_.tracksOf(scope->rows()).size());
    label->setText(tr("&Add the tracks of these groups (%n) to the end of", "", tracks));
  };
  count();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  QPushButton* add = buttons->addButton(tr("Add"), QDialogButtonBox::AcceptRole);
  add->setDefault(true);
  add->setEnabled(menu.selectedIndex().has_value());
  auto* layout = new QVBoxLayout(dialog);
  for (QWidget* part : QList<QWidget*>{scope, label, popup, buttons}) layout->addWidget(part);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  connect(scope, &ScopeBox::changed, dialog, count);
  connect(popup, &PlaylistPopupBox::playlistChosen, this,
          [this] { delegate_.targetPlaylistChosen(); });
  connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  connect(dialog, &QDialog::accepted, this, [this, scope] {
    delegate_.addToTargetPlaylist(scope->rows(), [this](std::size_t tracks) {
      say(tr("Tracks added: %n.", "", static_cast<int>(tracks)));
    });
  });
  dialog->open();
}

void MainWindow::replaylistSelection() {
  // What the Selection window lists, where that is what the user works in; else what is selected
  // here.
  std::vector<std::uint32_t> rows = table_->selectedRows();
  if (selection_->isVisible() && lowerRows_->rowCount() > 0) {
    rows.clear();
    for (int row = 0; row < lowerRows_->rowCount(); ++row)
      rows.push_back(delegate_.upperRowOf(lowerRows_->contentRow(row)));
  }
  if (rows.empty()) return say(tr("Select the tracks to be replaced in playlists."));
  commands_.replaylist(scopeOf(rows, true));
}

void MainWindow::exportTable() {
  std::vector<const TableColumn*> columns;
  const QHeaderView* header = table_->horizontalHeader();
  for (int visual = 0; visual < header->count(); ++visual) {
    const int column = header->logicalIndex(visual);
    const TableColumn& shown = tableColumns()[static_cast<std::size_t>(column)];
    if (!header->isSectionHidden(column) && shown.content != ColumnContent::checkBox)
      columns.push_back(&shown);
  }
  newExportDialog(delegate_, scopeOf(table_->selectedRows()), std::move(columns), this)->open();
}

bool MainWindow::showNextGroup(const std::function<bool(std::int32_t)>& isWanted) {
  const std::vector<std::int32_t> shown = rows_->shownGroups();
  const auto current = table_->commandRow();
  const auto at =
      current ? std::find(shown.begin(), shown.end(), rows_->groupAt(*current)) : shown.end();
  const auto first = static_cast<std::size_t>(at == shown.end() ? 0 : at - shown.begin() + 1);
  // Round the table once; the group at hand is left.
  for (std::size_t step = 0; step < shown.size(); ++step) {
    const std::int32_t group = shown[(first + step) % shown.size()];
    if (at != shown.end() && group == *at) continue;
    if (!isWanted(group)) continue;
    for (const std::uint32_t member : delegate_.groups().members(group))
      if (const int row = rows_->rowOfContent(member); row >= 0) {
        table_->selectInMiddle(row);
        activateWindow();
        table_->setFocus();
        return true;
      }
  }
  return false;
}

void MainWindow::showNextUndecidedGroup() {
  const ResultGroups& groups = delegate_.groups();
  if (groups.summary().withoutKeeper == 0) return say(tr("Every group has a keeper."));
  const auto isUndecided = [&](std::int32_t group) {
    const auto members = groups.members(group);
    return std::none_of(members.begin(), members.end(),
                        [&](std::uint32_t member) { return groups.isKeeper(member); });
  };
  if (!showNextGroup(isUndecided))
    say(tr("There is no other group without a keeper in the table."));
}

void MainWindow::reviewNextGroup() {
  if (delegate_.summary().withoutKeeper > 0) return showNextUndecidedGroup();
  const auto isDoubtful = [known = delegate_.knowledgeInHand()](std::int32_t group) {
    return known && !known->doubtsOf(group).empty();
  };
  if (!showNextGroup(isDoubtful)) table_->setFocus();
}

}  // namespace kestrel
