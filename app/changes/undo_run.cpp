#include "app/changes/undo_run.h"

#include <QCoreApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <unordered_map>
#include <utility>

#include "app/changes/entry_table.h"
#include "app/controller/result_changes.h"
#include "app/parts/window_task.h"
#include "platform/queues.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/confirmation_panel.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

struct Undo {
  Q_DECLARE_TR_FUNCTIONS(kestrel::Undo)
};

/// As many differences as a message can hold.
QString differences(const UndoCheck& check) {
  constexpr int most = 8;
  QStringList lines;
  int left = 0;
  for (const auto* items : check.lists())
    for (const UndoItem& item : *items) {
      if (item.state != UndoState::different) continue;
      if (lines.size() < most)
        lines << Undo::tr("“%1”: %2.").arg(toQt(item.name), toQt(item.difference));
      else
        ++left;
    }
  if (left > 0) lines << Undo::tr("And %1 more.").arg(left);
  return lines.join(QLatin1Char('\n'));
}

/// A run, or one playlist of it, and how much there is to take back.
struct Inspected {
  UndoCheck check;
  std::size_t playlists = 0, entries = 0, tracks = 0, files = 0;

  /// Whether something is left to take back beside what differs.
  [[nodiscard]] bool hasRest() const { return playlists + tracks + files > 0; }
};

std::size_t changedEntries(const PlaylistChange& change) {
  const auto rows = comparedRows(change.oldEntries, change.newEntries);
  return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [](const EntryRow& row) {
    return row.change != EntryRow::Change::none;
  }));
}

Inspected inspect(InspectedRun run, std::optional<std::uint64_t> onlyPlaylist) {
  Inspected inspected{std::move(run.check)};
  if (onlyPlaylist) {
    std::erase_if(inspected.check.playlists,
                  [&](const UndoItem& item) { return item.playlist != *onlyPlaylist; });
    inspected.check.files.clear();
    inspected.check.tracks.clear();
  }
  std::unordered_map<std::int64_t, const PlaylistChange*> changes;
  for (const PlaylistChange& change : run.record.playlists) changes.emplace(change.id, &change);
  for (const UndoItem& item : inspected.check.playlists) {
    const auto change = changes.find(item.change);
    if (!canBeUndone(item) || change == changes.end()) continue;
    ++inspected.playlists;
    inspected.entries += changedEntries(*change->second);
  }
  const auto count = [](const std::vector<UndoItem>& items) {
    return static_cast<std::size_t>(std::count_if(items.begin(), items.end(), canBeUndone));
  };
  inspected.tracks = count(inspected.check.tracks);
  inspected.files = count(inspected.check.files);
  return inspected;
}

struct Undoing {
  AppDelegate& delegate;
  QPointer<QWidget> window;
  std::int64_t run;
  UndoOptions options;
  UndoQuestion question;
  UndoCallbacks callbacks;
};

void carryOut(const Undoing& given) {
  Undoing undoing = given;
  undoing.options.cancelled = undoing.callbacks.cancelled;
  if (undoing.callbacks.progress)
    undoing.options.progress = progressFor(undoing.delegate.process().with.mainQueue,
                                           undoing.window, undoing.callbacks.progress);
  undoing.callbacks.begun();
  runTask<UndoReport>(
      undoing.delegate, undoing.window, Undo::tr("The changes could not be undone."),
      [&application = *undoing.delegate.application(), run = undoing.run,
       options = undoing.options] { return undoInLibrary(run, application, options); },
      [undoing](const UndoReport& report) {
        const bool tells = !report.isComplete && !undoing.callbacks.tellsItself;
        undoing.callbacks.done(report);
        if (tells && undoing.window) showWhatStays(undoing.window, report);
      },
      undoing.callbacks.notDone,
      [&delegate = undoing.delegate, run = undoing.run](const UndoReport& report) {
        // What came back is found by a search, what is gone cannot stay in the tables.
        const RunKind kind = report.check.run.kind;
        if (kind == RunKind::trash || kind == RunKind::remove) delegate.setSearchDue();
        if (kind == RunKind::addToLibrary) delegate.removed(report.outcomes);
        delegate.takenBack(run);
        delegate.whenIdle([&delegate] { delegate.refreshPlaylists(); });
      });
}

void confirm(const Undoing& undoing, const Inspected& inspected) {
  ConfirmationPanel::Question question;
  question.defaultButton = Undo::tr("&Undo");
  question.alternateButton = Undo::tr("Cancel");
  QStringList lines;
  const bool isOne = undoing.options.playlist && inspected.playlists == 1;
  if (isOne) {
    question.message = Undo::tr("Undo what this run changed in “%1”?")
                           .arg(toQt(inspected.check.playlists.front().name));
    lines << toQt(Message::tr("%Ln entries become as they were before.",
                              "%Ln entry becomes as it was before.", countOf(inspected.entries)));
  } else {
    question.message = Undo::tr("Undo everything that this run changed?");
    if (inspected.playlists > 0)
      lines << toQt(Message::tr("%Ln playlists become as they were before.",
                                "%Ln playlist becomes as it was before.",
                                countOf(inspected.playlists)));
    if (inspected.tracks > 0)
      lines << toQt(Message::tr("%Ln tracks come back into the library.",
                                "%Ln track comes back into the library.",
                                countOf(inspected.tracks)));
    if (inspected.files > 0)
      lines << toQt(inspected.check.run.kind == RunKind::addToLibrary
                        ? Message::tr("%Ln tracks leave the library; their files stay.",
                                      "%Ln track leaves the library; its file stays.",
                                      countOf(inspected.files))
                        : Message::tr("%Ln files come back from the trash.",
                                      "%Ln file comes back from the trash.",
                                      countOf(inspected.files)));
  }
  question.informativeText = lines.join(QLatin1Char('\n'));
  ConfirmationPanel::ask(
      undoing.window, isOne ? ConfirmationPanel::Form::playlist : ConfirmationPanel::Form::all,
      question, [undoing](bool yes) { yes ? carryOut(undoing) : undoing.callbacks.notDone(); });
}

void decide(Undoing undoing, const Inspected& inspected) {
  const UndoCheck& check = inspected.check;
  if (!check.differs()) {
    if (undoing.question == UndoQuestion::always && inspected.hasRest())
      return confirm(undoing, inspected);
    return carryOut(undoing);
  }
  const QString found = differences(check);
  if (!inspected.hasRest()) {
    showAlert(undoing.window, Undo::tr("Nothing was undone, because it has been changed since."),
              found, {Undo::tr("OK")}, [undoing](int) { undoing.callbacks.notDone(); });
    return;
  }
  undoing.options.leaveDifferent = true;
  showAlert(undoing.window, Undo::tr("Some of what this run changed has been changed again since."),
            found + QStringLiteral("\n\n") +
                Undo::tr("Shall Kestrel undo the rest and leave these as they are?"),
            {Undo::tr("Undo the Rest"), Undo::tr("Cancel")}, [undoing](int button) {
              button == 0 ? carryOut(undoing) : undoing.callbacks.notDone();
            });
}

}  // namespace

std::function<void(const ApplyProgress&)> progressFor(
    TaskQueue& queue, QPointer<QWidget> window, std::function<void(const ApplyProgress&)> show) {
  static constexpr auto betweenReports = std::chrono::milliseconds(30);
  return [&queue, window = std::move(window), show = std::move(show),
          last = std::chrono::steady_clock::time_point()](const ApplyProgress& progress) mutable {
    const auto now = std::chrono::steady_clock::now();
    if (now - last < betweenReports) return;
    last = now;
    queue.post([window, show, progress] {
      if (window) show(progress);
    });
  };
}

bool canBeUndone(const UndoItem& item) {
  return item.state == UndoState::ready || item.state == UndoState::gone;
}

QStringList linesOf(const UndoReport& report) {
  constexpr int most = 4;
  UndoReport unnumbered = report;
  unnumbered.number = 0;
  QStringList lines = toQt(unnumbered.messages()).mid(0, most);
  if (!report.problem.empty() && !lines.contains(toQt(report.problem)))
    lines << toQt(report.problem);
  return lines;
}

QString whatToDo(const UndoReport& report) {
  if (report.isCancelled)
    return Undo::tr("Undo the run again in the history: it undoes what is left.");
  const bool failed =
      std::any_of(report.outcomes.begin(), report.outcomes.end(),
                  [](const Outcome& outcome) { return outcome.kind == Outcome::Kind::failed; });
  return failed ? Undo::tr(
                      "Do away with the cause, then undo the run again in the history: it undoes "
                      "what is left.")
                : Undo::tr(
                      "What was changed since stays as it is now. To have it back as it was "
                      "before the run, change it by hand; the history shows how it was.");
}

void showWhatStays(QWidget* window, const UndoReport& report) {
  auto* sheet = new QDialog(window);
  sheet->setAttribute(Qt::WA_DeleteOnClose);
  sheet->setWindowModality(Qt::WindowModal);
  sheet->setWindowTitle(Undo::tr("Not All Was Undone"));
  const auto isBack = [](const Outcome& outcome) {
    return outcome.kind == Outcome::Kind::done || outcome.kind == Outcome::Kind::asBefore;
  };
  const auto back = std::count_if(report.outcomes.begin(), report.outcomes.end(), isBack);
  const auto all = countOf(report.outcomes.size());
  QLabel* title = newPlainLabel(
      Undo::tr("Summary"),
      toQt(Message::tr("%1 of %Ln changes were undone.", "%1 of %Ln change was undone.", all)
               .arg(back)));
  setBold(title);
  QTreeWidget* list = newList({Undo::tr("What stays as it is"), Undo::tr("Because")},
                              Undo::tr("What was not undone"));
  constexpr int most = 1000;
  for (const Outcome& outcome : report.outcomes) {
    if (isBack(outcome)) continue;
    if (list->topLevelItemCount() == most) break;
    auto* item = new QTreeWidgetItem(list, {pathToQt(outcome.name), toQt(ended(outcome.reason))});
    for (int column = 0; column < 2; ++column) item->setToolTip(column, item->text(column));
  }
  list->header()->resizeSection(0, 260);
  QList<QWidget*> parts{title, list};
  if (!report.problem.empty())
    parts << newPlainLabel(Undo::tr("Problem"), toQt(ended(report.problem)));
  QPushButton* close = newButton(Undo::tr("&Close"), [sheet] { sheet->close(); });
  close->setDefault(true);
  parts << newPlainLabel(Undo::tr("What to do"), whatToDo(report)) << newRow({nullptr, close});
  (new QVBoxLayout(sheet))->addWidget(newColumn(parts, list));
  resizeWithinScreen(sheet, {640, 360});
  sheet->open();
  close->setFocus();
}

void undoAsking(AppDelegate& delegate, QWidget* window, std::int64_t run,
                std::optional<std::uint64_t> playlist, UndoQuestion question,
                UndoCallbacks callbacks) {
  Undoing undoing{delegate, window, run, {}, question, std::move(callbacks)};
  undoing.options.playlist = playlist;
  runTask<Inspected>(
      delegate, window, Undo::tr("The changes could not be undone."),
      [&application = *delegate.application(), run, playlist] {
        return inspect(inspectedRun(run, application), playlist);
      },
      [undoing](const Inspected& inspected) { decide(undoing, inspected); },
      undoing.callbacks.notDone);
}

}  // namespace kestrel
