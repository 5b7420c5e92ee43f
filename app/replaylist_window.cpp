// The replaylist window: which playlists hold tracks that are not kept, and what would change in
// each of them.

#include <algorithm>
#include <utility>

#include "app/controller/result_changes.h"
#include "app/playlist_windows.h"
#include "app/review_window.h"
#include "app/scope_box.h"
#include "changes/report.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/replaylist_control.h"
#include "ui/tracks_panel.h"

namespace kestrel {
namespace {

/// What a survey comes to.
struct Surveyed {
  SurveyOutcome outcome = SurveyOutcome::none;
  Plan plan;
  std::unordered_map<std::uint64_t, std::uint32_t> rows;  ///< of the upper table, by track
};

/// On the worker, after the survey. Throws LibraryError.
Surveyed surveyedIn(MusicApplication& application) {
  if (const auto failure = ReplaylistControl::state().failure) std::rethrow_exception(failure);
  const SurveyReport& report = ReplaylistControl::report();
  Surveyed surveyed{report.outcome, {}, {}};
  if (report.outcome == SurveyOutcome::severalKeepers) return surveyed;
  // To the survey a library that cannot be read has no playlists; here it is said why.
  application.library().reload();
  std::vector<ReplaylistChoice> choices = choicesOf(report);
  std::erase_if(choices, [](const ReplaylistChoice& choice) { return !choice.shown; });
  surveyed.plan = replaylistPlan(application, report, choices);
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
      : ReviewWindow(delegate, parent, {1180, 760}, models(ReplaylistControl::state().window),
                     texts()),
        window_(ReplaylistControl::state().window),
        scope_(new ScopeBox(delegate, std::move(scope))),
        showTracks_(newButton(tr("Show &Tracks"), [this] { toggleTracks(); })) {
    // The models may show another survey.
    window_.header.setText(ReplaylistControl::configureMeTitle());
    window_.tracksPanel.setVisible(false);
    window_.alert.dismiss();
    ReplaylistControl::processClear();

    auto* header = new QLabel;
    header->setWordWrap(true);
    header->setAccessibleName(tr("About this window"));
    bind(header, window_.header, [] { return ReplaylistControl::configureMeTitle(inUsersWords); });
    auto* all = newButton(tr("Check &All"), [this] { outline_->setAllChecked(true); });
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
    begin({scope_, header}, sides, showTracks_);
  }
  ~ReplaylistWindow() override { window_.tracksPanel.setVisible(false); }

 private:
  static Models models(ReplaylistWindowReferences& window) {
    return {window.replaylistWindow, window.outline,  window.progressStatus,
            window.progressSpinner,  window.okButton, window.cancelButton};
  }
  static Texts texts() {
    return {.title = tr("Replaylist"),
            .outline = tr("Playlists that hold tracks that are not kept"),
            .changeColumn = tr("To Be Replaced"),
            .entries = tr("Entries to be replaced"),
            .notes = tr("Warnings and what is left out"),
            .state = tr("State of the survey"),
            .entryColumns = {tr("At"), tr("Now"), tr("Then"), tr("Because")},
            .running = tr("Putting keepers into the playlists…"),
            .chosen = tr("%1 of %2 playlists chosen; entries to be replaced: %3"),
            .detail = tr("“%1”: entries to be replaced: %2 of %3"),
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
          show(std::move(surveyed.plan), TextSorter::groomedTracksDictionary(),
               outcome_ == SurveyOutcome::found);
        });
  }
  void revealSelected() override { ReplaylistControl::doubleClickedAction(); }
  void selectionChanged() override {
    if (window_.tracksPanel.isVisible()) ReplaylistControl::processThis();
  }
  std::vector<EntryRow> rowsOf(const PlannedPlaylist& planned, const ReplaylistRecord&) override {
    return replacedRows(planned);
  }
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
    const auto isRepeat = [](const Warning& warning) {
      return warning.kind == Warning::Kind::createsRepeats;
    };
    const auto repeating = std::count_if(warnings.begin(), warnings.end(), isRepeat);
    bool toldRepeats = false;
    for (const Warning& warning : warnings) {
      if (warning.kind == Warning::Kind::nothingToDo) continue;
      if (warning.kind == Warning::Kind::groupLeftOut)
        texts << toQt(sentence(warning)) + QLatin1Char(' ') +
                     tr("Left out: %1.").arg(songsOf(plan_, warning.reason));
      // The outline and the table of entries say of each where and what.
      else if (!isRepeat(warning) || repeating == 1)
        texts << toQt(sentence(warning));
      else if (!std::exchange(toldRepeats, true))
        texts << tr("%1 playlists will list tracks more than once; they are marked with ⚠.")
                     .arg(repeating);
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
