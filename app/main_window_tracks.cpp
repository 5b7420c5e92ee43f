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
#include <set>
#include <unordered_set>

#include "app/controller/app_delegate.h"
#include "app/export_dialog.h"
#include "app/main_window.h"
#include "ui/process.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {

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

void MainWindow::showContextMenu(ReviewTableView& table, const QPoint& at) {
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

ActionScope MainWindow::scopeOf(const std::vector<std::uint32_t>& selectedRows,
                                bool takeSelected) const {
  std::set<std::int32_t> selected, shown;
  for (const std::uint32_t row : selectedRows) selected.insert(delegate_.content()[row].tGroupID);
  ActionScope scope{{}, {selected.begin(), selected.end()}, takeSelected};
  rows_->finishFiltering();
  if (!rows_->isFiltered()) return scope;
  for (int row = 0; row < rows_->rowCount(); ++row) shown.insert(rows_->track(row).tGroupID);
  scope.shown.emplace(shown.begin(), shown.end());
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

void MainWindow::showNextUndecidedGroup() {
  const ResultGroups& groups = delegate_.groups();
  if (groups.summary().withoutKeeper == 0) return say(tr("Every group has a keeper."));
  const int count = rows_->rowCount();
  const int current = table_->commandRow().value_or(-1);
  std::unordered_set<std::int32_t> seen;
  if (current >= 0) seen.insert(rows_->track(current).tGroupID);
  // Round the table once; the group at hand comes last.
  for (int step = 1; step <= count; ++step) {
    const int row = (current + step) % count;
    const std::int32_t group = rows_->track(row).tGroupID;
    if (!seen.insert(group).second) continue;
    const auto members = groups.members(group);
    if (std::none_of(members.begin(), members.end(),
                     [&](std::uint32_t member) { return groups.isKeeper(member); })) {
      table_->selectInMiddle(row);
      activateWindow();
      table_->setFocus();
      return;
    }
  }
  say(tr("There is no other group without a keeper in the table."));
}

}  // namespace kestrel
