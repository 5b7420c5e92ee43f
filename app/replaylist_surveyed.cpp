#include "app/replaylist_surveyed.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>
#include <vector>

#include "app/history_changes.h"
#include "changes/report.h"
#include "ui/qt/text.h"
#include "ui/replaylist_control.h"
#include "ui/snapshot.h"

namespace kestrel {
namespace {

struct ReplaylistTexts {
  Q_DECLARE_TR_FUNCTIONS(kestrel::ReplaylistTexts)
};

}  // namespace

QString warningOf(const PlannedPlaylist& planned) {
  QStringList texts;
  if (!planned.repeats.empty())
    texts << ReplaylistTexts::tr("Tracks that it will list more than once: %1.")
                 .arg(planned.repeats.size());
  return texts.join(QLatin1Char('\n'));
}

ReplaylistSurveyed::ReplaylistSurveyed(MusicApplication& application) {
  const SurveyReport& report = ReplaylistControl::report();
  outcome_ = report.outcome;
  tracks_ = TextSorter::groomedTracksDictionary();
  if (outcome_ == SurveyOutcome::severalKeepers) return;
  // To the survey a library that cannot be read has no playlists; here it is said why.
  application.library().reload();
  std::vector<ReplaylistChoice> choices = choicesOf(report);
  std::erase_if(choices, [](const ReplaylistChoice& choice) { return !choice.shown; });
  plan_ = replaylistPlan(application, report, choices);
  rows_ = rowsOfReplaced(plan_);
  for (std::size_t i = 0; i < plan_.playlists.size(); ++i)
    planned_.emplace(plan_.playlists[i].playlist, i);
}

const PlannedPlaylist* ReplaylistSurveyed::planned(std::uint64_t playlist) const {
  const auto found = planned_.find(playlist);
  return found == planned_.end() ? nullptr : &plan_.playlists[found->second];
}

std::optional<std::uint32_t> ReplaylistSurveyed::rowOf(std::uint64_t track) const {
  const auto found = rows_.find(track);
  return found == rows_.end() ? std::nullopt : std::optional(found->second);
}

QString ReplaylistSurveyed::songsOf(const Message& reason) const {
  constexpr std::size_t most = 5;
  std::vector<Message> songs;
  std::size_t more = 0;
  for (const LeftOut& left : plan_.leftOut) {
    if (left.what != LeftOut::What::group || !(left.reason == reason)) continue;
    if (songs.size() < most)
      songs.push_back(inQuotes(left.name));
    else
      ++more;
  }
  return toQt(listed(songs, more));
}

QStringList ReplaylistSurveyed::notes() const {
  QStringList texts;
  if (outcome_ == SurveyOutcome::none) return texts;
  if (outcome_ == SurveyOutcome::noResults)
    texts << ReplaylistTexts::tr("No playlist of yours holds a track that is not kept.");
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
                   ReplaylistTexts::tr("Left out: %1.").arg(songsOf(warning.reason));
    // The outline and the table of entries say of each where and what.
    else if (!isRepeat(warning) || repeating == 1)
      texts << toQt(sentence(warning));
    else if (!std::exchange(toldRepeats, true))
      texts << ReplaylistTexts::tr(
                   "%1 playlists will list tracks more than once; they are marked with ⚠.")
                   .arg(repeating);
  }
  return texts;
}

}  // namespace kestrel
