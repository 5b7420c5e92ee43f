#include "app/cleanup_window.h"

#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <unordered_set>
#include <utility>

#include "app/app_delegate.h"
#include "app/history_changes.h"
#include "app/history_entries.h"
#include "app/history_run_page.h"
#include "app/history_task.h"
#include "app/playlist_window_parts.h"
#include "changes/report.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/observe.h"
#include "ui/qt/outline_view.h"
#include "ui/qt/text.h"
#include "ui/snapshot.h"

namespace kestrel {

CleanUpWindow::CleanUpWindow(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent), delegate_(delegate), window_(RemDupesController::state().window) {
  setWindowTitle(tr("Clean Up Playlists"));
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  resize(960, 640);
  window_.remdupesProgressStatus.setText({});
  enableControls();
  pages_ = new QStackedWidget;
  pages_->addWidget(makeScanPage());
  auto* column = new QVBoxLayout(this);
  column->addWidget(pages_);
  connectModels();
  window_.remdupesWindow.setVisible(true);
  startScan();
}

CleanUpWindow::~CleanUpWindow() { window_.remdupesWindow.setVisible(false); }

QWidget* CleanUpWindow::makeScanPage() {
  QLabel* header = newPlainLabel(tr("About this window"));
  header->setText(
      tr("These playlists list a track more than once. The first entry of each track "
         "stays, the later ones are deleted from the playlists that are checked; no "
         "track leaves the library."));
  outline_ = new OutlineView({tr("Playlist"), tr("Entries"), tr("To Be Deleted")});
  outline_->setAccessibleName(tr("Playlists that list a track more than once"));
  detailTitle_ = newPlainLabel(tr("Selected playlist"));
  entries_ = new EntryModel({tr("At"), tr("Entry to Be Deleted"), {}, tr("Because")});
  auto* details = new QWidget;
  auto* detailColumn = new QVBoxLayout(details);
  detailColumn->setContentsMargins(0, 0, 0, 0);
  detailColumn->addWidget(detailTitle_);
  detailColumn->addWidget(newEntryTable(entries_, tr("Entries to be deleted")), 1);
  auto* sides = new QSplitter;
  sides->setChildrenCollapsible(false);
  sides->addWidget(outline_);
  sides->addWidget(details);
  sides->setStretchFactor(0, 2);
  sides->setStretchFactor(1, 3);

  notes_ = newPlainLabel(tr("What is left out"));
  notesArea_ = newNotesArea(notes_);
  chosen_ = newPlainLabel(tr("What is chosen"));
  auto* status = new QLabel;
  status->setAccessibleName(tr("State of the scan"));
  bind(status, window_.remdupesProgressStatus);
  reveal_ = new QPushButton(tr("Re&veal"));
  reveal_->setToolTip(tr("Show the playlist in the music application"));
  cancel_ = new QPushButton(tr("&Cancel"));
  ok_ = new QPushButton(tr("&OK"));
  connect(reveal_, &QPushButton::clicked, this, &CleanUpWindow::reveal);
  connect(outline_, &QTreeWidget::itemDoubleClicked, this, &CleanUpWindow::reveal);
  connect(cancel_, &QPushButton::clicked, this, &CleanUpWindow::reject);
  connect(ok_, &QPushButton::clicked, this, &CleanUpWindow::confirm);

  return newDecisionPage(
      {header, sides, notesArea_}, sides,
      {reveal_, &window_.remdupesProgressSpinner, status, chosen_, cancel_, ok_});
}

void CleanUpWindow::connectModels() {
  outline_->show<RemDupesRecord>(
      window_.remdupesTreeController, [this](const RemDupesRecord& record) {
        OutlineView::Row row;
        row.icon = record.isFolder() ? QStringLiteral("f") : QStringLiteral("u");
        row.name = toQt(record.playlist().name);
        row.isFolder = record.isFolder();
        if (row.isFolder) return row;
        row.numbers << locale().toString(qulonglong(record.playlist().items.size()))
                    << locale().toString(qulonglong(record.deleteIndexes().size()));
        row.checkable = row.checked = plannedOf(record.playlist().persistentID) != nullptr;
        return row;
      });
  connect(outline_, &OutlineView::checksChanged, this, &CleanUpWindow::checksChanged);
  connect(outline_, &OutlineView::highlightChanged, this, &CleanUpWindow::highlightChanged);
  observe(this, window_.remdupesOkButton.observers, [this] { checksChanged(); });
  observe(this, window_.remdupesCancelButton.observers,
          [this] { cancel_->setEnabled(window_.remdupesCancelButton.isEnabled()); });
}

void CleanUpWindow::startScan() {
  plan_ = {};
  planned_.clear();
  scanned_ = false;
  // A scan that finds nothing leaves the outline of the one before, which must not be acted on.
  window_.remdupesTreeController.setContent(nullptr);
  showNotes();
  checksChanged();
  highlightChanged();
  delegate_.whenIdle([this, owner = QPointer<QWidget>(this)] {
    if (!owner) return;
    RemDupesController::beginRemDupes();
    runTask<Plan>(
        delegate_, this, tr("The playlists could not be looked through."),
        [&application = *delegate_.application()] {
          if (const auto failure = RemDupesController::state().failure)
            std::rethrow_exception(failure);
          // To the scan a library that cannot be read has no playlists; here it is said why.
          application.library().reload();
          return changesOf(application).cleanUpPlan(RemDupesController::state().lastScan);
        },
        [this](Plan plan) { showScan(std::move(plan)); }, [this] { reject(); });
  });
}

void CleanUpWindow::showScan(Plan plan) {
  plan_ = std::move(plan);
  scanned_ = true;
  tracks_ = TextSorter::groomedTracksDictionary();
  for (const PlannedPlaylist& planned : plan_.playlists)
    planned_.emplace(planned.playlist, &planned);
  showNotes();
  if (plan_.playlists.empty()) return checksChanged();
  outline_->describeAnew();
  highlightFirstPlaylist(outline_);
}

void CleanUpWindow::showNotes() {
  QStringList texts;
  for (const Warning& warning : warningsOf(plan_)) {
    if (!scanned_) break;
    texts << (warning.kind == Warning::Kind::nothingToDo
                  ? tr("No playlist that the outline shows lists a track more than once.")
                  : toQt(sentence(warning)));
  }
  showNotesIn(notesArea_, notes_, texts);
}

const PlannedPlaylist* CleanUpWindow::plannedOf(std::uint64_t playlist) const {
  const auto found = planned_.find(playlist);
  return found == planned_.end() ? nullptr : found->second;
}

void CleanUpWindow::checksChanged() {
  std::size_t playlists = 0;
  std::size_t entries = 0;
  for (const IndexPath& path : outline_->checkedPaths())
    if (const auto* node = window_.remdupesTreeController.node(path)) {
      ++playlists;
      entries += node->record->deleteIndexes().size();
    }
  ok_->setEnabled(window_.remdupesOkButton.isEnabled() && playlists > 0);
  chosen_->setText(planned_.empty() ? QString()
                                    : tr("%1 of %2 playlists chosen; entries to be deleted: %3")
                                          .arg(playlists)
                                          .arg(planned_.size())
                                          .arg(locale().toString(qulonglong(entries))));
}

void CleanUpWindow::highlightChanged() {
  window_.remdupesTreeController.setSelection(outline_->highlightedPaths());
  const auto records = window_.remdupesTreeController.selectedRecords();
  reveal_->setEnabled(records.size() == 1);
  const PlannedPlaylist* planned =
      records.size() == 1 ? plannedOf(records.front()->playlist().persistentID) : nullptr;
  if (!planned) {
    entries_->setRows({}, nullptr);
    detailTitle_->setText(tr("Select one playlist to see what is deleted from it."));
    return;
  }
  entries_->setRows(deletedRows(*planned, records.front()->playlist().items), tracks_);
  detailTitle_->setText(tr("“%1”: entries to be deleted: %2 of %3")
                            .arg(toQt(planned->name),
                                 locale().toString(qulonglong(planned->deleteIndexes.size())),
                                 locale().toString(qulonglong(planned->entryCount))));
}

void CleanUpWindow::reveal() {
  if (!delegate_.isBusy()) RemDupesController::doubleClickedAction();
}

void CleanUpWindow::confirm() {
  std::unordered_set<std::uint64_t> confirmed;
  for (const IndexPath& path : outline_->checkedPaths())
    if (const auto* node = window_.remdupesTreeController.node(path))
      confirmed.insert(node->record->playlist().persistentID);
  window_.remdupesTreeController.setEnabled(false);
  window_.remdupesOkButton.setEnabled(false);
  window_.remdupesCancelButton.setEnabled(false);
  runPage_ = new RunPage(delegate_, tr("Deleting repeated entries…"));
  pages_->addWidget(runPage_);
  pages_->setCurrentWidget(runPage_);
  connect(runPage_, &RunPage::closeRequested, this, &CleanUpWindow::reject);
  connect(runPage_, &RunPage::ended, this, &CleanUpWindow::enableControls);
  connect(runPage_, &RunPage::failed, this, [this] {
    // The library may have changed: look again before the user decides again.
    enableControls();
    std::exchange(runPage_, nullptr)->deleteLater();
    pages_->setCurrentIndex(0);
    startScan();
  });
  runPage_->apply(confirmedPlan(plan_, confirmed));
}

void CleanUpWindow::enableControls() {
  window_.remdupesTreeController.setEnabled(true);
  window_.remdupesOkButton.setEnabled(true);
  window_.remdupesCancelButton.setEnabled(true);
}

void CleanUpWindow::reject() {
  if (runPage_ && runPage_->isRunning()) return runPage_->stop();
  QDialog::reject();
}

}  // namespace kestrel
