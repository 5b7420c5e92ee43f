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

#include "app/changes/change_window.h"
#include "app/changes/entry_table.h"
#include "library/listed_playlist.h"
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
    QString selectOne;         ///< what the entries are of
  };

  ReviewWindow(AppDelegate& delegate, QWidget* parent, QSize size, Models models, Texts texts)
      : ChangeWindow(delegate, parent, texts.title, size),
        models_(models),
        texts_(std::move(texts)),
        outline_(new OutlineView({tr("Playlist"), tr("Entries"), texts_.changeColumn})),
        detailTitle_(newPlainLabel(tr("Selected playlist"))),
        entries_(new EntryModel(
            texts_.entryColumns, [this](const EntryRow& row) { return reasonOf(row); },
            [this](const EntryRow& row) { take(row); })),
        entryTable_(newEntryTable(entries_, texts_.entries)),
        reveal_(newButton(
            tr("Show Play&list"), [this] { reveal(); },
            tr("Show the highlighted playlist in the music application"))),
        notes_(newNotesArea(texts_.notes)),
        chosen_(newPlainLabel(tr("What is chosen"))),
        cancel_(newButton(tr("Canc&el"), [this] { reject(); })),
        ok_(newPrimaryButton([this] { confirm(); })) {
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
    forgetPlan();
    ++looks_;
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
  /// `unwritable`: why none of it can be done, or empty.
  void show(Plan plan, std::shared_ptr<const TrackStore> tracks, bool found, Message unwritable) {
    // Other groups may have been asked for meanwhile, of which the answer is still to come.
    if (--looks_ > 0) return;
    forgetPlan();
    plan_ = std::move(plan);
    tracks_ = std::move(tracks);
    isShown_ = found;
    unwritable_ = std::move(unwritable);
    for (const PlannedPlaylist& planned : plan_.playlists)
      planned_.emplace(planned.playlist, &planned);
    forgetChangedPlaylists();
    leaveUnsafeEntries();
    showNotesIn(notes_, unwritable_.empty() ? notes() : notes() << cannotBeChanged(unwritable_));
    if (found) {
      outline_->describeAnew();
      outline_->highlightFirstPlaylist();
    }
    checksChanged();
  }

  /// Without the entries that the user has left out.
  [[nodiscard]] PlannedPlaylist chosenOf(const PlannedPlaylist& planned,
                                         std::span<const std::uint64_t> entries) const {
    PlannedPlaylist chosen = planned;
    if (const auto left = left_.find(planned.playlist); left != left_.end()) {
      std::erase_if(chosen.replacements, [&](const Replacement& change) {
        return left->second.positions.contains(change.position);
      });
      std::erase_if(chosen.deleteIndexes, [&](std::uint64_t position) {
        return left->second.positions.contains(position);
      });
    }
    finish(chosen, entries);
    return chosen;
  }

  void runEnded() final {
    models_.spinner.stopAnimation();
    enableControls();
  }

  /// Shows anew what `finish` makes of the playlists.
  void entriesChanged() {
    counts_.clear();
    outline_->renumber();
    checksChanged();
    highlightChanged();
  }

  /// What is done with entries.
  struct Counts {
    std::size_t replaced = 0, deleted = 0;
    [[nodiscard]] std::size_t all() const { return replaced + deleted; }
    Counts& operator+=(const Counts& other) {
      replaced += other.replaced;
      deleted += other.deleted;
      return *this;
    }
  };

  /// All that was found, in the folders of these playlists, however deep.
  static typename OutlineModel<Record>::Content everythingIn(const AffectedPlaylists<Record>& found,
                                                             const Playlists& playlists) {
    if (std::find(found.shown.begin(), found.shown.end(), false) == found.shown.end())
      return found.outline;
    SharedRecords<Record> folders;
    for (std::size_t i = 0; i < playlists->size(); ++i)
      if ((*playlists)[i].kind == PlaylistKind::folder)
        folders.push_back(std::make_shared<const Record>(sharedPlaylist(playlists, i)));
    return std::make_shared<const std::vector<OutlineNode<Record>>>(
        wholeOutline(found.affected, folders));
  }

  const Models models_;
  const Texts texts_;
  Plan plan_;
  std::shared_ptr<const TrackStore> tracks_;
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
  /// All that may change in a playlist, be it taken or not.
  virtual std::vector<EntryRow> rowsOf(const PlannedPlaylist& planned, const Record& record) = 0;
  /// What the button that acts says; of no entries when nothing is chosen.
  virtual Message actionTitle(const Counts& entries) const = 0;
  /// What is said of a playlist of which so many entries change.
  virtual Message detail(const PlannedPlaylist& planned, const Counts& entries) const = 0;
  /// The last word on what is done with a playlist of these entries.
  virtual void finish(PlannedPlaylist&, std::span<const std::uint64_t>) const {}
  virtual QString reasonOf(const EntryRow&) { return {}; }
  /// Whether an entry is better left as it is.
  virtual bool isUnsafe(const Replacement&) const { return false; }
  /// What is said of a highlighted playlist in which nothing is planned.
  virtual QString detailWithoutPlan(const Record&) const { return texts_.selectOne; }
  virtual QStringList notes() const = 0;
  virtual void selectionChanged() {}
  /// The IDs of the checked playlists, when the user has confirmed.
  virtual std::unordered_set<std::uint64_t> confirmed() = 0;

  void forgetPlan() {
    planned_.clear();
    counts_.clear();
    plan_ = {};
    isShown_ = false;
  }
  static std::size_t changesIn(const PlannedPlaylist& planned) {
    return planned.replacements.size() + planned.deleteIndexes.size();
  }
  /// Of the entries that may change, those that do.
  const Counts& countsOf(const PlannedPlaylist& planned, const Record& record) const {
    const auto [found, isNew] = counts_.try_emplace(planned.playlist);
    if (isNew) {
      const PlannedPlaylist chosen = chosenOf(planned, record.playlist().items);
      found->second = {chosen.replacements.size(), chosen.deleteIndexes.size()};
    }
    return found->second;
  }
  /// What is not safe is left out until the user wants it.
  void leaveUnsafeEntries() {
    for (const PlannedPlaylist& planned : plan_.playlists) {
      LeftEntries& left = left_[planned.playlist];
      left.entries = planned.entries;
      for (const Replacement& change : planned.replacements)
        if (isUnsafe(change) && left.offered.insert(change.position).second)
          left.positions.insert(change.position);
    }
  }
  /// What was left out stays so, whatever else is looked at, while the playlist lists what it did.
  void forgetChangedPlaylists() {
    for (const PlannedPlaylist& planned : plan_.playlists)
      if (const auto left = left_.find(planned.playlist);
          left != left_.end() && left->second.entries != planned.entries)
        left_.erase(left);
  }
  /// nullptr for playlists in which nothing would change.
  [[nodiscard]] const PlannedPlaylist* plannedOf(const Record& record) const {
    const auto found = planned_.find(record.playlist().persistentID);
    return found == planned_.end() ? nullptr : found->second;
  }
  void take(const EntryRow& row) {
    const PlannedPlaylist* planned = highlighted();
    if (!planned) return;
    LeftEntries& left = left_[planned->playlist];
    left.entries = planned->entries;
    if (row.isTaken)
      left.positions.erase(row.position);
    else
      left.positions.insert(row.position);
    counts_.erase(planned->playlist);
    outline_->renumber();
    checksChanged();
    tellDetail();
  }

  static QString warningOf(const PlannedPlaylist& planned) {
    if (planned.repeats.empty()) return {};
    return toQt(Message::tr("It lists %Ln kept copies already", "It lists %Ln kept copy already",
                            static_cast<std::int64_t>(planned.repeats.size())));
  }

  OutlineView::Row row(const Record& record) const {
    OutlineView::Row row;
    row.icon = record.isFolder() ? QStringLiteral("f") : QStringLiteral("u");
    row.name = toQt(record.playlist().name);
    row.isFolder = record.isFolder();
    if (row.isFolder) return row;
    const PlannedPlaylist* planned = plannedOf(record);
    const std::size_t changes = planned ? changesIn(*planned) : changesWithoutPlan(record);
    const std::size_t taken = planned ? countsOf(*planned, record).all() : changes;
    row.numbers << numberText(record.playlist().items.size())
                << (taken == changes ? numberText(changes)
                                     : toQt(Message::tr("%1 of %2").arg(taken).arg(changes)));
    row.checkable = planned != nullptr;
    row.checked = planned && !unchecked_.contains(planned->playlist);
    if (planned) row.warning = warningOf(*planned);
    return row;
  }

  void checksChanged() {
    std::unordered_set<std::uint64_t> checked;
    Counts entries;
    for (const IndexPath& path : outline_->checkedPaths())
      if (const auto* node = models_.outline.node(path))
        if (const PlannedPlaylist* planned = plannedOf(*node->record)) {
          checked.insert(planned->playlist);
          entries += countsOf(*planned, *node->record);
        }
    ok_->setEnabled(models_.ok.isEnabled() && unwritable_.empty() && entries.all() > 0);
    ok_->setText(toQt(actionTitle(entries)));
    if (isShown_)
      for (const PlannedPlaylist& planned : plan_.playlists) {
        if (checked.contains(planned.playlist))
          unchecked_.erase(planned.playlist);
        else
          unchecked_.insert(planned.playlist);
      }
    chosen_->setText(
        isShown_ ? toQt(Message::tr("%1 of %Ln playlists chosen", "%1 of %Ln playlist chosen",
                                    countOf(plan_.playlists.size()))
                            .arg(checked.size()))
                 : QString());
  }

  [[nodiscard]] const PlannedPlaylist* highlighted() const {
    const auto records = models_.outline.selectedRecords();
    return records.size() == 1 && !records.front()->isFolder() ? plannedOf(*records.front())
                                                               : nullptr;
  }

  void highlightChanged() {
    models_.outline.setSelection(outline_->highlightedPaths());
    const auto records = models_.outline.selectedRecords();
    reveal_->setEnabled(records.size() == 1 && records.front()->playlist().persistentID != 0);
    selectionChanged();
    const PlannedPlaylist* planned = highlighted();
    std::vector<EntryRow> rows;
    if (planned) {
      rows = rowsOf(*planned, *records.front());
      if (const auto left = left_.find(planned->playlist); left != left_.end())
        for (EntryRow& row : rows) row.isTaken = !left->second.positions.contains(row.position);
    }
    entries_->setRows(std::move(rows), tracks_);
    tellDetail();
  }

  void tellDetail() {
    const auto records = models_.outline.selectedRecords();
    const PlannedPlaylist* planned = highlighted();
    if (planned)
      detailTitle_->setText(toQt(detail(*planned, countsOf(*planned, *records.front()))));
    else
      detailTitle_->setText(records.size() == 1 && !records.front()->isFolder()
                                ? detailWithoutPlan(*records.front())
                                : texts_.selectOne);
  }

  void reveal() {
    if (!delegate_.isBusy()) revealSelected();
  }

  void confirm() {
    std::unordered_map<std::uint64_t, std::shared_ptr<const Record>> records;
    for (const IndexPath& path : outline_->checkedPaths())
      if (const auto* node = models_.outline.node(path))
        records.emplace(node->record->playlist().persistentID, node->record);
    Plan plan = plan_;
    plan.playlists.clear();
    const auto chosen = confirmed();
    for (const PlannedPlaylist& planned : plan_.playlists) {
      const auto record = records.find(planned.playlist);
      const auto leaves = [&](Message reason) {
        plan.leftOut.push_back({LeftOut::What::playlist, TextSorter::decToHex(planned.playlist),
                                planned.name, std::move(reason)});
      };
      if (record == records.end() || !chosen.contains(planned.playlist)) {
        leaves(Message::tr("you left it out"));
        continue;
      }
      PlannedPlaylist taken = chosenOf(planned, record->second->playlist().items);
      if (const std::size_t left = changesIn(planned) - changesIn(taken); left > 0)
        leaves(Message::tr("%Ln of its entries are left out", "%Ln of its entries is left out",
                           countOf(left)));
      if (changesIn(taken) > 0) plan.playlists.push_back(std::move(taken));
    }
    beginRun(texts_.running);
    apply(std::move(plan));
  }

  void enableControls() {
    models_.outline.setEnabled(true);
    models_.ok.setEnabled(true);
    models_.cancel.setEnabled(true);
  }

  std::unordered_map<std::uint64_t, const PlannedPlaylist*> planned_;  ///< in `plan_`
  mutable std::unordered_map<std::uint64_t, Counts> counts_;  ///< by playlist, as far as asked for
  /// Entries of a playlist that the user has left out, and the fingerprint of all of its entries.
  struct LeftEntries {
    std::uint64_t entries = 0;
    std::unordered_set<std::uint64_t> positions;
    std::unordered_set<std::uint64_t> offered;  ///< that are not safe, as the user knows
  };
  /// These two outlive another look.
  std::unordered_map<std::uint64_t, LeftEntries> left_;  ///< by playlist
  std::unordered_set<std::uint64_t> unchecked_;
  bool isShown_ = false;
  Message unwritable_;
  int looks_ = 0;  ///< that are not answered yet
  QWidget* notes_;
  QLabel* chosen_;
  QPushButton* cancel_;
  QPushButton* ok_;
};

}  // namespace kestrel
