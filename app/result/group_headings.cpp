#include "app/result/group_headings.h"

#include <QCoreApplication>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "dupes/track_sounds.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

struct HeadingTexts {
  Q_DECLARE_TR_FUNCTIONS(kestrel::GroupHeading)
};

/// The song as its kept copy names it, else as the first does.
std::uint32_t namingRow(const ResultGroups& groups, std::span<const std::uint32_t> members) {
  for (const std::uint32_t member : members)
    if (groups.isKeeper(member)) return member;
  return members.front();
}

}  // namespace

QString agreementText(const GroupAgreement& agreement) {
  if (agreement.of == 0) return {};
  return toQt(Message::tr("%1 of %Ln rules agree", "%1 of %Ln rule agrees",
                          static_cast<std::int64_t>(agreement.of))
                  .arg(agreement.agree));
}

QString soundText(const Likeness& likeness) {
  const QString percent = toQt(Message::tr("%1 %").arg(likeness.percent));
  switch (likeness.kind) {
    case Likeness::Kind::unknown:
      return {};
    case Likeness::Kind::sameAudio:
      return HeadingTexts::tr("same audio, bit for bit");
    case Likeness::Kind::same:
      return HeadingTexts::tr("same sound, %1").arg(percent);
    case Likeness::Kind::sameInPart:
      return HeadingTexts::tr("same sound in part, %1").arg(percent);
    case Likeness::Kind::different:
      break;
  }
  return HeadingTexts::tr("another sound, %1").arg(percent);
}

GroupHeading groupHeading(const AppDelegate& delegate, std::int32_t group, GroupOrder order) {
  const ResultGroups& groups = delegate.groups();
  const auto members = groups.members(group);
  if (members.empty() || groups.rowCount() != delegate.content().size()) return {};
  using Tone = GroupBadge::Tone;
  const ResultTrack& naming = delegate.content()[namingRow(groups, members)];
  const GroupFacts facts = groups.facts(group);
  GroupHeading heading;
  heading.title = toQt(naming.value(TrackKey::tName).text());
  heading.artist = toQt(naming.value(TrackKey::tArtist).text());
  heading.copies =
      toQt(Message::tr("%Ln copies", "%Ln copy", static_cast<std::int64_t>(facts.copies)));
  if (facts.freed > 0) heading.freed = sizeText(facts.freed);
  const auto badge = [&](const QString& text, Tone tone) {
    heading.badges.push_back({text, tone});
  };
  if (groups.isUndecided(group))
    badge(HeadingTexts::tr("your choices differ"), Tone::doubt);
  else if (facts.keepers == 0)
    badge(HeadingTexts::tr("undecided"), Tone::doubt);
  else if (facts.keepers > 1)
    badge(toQt(Message::tr("%Ln kept", "%Ln kept", static_cast<std::int64_t>(facts.keepers))),
          Tone::quiet);
  if (facts.missing > 0)
    badge(toQt(Message::tr("%Ln files missing", "%Ln file missing",
                           static_cast<std::int64_t>(facts.missing))),
          Tone::missing);
  std::vector<const ResultTrack*> rows;
  for (const std::uint32_t member : members) rows.push_back(&delegate.content()[member]);
  const bool areCompared = std::all_of(rows.begin(), rows.end(), [](const ResultTrack* row) {
    return row->sound.fault == SoundFault::none;
  });
  if (areCompared && leastAlike(rows).soundsSame())
    badge(HeadingTexts::tr("same sound"), Tone::quiet);
  const GroupKnowledge* knowledge = delegate.knowledge();
  if (!knowledge) return heading;
  for (const Doubt& doubt : knowledge->doubtsOf(group)) badge(toQt(explain(doubt)), Tone::doubt);
  if (order == GroupOrder::disagreement && !groups.isPicked(group))
    if (const QString agreement = agreementText(knowledge->agreementOf(group));
        !agreement.isEmpty())
      badge(agreement, Tone::quiet);
  return heading;
}

}  // namespace kestrel
