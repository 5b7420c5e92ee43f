/// What came of a run, for people and for programs.
#pragma once

#include <iosfwd>

#include "cli/record_output.h"
#include "replaylist/apply.h"

namespace kestrel {

/// {"run":N,"state":"finished|cancelled|failed","problem":"..","outcomes":[{"id","newID","name",
/// "result":"done|skipped|failed|notReached","changes":N,"reason":".."}],"lost":[..]}
Json json(const ApplyReport& report);
/// Outcomes alone, as they stand in the above.
Json json(const std::vector<Outcome>& outcomes);
void writeLines(std::ostream& out, const std::vector<std::string>& lines);
/// Puts the report into `result` under "report", or writes it as lines when that is nullptr.
/// Returns the exit status: 0 when everything was done or skipped with a reason, else 1.
int tell(std::ostream& out, const ApplyReport& report, Json* result);

std::string_view nameOf(RunKind kind);
std::string_view nameOf(RunState state);

}  // namespace kestrel
