#include "changes/library_run.h"

#include <exception>
#include <memory>

namespace kestrel {

ApplyReport LibraryRun::carryOut() {
  std::unique_ptr<Batch> batch = application_.beginBatch();
  const LibraryIdentity now = library().identity();
  requireSame(plan_.library, now);
  if (!choose()) return std::move(report_);
  const LibraryImage before = image();
  const std::size_t itemsBefore = itemCount();
  report_.run = history_.begin(plan_.kind, now, changes());
  report_.number = history_.numberOf(*report_.run, now);
  try {
    act(before);
    batch->commit(
        [this](std::string_view reversal) { history_.recordReversal(*report_.run, reversal); });
    report_.changedLibrary = report_.count(Outcome::Kind::done) > 0;
  } catch (const std::exception& error) {
    batch.reset();
    // An application with batches has forgotten all of it.
    giveUp(messageOf(error), before == image() && itemsBefore == itemCount());
    finishRun(report_, history_);
    return std::move(report_);
  }
  finishWhatFollows();
  finishRun(report_, history_);
  return std::move(report_);
}

void LibraryRun::giveUp(Message problem, bool isRestored) {
  report_.state = isRestored ? RunState::failed : RunState::brokenOff;
  report_.changedLibrary = !isRestored;
  for (Outcome& outcome : report_.outcomes) {
    if (outcome.kind == Outcome::Kind::skipped) continue;
    outcome.newID = 0;
    if (!isRestored) continue;
    outcome.kind = Outcome::Kind::failed;
    outcome.reason = Message::tr("the run failed and nothing of it was kept");
  }
  report_.problem = isRestored ? std::move(problem)
                               : Message::tr(
                                     "%1 The music application has kept a part of it; the "
                                     "history has the old entries")
                                     .arg(ended(std::move(problem)));
}

void finishRun(ApplyReport& report, History& history) {
  try {
    const bool hasFailed = report.state == RunState::finished &&
                           report.count(Outcome::Kind::failed) > 0 &&
                           report.count(Outcome::Kind::done) == 0;
    history.finish(*report.run, hasFailed ? RunState::failed : report.state);
  } catch (const HistoryError& error) {
    if (report.problem == error.message) return;
    if (!report.problem.empty()) report.problem = ended(std::move(report.problem));
    report.problem = joined(std::move(report.problem), error.message);
  }
}

}  // namespace kestrel
