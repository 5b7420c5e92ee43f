#include "app/result/compare_words.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "app/parts/pane_parts.h"
#include "app/result/group_comparison.h"
#include "app/result/group_headings.h"
#include "dupes/losses.h"
#include "dupes/match_explanation.h"
#include "dupes/track_sounds.h"
#include "platform/preferences.h"
#include "ui/dupe_search.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

void showIn(QLabel* label, const QString& text) {
  label->setText(text);
  label->setVisible(!text.isEmpty());
}

}  // namespace

CompareWords::CompareWords(AppDelegate& delegate)
    : delegate_(delegate),
      title_(newPlainLabel(tr("Selected track"))),
      reason_(newPlainLabel(tr("Why it is kept"))),
      agreement_(newPlainLabel(tr("How many rules agree"))),
      lacking_(newPlainLabel(tr("What the kept copy lacks"))),
      sameTitle_(new QLabel(tr("The same in all"))),
      same_(newPlainLabel(tr("The same in all copies"))),
      whyMatched_(nullptr),
      matched_(newPlainLabel(tr("Why they match"))),
      told_(newPlainLabel(tr("What the music application says"))) {
  setBold(title_);
  setBold(reason_);
  sameTitle_->setFont(smallFont(titleFont(font())));
  for (QLabel* label : {agreement_, sameTitle_, same_, matched_, told_})
    setTextColor(label, "grayText");
  matched_->setObjectName(QStringLiteral("whyMatched"));
  whyMatched_ = newFold(tr("Why they match"), matched_);
  connect(whyMatched_, &QToolButton::toggled, this, &CompareWords::grown);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  for (QWidget* part : QList<QWidget*>{title_, reason_, agreement_, lacking_, whyMatched_, matched_,
                                       sameTitle_, same_, told_})
    column->addWidget(part);
  column->addStretch(1);
}

void CompareWords::showNothing() {
  title_->setText(tr("Select a track to compare it with its copies."));
  for (QLabel* label : {reason_, agreement_, lacking_, same_, told_}) showIn(label, {});
  for (QWidget* part : QList<QWidget*>{sameTitle_, whyMatched_, matched_}) part->hide();
}

void CompareWords::show(std::uint32_t row, const std::vector<std::uint32_t>& copies,
                        const GroupComparison& comparison) {
  const ResultGroups& groups = delegate_.groups();
  const ResultTrack& track = delegate_.content()[row];
  const QString name = toQt(track.value(TrackKey::tName).text());
  const QString artist = toQt(track.value(TrackKey::tArtist).text());
  title_->setText(artist.isEmpty() ? name : name + QStringLiteral(" — ") + artist);

  const QString why = toQt(delegate_.keptBecause(row));
  const bool anyKept = std::any_of(copies.begin(), copies.end(),
                                   [&](std::uint32_t copy) { return groups.isKeeper(copy); });
  // Where nothing is kept, the reason says so itself.
  showIn(reason_, why.isEmpty() ? QString()
                  : anyKept     ? tr("Kept: %1").arg(why)
                                : why.left(1).toUpper() + why.mid(1));
  const GroupKnowledge* known = delegate_.knowledge();
  QStringList told;
  if (known && !groups.isPicked(track.tGroupID))
    if (const QString agreement = agreementText(known->agreementOf(track.tGroupID));
        !agreement.isEmpty())
      told << agreement;
  std::vector<const ResultTrack*> members;
  for (const std::uint32_t copy : copies) members.push_back(&delegate_.content()[copy]);
  if (const QString sound = soundText(leastAlike(members)); !sound.isEmpty()) told << sound;
  for (std::size_t i = 0; i < members.size(); ++i)
    if (const SoundFault fault = members[i]->sound.ownFault(); fault != SoundFault::none)
      told << tr("Copy %1: %2").arg(numberText(i + 1), toQt(explain(fault)));
  if (known)
    for (const Doubt& doubt : known->doubtsOf(track.tGroupID))
      told << tr("Doubtful: %1").arg(toQt(explain(doubt)));
  showIn(agreement_, told.join(QStringLiteral(" · ")));
  showIn(lacking_, lacking(copies));
  showIn(same_, copies.size() > 1 ? comparison.same.join(QStringLiteral(" · ")) : QString());
  sameTitle_->setVisible(!same_->text().isEmpty());
  explainMatching(row, copies);
}

QString CompareWords::lacking(const std::vector<std::uint32_t>& copies) const {
  const GroupKnowledge* known = delegate_.knowledge();
  if (!known || !known->facts()) return {};
  const auto content = delegate_.content();
  std::vector<const ResultTrack*> members;
  for (const std::uint32_t copy : copies) members.push_back(&content[copy]);
  const auto losses = lossesOf(members, *known->facts(), [&](const ResultTrack& member) {
    return delegate_.groups().isKeeper(static_cast<std::uint32_t>(&member - content.data()));
  });
  QStringList lines;
  for (const Loss& loss : losses) {
    const auto member = std::find_if(members.begin(), members.end(), [&](const ResultTrack* one) {
      return one->record == loss.track;
    });
    lines << tr("Would go with copy %1: %2")
                 .arg(numberText(static_cast<std::size_t>(member - members.begin()) + 1),
                      toQt(explain(loss)));
  }
  return lines.join(QLatin1Char('\n'));
}

void CompareWords::explainMatching(std::uint32_t row, const std::vector<std::uint32_t>& copies) {
  const ResultTrack& track = delegate_.content()[row];
  const Process& process = delegate_.process();
  const bool matches = copies.size() > 1 && track.store;
  whyMatched_->setVisible(matches);
  matched_->setVisible(matches && whyMatched_->isChecked());
  if (!matches) return;
  std::vector<const TrackRecord*> members;
  for (const std::uint32_t copy : copies)
    if (const ResultTrack& one = delegate_.content()[copy]; one.store == track.store)
      members.push_back(one.record);
  const MatchExplanation match =
      explainMatch(*track.store, members, process.textSorter.storedCriteria,
                   groupingOptions(process.with.preferences), nullptr);
  QStringList lines;
  const auto name = [](const std::string& key) { return criterionName(key); };
  for (const Message& line : explain(match, name)) {
    lines << toQt(ended(line));
    lines.back()[0] = lines.back()[0].toUpper();
  }
  matched_->setText(lines.join(QLatin1Char('\n')));
}

void CompareWords::tell(const QString& text) { showIn(told_, text); }

}  // namespace kestrel
