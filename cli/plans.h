/// Plans of cleaning up and of trashing.
#pragma once

#include "changes/plan.h"
#include "changes/trash_check.h"
#include "cli/application.h"
#include "cli/search.h"

namespace kestrel {

/// Scans the playlists for repeated tracks; what the outline cannot show is left out.
Plan cleanUpPlan(OpenedApplication& opened, const Session& session);
/// A track that the searched playlist lists more than once is one track.
std::vector<const ResultTrack*> rowsThatCount(const SearchResult& found);
/// The files of the non-keepers, each to go or to stay.
Plan trashPlan(OpenedApplication& opened, const SearchResult& found, const GuardOptions& guard,
               Session& session);
/// --other-files and --outside-media-folder.
void addGuardOptions(CLI::App& command, GuardOptions& options);
/// --cloud-replaces, of removals.
void addCloudOption(CLI::App& command, GuardOptions& options);

}  // namespace kestrel
