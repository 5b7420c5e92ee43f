#include <algorithm>

#include "foundation/byte_count.h"
#include "replaylist/apply.h"

namespace kestrel {
namespace {

std::string counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

/// Messages of errors are whole sentences, reasons of ours are not.
std::string ended(std::string text) {
  if (!text.ends_with('.')) text += '.';
  return text;
}

std::string what(RunKind kind, std::size_t count) {
  if (kind == RunKind::undo) return counted(count, "change", "changes");
  return isAboutFiles(kind) ? counted(count, "file", "files")
                            : counted(count, "playlist", "playlists");
}

std::string summary(const ApplyReport& report) {
  const std::size_t done = report.count(Outcome::Kind::done);
  std::uint64_t changes = 0;
  for (const Outcome& outcome : report.outcomes)
    if (outcome.kind == Outcome::Kind::done) changes += outcome.changes;
  std::string text;
  switch (report.kind) {
    case RunKind::replaylist:
      text = "Replaced " + counted(changes, "entry", "entries") + " in ";
      break;
    case RunKind::cleanUp:
      text = "Deleted " + counted(changes, "repeated entry", "repeated entries") + " from ";
      break;
    case RunKind::trash:
      text = "Moved to the trash (" + byteCountText(static_cast<std::int64_t>(changes)) + "): ";
      break;
    case RunKind::undo:
      text = "Took back ";
      break;
    case RunKind::addToPlaylist:
      text = "Added " + counted(changes, "track", "tracks") + " to ";
      break;
    case RunKind::addToLibrary:
      text = "Added to the library (" + byteCountText(static_cast<std::int64_t>(changes)) + "): ";
  }
  text += what(report.kind, done) + ".";
  if (const std::size_t left = report.count(Outcome::Kind::skipped))
    text += " " + what(report.kind, left) + " left out.";
  if (const std::size_t failed = report.count(Outcome::Kind::failed))
    text += " " + what(report.kind, failed) + " failed.";
  if (report.state == RunState::cancelled)
    text += " Cancelled before " + what(report.kind, report.count(Outcome::Kind::notReached)) + ".";
  if (report.run) text += " This is run " + std::to_string(*report.run) + " of the history.";
  return text;
}

}  // namespace

std::size_t ApplyReport::count(Outcome::Kind wanted) const noexcept {
  return static_cast<std::size_t>(
      std::count_if(outcomes.begin(), outcomes.end(),
                    [&](const Outcome& outcome) { return outcome.kind == wanted; }));
}

std::vector<std::string> ApplyReport::lines() const {
  std::vector<std::string> lines;
  if (state == RunState::failed) {
    lines.push_back("Nothing was changed: " + ended(problem));
    return lines;
  }
  lines.push_back(summary(*this));
  for (const Outcome& outcome : outcomes)
    if (!outcome.reason.empty())
      lines.push_back("\"" + outcome.name + "\": " + ended(outcome.reason));
  for (const Namesake& playlist : lost)
    lines.push_back("\"" + playlist.name + "\"" +
                    (playlist.folder.empty() ? "" : " in \"" + playlist.folder + "\"") +
                    ": deleted with another playlist of its name; undoing brings it back.");
  if (!problem.empty()) lines.push_back(ended(problem));
  return lines;
}

}  // namespace kestrel
