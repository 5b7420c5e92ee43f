#include "app/replaylist_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <unordered_set>
#include <utility>

#include "app/app_delegate.h"
#include "app/history_changes.h"
#include "app/history_entries.h"
#include "app/history_run_page.h"
#include "app/history_task.h"
#include "app/playlist_window_parts.h"
#include "app/replaylist_tracks_panel.h"
#include "app/scope_box.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/observe.h"
#include "ui/qt/outline_view.h"
#include "ui/qt/styled_label.h"
#include "ui/qt/text.h"
#include "ui/replaylist_control.h"
#include "ui/tracks_panel.h"

namespace kestrel {
ReplaylistWindow::ReplaylistWindow(AppDelegate& delegate, ActionScope scope, QWidget* parent)
    : QDialog(parent),
      delegate_(delegate),
      window_(ReplaylistControl::state().window),
      scope_(new ScopeBox(delegate, std::move(scope))) {
  setWindowTitle(tr("Replaylist"));
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  resize(1180, 760);
  // The models may show another survey.
  window_.header.setText(ReplaylistControl::configureMeTitle());
  window_.progressStatus.setText({});
  window_.tracksPanel.setVisible(false);
  window_.alert.dismiss();
  ReplaylistControl::processClear();
  enableControls();

  pages_ = new QStackedWidget;
  pages_->addWidget(makeSurveyPage());
  auto* column = new QVBoxLayout(this);
  column->addWidget(pages_);
  connectModels();
  window_.replaylistWindow.setVisible(true);
  startSurvey();
}

ReplaylistWindow::~ReplaylistWindow() {
  window_.replaylistWindow.setVisible(false);
  window_.tracksPanel.setVisible(false);
}

QWidget* ReplaylistWindow::makeOutlineSide() {
  outline_ = new OutlineView({tr("Playlist"), tr("Entries"), tr("To Be Replaced")});
  outline_->setAccessibleName(tr("Playlists that hold tracks that are not kept"));
  auto* side = new QWidget;
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(outline_, 1);
  auto* buttons = new QHBoxLayout;
  auto* all = new QPushButton(tr("Check &All"));
  auto* none = new QPushButton(tr("Check &None"));
  reveal_ = new QPushButton(tr("Re&veal"));
  reveal_->setToolTip(tr("Show the playlist in the music application"));
  for (QPushButton* button : {all, none, reveal_}) {
    button->setAutoDefault(false);
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  column->addLayout(buttons);
  connect(all, &QPushButton::clicked, outline_, [this] { outline_->setAllChecked(true); });
  connect(none, &QPushButton::clicked, outline_, [this] { outline_->setAllChecked(false); });
  connect(reveal_, &QPushButton::clicked, this, &ReplaylistWindow::reveal);
  connect(outline_, &QTreeWidget::itemDoubleClicked, this, &ReplaylistWindow::reveal);
  return side;
}

QWidget* ReplaylistWindow::makeDetailSide() {
  detailTitle_ = newPlainLabel(tr("Selected playlist"));
  entries_ = new EntryModel({tr("At"), tr("Now"), tr("Then"), tr("Because")},
                            [this](const EntryRow& row) { return reasonOf(row); });
  entryTable_ = newEntryTable(entries_, tr("Entries to be replaced"));
  auto* entries = new QWidget;
  auto* column = new QVBoxLayout(entries);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(detailTitle_);
  column->addWidget(entryTable_, 1);
  auto* side = new QSplitter(Qt::Vertical);
  side->setChildrenCollapsible(false);
  side->addWidget(entries);
  side->addWidget(newTracksPanel(delegate_, window_));
  return side;
}

QWidget* ReplaylistWindow::makeSurveyPage() {
  auto* header = new QLabel;
  header->setWordWrap(true);
  header->setAccessibleName(tr("About this window"));
  bind(header, window_.header, [] { return ReplaylistControl::configureMeTitle(inUsersWords); });

  auto* sides = new QSplitter;
  sides->setChildrenCollapsible(false);
  sides->addWidget(makeOutlineSide());
  sides->addWidget(makeDetailSide());
  sides->setStretchFactor(0, 1);
  sides->setStretchFactor(1, 3);
  sides->setSizes({400, 800});

  notes_ = newPlainLabel(tr("Warnings and what is left out"));
  notesArea_ = newNotesArea(notes_);
  chosen_ = newPlainLabel(tr("What is chosen"));
  auto* status = new QLabel;
  status->setAccessibleName(tr("State of the survey"));
  bind(status, window_.progressStatus);
  showTracks_ = new QPushButton(tr("Show &Tracks"));
  cancel_ = new QPushButton(tr("&Cancel"));
  ok_ = new QPushButton(tr("&OK"));
  connect(showTracks_, &QPushButton::clicked, this, &ReplaylistWindow::toggleTracks);
  connect(cancel_, &QPushButton::clicked, this, &ReplaylistWindow::reject);
  connect(ok_, &QPushButton::clicked, this, &ReplaylistWindow::confirm);

  return newDecisionPage({scope_, header, sides, notesArea_}, sides,
                         {showTracks_, &window_.progressSpinner, status, chosen_, cancel_, ok_});
}

void ReplaylistWindow::connectModels() {
  outline_->show<ReplaylistRecord>(window_.outline, [this](const ReplaylistRecord& record) {
    const PlannedPlaylist* planned = surveyed_.planned(record.playlist().persistentID);
    OutlineView::Row row;
    row.icon = record.isFolder() ? QStringLiteral("f") : QStringLiteral("u");
    row.name = toQt(record.playlist().name);
    row.isFolder = record.isFolder();
    if (row.isFolder) return row;
    row.numbers << locale().toString(qulonglong(record.playlist().items.size()))
                << locale().toString(qulonglong(planned ? planned->replacements.size() : 0));
    row.checkable = row.checked = planned != nullptr;
    if (planned) row.warning = warningOf(*planned);
    return row;
  });
  connect(scope_, &ScopeBox::changed, this, &ReplaylistWindow::startSurvey);
  connect(outline_, &OutlineView::checksChanged, this, &ReplaylistWindow::checksChanged);
  connect(outline_, &OutlineView::highlightChanged, this, &ReplaylistWindow::highlightChanged);
  observe(this, window_.okButton.observers, [this] { checksChanged(); });
  observe(this, window_.cancelButton.observers,
          [this] { cancel_->setEnabled(window_.cancelButton.isEnabled()); });
  observe(this, window_.tracksPanel.observers, [this] {
    showTracks_->setText(window_.tracksPanel.isVisible() ? tr("Hide &Tracks") : tr("Show &Tracks"));
  });
  observe(this, window_.alert.observers, [this] {
    if (!window_.alert.alert()) return;
    showAlert(this, *window_.alert.alert(), [this](int) {
      window_.alert.dismiss();
      reject();
    });
  });
}

void ReplaylistWindow::startSurvey() {
  surveyed_ = {};
  reasons_.clear();
  entries_->setRows({}, nullptr);
  // A survey that finds nothing leaves the outline of the one before, which must not be acted on.
  window_.outline.setContent(nullptr);
  showNotes();
  checksChanged();
  delegate_.whenIdle([this, owner = QPointer<QWidget>(this)] {
    if (!owner) return;
    const auto content = delegate_.process().textSorter.window.bigArrayController.content();
    std::vector<SurveyRow> rows;
    for (const std::uint32_t row : scope_->rows()) rows.emplace_back(content[row]);
    ReplaylistControl::beginReplaylist(std::move(rows));
    runTask<ReplaylistSurveyed>(
        delegate_, this, tr("The playlists could not be looked through."),
        [&application = *delegate_.application()] {
          if (const auto failure = ReplaylistControl::state().failure)
            std::rethrow_exception(failure);
          return ReplaylistSurveyed(application);
        },
        [this](ReplaylistSurveyed surveyed) { showSurvey(std::move(surveyed)); },
        [this] { reject(); });
  });
}

void ReplaylistWindow::showSurvey(ReplaylistSurveyed surveyed) {
  surveyed_ = std::move(surveyed);
  showNotes();
  if (surveyed_.outcome() == SurveyOutcome::found) {
    outline_->describeAnew();
    highlightFirstPlaylist(outline_);
  }
  checksChanged();
}

void ReplaylistWindow::showNotes() { showNotesIn(notesArea_, notes_, surveyed_.notes()); }

QString ReplaylistWindow::reasonOf(const EntryRow& row) {
  const auto tableRow = surveyed_.rowOf(row.before);
  if (!tableRow) return {};
  if (const auto known = reasons_.find(*tableRow); known != reasons_.end()) return known->second;
  const QString reason = toQt(delegate_.keptBecause(*tableRow));
  if (!reason.isEmpty()) reasons_.emplace(*tableRow, reason);
  return reason;
}

void ReplaylistWindow::checksChanged() {
  std::size_t playlists = 0;
  std::size_t entries = 0;
  for (const IndexPath& path : outline_->checkedPaths())
    if (const auto* node = window_.outline.node(path))
      if (const PlannedPlaylist* planned =
              surveyed_.planned(node->record->playlist().persistentID)) {
        ++playlists;
        entries += planned->replacements.size();
      }
  ok_->setEnabled(window_.okButton.isEnabled() && playlists > 0);
  chosen_->setText(surveyed_.outcome() == SurveyOutcome::found
                       ? tr("%1 of %2 playlists chosen; entries to be replaced: %3")
                             .arg(playlists)
                             .arg(surveyed_.plan().playlists.size())
                             .arg(locale().toString(qulonglong(entries)))
                       : QString());
}

void ReplaylistWindow::highlightChanged() {
  window_.outline.setSelection(outline_->highlightedPaths());
  const auto records = window_.outline.selectedRecords();
  reveal_->setEnabled(records.size() == 1);
  if (window_.tracksPanel.isVisible()) ReplaylistControl::processThis();
  const bool isSingle = records.size() == 1 && !records.front()->isFolder();
  const PlannedPlaylist* planned =
      isSingle ? surveyed_.planned(records.front()->playlist().persistentID) : nullptr;
  entries_->setRows(planned ? replacedRows(*planned) : std::vector<EntryRow>(), surveyed_.tracks());
  if (planned)
    detailTitle_->setText(tr("“%1”: entries to be replaced: %2 of %3")
                              .arg(toQt(planned->name),
                                   locale().toString(qulonglong(planned->replacements.size())),
                                   locale().toString(qulonglong(planned->entryCount))));
  else if (isSingle)
    detailTitle_->setText(tr("“%1”: none of its tracks that are not kept has a keeper to go in")
                              .arg(toQt(records.front()->playlist().name)));
  else
    detailTitle_->setText(tr("Select one playlist to see what changes in it."));
}

void ReplaylistWindow::toggleTracks() {
  ReplaylistControl::toggleTracksPanel();
  if (window_.tracksPanel.isVisible())
    ReplaylistControl::processThis();
  else
    ReplaylistControl::processClear();
}

void ReplaylistWindow::reveal() {
  if (!delegate_.isBusy()) ReplaylistControl::doubleClickedAction();
}

void ReplaylistWindow::confirm() {
  window_.outline.setSelection(outline_->checkedPaths());
  std::unordered_set<std::uint64_t> confirmed;
  for (const PlaylistReplacements& one : ReplaylistControl::clickedOK())
    confirmed.insert(one.record->playlist().persistentID);
  runPage_ = new RunPage(delegate_, tr("Putting keepers into the playlists…"));
  pages_->addWidget(runPage_);
  pages_->setCurrentWidget(runPage_);
  connect(runPage_, &RunPage::closeRequested, this, &ReplaylistWindow::reject);
  connect(runPage_, &RunPage::ended, this, [this] {
    window_.progressSpinner.stopAnimation();
    enableControls();
  });
  connect(runPage_, &RunPage::failed, this, [this] {
    // The library may have changed: look again before the user decides again.
    window_.progressSpinner.stopAnimation();
    enableControls();
    std::exchange(runPage_, nullptr)->deleteLater();
    pages_->setCurrentIndex(0);
    startSurvey();
  });
  runPage_->apply(confirmedPlan(surveyed_.plan(), confirmed));
}

void ReplaylistWindow::enableControls() {
  window_.outline.setEnabled(true);
  window_.okButton.setEnabled(true);
  window_.cancelButton.setEnabled(true);
}

void ReplaylistWindow::reject() {
  if (runPage_ && runPage_->isRunning()) return runPage_->stop();
  QDialog::reject();
}

}  // namespace kestrel
