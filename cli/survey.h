/// From a search to a replaylist plan: the survey, the choice of playlists, and what is left out.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "changes/plan.h"
#include "cli/application.h"
#include "cli/search.h"
#include "ui/replaylist_control.h"

namespace kestrel {

/// Adds --only, which takes one name and, behind LIBRARY, as many as follow: it must not take
/// LIBRARY itself.
void addOnlyOption(CLI::App& command, std::vector<std::string>& only);

struct SurveyResult {
  /// "ok", "alert" (a group has several keepers) or "none" (no playlist holds a non-keeper).
  std::string status;
  std::string message;  ///< of the alert, or why there is nothing
  std::vector<PlaylistReplacements> chosen;
  /// Why each non-keeper's keeper was picked.
  std::unordered_map<std::uint64_t, std::string> reasons;
  Plan plan;  ///< of the chosen playlists; empty unless the status is "ok"
};

/// Surveys the rows of the upper table. `only` chooses playlists by hexadecimal ID or name; all
/// that the outline shows when empty. Throws UsageError for one that is not among the affected.
SurveyResult surveyFor(OpenedApplication& opened, const SearchResult& found,
                       const std::vector<std::string>& only, const Session& session);

}  // namespace kestrel
