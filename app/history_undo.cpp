#include "app/history_undo.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>

#include "app/app_delegate.h"
#include "app/history_changes.h"
#include "app/history_task.h"
#include "library/process.h"
#include "models/alert.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

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
  for (const auto* items : {&check.playlists, &check.files})
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

/// Whether something is left to take back beside what differs.
bool hasRest(const UndoCheck& check) {
  const auto canBeUndone = [](const UndoItem& item) {
    return item.state == UndoState::ready || item.state == UndoState::gone;
  };
  return std::any_of(check.playlists.begin(), check.playlists.end(), canBeUndone) ||
         std::any_of(check.files.begin(), check.files.end(), canBeUndone);
}

void keepOnly(UndoCheck& check, std::uint64_t playlist) {
  std::erase_if(check.playlists, [&](const UndoItem& item) { return item.playlist != playlist; });
  check.files.clear();
}

struct Undoing {
  AppDelegate& delegate;
  QPointer<QWidget> window;
  std::int64_t run;
  UndoOptions options;
  std::function<void(UndoReport)> done;
  std::function<void()> notDone;
};

void carryOut(const Undoing& undoing) {
  runTask<UndoReport>(
      undoing.delegate, undoing.window, Undo::tr("The changes could not be taken back."),
      [&application = *undoing.delegate.application(), run = undoing.run,
       options = undoing.options] { return undoInLibrary(run, application, options); },
      [undoing](UndoReport report) {
        undoing.delegate.refreshPlaylists();
        undoing.done(std::move(report));
      },
      undoing.notDone);
}

void decide(Undoing undoing, UndoCheck check) {
  if (undoing.options.playlist) keepOnly(check, *undoing.options.playlist);
  if (!check.differs()) return carryOut(undoing);
  const std::string found = fromQt(differences(check));
  if (!hasRest(check)) {
    showAlert(undoing.window,
              {fromQt(Undo::tr("Nothing was taken back, because it has been changed since.")),
               found,
               {fromQt(Undo::tr("OK"))}},
              [undoing](int) { undoing.notDone(); });
    return;
  }
  undoing.options.leaveDifferent = true;
  showAlert(undoing.window,
            {fromQt(Undo::tr("Some of what this run changed has been changed again since.")),
             found + "\n\n" +
                 fromQt(Undo::tr("Shall Kestrel take back the rest and leave these as they are?")),
             {fromQt(Undo::tr("Take Back the Rest")), fromQt(Undo::tr("Cancel"))}},
            [undoing](int button) { button == 0 ? carryOut(undoing) : undoing.notDone(); });
}

}  // namespace

void undoAsking(AppDelegate& delegate, QWidget* window, std::int64_t run,
                std::optional<std::uint64_t> playlist, std::function<void(UndoReport)> done,
                std::function<void()> notDone) {
  Undoing undoing{delegate, window, run, {}, std::move(done), std::move(notDone)};
  undoing.options.playlist = playlist;
  runTask<InspectedRun>(
      delegate, window, Undo::tr("The changes could not be taken back."),
      [&application = *delegate.application(), run] { return inspectedRun(run, application); },
      [undoing](InspectedRun inspected) { decide(undoing, std::move(inspected.check)); },
      undoing.notDone);
}

}  // namespace kestrel
