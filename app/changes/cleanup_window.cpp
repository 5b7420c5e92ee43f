// The clean-up window: which playlists list a track more than once, and which entries would be
// deleted from each of them.

#include "app/changes/playlist_windows.h"
#include "app/changes/review_window.h"
#include "app/controller/result_changes.h"
#include "changes/report.h"
#include "ui/launch.h"
#include "ui/rem_dupes_controller.h"

namespace kestrel {
namespace {

class CleanUpWindow final : public ReviewWindow<RemDupesRecord> {
  Q_DECLARE_TR_FUNCTIONS(kestrel::CleanUpWindow)

 public:
  CleanUpWindow(AppDelegate& delegate, QWidget* parent)
      : ReviewWindow(delegate, parent, {1080, 660}, models(RemDupesController::state().window),
                     texts()) {
    QLabel* header = newPlainLabel(
        tr("About this window"),
        tr("These playlists list a track more than once. The first entry of each stays, the later "
           "ones are deleted. No track leaves the library."));
    QSplitter* sides = newSplitter(Qt::Horizontal, {outline_, newDetails()});
    sides->setStretchFactor(0, 2);
    sides->setStretchFactor(1, 3);
    begin({header}, sides, reveal_);
  }

 private:
  static Models models(RemDupesWindowReferences& window) {
    return {window.remdupesWindow,         window.remdupesTreeController,
            window.remdupesProgressStatus, window.remdupesProgressSpinner,
            window.remdupesOkButton,       window.remdupesCancelButton};
  }
  static Texts texts() {
    return {.title = tr("Clean Up Playlists"),
            .outline = tr("Playlists that list a track more than once"),
            .changeColumn = tr("To Be Deleted"),
            .entries = tr("Entries to be deleted"),
            .notes = tr("What is left out"),
            .state = tr("State of the scan"),
            .entryColumns = {tr("At"), tr("Entry to Be Deleted"), {}, tr("Because")},
            .running = tr("Deleting repeated entries…"),
            .selectOne = tr("Select one playlist to see what is deleted from it.")};
  }

  struct Scanned {
    Plan plan;
    OutlineModel<RemDupesRecord>::Content outline;
    Message unwritable;
  };

  void lookNow() override {
    RemDupesController::beginRemDupes();
    runOrClose<Scanned>(
        tr("The playlists could not be looked through."),
        [&application = *delegate_.application()] {
          if (const auto failure = RemDupesController::state().failure)
            std::rethrow_exception(failure);
          // To the scan a library that cannot be read has no playlists; here it is said why.
          application.library().reload();
          const RepeatScan& scan = RemDupesController::state().lastScan;
          return Scanned{changesOf(application).cleanUpPlan(scan, choicesOf(scan)),
                         everythingIn(scan, application.library().allPlaylists()),
                         application.reasonNotToWrite()};
        },
        [this](Scanned scanned) {
          const bool found = !scanned.plan.playlists.empty();
          models_.outline.setContent(std::move(scanned.outline));
          models_.outline.expandAll();
          show(std::move(scanned.plan), TextSorter::groomedTracksDictionary(), found,
               std::move(scanned.unwritable));
        });
  }
  Message actionTitle(const Counts& entries) const override {
    return entries.deleted == 0
               ? Message::tr("&Delete Repeats")
               : Message::tr("&Delete %Ln Repeats", "&Delete %Ln Repeat", countOf(entries.deleted));
  }
  Message detail(const PlannedPlaylist& planned, const Counts& entries) const override {
    return Message::tr("%1: %Ln of %2 entries deleted", "%1: %Ln of %2 entries deleted",
                       countOf(entries.deleted))
        .arg(inQuotes(planned.name))
        .arg(planned.entryCount);
  }
  void revealSelected() override { RemDupesController::doubleClickedAction(); }
  std::size_t changesWithoutPlan(const RemDupesRecord& record) const override {
    return record.deleteIndexes().size();
  }
  std::vector<EntryRow> rowsOf(const PlannedPlaylist& planned,
                               const RemDupesRecord& record) override {
    return deletedRows(planned, record.playlist().items);
  }
  QStringList notes() const override {
    QStringList texts;
    for (const Warning& warning : warningsOf(plan_))
      if (warning.kind != Warning::Kind::notShown)
        texts << (warning.kind == Warning::Kind::nothingToDo
                      ? tr("No playlist of yours lists a track more than once.")
                      : toQt(sentence(warning)));
    return texts;
  }
  std::unordered_set<std::uint64_t> confirmed() override {
    std::unordered_set<std::uint64_t> confirmed;
    for (const IndexPath& path : outline_->checkedPaths())
      if (const auto* node = models_.outline.node(path))
        confirmed.insert(node->record->playlist().persistentID);
    models_.outline.setEnabled(false);
    models_.ok.setEnabled(false);
    models_.cancel.setEnabled(false);
    return confirmed;
  }
};

}  // namespace

QDialog* newCleanUpWindow(AppDelegate& delegate, QWidget* parent) {
  return new CleanUpWindow(delegate, parent);
}

}  // namespace kestrel
