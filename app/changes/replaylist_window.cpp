// The replaylist window: which playlists hold tracks that are not kept, and what would change in
// each of them.

#include <algorithm>
#include <utility>

#include "app/changes/playlist_windows.h"
#include "app/changes/review_window.h"
#include "app/controller/repair_count.h"
#include "app/controller/result_changes.h"
#include "app/parts/scope_box.h"
#include "changes/report.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/qt/segments.h"
#include "ui/replaylist_control.h"
#include "ui/tracks_panel.h"

namespace kestrel {
namespace {

/// Replaces again the entries that a plan drops because their keepers are listed already: which
/// those are depends on what the user leaves out.
void replaceWhatIsDropped(Plan& plan, const std::vector<ReplaylistChoice>& choices,
                          const std::vector<Playlist>& library) {
  std::unordered_map<std::uint64_t, const Playlist*> playlists;
  for (const Playlist& playlist : library) playlists.try_emplace(playlist.persistentID, &playlist);
  std::unordered_map<std::uint64_t, const ReplaylistChoice*> byID;
  for (const ReplaylistChoice& choice : choices) byID.try_emplace(choice.playlist, &choice);
  for (PlannedPlaylist& planned : plan.playlists) {
    if (planned.deleteIndexes.empty()) continue;
    const auto& entries = playlists.at(planned.playlist)->items;
    const auto& keepers = byID.at(planned.playlist)->keepers;
    for (const std::uint64_t position : planned.deleteIndexes) {
      const std::uint64_t old = entries[position - 1];
      planned.replacements.push_back({position, old, keepers.at(old), {}});
    }
    planned.deleteIndexes.clear();
    std::sort(planned.replacements.begin(), planned.replacements.end(),
              [](const auto& a, const auto& b) { return a.position < b.position; });
  }
}

/// What a survey comes to.
struct Surveyed {
  SurveyOutcome outcome = SurveyOutcome::none;
  Plan plan;
  std::unordered_map<std::uint64_t, std::uint32_t> rows;  ///< of the upper table, by track
  Playlists playlists;                                    ///< of the library
  Message unwritable;
};

/// On the worker, after the survey. Throws LibraryError.
Surveyed surveyedIn(MusicApplication& application) {
  if (const auto failure = ReplaylistControl::state().failure) std::rethrow_exception(failure);
  const SurveyReport& report = ReplaylistControl::report();
  Surveyed surveyed{report.outcome,
                    {},
                    {},
                    std::make_shared<const std::vector<Playlist>>(),
                    application.reasonNotToWrite()};
  if (report.outcome == SurveyOutcome::severalKeepers) return surveyed;
  // To the survey a library that cannot be read has no playlists; here it is said why.
  application.library().reload();
  const std::vector<ReplaylistChoice> choices = choicesOf(report);
  surveyed.plan = replaylistPlan(application, report, choices);
  surveyed.playlists = application.library().allPlaylists();
  replaceWhatIsDropped(surveyed.plan, choices, *surveyed.playlists);
  surveyed.rows = rowsOfReplaced(surveyed.plan);
  return surveyed;
}

/// By which the groups are known that are left out for this reason.
QString songsOf(const Plan& plan, const Message& reason) {
  constexpr std::size_t most = 5;
  std::vector<Message> songs;
  std::size_t more = 0;
  for (const LeftOut& left : plan.leftOut) {
    if (left.what != LeftOut::What::group || !(left.reason == reason)) continue;
    if (songs.size() < most)
      songs.push_back(inQuotes(left.name));
    else
      ++more;
  }
  return toQt(listed(songs, more));
}

class ReplaylistWindow final : public ReviewWindow<ReplaylistRecord> {
  Q_DECLARE_TR_FUNCTIONS(kestrel::ReplaylistWindow)

 public:
  ReplaylistWindow(AppDelegate& delegate, ActionScope scope, QWidget* parent)
      : ReviewWindow(delegate, parent, {1160, 720}, models(ReplaylistControl::state().window),
                     texts()),
        window_(ReplaylistControl::state().window),
        scope_(new ScopeBox(delegate, std::move(scope))),
        repeatsText_(newPlainLabel(tr("Repeats"))),
        repeats_(new Segments(tr("Where a playlist lists the kept copy already"))),
        showTracks_(newButton(tr("Show &Tracks"), [this] { toggleTracks(); })) {
    repeats_->add(keepBoth, tr("&Keep Both Entries"));
    repeats_->add(dropOne, tr("Dr&op the Repeat"));
    // The models may show another survey.
    window_.header.setText(ReplaylistControl::configureMeTitle());
    window_.tracksPanel.setVisible(false);
    window_.alert.dismiss();
    ReplaylistControl::processClear();

    QLabel* header = newPlainLabel(
        tr("About this window"),
        tr("These playlists list copies that are not kept. Each such entry gets the kept copy of "
           "its group; what is not checked stays as it is."));
    auto* all = newButton(tr("C&heck All"), [this] { outline_->setAllChecked(true); });
    auto* none = newButton(tr("Check &None"), [this] { outline_->setAllChecked(false); });
    QWidget* left = newColumn({outline_, newRow({all, none, reveal_, nullptr})}, outline_);
    QWidget* right = newSplitter(Qt::Vertical, {newDetails(), newTracksPanel(delegate, window_)});
    QSplitter* sides = newSplitter(Qt::Horizontal, {left, right});
    sides->setStretchFactor(0, 1);
    sides->setStretchFactor(1, 3);
    sides->setSizes({400, 800});

    connect(scope_, &ScopeBox::changed, this, [this] { look(); });
    observe(this, window_.tracksPanel.observers, [this] {
      showTracks_->setText(window_.tracksPanel.isVisible() ? tr("Hide &Tracks")
                                                           : tr("Show &Tracks"));
    });
    observe(this, window_.alert.observers, [this] {
      if (!window_.alert.alert()) return;
      showAlert(this, *window_.alert.alert(), [this](int) {
        window_.alert.dismiss();
        reject();
      });
    });
    repeats_->choose(keepBoth);
    repeatsBanner_ = newBanner({repeatsText_, repeats_}, repeatsText_);
    connect(repeats_, &Segments::changed, this, [this] { entriesChanged(); });
    begin({scope_, header, repeatsBanner_}, sides, showTracks_);
  }
  ~ReplaylistWindow() override { window_.tracksPanel.setVisible(false); }

 private:
  static Models models(ReplaylistWindowReferences& window) {
    return {window.replaylistWindow, window.outline,  window.progressStatus,
            window.progressSpinner,  window.okButton, window.cancelButton};
  }
  static Texts texts() {
    return {.title = tr("Repair Playlists"),
            .outline = tr("Playlists that hold tracks that are not kept"),
            .changeColumn = tr("To Change"),
            .entries = tr("Entries to be replaced"),
            .notes = tr("Warnings and what is left out"),
            .state = tr("State of the survey"),
            .entryColumns = {tr("At"), tr("Now"), tr("Then"), tr("Because")},
            .running = tr("Putting keepers into the playlists…"),
            .selectOne = tr("Select one playlist to see what changes in it.")};
  }

  void lookNow() override {
    reasons_.clear();
    std::vector<SurveyRow> rows;
    for (const std::uint32_t row : scope_->rows()) rows.emplace_back(delegate_.content()[row]);
    ReplaylistControl::beginReplaylist(std::move(rows));
    runOrClose<Surveyed>(
        tr("The playlists could not be looked through."),
        [&application = *delegate_.application()] { return surveyedIn(application); },
        [this](Surveyed surveyed) {
          outcome_ = surveyed.outcome;
          rows_ = std::move(surveyed.rows);
          mustDrop_ = !delegate_.application()->capabilities().keepsRepeats;
          const auto repeating = std::count_if(
              surveyed.plan.playlists.begin(), surveyed.plan.playlists.end(),
              [](const PlannedPlaylist& planned) { return !planned.repeats.empty(); });
          repeatsText_->setText(
              toQt(Message::tr("%Ln playlists (⚠) list a kept copy already.",
                               "%Ln playlist (⚠) lists a kept copy already.", repeating)));
          repeatsBanner_->setVisible(repeating > 0);
          window_.outline.setContent(
              everythingIn(ReplaylistControl::report().playlists, surveyed.playlists));
          window_.outline.expandAll();
          show(std::move(surveyed.plan), TextSorter::groomedTracksDictionary(),
               outcome_ == SurveyOutcome::found, std::move(surveyed.unwritable));
        });
  }
  void revealSelected() override { ReplaylistControl::doubleClickedAction(); }
  void selectionChanged() override {
    if (window_.tracksPanel.isVisible()) ReplaylistControl::processThis();
  }
  std::vector<EntryRow> rowsOf(const PlannedPlaylist& planned,
                               const ReplaylistRecord& record) override {
    std::vector<EntryRow> rows = replacedRows(planned);
    if (drops()) {
      const PlannedPlaylist dropped = chosenOf(planned, record.playlist().items);
      const std::unordered_set<std::uint64_t> gone(dropped.deleteIndexes.begin(),
                                                   dropped.deleteIndexes.end());
      for (EntryRow& row : rows) {
        row.remark.clear();
        row.isWarning = false;
        if (!gone.contains(row.position)) continue;
        row.change = EntryRow::Change::deleted;
        row.remark = tr("The playlist lists the kept copy already");
      }
    }
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (isUnsafe(planned.replacements[i])) {
        rows[i].isWarning = true;
        rows[i].remark = tr("Its file is here, what would take its place only in the cloud");
      }
    return rows;
  }
  Message actionTitle(const Counts& entries) const override {
    if (entries.all() == 0) return Message::tr("&Replace Entries");
    const std::int64_t deleted = countOf(entries.deleted);
    if (entries.replaced == 0)
      return Message::tr("&Delete %Ln Repeats", "&Delete %Ln Repeat", deleted);
    if (deleted > 0)
      return Message::tr("&Replace %1 and Delete %Ln Entries", "&Replace %1 and Delete %Ln Entry",
                         deleted)
          .arg(entries.replaced);
    return Message::tr("&Replace %Ln Entries", "&Replace %Ln Entry", countOf(entries.replaced));
  }
  Message detail(const PlannedPlaylist& planned, const Counts& entries) const override {
    const Message replaced =
        Message::tr("%1: %Ln of %2 entries replaced", "%1: %Ln of %2 entries replaced",
                    countOf(entries.replaced))
            .arg(inQuotes(planned.name))
            .arg(planned.entryCount);
    if (entries.deleted == 0) return replaced;
    return Message::tr("%1, %Ln deleted", "%1, %Ln deleted", countOf(entries.deleted))
        .arg(replaced);
  }
  void finish(PlannedPlaylist& planned, std::span<const std::uint64_t> entries) const override {
    if (drops()) dropRepeats(planned, entries);
  }
  bool isUnsafe(const Replacement& change) const override {
    return tracks_ &&
           isUnsafeReplacement(tracks_->find(change.oldTrack), tracks_->find(change.newTrack));
  }
  [[nodiscard]] bool drops() const { return mustDrop_ || repeats_->chosen() == dropOne; }
  QString detailWithoutPlan(const ReplaylistRecord& record) const override {
    return tr("“%1”: none of its tracks that are not kept has a keeper to go in")
        .arg(toQt(record.playlist().name));
  }
  std::unordered_set<std::uint64_t> confirmed() override {
    window_.outline.setSelection(outline_->checkedPaths());
    std::unordered_set<std::uint64_t> confirmed;
    for (const PlaylistReplacements& one : ReplaylistControl::clickedOK())
      confirmed.insert(one.record->playlist().persistentID);
    return confirmed;
  }

  QString reasonOf(const EntryRow& row) override {
    const auto tableRow = rows_.find(row.before);
    if (tableRow == rows_.end()) return {};
    QString& reason = reasons_[tableRow->second];
    if (reason.isEmpty()) reason = toQt(delegate_.keptBecause(tableRow->second));
    return reason;
  }

  QStringList notes() const override {
    QStringList texts;
    if (outcome_ == SurveyOutcome::noResults)
      texts << tr("No playlist of yours holds a track that is not kept.");
    const std::vector<Warning> warnings = warningsOf(plan_);
    for (const Warning& warning : warnings) {
      // Of repeats the banner tells.
      if (warning.kind == Warning::Kind::nothingToDo ||
          warning.kind == Warning::Kind::createsRepeats || warning.kind == Warning::Kind::notShown)
        continue;
      if (warning.kind == Warning::Kind::groupLeftOut)
        texts << toQt(sentence(warning)) + QLatin1Char(' ') +
                     tr("Left out: %1.").arg(songsOf(plan_, warning.reason));
      else
        texts << toQt(sentence(warning));
    }
    return texts;
  }

  void toggleTracks() {
    ReplaylistControl::toggleTracksPanel();
    if (window_.tracksPanel.isVisible())
      ReplaylistControl::processThis();
    else
      ReplaylistControl::processClear();
  }

  ReplaylistWindowReferences& window_;
  ScopeBox* scope_;
  enum Repeats { keepBoth, dropOne };
  QLabel* repeatsText_;
  Segments* repeats_;
  QWidget* repeatsBanner_ = nullptr;
  bool mustDrop_ = false;  ///< the library lists a track once in a playlist
  QPushButton* showTracks_;
  SurveyOutcome outcome_ = SurveyOutcome::none;
  std::unordered_map<std::uint64_t, std::uint32_t> rows_;
  std::unordered_map<std::uint32_t, QString> reasons_;  ///< by row, as far as they were asked for
};

}  // namespace

QDialog* newReplaylistWindow(AppDelegate& delegate, ActionScope scope, QWidget* parent) {
  return new ReplaylistWindow(delegate, std::move(scope), parent);
}

}  // namespace kestrel
