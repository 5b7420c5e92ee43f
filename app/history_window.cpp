#include "app/history_window.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/app_delegate.h"
#include "app/history_entries.h"
#include "app/history_run_page.h"
#include "app/history_task.h"
#include "app/history_undo.h"
#include "app/playlist_window_parts.h"
#include "foundation/byte_count.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"
#include "ui/replaylist_control.h"
#include "ui/snapshot.h"

namespace kestrel {
namespace {

constexpr int numberRole = Qt::UserRole + 1;
constexpr std::size_t mostFiles = 5000;

QString dateText(Moment moment) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch();
  return toQt(ReplaylistControl::shortDates().text(seconds.count()));
}

QString whatText(const RunSummary& run) {
  switch (run.kind) {
    case RunKind::replaylist:
      return HistoryWindow::tr("Replaylist");
    case RunKind::cleanUp:
      return HistoryWindow::tr("Clean-up");
    case RunKind::trash:
      return HistoryWindow::tr("Move to trash");
    case RunKind::undo:
      return HistoryWindow::tr("Undo of run %1").arg(run.undoes.value_or(0));
    case RunKind::addToPlaylist:
      return HistoryWindow::tr("Add to playlist");
    case RunKind::addToLibrary:
      return HistoryWindow::tr("Add files");
    case RunKind::remove:
      return HistoryWindow::tr("Remove");
  }
  return {};
}

QString stateText(const RunSummary& run) {
  if (run.isUndone()) return HistoryWindow::tr("↶ Taken back");
  switch (run.state) {
    case RunState::running:
      return HistoryWindow::tr("… Running");
    case RunState::finished:
      return run.undone > 0 ? HistoryWindow::tr("✓ Done, partly taken back")
                            : HistoryWindow::tr("✓ Done");
    case RunState::cancelled:
      return HistoryWindow::tr("■ Stopped before its end");
    case RunState::failed:
      return HistoryWindow::tr("✗ Failed, nothing changed");
    case RunState::brokenOff:
      return HistoryWindow::tr("⚠ Broke off");
    case RunState::incomplete:
      return HistoryWindow::tr("⚠ Done in part");
  }
  return {};
}

QString stateText(const UndoItem& item) {
  switch (item.state) {
    case UndoState::ready:
      return HistoryWindow::tr("As the run left it");
    case UndoState::gone:
      return HistoryWindow::tr("Deleted since; undoing makes it anew");
    case UndoState::notDone:
      return HistoryWindow::tr("Not changed by the run");
    case UndoState::undone:
      return HistoryWindow::tr("Taken back");
    case UndoState::asBefore:
      return HistoryWindow::tr("As it was before the run");
    case UndoState::different:
      return HistoryWindow::tr("⚠ Changed since: %1").arg(toQt(item.difference));
  }
  return {};
}

bool canBeUndone(const UndoItem& item) {
  return item.state == UndoState::ready || item.state == UndoState::gone ||
         item.state == UndoState::different;
}

QTreeWidget* newList(const QStringList& headers, const QString& accessibleName) {
  auto* list = new QTreeWidget;
  list->setHeaderLabels(headers);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setAlternatingRowColors(true);
  list->setAllColumnsShowFocus(true);
  list->setAccessibleName(accessibleName);
  list->header()->setStretchLastSection(true);
  return list;
}

}  // namespace

HistoryWindow::HistoryWindow(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent), delegate_(delegate) {
  setWindowTitle(tr("History"));
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  resize(1080, 680);
  list_ = newList({tr("Run"), tr("When"), tr("What"), tr("State")}, tr("Runs, latest first"));
  connect(list_, &QTreeWidget::currentItemChanged, this, &HistoryWindow::loadRun);
  auto* sides = new QSplitter;
  sides->setChildrenCollapsible(false);
  sides->addWidget(list_);
  sides->addWidget(makeDetails());
  sides->setStretchFactor(0, 2);
  sides->setStretchFactor(1, 3);

  result_ = newPlainLabel(tr("What was taken back"));
  undoRun_ = new QPushButton(tr("&Undo Run"));
  undoPlaylist_ = new QPushButton(tr("Undo This &Playlist"));
  auto* close = new QPushButton(tr("&Close"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(undoRun_);
  buttons->addWidget(undoPlaylist_);
  buttons->addWidget(result_, 1);
  buttons->addWidget(close);
  for (QPushButton* button : {undoRun_, undoPlaylist_, close}) button->setAutoDefault(false);
  connect(undoRun_, &QPushButton::clicked, this, [this] { undo({}); });
  connect(undoPlaylist_, &QPushButton::clicked, this, [this] {
    if (const PlaylistChange* change = selectedPlaylist()) undo(change->oldPlaylist);
  });
  connect(close, &QPushButton::clicked, this, &HistoryWindow::reject);

  auto* column = new QVBoxLayout(this);
  column->addWidget(sides, 1);
  column->addLayout(buttons);
  load();
}

QWidget* HistoryWindow::makeDetails() {
  title_ = newPlainLabel(tr("Selected run"));
  title_->setText(tr("Reading the history…"));
  changes_ = newList({tr("Playlist or File"), tr("Today")}, tr("What the run changed"));
  changes_->setTextElideMode(Qt::ElideMiddle);
  entryTitle_ = newPlainLabel(tr("Selected playlist"));
  onlyChanges_ = new QCheckBox(tr("&Only what changed"));
  onlyChanges_->setChecked(true);
  entries_ = new EntryModel({tr("At"), tr("Before"), tr("After")});
  connect(changes_, &QTreeWidget::currentItemChanged, this, &HistoryWindow::showChange);
  connect(onlyChanges_, &QCheckBox::toggled, this, &HistoryWindow::showChange);

  auto* above = new QWidget;
  auto* aboveColumn = new QVBoxLayout(above);
  aboveColumn->setContentsMargins(0, 0, 0, 0);
  aboveColumn->addWidget(title_);
  aboveColumn->addWidget(changes_, 1);
  auto* entryRow = new QHBoxLayout;
  entryRow->addWidget(entryTitle_, 1);
  entryRow->addWidget(onlyChanges_);
  below_ = new QWidget;
  auto* belowColumn = new QVBoxLayout(below_);
  belowColumn->setContentsMargins(0, 0, 0, 0);
  belowColumn->addLayout(entryRow);
  belowColumn->addWidget(newEntryTable(entries_, tr("Entries before and after")), 1);
  auto* details = new QSplitter(Qt::Vertical);
  details->setChildrenCollapsible(false);
  details->addWidget(above);
  details->addWidget(below_);
  return details;
}

void HistoryWindow::load() {
  runTask<std::vector<RunSummary>>(
      delegate_, this, tr("The history cannot be shown."),
      [&application = *delegate_.application()] { return changesOf(application).runs(); },
      [this](std::vector<RunSummary> runs) { showRuns(std::move(runs)); }, [this] { reject(); });
}

void HistoryWindow::showRuns(std::vector<RunSummary> runs) {
  const auto selected = selectedRun();
  runs_ = std::move(runs);
  tracks_ = TextSorter::groomedTracksDictionary();
  shown_.reset();
  const QSignalBlocker blocker(list_);
  list_->clear();
  QTreeWidgetItem* current = nullptr;
  for (const RunSummary& run : runs_) {
    auto* item = new QTreeWidgetItem(
        {QString::number(run.id), dateText(run.started), whatText(run), stateText(run)});
    item->setData(0, numberRole, qlonglong(run.id));
    list_->addTopLevelItem(item);
    if (!current || run.id == selected) current = item;
  }
  for (int column = 0; column < 3; ++column) list_->resizeColumnToContents(column);
  list_->setCurrentItem(current);
  loadRun();
}

std::optional<std::int64_t> HistoryWindow::selectedRun() const {
  const QTreeWidgetItem* item = list_->currentItem();
  return item ? std::optional<std::int64_t>(item->data(0, numberRole).toLongLong()) : std::nullopt;
}

void HistoryWindow::loadRun() {
  shown_.reset();
  changes_->clear();
  wanted_ = selectedRun();
  if (!wanted_) title_->setText(tr("Nothing has been changed in this library yet."));
  showChange();
  if (!wanted_) return;
  runTask<InspectedRun>(
      delegate_, this, tr("The run cannot be shown."),
      [&application = *delegate_.application(), run = *wanted_] {
        return inspectedRun(run, application);
      },
      [this](InspectedRun run) {
        // The user may have gone on to another one meanwhile.
        if (run.record.summary.id == wanted_) showRun(std::move(run));
      });
}

void HistoryWindow::showRun(InspectedRun run) {
  shown_ = std::move(run);
  const RunSummary& summary = shown_->record.summary;
  QString title = tr("Run %1, %2: %3").arg(summary.id).arg(whatText(summary), stateText(summary));
  if (summary.state == RunState::brokenOff)
    title += QLatin1Char('\n') +
             tr("Kestrel ended in the middle of it. What it had done by then is found by looking "
                "at the library:");
  title_->setText(title);
  const QSignalBlocker blocker(changes_);
  QList<QTreeWidgetItem*> items;
  for (const UndoItem& item : shown_->check.playlists)
    items << new QTreeWidgetItem({toQt(item.name), stateText(item)});
  for (const UndoItem& item : shown_->check.files) {
    if (static_cast<std::size_t>(items.size()) >= shown_->check.playlists.size() + mostFiles) break;
    items << new QTreeWidgetItem({pathToQt(item.name), stateText(item)});
  }
  for (QTreeWidgetItem* item : items)
    for (int column = 0; column < 2; ++column) item->setToolTip(column, item->text(column));
  changes_->addTopLevelItems(items);
  changes_->header()->resizeSection(0, changes_->viewport()->width() * 3 / 5);
  if (!items.isEmpty()) changes_->setCurrentItem(items.front());
  showChange();
}

const PlaylistChange* HistoryWindow::selectedPlaylist() const {
  if (!shown_ || !changes_->currentItem()) return nullptr;
  const auto row = static_cast<std::size_t>(changes_->indexOfTopLevelItem(changes_->currentItem()));
  return row < shown_->record.playlists.size() ? &shown_->record.playlists[row] : nullptr;
}

void HistoryWindow::showChange() {
  updateButtons();
  const PlaylistChange* change = selectedPlaylist();
  below_->setVisible(change != nullptr);
  if (!change) {
    entryTitle_->clear();
    entries_->setRows({}, nullptr);
    return;
  }
  auto rows = comparedRows(change->oldEntries, change->newEntries);
  if (onlyChanges_->isChecked())
    std::erase_if(rows, [](const EntryRow& row) { return row.change == EntryRow::Change::none; });
  QString title =
      tr("“%1”: entries before: %2, after: %3")
          .arg(toQt(change->name), locale().toString(qulonglong(change->oldEntries.size())),
               locale().toString(qulonglong(change->newEntries.size())));
  if (change->lost)
    title = tr("“%1” was deleted with another playlist of its name").arg(toQt(change->name));
  if (!change->folderName.empty()) title += tr(", in “%1”").arg(toQt(change->folderName));
  if (!change->note.empty()) title += QStringLiteral(" (%1)").arg(translated(change->note));
  entryTitle_->setText(title);
  entries_->setRows(std::move(rows), tracks_);
}

void HistoryWindow::updateButtons() {
  const bool isUndo = shown_ && shown_->record.summary.kind == RunKind::undo;
  const auto any = [](const std::vector<UndoItem>& items) {
    return std::any_of(items.begin(), items.end(), canBeUndone);
  };
  const bool can = shown_ && !isUndo && !undoing_ &&
                   shown_->record.summary.state != RunState::running &&
                   (any(shown_->check.playlists) || any(shown_->check.files));
  undoRun_->setEnabled(can);
  const PlaylistChange* change = selectedPlaylist();
  const bool canOne = can && change &&
                      canBeUndone(shown_->check.playlists[static_cast<std::size_t>(
                          change - shown_->record.playlists.data())]);
  undoPlaylist_->setEnabled(canOne);
}

void HistoryWindow::undo(std::optional<std::uint64_t> playlist) {
  if (!shown_) return;
  undoing_ = true;
  updateButtons();
  UndoCallbacks callbacks;
  callbacks.begun = [this] { result_->setText(tr("Taking back…")); };
  callbacks.done = [this](const UndoReport& report) {
    undoing_ = false;
    const auto lines = report.messages();
    QStringList texts;
    for (std::size_t i = 0; i < std::min<std::size_t>(lines.size(), 4); ++i)
      texts << toQt(lines[i]);
    if (report.check.run.kind == RunKind::trash) texts << RunPage::searchAgainText();
    result_->setText(texts.join(QLatin1Char('\n')));
    load();
  };
  callbacks.notDone = [this] {
    undoing_ = false;
    result_->clear();
    load();
  };
  undoAsking(delegate_, this, shown_->record.summary.id, playlist, UndoQuestion::always,
             std::move(callbacks));
}

}  // namespace kestrel
