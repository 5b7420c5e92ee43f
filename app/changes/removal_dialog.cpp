// The dialogs that move the files of copies to the trash, and that take copies out of the library.

#include <QCheckBox>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include "app/changes/change_window.h"
#include "app/changes/copy_model.h"
#include "app/changes/playlist_windows.h"
#include "app/changes/repair_list.h"
#include "app/parts/library_title.h"
#include "app/parts/scope_box.h"
#include "changes/carrying.h"
#include "changes/listed_elsewhere.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/qt/check_table.h"
#include "ui/qt/look.h"
#include "ui/qt/segments.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

class RemovalDialog final : public ChangeWindow {
  Q_DECLARE_TR_FUNCTIONS(kestrel::RemovalDialog)

 public:
  RemovalDialog(AppDelegate& delegate, RemovalOffer::Kind kind, ActionScope scope, QWidget* parent)
      : ChangeWindow(delegate, parent, kind == remove ? tr("Remove Copies") : tr("Move to Trash"),
                     {1000, 660}),
        kind_(kind),
        scope_(new ScopeBox(delegate, std::move(scope))),
        question_(newPlainLabel(tr("Question"))),
        explanation_(newPlainLabel(tr("Explanation"))),
        bannerText_(newPlainLabel(tr("Playlists"))),
        repeats_(new Segments(tr("Where a playlist lists the kept copy already"))),
        repair_(new QCheckBox(tr("Re&pair playlists too"))),
        copies_(new CopyModel([this] { tellSoon(); })),
        table_(new CheckTable(copies_, tr("Copies"), 2)),
        showEntries_(newButton(tr("Show Entrie&s"), [this] { toggleEntries(); })),
        list_(new RepairList([this](LeftAsTheyAre left) {
          copies_->edit([&](RemovalOffer& offer) { offer.leave(std::move(left)); });
          tellSoon();
        })),
        losses_(newPlainLabel(tr("What is lost"))),
        sums_(newPlainLabel(tr("What is chosen"))),
        act_(newPrimaryButton([this] { confirm(); })) {
    question_->setFont(titleFont(question_->font(), 1.2));
    const Capabilities can =
        delegate.application() ? delegate.application()->capabilities() : Capabilities{};
    explanation_->setText(
        kind == remove ? tr("They leave the library, and their files go to the trash. All of it "
                            "can be undone from the history.")
        : can.tracksFollowFiles || can.tracksAreFiles
            ? tr("Their tracks leave the library with them. What is moved can be moved back from "
                 "the history.")
            : tr("The library goes on listing their tracks. What is moved can be moved back from "
                 "the history."));
    repeats_->add(keepBoth, tr("&Keep Both Entries"));
    repeats_->add(dropOne, tr("Dr&op the Repeat"));
    repeats_->choose(keepBoth);
    connect(repeats_, &Segments::changed, this, [this] { tell(); });
    // Whoever moves files leaves no playlist pointing at what is gone, unless that is wanted.
    repair_->setChecked(kind != remove && can.changesPlaylists);
    connect(repair_, &QCheckBox::toggled, this, [this](bool repairs) {
      copies_->edit([&](RemovalOffer& offer) { offer.setRepairs(repairs); });
      tell();
    });
    QWidget* said = newColumn({bannerText_, newRow({repair_, nullptr})}, bannerText_);
    banner_ = newBanner({said, repeats_, showEntries_}, said);
    list_->hide();
    QHeaderView* header = table_->horizontalHeader();
    header->setSectionResizeMode(CopyModel::size, QHeaderView::ResizeToContents);
    auto* all = newButton(
        tr("C&heck All"), [this] { takeAll(true); }, tr("But for what is not safe"));
    auto* none = newButton(tr("Check &None"), [this] { takeAll(false); });
    QPushButton* cancel = newButton(tr("Canc&el"), [this] { reject(); });
    cancel->setDefault(true);
    connect(scope_, &ScopeBox::changed, this, [this] { look(); });
    cancel->setFocus();
    losses_->hide();
    QWidget* carry = newCarryRow();
    QSplitter* lists = newSplitter(Qt::Vertical, {table_, list_});
    setDecision(newColumn({scope_, question_, explanation_, banner_, lists, carry, losses_,
                           newRow({all, none, sums_, cancel, act_}, sums_)},
                          lists));
    look();
  }

  ~RemovalDialog() override { *closed_ = true; }

 private:
  static constexpr auto remove = RemovalOffer::Kind::remove;
  enum Repeats { keepBoth, dropOne };

  void look() override {
    act_->setEnabled(false);
    rememberChoices();
    if (!copies_->offer().copies().empty()) left_ = copies_->offer().left();
    copies_->show({});
    tell();
    question_->setText(tr("Looking at the files…"));
    const int number = ++looks_;
    struct Looked {
      RemovalOffer offer;
      Message unwritable;
    };
    runOrClose<Looked>(
        tr("The files could not be looked at."),
        [&application = *delegate_.application(), kind = kind_, rows = scope_->rows(),
         carry = chosenToCarry(), sounds = delegate_.sounds()] {
          return Looked{RemovalOffer::make(kind, application, rows, carry, sounds.get()),
                        application.reasonNotToWrite()};
        },
        [this, number](Looked looked) {
          // Of other groups than are wanted by now.
          if (number != looks_) return;
          unwritable_ = std::move(looked.unwritable);
          if (!unwritable_.empty()) repair_->setChecked(false);
          RemovalOffer& offer = looked.offer;
          for (std::size_t i = 0; i < offer.copies().size(); ++i)
            if (const auto chosen = chosen_.find(offer.copies()[i].tracks.front());
                chosen != chosen_.end())
              offer.take(i, chosen->second);
          offer.setRepairs(repair_->isChecked());
          offer.leave(left_);
          copies_->show(std::move(offer));
          lookElsewhere();
        });
  }

  /// Which playlists of other libraries list the files. Those are read once, however often the
  /// groups change; nothing goes before it is known.
  void lookElsewhere() {
    elsewhere_.clear();
    std::vector<std::string> files;
    for (const OfferedCopy& copy : copies_->offer().copies())
      if (copy.state != OfferedCopy::State::stays && !copy.path.empty() && !copy.fileStays)
        files.push_back(copy.path);
    const auto found = std::make_shared<std::vector<ListedElsewhere>>();
    const int number = looks_;
    const auto look = [files = std::move(files), found, others = others_, stopped = closed_,
                       &application = *delegate_.application(), &with = delegate_.process().with] {
      if (files.empty()) return;
      if (!*others)
        others->emplace(otherLibraries(
            application.library().identity(),
            {with.files, with.log, with.random, with.clock, nullptr, {{}, [stopped] {
                                                                        return stopped->load();
                                                                      }}}));
      *found = listedElsewhere(**others, files);
    };
    isLooking_ = delegate_.ask(look, [dialog = QPointer<RemovalDialog>(this), found, number] {
      if (!dialog || dialog->looks_ != number) return;
      dialog->elsewhere_ = std::move(*found);
      dialog->isLooking_ = false;
      dialog->tell();
    });
    tell();
  }

  /// What the user has checked or unchecked stays so, whichever groups take part.
  void rememberChoices() {
    for (const OfferedCopy& copy : copies_->offer().copies()) {
      const std::uint64_t track = copy.tracks.front();
      if (copy.isTaken == (copy.state == OfferedCopy::State::safe))
        chosen_.erase(track);
      else
        chosen_.insert_or_assign(track, copy.isTaken);
    }
  }

  void takeAll(bool taken) {
    RemovalOffer offer = copies_->offer();
    for (std::size_t i = 0; i < offer.copies().size(); ++i)
      if (!taken || offer.copies()[i].state == OfferedCopy::State::safe) offer.take(i, taken);
    copies_->show(std::move(offer));
    tell();
  }

  /// Once for all that are checked together.
  void tellSoon() {
    if (std::exchange(telling_, true)) return;
    QTimer::singleShot(0, this, [this] {
      telling_ = false;
      tell();
    });
  }

  void tell() {
    const RemovalOffer& offer = copies_->offer();
    const RemovalOffer::Sums sums = offer.sums();
    const std::int64_t going = countOf(kind_ == remove ? sums.copies : sums.files);
    act_->setEnabled(going > 0 && !isLooking_ && (unwritable_.empty() || !changesLibrary()));
    if (going == 0) {
      act_->setText(kind_ == remove ? tr("&Remove Copies") : tr("&Move to the Trash"));
      question_->setText(offer.copies().empty() ? tr("There is nothing to remove: all of these "
                                                     "tracks are kept.")
                         : hasChoice()          ? tr("Nothing is checked.")
                                                : tr("There is nothing to remove: see below why "
                                                              "these stay."));
    } else if (kind_ == remove) {
      act_->setText(toQt(Message::tr("&Remove %Ln Copies", "&Remove %Ln Copy", going)));
      question_->setText(toQt(Message::tr("Remove %Ln copies from the library?",
                                          "Remove %Ln copy from the library?", going)));
    } else {
      act_->setText(toQt(
          repair_->isChecked() && sums.entries > 0
              ? Message::tr("&Move %Ln Files, Repair %1", "&Move %Ln File, Repair %1", going)
                    .arg(Message::tr("%Ln Entries", "%Ln Entry", countOf(sums.entries)))
              : Message::tr("&Move %Ln Files to the Trash", "&Move %Ln File to the Trash", going)));
      question_->setText(
          toQt(Message::tr("Move %Ln files to the trash?", "Move %Ln file to the trash?", going)));
    }
    if (kind_ == remove)
      explanation_->setText(going > 0 && sums.files == 0
                                ? tr("They leave the library. None of their files is here, so no "
                                     "file goes to the trash. It can be undone from the history.")
                                : tr("They leave the library, and their files go to the trash. All "
                                     "of it can be undone from the history."));
    tellPlaylists(sums);
    tellLosses();
    list_->load(offer);
    QString text;
    if (sums.files > 0)
      text = toQt(Message::tr("%Ln files, %1", "%Ln file, %1", countOf(sums.files))
                      .arg(Message::verbatim(fromQt(sizeText(sums.bytes)))));
    if (sums.stay > 0) {
      if (!text.isEmpty()) text += QStringLiteral(" · ");
      text += toQt(Message::tr("%Ln stay", "%Ln stays", countOf(sums.stay)));
    }
    sums_->setText(text);
  }

  void tellPlaylists(const RemovalOffer::Sums& sums) {
    const std::int64_t entries = countOf(sums.entries);
    const bool repairs = kind_ == remove || repair_->isChecked();
    const bool canLeave = repairs && !copies_->offer().repairs().empty();
    banner_->setVisible(sums.entries > 0 || canLeave);
    showEntries_->setVisible(canLeave);
    list_->setVisible(canLeave && showsEntries_);
    showEntries_->setText(showsEntries_ ? tr("Hide Entrie&s") : tr("Show Entrie&s"));
    const Message playlists = Message::tr("%Ln playlists", "%Ln playlist", countOf(sums.playlists));
    const std::size_t repeating = repairs ? copies_->offer().repeating() : 0;
    const bool drops = repeating > 0 && repeats_->chosen() == dropOne;
    QString text =
        drops     ? toQt(Message::tr("%Ln entries in %1 get the kept copies, or go where one "
                                         "is listed already.",
                                     "%Ln entry in %1 gets the kept copy, or goes where it "
                                         "is listed already.",
                                     entries)
                             .arg(playlists))
        : repairs ? toQt(Message::tr("%Ln entries in %1 get the kept copies.",
                                     "%Ln entry in %1 gets the kept copy.", entries)
                             .arg(playlists))
                  : toQt(Message::tr("%Ln entries in %1 still point at these files.",
                                     "%Ln entry in %1 still points at these files.", entries)
                             .arg(playlists));
    repeats_->setVisible(repeating > 0);
    if (repeating > 0 && !drops)
      text += QLatin1Char(' ') +
              toQt(Message::tr("%Ln playlists list one already.", "%Ln playlist lists one already.",
                               countOf(repeating)));
    bannerText_->setText(text);
    repair_->setVisible(kind_ != remove);
  }

  void toggleEntries() {
    showsEntries_ = !showsEntries_;
    tell();
  }

  /// What kept copies may be given of those that leave: greyed with the reason where the library
  /// cannot. None where tracks stay.
  QWidget* newCarryRow() {
    const Capabilities can = delegate_.application()->capabilities();
    const RunKind run = kind_ == remove ? RunKind::remove : RunKind::trash;
    QList<QWidget*> parts{new QLabel(tr("Carry over to the kept copies:"))};
    const std::pair<TrackValue, QString> sorts[] = {{TrackValue::plays, tr("pla&ys")},
                                                    {TrackValue::rating, tr("rat&ing")},
                                                    {TrackValue::added, tr("da&te added")},
                                                    {TrackValue::comments, tr("&comments")}};
    bool canAny = false;
    for (const auto& [sort, title] : sorts) {
      auto* box = new QCheckBox(title);
      const Message why = whyNotCarried({sort}, run, can);
      box->setEnabled(why.empty());
      box->setToolTip(why.empty() ? tr("The higher, the earlier, the sum, or what is missing")
                                  : toQt(ended(why)));
      if (!why.empty()) box->setAccessibleDescription(toQt(ended(why)));
      canAny |= why.empty();
      connect(box, &QCheckBox::toggled, this, [this] { look(); });
      carried_.emplace_back(sort, box);
      parts << box;
    }
    parts << nullptr;
    if (delegate_.knowsSounds()) parts << newSoundBox();
    QWidget* row = newRow(parts);
    row->setVisible(kind_ == remove || canAny || delegate_.knowsSounds());
    return row;
  }
  QCheckBox* newSoundBox() {
    Preferences& preferences = delegate_.process().with.preferences;
    auto* box = new QCheckBox(tr("Only what so&unds the same"));
    box->setToolTip(tr("Copies that sound otherwise, or could not be compared, are not ticked"));
    box->setChecked(preferences.boolean(settings::onlySameSound));
    connect(box, &QCheckBox::toggled, this, [this, &preferences](bool on) {
      preferences.set(settings::onlySameSound, on);
      look();
    });
    return box;
  }
  [[nodiscard]] TrackValueSet chosenToCarry() const {
    TrackValueSet chosen;
    for (const auto& [sort, box] : carried_)
      if (box->isChecked()) chosen.add(sort);
    return chosen;
  }

  /// What no run gives to the kept copies.
  void tellLosses() {
    const RemovalOffer& offer = copies_->offer();
    QStringList lines;
    if (!unwritable_.empty() && changesLibrary()) lines << cannotBeChanged(unwritable_);
    if (const Message gain = offer.gain(); !gain.empty())
      lines << tr("Carried over: %1.").arg(toQt(gain));
    if (const Message total = explain(offer.losses()); !total.empty())
      lines << (chosenToCarry().empty() ? tr("What goes with them and the kept copies lack: %1.")
                                        : tr("What goes all the same: %1."))
                   .arg(toQt(total));
    if (kind_ == remove)
      for (const RemovalOffer::Loser& loser : offer.losers())
        lines << toQt(Message::tr("%1 is made by the music application and loses %Ln entries.",
                                  "%1 is made by the music application and loses %Ln entry.",
                                  countOf(loser.entries))
                          .arg(inQuotes(loser.name)));
    if (isLooking_) lines << tr("Looking into the other libraries of this computer…");
    constexpr std::size_t most = 4;
    for (std::size_t i = 0; i < std::min(elsewhere_.size(), most); ++i)
      lines << toQt(
          Message::tr("%1 of another library here, %2, lists %Ln of these files.",
                      "%1 of another library here, %2, lists %Ln of these files.",
                      countOf(elsewhere_[i].entries))
              .arg(inQuotes(elsewhere_[i].playlist))
              .arg(Message::verbatim(fromQt(
                  libraryTitle(elsewhere_[i].address, delegate_.process().with.files).name))));
    if (elsewhere_.size() > most)
      lines << toQt(Message::tr("So do %Ln more playlists of other libraries.",
                                "So does %Ln more playlist of other libraries.",
                                countOf(elsewhere_.size() - most)));
    losses_->setText(lines.join(QLatin1Char('\n')));
    losses_->setVisible(!lines.isEmpty());
  }

  /// And not only moves files.
  [[nodiscard]] bool changesLibrary() const {
    return kind_ == remove || repair_->isChecked() || !chosenToCarry().empty();
  }

  [[nodiscard]] bool hasChoice() const {
    for (const OfferedCopy& copy : copies_->offer().copies())
      if (copy.state != OfferedCopy::State::stays) return true;
    return false;
  }

  void confirm() {
    const RemovalOffer& offer = copies_->offer();
    const bool drops = repeats_->chosen() == dropOne;
    if (kind_ == remove) {
      beginRun(tr("Removing copies…"));
      return apply(offer.plan(drops), offer.guard());
    }
    beginRun(tr("Moving files to the trash…"));
    if (!repair_->isChecked() || offer.sums().entries == 0)
      return apply(offer.plan(false), offer.guard());
    apply([offer, drops](
              MusicApplication& application) { return offer.repairingPlan(application, drops); },
          offer.guard());
  }

  const RemovalOffer::Kind kind_;
  ScopeBox* scope_;
  QLabel* question_;
  QLabel* explanation_;
  QLabel* bannerText_;
  Segments* repeats_;
  QCheckBox* repair_;
  QWidget* banner_ = nullptr;
  CopyModel* copies_;
  CheckTable* table_;
  QPushButton* showEntries_;
  RepairList* list_;
  bool showsEntries_ = false;
  LeftAsTheyAre left_;  ///< whichever groups take part
  QLabel* losses_;
  QLabel* sums_;
  QPushButton* act_;
  bool telling_ = false;
  std::vector<std::pair<TrackValue, QCheckBox*>> carried_;
  using Others = std::optional<std::vector<OtherLibrary>>;
  std::shared_ptr<Others> others_ = std::make_shared<Others>();  ///< the worker's, once it has read
  std::shared_ptr<std::atomic<bool>> closed_ = std::make_shared<std::atomic<bool>>(false);
  std::vector<ListedElsewhere> elsewhere_;
  Message unwritable_;
  int looks_ = 0;
  bool isLooking_ = false;
  std::unordered_map<std::uint64_t, bool> chosen_;  ///< by track, where it is not as offered
};

}  // namespace

QDialog* newTrashDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent) {
  return new RemovalDialog(delegate, RemovalOffer::Kind::trash, std::move(scope), parent);
}

QDialog* newRemoveDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent) {
  return new RemovalDialog(delegate, RemovalOffer::Kind::remove, std::move(scope), parent);
}

}  // namespace kestrel
