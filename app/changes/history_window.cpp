// The history of a library: its runs, what each changed and how that stands today, and the buttons
// that take a run or one playlist of it back.

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/changes/entry_table.h"
#include "app/changes/playlist_windows.h"
#include "app/changes/undo_run.h"
#include "app/controller/result_changes.h"
#include "app/parts/window_task.h"
#include "ui/launch.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"
#include "ui/replaylist_control.h"

namespace kestrel {
namespace {

constexpr int numberRole = Qt::UserRole + 1;
constexpr std::size_t mostFilesOfRun = 5000;

QString dateText(Moment moment) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch();
  return toQt(shortDates().text(seconds.count()));
}

class HistoryWindow final : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(kestrel::HistoryWindow)

 public:
  HistoryWindow(AppDelegate& delegate, QWidget* parent) : QDialog(parent), delegate_(delegate) {
    setWindowTitle(tr("History"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    resizeWithinScreen(this, {1080, 680});
    list_ = newList({tr("Run"), tr("When"), tr("What"), tr("State")}, tr("Runs, latest first"));
    list_->setAllColumnsShowFocus(true);
    connect(list_, &QTreeWidget::currentItemChanged, this, &HistoryWindow::loadRun);
    QSplitter* sides = newSplitter(Qt::Horizontal, {list_, newDetails()});
    sides->setStretchFactor(0, 2);
    sides->setStretchFactor(1, 3);
    sides->setSizes({420, 660});

    result_ = newPlainLabel(tr("What was undone"));
    undoRun_ = newButton(tr("&Undo"), [this] { undo({}); });
    undoPlaylist_ = newButton(tr("Undo Only This &Playlist"), [this] {
      if (const PlaylistChange* change = selectedPlaylist()) undo(change->oldPlaylist);
    });
    auto* close = newButton(tr("&Close"), [this] { reject(); });
    auto* column = new QVBoxLayout(this);
    column->addWidget(sides, 1);
    column->addWidget(newRow({undoRun_, undoPlaylist_, result_, close}, result_));
    load();
  }

 private:
  /// Runs are counted for each library; the history's own numbers are of all of them.
  QString numberOf(std::int64_t run) const {
    const auto found = std::find_if(runs_.begin(), runs_.end(),
                                    [&](const RunSummary& one) { return one.id == run; });
    return numberText(static_cast<std::size_t>(runs_.end() - found));
  }

  QString whatText(const RunSummary& run) const {
    switch (run.kind) {
      case RunKind::replaylist:
        return tr("Repair playlists");
      case RunKind::cleanUp:
        return tr("Clean up playlists");
      case RunKind::trash:
        return run.playlists > 0 ? tr("Move to trash, repair playlists") : tr("Move to trash");
      case RunKind::undo:
        return tr("Undo of run %1").arg(numberOf(run.undoes.value_or(0)));
      case RunKind::addToPlaylist:
        return tr("Add to playlist");
      case RunKind::addToLibrary:
        return tr("Add files");
      case RunKind::remove:
        return tr("Remove copies");
    }
    return {};
  }

  static QString stateText(const RunSummary& run) {
    if (run.isUndone()) return tr("↶ Undone");
    switch (run.state) {
      case RunState::running:
        return tr("… Running");
      case RunState::finished:
        return run.undone > 0 ? tr("✓ Done, partly undone") : tr("✓ Done");
      case RunState::cancelled:
        return tr("■ Stopped before its end");
      case RunState::failed:
        return tr("✗ Failed, nothing changed");
      case RunState::brokenOff:
        return tr("⚠ Broke off");
      case RunState::incomplete:
        return tr("⚠ Done in part");
    }
    return {};
  }

  static QString stateText(const UndoItem& item) {
    switch (item.state) {
      case UndoState::ready:
        return tr("As the run left it");
      case UndoState::gone:
        return tr("Deleted since; undoing makes it anew");
      case UndoState::notDone:
        return tr("Not changed by the run");
      case UndoState::undone:
        return tr("Undone");
      case UndoState::asBefore:
        return tr("As it was before the run");
      case UndoState::different:
        return tr("⚠ Changed since: %1").arg(toQt(item.difference));
    }
    return {};
  }

  QWidget* newDetails() {
    title_ = newPlainLabel(tr("Selected run"), tr("Reading the history…"));
    changes_ = newList({tr("Playlist, Track or File"), tr("Today")}, tr("What the run changed"));
    changes_->setAllColumnsShowFocus(true);
    changes_->setTextElideMode(Qt::ElideMiddle);  // the names of files are at the ends of paths
    entryTitle_ = newPlainLabel(tr("Selected playlist"));
    onlyChanges_ = new QCheckBox(tr("&Only what changed"));
    onlyChanges_->setChecked(true);
    entries_ = new EntryModel({tr("At"), tr("Before"), tr("After")});
    QTableView* table = newEntryTable(entries_, tr("Entries before and after"));
    connect(changes_, &QTreeWidget::currentItemChanged, this, &HistoryWindow::showChange);
    connect(onlyChanges_, &QCheckBox::toggled, this, &HistoryWindow::showChange);
    below_ = newColumn({newRow({entryTitle_, onlyChanges_}, entryTitle_), table}, table);
    return newSplitter(Qt::Vertical, {newColumn({title_, changes_}, changes_), below_});
  }

  void load() {
    runTask<std::vector<RunSummary>>(
        delegate_, this, tr("The history cannot be shown."),
        [&application = *delegate_.application()] { return changesOf(application).runs(); },
        [this](std::vector<RunSummary> runs) { showRuns(std::move(runs)); }, [this] { reject(); });
  }

  void showRuns(std::vector<RunSummary> runs) {
    const auto selected = selectedRun();
    runs_ = std::move(runs);
    tracks_ = TextSorter::groomedTracksDictionary();
    shown_.reset();
    const QSignalBlocker blocker(list_);
    list_->clear();
    QTreeWidgetItem* current = nullptr;
    for (const RunSummary& run : runs_) {
      auto* item = new QTreeWidgetItem(
          {numberOf(run.id), dateText(run.started), whatText(run), stateText(run)});
      item->setData(0, numberRole, qlonglong(run.id));
      list_->addTopLevelItem(item);
      if (!current || run.id == selected) current = item;
    }
    for (int column = 0; column < 3; ++column) list_->resizeColumnToContents(column);
    list_->setCurrentItem(current);
    loadRun();
  }

  std::optional<std::int64_t> selectedRun() const {
    const QTreeWidgetItem* item = list_->currentItem();
    return item ? std::optional<std::int64_t>(item->data(0, numberRole).toLongLong())
                : std::nullopt;
  }

  void loadRun() {
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

  void showRun(InspectedRun run) {
    shown_ = std::move(run);
    const RunSummary& summary = shown_->record.summary;
    QString title =
        tr("Run %1, %2: %3").arg(numberOf(summary.id), whatText(summary), stateText(summary));
    if (summary.state == RunState::brokenOff)
      title += QLatin1Char('\n') +
               tr("Kestrel ended in the middle of it. What it had done by then is found by looking "
                  "at the library:");
    title_->setText(title);
    const QSignalBlocker blocker(changes_);
    QList<QTreeWidgetItem*> items;
    for (const UndoItem& item : shown_->check.playlists)
      items << new QTreeWidgetItem({toQt(item.name), stateText(item)});
    for (const auto* others : {&shown_->check.tracks, &shown_->check.files, &shown_->check.values})
      for (const UndoItem& item : *others) {
        if (static_cast<std::size_t>(items.size()) >=
            shown_->check.playlists.size() + mostFilesOfRun)
          break;
        items << new QTreeWidgetItem({pathToQt(item.name), stateText(item)});
      }
    for (QTreeWidgetItem* item : items)
      for (int column = 0; column < 2; ++column) item->setToolTip(column, item->text(column));
    changes_->addTopLevelItems(items);
    changes_->header()->resizeSection(0, changes_->viewport()->width() * 3 / 5);
    if (!items.isEmpty()) changes_->setCurrentItem(items.front());
    showChange();
  }

  const PlaylistChange* selectedPlaylist() const {
    if (!shown_ || !changes_->currentItem()) return nullptr;
    const auto row =
        static_cast<std::size_t>(changes_->indexOfTopLevelItem(changes_->currentItem()));
    return row < shown_->record.playlists.size() ? &shown_->record.playlists[row] : nullptr;
  }

  void showChange() {
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
    QString title = tr("“%1”: entries before: %2, after: %3")
                        .arg(toQt(change->name), numberText(change->oldEntries.size()),
                             numberText(change->newEntries.size()));
    if (change->lost)
      title = tr("“%1” was deleted with another playlist of its name").arg(toQt(change->name));
    if (!change->folderName.empty()) title += tr(", in “%1”").arg(toQt(change->folderName));
    if (!change->note.empty()) title += QStringLiteral(" (%1)").arg(translated(change->note));
    entryTitle_->setText(title);
    std::unordered_map<std::uint64_t, QString> names;
    for (const TrackChange& track : shown_->record.tracks)
      names.emplace(track.track, toQt(track.name));
    entries_->setRows(std::move(rows), tracks_, std::move(names));
  }

  void updateButtons() {
    const bool isUndo = shown_ && shown_->record.summary.kind == RunKind::undo;
    const auto any = [](const std::vector<UndoItem>& items) {
      return std::any_of(items.begin(), items.end(), [](const UndoItem& item) {
        return canBeUndone(item) || item.state == UndoState::different;
      });
    };
    const bool can =
        shown_ && !isUndo && !undoing_ && shown_->record.summary.state != RunState::running &&
        (any(shown_->check.playlists) || any(shown_->check.tracks) || any(shown_->check.files));
    undoRun_->setEnabled(can);
    const PlaylistChange* change = selectedPlaylist();
    const bool canOne = can && change &&
                        canBeUndone(shown_->check.playlists[static_cast<std::size_t>(
                            change - shown_->record.playlists.data())]);
    undoPlaylist_->setEnabled(canOne);
  }

  void undo(std::optional<std::uint64_t> playlist) {
    if (!shown_) return;
    undoing_ = true;
    updateButtons();
    UndoCallbacks callbacks;
    callbacks.begun = [this] { result_->setText(tr("Undoing…")); };
    callbacks.progress = [this](const ApplyProgress& progress) {
      if (undoing_)
        result_->setText(
            tr("Undoing… %1 of %2").arg(numberText(progress.done + 1), numberText(progress.total)));
    };
    callbacks.done = [this](const UndoReport& report) {
      undoing_ = false;
      result_->setText(linesOf(report).join(QLatin1Char('\n')));
      // The table behind this window shows it at once.
      delegate_.refreshIfDue();
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

  AppDelegate& delegate_;
  std::vector<RunSummary> runs_;
  std::optional<InspectedRun> shown_;
  std::shared_ptr<const TrackStore> tracks_;
  std::optional<std::int64_t> wanted_;  ///< the run that is being read
  bool undoing_ = false;

  QTreeWidget* list_ = nullptr;
  QLabel* title_ = nullptr;
  QTreeWidget* changes_ = nullptr;
  QWidget* below_ = nullptr;  ///< the entries of the selected playlist
  QLabel* entryTitle_ = nullptr;
  QCheckBox* onlyChanges_ = nullptr;
  EntryModel* entries_ = nullptr;
  QLabel* result_ = nullptr;
  QPushButton* undoRun_ = nullptr;
  QPushButton* undoPlaylist_ = nullptr;
};

}  // namespace

QDialog* newHistoryWindow(AppDelegate& delegate, QWidget* parent) {
  return new HistoryWindow(delegate, parent);
}

}  // namespace kestrel
