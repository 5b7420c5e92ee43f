/// A window that looks through the playlists, shows in an outline which of them would change and,
/// of the one that is highlighted, which entries, and changes the playlists that are checked.
///
/// The outline and the buttons are models of the operations that look: they dim them, and fill the
/// outline while the plan for what it shows is still being made.
#pragma once

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <unordered_map>
#include <unordered_set>

#include "app/change_window.h"
#include "app/entry_table.h"
#include "ui/models/view_models.h"
#include "ui/qt/bindings.h"
#include "ui/qt/outline_view.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

template <typename Record>
class ReviewWindow : public ChangeWindow {
  Q_DECLARE_TR_FUNCTIONS(kestrel::ReviewWindow)

 protected:
  /// What the operations drive. `ok` and `cancel` say what the user may press.
  struct Models {
    Window& window;
    OutlineModel<Record>& outline;
    StatusText& status;
    ProgressBar& spinner;
    Button& ok;
    Button& cancel;
  };
  /// What the parts of the window are called, and what it says in numbers.
  struct Texts {
    QString title;
    QString outline, changeColumn;
    QString entries, notes, state;
    QStringList entryColumns;  ///< as of `EntryModel`
    QString running;           ///< while the playlists are changed
    QString chosen;            ///< %1 of %2 playlists, and %3 entries
    QString detail;            ///< of playlist %1, %2 of %3 entries
    QString selectOne;         ///< what the entries are of
  };

  ReviewWindow(AppDelegate& delegate, QWidget* parent, QSize size, Models models, Texts texts)
      : ChangeWindow(delegate, parent, texts.title, size),
        models_(models),
        texts_(std::move(texts)),
        outline_(new OutlineView({tr("Playlist"), tr("Entries"), texts_.changeColumn})),
        detailTitle_(newPlainLabel(tr("Selected playlist"))),
        entries_(new EntryModel(texts_.entryColumns,
                                [this](const EntryRow& row) { return reasonOf(row); })),
        entryTable_(newEntryTable(entries_, texts_.entries)),
        reveal_(newButton(
            tr("Re&veal"), [this] { reveal(); }, tr("Show the playlist in the music application"))),
        notes_(newNotesArea(texts_.notes)),
        chosen_(newPlainLabel(tr("What is chosen"))),
        cancel_(newButton(tr("&Cancel"), [this] { reject(); })),
        ok_(newButton(tr("&OK"), [this] { confirm(); })) {
    outline_->setAccessibleName(texts_.outline);
    models_.status.setText({});
    enableControls();
  }
  ~ReviewWindow() override { models_.window.setVisible(false); }

  /// The entries of the highlighted playlist, under their title.
  QWidget* newDetails() { return newColumn({detailTitle_, entryTable_}, entryTable_); }
  /// Makes the page of `above`, the sides with outline and details, and the foot, which begins with
  /// `first`; then begins to look.
  void begin(QList<QWidget*> above, QSplitter* sides, QWidget* first) {
    auto* state = new QLabel;
    state->setAccessibleName(texts_.state);
    bind(state, models_.status);
    QWidget* foot =
        newRow({first, newSpinner(models_.spinner), state, chosen_, cancel_, ok_}, chosen_);
    setDecision(newColumn(above << sides << notes_ << foot, sides));

    outline_->show<Record>(models_.outline, [this](const Record& record) { return row(record); });
    connect(outline_, &QTreeWidget::itemDoubleClicked, this, [this] { reveal(); });
    connect(outline_, &OutlineView::checksChanged, this, [this] { checksChanged(); });
    connect(outline_, &OutlineView::highlightChanged, this, [this] { highlightChanged(); });
    observe(this, models_.ok.observers, [this] { checksChanged(); });
    observe(this, models_.cancel.observers,
            [this] { cancel_->setEnabled(models_.cancel.isEnabled()); });
    models_.window.setVisible(true);
    look();
  }

  void look() final {
    plan_ = {};
    planned_.clear();
    isShown_ = false;
    // What finds nothing leaves the outline of the time before, which must not be acted on.
    models_.outline.setContent(nullptr);
    showNotesIn(notes_, {});
    checksChanged();
    highlightChanged();
    delegate_.whenIdle([this, owner = QPointer<QWidget>(this)] {
      if (owner) lookNow();
    });
  }

  /// The plan for all that the outline shows; `found`: there is something to choose from.
  void show(Plan plan, std::shared_ptr<const TrackStore> tracks, bool found) {
    plan_ = std::move(plan);
    tracks_ = std::move(tracks);
    isShown_ = found;
    for (const PlannedPlaylist& planned : plan_.playlists)
      planned_.emplace(planned.playlist, &planned);
    showNotesIn(notes_, notes());
    if (found) {
      outline_->describeAnew();
      outline_->highlightFirstPlaylist();
    }
    checksChanged();
  }

  void runEnded() final {
    models_.spinner.stopAnimation();
    enableControls();
  }

  const Models models_;
  const Texts texts_;
  Plan plan_;
  OutlineView* outline_;
  QLabel* detailTitle_;
  EntryModel* entries_;
  QTableView* entryTable_;
  QPushButton* reveal_;

 private:
  /// Starts the operation that fills the outline, and then what makes the plan.
  virtual void lookNow() = 0;
  virtual void revealSelected() = 0;
  /// How many entries of a playlist are to change, while there is no plan for it.
  virtual std::size_t changesWithoutPlan(const Record&) const { return 0; }
  virtual std::vector<EntryRow> rowsOf(const PlannedPlaylist& planned, const Record& record) = 0;
  virtual QString reasonOf(const EntryRow&) { return {}; }
  /// What is said of a highlighted playlist in which nothing is planned.
  virtual QString detailWithoutPlan(const Record&) const { return texts_.selectOne; }
  virtual QStringList notes() const = 0;
  virtual void selectionChanged() {}
  /// The IDs of the checked playlists, when the user has confirmed.
  virtual std::unordered_set<std::uint64_t> confirmed() = 0;

  static std::size_t changesIn(const PlannedPlaylist& planned) {
    return planned.replacements.size() + planned.deleteIndexes.size();
  }
  /// nullptr for playlists in which nothing would change.
  [[nodiscard]] const PlannedPlaylist* plannedOf(const Record& record) const {
    const auto found = planned_.find(record.playlist().persistentID);
    return found == planned_.end() ? nullptr : found->second;
  }

  static QString warningOf(const PlannedPlaylist& planned) {
    const QString text = tr("Tracks that it will list more than once: %1.");
    return planned.repeats.empty() ? QString() : text.arg(planned.repeats.size());
  }

  OutlineView::Row row(const Record& record) const {
    OutlineView::Row row;
    row.icon = record.isFolder() ? QStringLiteral("f") : QStringLiteral("u");
    row.name = toQt(record.playlist().name);
    row.isFolder = record.isFolder();
    if (row.isFolder) return row;
    const PlannedPlaylist* planned = plannedOf(record);
    row.numbers << numberText(record.playlist().items.size())
                << numberText(planned ? changesIn(*planned) : changesWithoutPlan(record));
    row.checkable = row.checked = planned != nullptr;
    if (planned) row.warning = warningOf(*planned);
    return row;
  }

  void checksChanged() {
    std::size_t playlists = 0;
    std::size_t entries = 0;
    for (const IndexPath& path : outline_->checkedPaths())
      if (const auto* node = models_.outline.node(path))
        if (const PlannedPlaylist* planned = plannedOf(*node->record)) {
          ++playlists;
          entries += changesIn(*planned);
        }
    ok_->setEnabled(models_.ok.isEnabled() && playlists > 0);
    chosen_->setText(
        isShown_ ? texts_.chosen.arg(playlists).arg(plan_.playlists.size()).arg(numberText(entries))
                 : QString());
  }

  void highlightChanged() {
    models_.outline.setSelection(outline_->highlightedPaths());
    const auto records = models_.outline.selectedRecords();
    reveal_->setEnabled(records.size() == 1);
    selectionChanged();
    const Record* single =
        records.size() == 1 && !records.front()->isFolder() ? records.front().get() : nullptr;
    const PlannedPlaylist* planned = single ? plannedOf(*single) : nullptr;
    entries_->setRows(planned ? rowsOf(*planned, *single) : std::vector<EntryRow>(), tracks_);
    if (planned)
      detailTitle_->setText(texts_.detail.arg(toQt(planned->name), numberText(changesIn(*planned)),
                                              numberText(planned->entryCount)));
    else
      detailTitle_->setText(single ? detailWithoutPlan(*single) : texts_.selectOne);
  }

  void reveal() {
    if (!delegate_.isBusy()) revealSelected();
  }

  void confirm() {
    Plan plan = plan_;
    std::erase_if(plan.playlists, [chosen = confirmed()](const PlannedPlaylist& planned) {
      return !chosen.contains(planned.playlist);
    });
    beginRun(texts_.running);
    apply(std::move(plan));
  }

  void enableControls() {
    models_.outline.setEnabled(true);
    models_.ok.setEnabled(true);
    models_.cancel.setEnabled(true);
  }

  std::unordered_map<std::uint64_t, const PlannedPlaylist*> planned_;  ///< in `plan_`
  std::shared_ptr<const TrackStore> tracks_;
  bool isShown_ = false;
  QWidget* notes_;
  QLabel* chosen_;
  QPushButton* cancel_;
  QPushButton* ok_;
};

}  // namespace kestrel
