/// --carry: what kept tracks take over of copies that leave.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "changes/carrying.h"
#include "cli/command.h"
#include "cli/record_output.h"
#include "library/track_store.h"

namespace kestrel {

/// Adds --carry, a list with commas.
CLI::Option* addCarryOption(CLI::App& command, std::vector<std::string>& words);
/// The values with these words. Throws UsageError for a word that is none.
TrackValueSet carriedValues(const std::vector<std::string>& words);
/// Throws UsageError with the reason where the application cannot take them over in such a run.
void checkCarry(TrackValueSet which, RunKind kind, const Capabilities& can);
/// What each kept track would gain, and all of them; nothing where nothing is carried over.
void writeCarried(std::ostream& out, const Plan& plan, const TrackStore& library);

}  // namespace kestrel
