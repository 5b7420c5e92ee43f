// What the main window shows of the controller's state: its page, its commands, its counts.

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <utility>

#include "app/choices/left_side.h"
#include "app/choices/playlists_pane.h"
#include "app/controller/app_delegate.h"
#include "app/libraries/reading_page.h"
#include "app/libraries/welcome_page.h"
#include "app/main_window.h"
#include "app/parts/library_title.h"
#include "app/result/compare_pane.h"
#include "app/result/empty_page.h"
#include "app/result/filter_field.h"
#include "app/result/result_area.h"
#include "app/top_bar.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {

void MainWindow::reload() {
  const bool idle = !delegate_.isBusy();
  const bool library = delegate_.application() != nullptr;
  const bool result = delegate_.situation() == Situation::result;
  const Capabilities can = library ? delegate_.application()->capabilities() : Capabilities{};
  const Actions& a = actions_;
  const auto enable = [](std::initializer_list<QAction*> actions, bool enabled) {
    for (QAction* action : actions) action->setEnabled(enabled);
  };
  enable({a.open, a.openFolder, a.connectToServer, a.demo}, idle);
  enable({a.notes}, !delegate_.notes().empty());
  notesButton_->setVisible(!delegate_.notes().empty());
  notesButton_->setText(toQt(Message::tr("%Ln notes on this library", "%Ln note on this library",
                                         static_cast<std::int64_t>(delegate_.notes().size()))));
  enable({a.refresh, a.refreshPlaylists, a.cleanUp, a.history}, idle && library);
  enable({a.addFiles}, idle && library && can.addsFiles);
  enable({a.find}, idle && delegate_.canSearch());
  const Activity activity = delegate_.activity();
  enable({a.stop}, activity == Activity::search || activity == Activity::opening ||
                       activity == Activity::listening || activity == Activity::keeperPass);
  enable(
      {a.replaylist, a.replaylistSelection, a.trash, a.trashTracks, a.exportTable, a.compareRules,
       a.compareSounds, a.compareSoundHere, a.makeKeeper, a.nextUndecided, a.notDuplicates},
      idle && result);
  enable({a.addToPlaylist}, idle && result && library && can.changesPlaylists &&
                                !delegate_.playlists().userPlaylistNames().empty());
  enable({a.remove}, idle && result && (can.deletesTracks || can.tracksFollowFiles));
  enable({a.reveal, showInMenu_->menuAction()}, idle && result && library && can.reveals);
  enable({a.selectAll, a.showSelection, a.copy, a.copyPath, a.filter, a.play}, result);
  filter_->setEnabled(result);
  topBar_->playlists().setEnabled(library);
  playlists_->outline().setEnabled(library);

  const bool hadResult = pages_->currentWidget() == result_;
  reloadPage();
  if (!hadResult && pages_->currentWidget() == result_) table_->setFocus();
  topBar_->reload();
  const QString path = pathToQt(delegate_.libraryPath());
  setWindowFilePath(path);
  setWindowTitle(path.isEmpty()
                     ? QStringLiteral("Kestrel")
                     : libraryTitle(delegate_.libraryPath(), delegate_.process().with.files).name +
                           QStringLiteral(" — Kestrel"));
  if (result && idle) {
    restoreSort();
    restoreCurrent();
    info_->reload();
  }
}

void MainWindow::reloadPage() {
  const bool reading =
      delegate_.process().textSorter.window.mainLaunchProgressWindow.isOpen() && delegate_.isBusy();
  if (!reading)
    readingDelay_.stop();
  else if (pages_->currentWidget() != reading_ && !readingDelay_.isActive() && !readingDue_)
    readingDelay_.start();
  readingDue_ = reading && !readingDelay_.isActive();
  const bool result = delegate_.situation() == Situation::result;
  const bool hidesAll = result && rows_->isFiltered() && rows_->rowCount() == 0;
  QWidget* page = empty_;
  if (readingDue_)
    page = reading_;
  else if (delegate_.situation() == Situation::noLibrary)
    page = welcome_;
  else if (result && !hidesAll)
    page = result_;
  for (QWidget* part : QList<QWidget*>{left_, finish_})
    part->setVisible(delegate_.application() != nullptr);
  // The page that is left must not pull the keys along.
  if (page == empty_) empty_->reload(hidesAll ? filter_->text() : QString());
  pages_->setCurrentWidget(page);
  if (page == welcome_) welcome_->reload();
}

void MainWindow::restoreSort() {
  // Only what an earlier run has left, of the same library; a search of this one shows its groups
  // together.
  // Until it is searched again the rows stand as they stood.
  if (!keptColumn_.empty() && !rows_->isGrouped()) return;
  if (const std::string column = std::exchange(keptColumn_, {}); !column.empty()) {
    sortTable(column);
    if (!keptAscending_) sortTable(column);
    return;
  }
  if (std::exchange(sortRestored_, true)) return;
  const auto& recent = delegate_.recentLibraries();
  if (recent.empty() || recent.front() != sortedLibrary_) return;
  const std::string column = preferences_.text(settings::sortColumn);
  if (column.empty() || column == "dupeSort" || !tableColumn(column)) return;
  sortTable(column);
}

void MainWindow::reloadSummary() {
  StatusLabel& label = delegate_.process().state<PlaylistWindowReferences>().mainFilterStatus;
  const ResultSummary& summary = delegate_.summary();
  if (summary.tracks == 0) {
    label.setText({});
    return;
  }
  QStringList parts;
  QString found = toQt(Message::tr("%Ln tracks in %1", "%Ln track in %1", countOf(summary.tracks))
                           .arg(Message::tr("%Ln groups", "%Ln group", countOf(summary.groups))));
  if (delegate_.searchedPart())
    found = tr("Only in “%1”: ").arg(toQt(delegate_.searchedPlaylistName())) + found;
  QString others = toQt(Message::tr("%Ln copies that are not kept", "%Ln copy that is not kept",
                                    countOf(summary.toActOn)));
  // Tracks without a file of their own, as those in the cloud are, free nothing.
  if (summary.bytes > 0) others += QStringLiteral(", ") + sizeText(summary.bytes);
  parts << found << others;
  if (summary.withoutKeeper)
    parts << toQt(Message::tr("%Ln groups without keeper", "%Ln group without keeper",
                              countOf(summary.withoutKeeper)));
  if (summary.manyKeepers)
    parts << toQt(Message::tr("%Ln groups with several kept", "%Ln group with several kept",
                              countOf(summary.manyKeepers)));
  const QString text = parts.join(QStringLiteral(" · "));
  label.setText(Message::verbatim(fromQt(text)));
}

void MainWindow::reloadFilterCount() {
  const auto all = rows_->controller().size();
  const std::size_t shown = rows_->shownTracks();
  if (all == 0)
    filter_->showCount({});
  else if (rows_->isFiltered())
    filter_->showCount(tr("%1 of %2").arg(numberText(shown), numberText(all)));
  else
    filter_->showCount(
        toQt(Message::tr("%Ln tracks", "%Ln track", static_cast<std::int64_t>(all))));
  if (pages_) reloadPage();
}

}  // namespace kestrel
