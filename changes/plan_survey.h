/// From what a survey or a scan has found, and the user chosen, to what a plan is made of.
#pragma once

#include <span>
#include <vector>

#include "changes/plan.h"
#include "cleanup/repeats.h"
#include "ui/replaylist_control.h"
#include "ui/replaylist_state.h"

namespace kestrel {

/// The playlists that the user confirmed. A folder among them stands for the affected playlists
/// that the outline shows in it, and is itself chosen without anything to replace, so that the plan
/// says so.
std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey,
                                        std::span<const PlaylistReplacements> confirmed);
/// Every affected playlist that has something to replace, those too that the outline cannot show.
std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey);

/// What the survey left out: groups, and affected playlists that are not among the choices because
/// the outline cannot show them.
std::vector<LeftOut> leftOutOf(const SurveyReport& survey,
                               std::span<const ReplaylistChoice> choices);

/// The playlists that a scan found: those that the outline shows, or all.
std::vector<CleanUpChoice> choicesOf(const RepeatScan& scan, bool all = false);
std::vector<LeftOut> leftOutOf(const RepeatScan& scan, std::span<const CleanUpChoice> choices);

}  // namespace kestrel
