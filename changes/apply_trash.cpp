#include <optional>
#include <span>
#include <stdexcept>

#include "platform/file_error.h"
#include "platform/files.h"
#include "changes/apply.h"

namespace kestrel {
namespace {

/// Why a planned file stays; empty when it is to go.
Message reasonToStay(const PlannedFile& file, const FileService& files) {
  if (!file.heldBack.empty()) return file.heldBack;
  const auto status = files.entryStatus(file.path);
  if (!status) return Message::tr("it is no longer there");
  if (status->device != file.device || status->inode != file.inode || status->size != file.size)
    return Message::tr("another file has taken its place");
  if (!file.keeperPath.empty() && !files.exists(file.keeperPath))
    return Message::tr("the file that is kept is no longer there");
  return {};
}

/// Puts a file back of which the history does not know that it was moved: undoing would not find
/// it. Returns whether it is where it was.
bool putBack(const FileChange& change, Outcome& outcome, Trash& trash) {
  if (change.state != ChangeState::done) return true;
  try {
    trash.restore(change.item);
    outcome.kind = Outcome::Kind::failed;
    outcome.reason = Message::tr("it was put back, as the history could not be written");
    return true;
  } catch (const FileError& error) {
    outcome.reason =
        Message::tr("it is in the trash as %1, which the history perhaps does not know: %2")
            .arg(change.item.trashedPath)
            .arg(error.problem);
    return false;
  }
}

}  // namespace

ApplyReport applyTrash(const Plan& plan, const LibraryIdentity& now, Trash& trash,
                       FileService& files, History& history, const ApplyOptions& options) {
  if (plan.kind != RunKind::trash) throw std::invalid_argument("this plan moves no files");
  requireSame(plan.library, now);
  ApplyReport report;
  report.kind = RunKind::trash;
  std::vector<FileChange> changes;
  std::vector<std::size_t> places;  // of the changes' outcomes
  for (const PlannedFile& file : plan.files) {
    Outcome& outcome = report.outcomes.emplace_back();
    outcome.what = Outcome::What::file;
    outcome.id = file.track;
    outcome.name = file.path;
    outcome.changes = file.size;
    outcome.reason = reasonToStay(file, files);
    if (!outcome.reason.empty()) {
      outcome.kind = Outcome::Kind::skipped;
      continue;
    }
    FileChange& change = changes.emplace_back();
    change.track = file.track;
    change.size = file.size;
    change.item.originalPath = file.path;
    places.push_back(report.outcomes.size() - 1);
  }
  if (changes.empty()) return report;

  report.run = history.begin(RunKind::trash, now, {{}, changes, {}});
  std::span<const FileChange> unrecorded;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    Outcome& outcome = report.outcomes[places[i]];
    if (options.progress) options.progress({i, changes.size(), outcome.name});
    if (options.cancelled && options.cancelled()) {
      report.state = RunState::cancelled;
      break;
    }
    FileChange& change = changes[i];
    // The keeper's file may have been moved by now too, if the plan was made by hand.
    outcome.reason = reasonToStay(plan.files[places[i]], files);
    if (!outcome.reason.empty()) {
      outcome.kind = Outcome::Kind::skipped;
      change.state = ChangeState::skipped;
    } else if (TrashResult result = trash.recycle({&change.item.originalPath, 1}).at(0);
               result.item) {
      outcome.kind = Outcome::Kind::done;
      change.state = ChangeState::done;
      change.item = std::move(*result.item);
    } else {
      outcome.kind = Outcome::Kind::failed;
      outcome.reason = result.problem;
      change.state = ChangeState::failed;
    }
    change.note = outcome.reason.english();
    // One by one: where each file went must survive whatever happens to this program.
    try {
      history.record({&change, 1});
    } catch (const HistoryError& error) {
      report.problem = error.message;
      report.state = RunState::brokenOff;
      if (!putBack(change, outcome, trash)) unrecorded = {&change, 1};
      break;
    }
  }
  if (options.progress && report.state == RunState::finished)
    options.progress({changes.size(), changes.size(), {}});
  const auto write = [&](const auto& words) {
    try {
      words();
    } catch (const HistoryError& error) {  // does not change what was done
      if (report.problem.empty()) report.problem = error.message;
    }
  };
  if (!unrecorded.empty()) write([&] { history.record(unrecorded); });
  write([&] { history.finish(*report.run, report.state); });
  return report;
}

}  // namespace kestrel
