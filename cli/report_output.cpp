#include "cli/report_output.h"

#include <iostream>

#include "foundation/identifiers.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

std::string_view nameOf(Outcome::Kind kind) {
  switch (kind) {
    case Outcome::Kind::done:
      return "done";
    case Outcome::Kind::asBefore:
      return "asBefore";
    case Outcome::Kind::skipped:
      return "skipped";
    case Outcome::Kind::failed:
      return "failed";
    case Outcome::Kind::notReached:
      return "notReached";
  }
  return {};
}

std::string_view nameOf(Outcome::What what) {
  switch (what) {
    case Outcome::What::playlist:
      return "playlist";
    case Outcome::What::track:
      return "track";
    case Outcome::What::file:
      return "file";
  }
  return {};
}

}  // namespace

std::string_view nameOf(RunKind kind) {
  switch (kind) {
    case RunKind::replaylist:
      return "replaylist";
    case RunKind::cleanUp:
      return "cleanup";
    case RunKind::trash:
      return "trash";
    case RunKind::undo:
      return "undo";
    case RunKind::addToPlaylist:
      return "add to playlist";
    case RunKind::addToLibrary:
      return "add to library";
    case RunKind::remove:
      return "remove";
  }
  return {};
}

std::string_view nameOf(RunState state) {
  switch (state) {
    case RunState::running:
      return "running";
    case RunState::finished:
      return "finished";
    case RunState::cancelled:
      return "cancelled";
    case RunState::failed:
      return "failed";
    case RunState::brokenOff:
      return "brokenOff";
    case RunState::incomplete:
      return "incomplete";
  }
  return {};
}

Json json(const std::vector<Outcome>& outcomes) {
  Json list = Json::array();
  for (const Outcome& outcome : outcomes)
    list.push_back({{"what", nameOf(outcome.what)},
                    {"id", TextSorter::decToHex(outcome.id)},
                    {"newID", outcome.newID ? Json(TextSorter::decToHex(outcome.newID)) : Json()},
                    {"name", outcome.name},
                    {"result", nameOf(outcome.kind)},
                    {"changes", outcome.changes},
                    {"reason", outcome.reason.english()}});
  return list;
}

Json json(const ApplyReport& report) {
  return {{"run", report.run ? Json(*report.run) : Json()},
          {"state", nameOf(report.state)},
          {"problem", report.problem.english()},
          {"outcomes", json(report.outcomes)}};
}

void writeLines(std::ostream& out, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) out << printable(line) << '\n';
}

int tell(std::ostream& out, const ApplyReport& report, Json* result) {
  if (result)
    (*result)["report"] = json(report);
  else
    writeLines(out, report.lines());
  return report.state == RunState::finished && report.count(Outcome::Kind::failed) == 0 ? 0 : 1;
}

void addActingOptions(CLI::App& command, ActingOptions& options, const std::string& applyHelp) {
  command.add_flag("--json", options.json, "Write JSON");
  command.add_flag("--apply", options.apply, applyHelp);
}

int finish(const ActingOptions& options, Json result, const std::function<ApplyReport()>& act,
           std::string_view hint, int status) {
  if (options.apply && act)
    status = tell(std::cout, act(), options.json ? &result : nullptr);
  else if (!options.json && act)
    std::cout << hint << '\n';
  if (options.json) std::cout << dump(result, 1) << '\n';
  return status;
}

}  // namespace kestrel
