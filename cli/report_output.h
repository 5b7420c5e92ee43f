/// What came of a run, for people and for programs.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "changes/apply.h"
#include "cli/record_output.h"

namespace kestrel {

/// {"run":N,"state":"finished|cancelled|failed","problem":"..","outcomes":[{"id","newID","name",
/// "result":"done|skipped|failed|notReached","changes":N,"reason":".."}]}
Json json(const ApplyReport& report);
/// Outcomes alone, as they stand in the above.
Json json(const std::vector<Outcome>& outcomes);
void writeLines(std::ostream& out, const std::vector<std::string>& lines);
/// Puts the report into `result` under "report", or writes it as lines when that is nullptr.
/// Returns the exit status: 0 when everything was done or skipped with a reason, else 1.
int tell(std::ostream& out, const ApplyReport& report, Json* result);

/// How a command ends that shows what it would do and does it when asked: with a report of what was
/// done, or a word on how to have it done, and the JSON with its last line.
struct ActingOptions {
  bool json = false;   ///< --json
  bool apply = false;  ///< --apply
};
void addActingOptions(CLI::App& command, ActingOptions& options, const std::string& applyHelp);
/// `result` is what is written as JSON, `act` (empty: there is nothing to do) does it, and `hint`
/// is what is said when it could be done but was not asked for. Returns the exit status, which is
/// `status` when nothing is done.
int finish(const ActingOptions& options, Json result, const std::function<ApplyReport()>& act,
           std::string_view hint, int status = 0);

std::string_view nameOf(RunKind kind);
std::string_view nameOf(RunState state);

}  // namespace kestrel
