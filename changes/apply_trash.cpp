#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <unordered_set>
#include <utility>

#include "changes/apply.h"
#include "changes/carrying.h"
#include "changes/heard_files.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// Moves the files of a run that has begun, one after the other.
class Moving {
 public:
  Moving(FileMoves& moves, TrashCheck& check, Trash& trash, const FileService& files,
         History& history, ApplyReport& report)
      : moves_(moves),
        check_(check),
        trash_(trash),
        files_(files),
        history_(history),
        report_(report) {}

  void carryOut(const ApplyOptions& options) {
    const auto nameOf = [&](std::size_t i) { return report_.outcomes[moves_.outcomes[i]].name; };
    stepThrough(moves_.changes.size(), options, report_, nameOf, [&](std::size_t i) {
      Outcome& outcome = report_.outcomes[moves_.outcomes[i]];
      FileChange& change = moves_.changes[i];
      try {
        move(i);
        outcome.kind = Outcome::Kind::done;
        change.state = ChangeState::done;
      } catch (const Left& left) {
        outcome.reason = left.message;
        outcome.kind =
            left.state == ChangeState::skipped ? Outcome::Kind::skipped : Outcome::Kind::failed;
        change.state = left.state;
        change.note = outcome.reason.english();
      }
      ++known_;
    });
    record(known_);
  }

 private:
  /// A file stays where it is, with the reason.
  struct Left {
    ChangeState state;
    Message message;
  };

  void move(std::size_t number) {
    const PlannedFile& file = *moves_.planned[number];
    FileChange& change = moves_.changes[number];
    // Its keeper's file may have been moved by now too, if the plan was made by hand.
    if (Message reason = check_.reasonNow(file); !reason.empty())
      throw Left{ChangeState::skipped, std::move(reason)};
    try {
      TrashedItem item = trash_.reserve(change.item.originalPath);
      if (!(change.mark = markOf(item.originalPath))) {
        trash_.release(item);
        throw Left{ChangeState::failed, Message::tr("it cannot be read")};
      }
      change.size = change.mark->size;
      change.item = std::move(item);
      if (!record(number + 1)) {
        trash_.release(change.item);
        throw Left{ChangeState::failed,
                   Message::tr("it was not moved, as the history could not be written")};
      }
      recorded_ = number;  // what becomes of it is still to be written
      trash_.move(change.item);
      const auto moved = files_.entryStatus(change.item.trashedPath);
      if (moved && !mayBe(*change.mark, *moved)) {
        trash_.restore(change.item);
        throw Left{ChangeState::skipped, Message::tr("another file has taken its place")};
      }
    } catch (const FileError& error) {
      throw Left{ChangeState::failed, error.message};
    }
  }

  /// Writes down what became of the files before `end`, and where the last of them is going. One
  /// transaction a file, as each waits for the disk.
  bool record(std::size_t end) {
    if (report_.state == RunState::brokenOff) return false;
    try {
      history_.record(std::span(moves_.changes).subspan(recorded_, end - recorded_));
      recorded_ = end;
      return true;
    } catch (const HistoryError& error) {
      report_.problem = error.message;
      report_.state = RunState::brokenOff;
      return false;
    }
  }

  FileMoves& moves_;
  TrashCheck& check_;
  Trash& trash_;
  const FileService& files_;
  History& history_;
  ApplyReport& report_;
  std::size_t known_ = 0;     ///< files of which it is known what became of them
  std::size_t recorded_ = 0;  ///< of these, those that the history knows
};

}  // namespace

FileMoves chooseFiles(const Plan& plan, TrashCheck& check, ApplyReport& report) {
  FileMoves moves;
  for (const PlannedFile& file : plan.files) {
    Outcome& outcome = report.outcomes.emplace_back();
    outcome.what = Outcome::What::file;
    outcome.id = file.track;
    outcome.name = file.path.empty() ? file.name : file.path;
    outcome.changes = file.size;
    outcome.reason = check.reasonToStay(file);
    if (!outcome.reason.empty()) {
      outcome.kind = Outcome::Kind::skipped;
      continue;
    }
    FileChange& change = moves.changes.emplace_back();
    change.track = file.track;
    change.size = file.size;
    change.item.originalPath = file.path;
    moves.planned.push_back(&file);
    moves.outcomes.push_back(report.outcomes.size() - 1);
  }
  return moves;
}

void moveFiles(FileMoves& moves, TrashCheck& check, Trash& trash, const FileService& files,
               History& history, const ApplyOptions& options, ApplyReport& report) {
  Moving(moves, check, trash, files, history, report).carryOut(options);
}

ApplyReport applyTrash(const Plan& plan, MediaLibrary& library, Trash& trash,
                       const FileService& files, History& history, const ApplyOptions& options,
                       MusicApplication* carrier) {
  if (plan.kind != RunKind::trash) throw std::invalid_argument("this plan moves no files");
  if (!plan.carries.empty() && !carrier)
    throw std::invalid_argument("there is no application to carry anything over");
  std::unique_ptr<Batch> batch;
  // Before the files go: the application has to be able to take it.
  if (!plan.carries.empty()) batch = carrier->beginBatch();
  const LibraryIdentity now = library.identity();
  requireSame(plan.library, now);
  ApplyReport report;
  report.kind = RunKind::trash;
  Plan own = plan;
  std::optional<Carrying> carrying;
  const bool followsFiles = carrier && carrier->capabilities().tracksFollowFiles;
  if (batch || followsFiles) carrying.emplace(own, *carrier);
  if (batch) carrying->holdBackChanged();
  holdBackOtherSounds(own, files);
  TrashCheck check(own, library, files, options.guard);
  FileMoves moves = chooseFiles(own, check, report);
  if (moves.changes.empty()) return report;
  const auto tracksOf = [&](const auto& isTaken) {
    std::unordered_set<std::uint64_t> tracks;
    for (std::size_t i = 0; i < moves.planned.size(); ++i) {
      if (!isTaken(report.outcomes[moves.outcomes[i]])) continue;
      tracks.insert(moves.planned[i]->track);
      tracks.insert(moves.planned[i]->otherTracks.begin(), moves.planned[i]->otherTracks.end());
    }
    return tracks;
  };
  if (carrying)
    carrying->choose(tracksOf([](const Outcome&) { return true; }), followsFiles, report);
  std::vector<ValueChange> none;
  report.run = history.begin(RunKind::trash, now,
                             {{}, moves.changes, {}, carrying ? carrying->changes() : none});
  report.number = history.numberOf(*report.run, now);
  moveFiles(moves, check, trash, files, history, options, report);
  if (carrying) {
    carryOverAfterFiles(*carrying, tracksOf([](const Outcome& outcome) {
      return outcome.kind == Outcome::Kind::done;
    }),
                        history, report, batch.get());
    report.changedLibrary = report.count(Outcome::What::values, Outcome::Kind::done) > 0;
  }
  finishRun(report, history);
  return report;
}

void clearBrokenRuns(History& history, Trash& trash) {
  try {
    for (const RunSummary& run : history.runs()) {
      // Those with an end have been cleared, or have ended by themselves.
      if (run.state != RunState::brokenOff || run.ended) continue;
      bool isClear = true;
      const auto record = history.run(run.id);
      if (record && run.kind != RunKind::addToLibrary)
        for (const FileChange& change : record->files) {
          if (change.state != ChangeState::planned) continue;
          isClear &= trash.release(change.item);
          // Files go one after the other: those behind it have no place yet.
          if (change.item.infoPath.empty()) break;
        }
      if (isClear) history.finish(run.id, RunState::brokenOff);
    }
  } catch (const HistoryError&) {
    // Who goes on to use the history is told by that.
  }
}

}  // namespace kestrel
