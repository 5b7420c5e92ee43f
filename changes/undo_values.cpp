#include "changes/undo_values.h"

#include <utility>

#include "changes/library_checks.h"

namespace kestrel {
namespace {

Message notAllFiles() { return Message::tr("not all of the files came back"); }

}  // namespace

std::vector<std::optional<TrackValues>> UndoneValues::valuesNow(
    const std::vector<ValueChange>& changes) {
  std::vector<std::uint64_t> ids;
  for (const ValueChange& change : changes) ids.push_back(change.track);
  if (ids.empty()) return {};
  return application_.valuesOf(ids);
}

void UndoneValues::take(const RunRecord& run, bool isFileGone, UndoReport& report) {
  const auto now = valuesNow(run.values);
  for (std::size_t i = 0; i < run.values.size(); ++i) {
    const UndoItem& item = report.check.values[i];
    if (item.state == UndoState::notDone || item.state == UndoState::undone) continue;
    const ValueChange& change = run.values[i];
    Outcome& outcome = report.outcomes.emplace_back();
    outcome.what = Outcome::What::values;
    outcome.id = change.track;
    outcome.name = item.name;
    outcome.kind = Outcome::Kind::skipped;
    if (item.state == UndoState::asBefore) {
      outcome.kind = Outcome::Kind::asBefore;
      outcome.reason = Message::tr("it was as before the run already");
      undone_.push_back(change.id);
    } else if (item.state == UndoState::different) {
      outcome.reason = item.difference;
    } else if (isFileGone && !change.leaves) {
      outcome.reason = notAllFiles();
    } else {
      ValueChange& undo = changes_.emplace_back(change);
      undo.state = ChangeState::planned;
      undo.undoneBy.reset();
      undo.before = now[i] ? *now[i] : TrackValues();
      undo.after = change.leaves || !now[i] ? change.before
                                            : valuesBefore(change, *now[i]).value_or(change.before);
      originals_.push_back(change.id);
      outcomes_.push_back(report.outcomes.size() - 1);
    }
  }
}

void UndoneValues::restore(bool areFilesBack, UndoReport& report) {
  const auto now = valuesNow(changes_);
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    ValueChange& change = changes_[i];
    // What a track had comes back with its own file, whatever becomes of others.
    if (!now[i] || (!areFilesBack && !change.leaves)) {
      change.state = ChangeState::skipped;
      report.outcomes[outcomes_[i]].reason =
          now[i] ? notAllFiles() : Message::tr("it is not in the library");
      continue;
    }
    command::SetValues command;
    for (const TrackValue value : change.which.list())
      if (change.leaves || !isSame(value, *now[i], change.after)) command.which.add(value);
    command.tracks.push_back({change.track, change.after});
    if (!command.which.empty()) carryOut(command, application_, change.name);
    done(i, report);
  }
}

void UndoneValues::areBack(UndoReport& report) {
  for (std::size_t i = 0; i < changes_.size(); ++i) done(i, report);
}

void UndoneValues::done(std::size_t number, UndoReport& report) {
  changes_[number].state = ChangeState::done;
  report.outcomes[outcomes_[number]].kind = Outcome::Kind::done;
  undone_.push_back(originals_[number]);
}

}  // namespace kestrel
