// The main window's commands about tracks: those that are selected in one of the two tables.

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <algorithm>
#include <set>
#include <unordered_set>

#include "app/app_delegate.h"
#include "app/main_window.h"
#include "app/selection_window.h"
#include "app/target_playlist_dialog.h"
#include "ui/process.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"

namespace kestrel {

ReviewTableView& MainWindow::commandTable() const {
  if (contextMenuTable_) return *contextMenuTable_;
  return selection_->isActiveWindow() ? selection_->table() : *table_;
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

void MainWindow::makeOnlyKeeper() {
  withCommandRow([this](std::uint32_t row) { delegate_.makeOnlyKeeper(row); });
}

void MainWindow::showSelection() {
  const std::vector<std::uint32_t> rows = table_->selectedRows();
  delegate_.showSelection(rows);
  reload();
  selection_->show();
  selection_->raise();
  selection_->activateWindow();
  // The user goes on with the same track there.
  ReviewTableView& lower = selection_->table();
  lower.setFocus();
  if (const auto current = table_->commandRow()) {
    const auto found = std::find(rows.begin(), rows.end(), rows_->contentRow(*current));
    lower.selectInMiddle(
        lower.rows().rowOfContent(static_cast<std::uint32_t>(found - rows.begin())));
  }
}

void MainWindow::copyTracks(bool paths) {
  const auto content = delegate_.process().textSorter.window.bigArrayController.content();
  QStringList lines;
  for (const std::uint32_t row : commandRows()) {
    const TrackRecord& record = *content[row].record;
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

ActionScope MainWindow::scopeOf(const std::vector<std::uint32_t>& selectedRows) const {
  const auto content = rows_->controller().content();
  std::set<std::int32_t> selected, shown;
  for (const std::uint32_t row : selectedRows) selected.insert(content[row].tGroupID);
  ActionScope scope{{}, {selected.begin(), selected.end()}};
  rows_->finishFiltering();
  if (!rows_->isFiltered()) return scope;
  for (int row = 0; row < rows_->rowCount(); ++row) shown.insert(rows_->track(row).tGroupID);
  scope.shown.emplace(shown.begin(), shown.end());
  return scope;
}

ActionScope MainWindow::selectionScope(const std::vector<std::uint32_t>& selectedRows) const {
  ActionScope scope = scopeOf(selectedRows);
  scope.takeSelected = true;
  return scope;
}

void MainWindow::addToPlaylist() {
  const std::vector<std::uint32_t> rows = commandRows();
  if (rows.empty()) return;
  auto* dialog = new TargetPlaylistDialog(this, delegate_, selectionScope(rows));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog] {
    delegate_.addToTargetPlaylist(dialog->rows(), [this](std::size_t count) {
      say(tr("Tracks added: %n.", "", static_cast<int>(count)));
    });
  });
  dialog->open();
}

void MainWindow::trashTracks() {
  if (const auto rows = commandRows(); !rows.empty()) commands_.trash(selectionScope(rows));
}

void MainWindow::replaylistSelection() {
  // What the Selection window lists, where that is what the user works in; else what is selected
  // here.
  std::vector<std::uint32_t> rows = table_->selectedRows();
  if (const ResultTableModel& listed = selection_->table().rows();
      selection_->isVisible() && listed.rowCount() > 0) {
    rows.clear();
    for (int row = 0; row < listed.rowCount(); ++row)
      rows.push_back(delegate_.upperRowOf(listed.contentRow(row)));
  }
  if (rows.empty()) return say(tr("Select the tracks to be replaced in playlists."));
  commands_.replaylist(selectionScope(rows));
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
