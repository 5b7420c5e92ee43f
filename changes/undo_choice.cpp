// What an undoing is to take back, and what stands in its way.
#include <algorithm>
#include <stdexcept>
#include <unordered_set>
#include <utility>

#include "changes/undoing.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"

namespace kestrel {

std::string Undoing::textOf(std::int64_t run) {
  return std::to_string(history_.numberOf(run, application_.library().identity()));
}

void Undoing::load(std::int64_t id, const LibraryIdentity& now) {
  auto run = history_.run(id);
  const std::int64_t number = run ? history_.numberOf(id, now) : 0;
  const std::string name = std::to_string(number > 0 ? number : id);
  if (!run)
    refuse(Message::tr("there is no run %1").arg(name),
           Message::tr("Look the number up in the history."));
  run->summary.number = number;
  if (number == 0)
    refuse(Message::tr("run %1 changed another library, %2")
               .arg(name)
               .arg(addressText(run->summary.libraryUri)),
           Message::tr("Open that library to take the run back."));
  if (run->summary.kind == RunKind::undo)
    refuse(Message::tr("run %1 is itself an undo and cannot be undone").arg(name),
           Message::tr("Make the changes of run %1 anew instead.")
               .arg(textOf(run->summary.undoes.value_or(0))));
  if (run->summary.state == RunState::running)
    refuse(Message::tr("run %1 is still running").arg(name),
           Message::tr("Wait until it has ended."));
  run_ = std::move(*run);
  if (!options_.playlist) return;
  std::erase_if(run_.playlists, [&](const PlaylistChange& change) {
    return std::none_of(change.lineage.begin(), change.lineage.end(), [&](const LineageStep& step) {
      return step.playlist == options_.playlist;
    });
  });
  run_.files.clear();
  run_.values.clear();
  if (!run_.tracks.empty())
    refuse(Message::tr("run %1 removed tracks too, and can only be undone whole").arg(name),
           Message::tr("Take it back without naming a playlist."));
  if (run_.playlists.empty())
    refuse(Message::tr("run %1 did not change a playlist %2")
               .arg(name)
               .arg(TextSorter::decToHex(*options_.playlist)),
           Message::tr("Look up in the history which playlists it changed."));
}

void Undoing::choose() {
  const UndoCheck& check = report_.check;
  const std::string name = std::to_string(check.run.number);
  const auto isUndone = [](const UndoItem& item) { return item.state == UndoState::undone; };
  const auto matters = [](const UndoItem& item) { return item.state != UndoState::notDone; };
  const auto all = [&](const auto& test) {
    const auto passes = [&](const UndoItem& item) { return !matters(item) || test(item); };
    const auto lists = check.lists();
    return std::all_of(lists.begin(), lists.end(), [&](const auto* items) {
      return std::all_of(items->begin(), items->end(), passes);
    });
  };
  if (all([](const UndoItem&) { return false; }))
    refuse(Message::tr("run %1 changed nothing that could be undone").arg(name),
           Message::tr("There is nothing to do."));
  if (all(isUndone)) {
    const auto by = undoneBy();
    refuse(by ? Message::tr("run %1 has been undone already by run %2").arg(name).arg(textOf(*by))
              : Message::tr("run %1 has been undone already").arg(name),
           Message::tr("There is nothing to do."));
  }
  if (check.differs() && !options_.leaveDifferent) {
    std::vector<Message> differences;
    for (const auto* items : check.lists())
      for (const UndoItem& item : *items)
        if (item.state == UndoState::different)
          differences.push_back(
              Message::tr("%1: %2").arg(inQuotes(item.name)).arg(item.difference));
    constexpr std::size_t most = 5;
    const std::size_t told = std::min(differences.size(), most);
    Message list;
    for (std::size_t i = 0; i < told; ++i)
      list = joined(std::move(list), Message::tr("%1;").arg(std::move(differences[i])));
    if (const std::size_t more = differences.size() - told)
      list = joined(std::move(list),
                    Message::tr("and %Ln more;", "and %Ln more;", static_cast<std::int64_t>(more)));
    Message problem = Message::tr("what run %1 wrote was changed since: %2 and nothing was undone")
                          .arg(name)
                          .arg(std::move(list));
    if (const auto later = laterRun()) throw LaterRunError(path_, std::move(problem), *later);
    throw DifferentError(
        path_, {}, std::move(problem),
        run_.tracks.empty() && run_.files.empty()
            ? Message::tr("Undo the other playlists one by one, or leave out those that differ.")
            : Message::tr("Leave out what differs, to undo the rest."));
  }
  for (std::size_t i = 0; i < check.playlists.size(); ++i) take(check.playlists[i], i);
  for (std::size_t i = 0; i < check.tracks.size(); ++i) takeTrack(check.tracks[i], i);
  for (std::size_t i = 0; i < check.files.size(); ++i) takeFile(check.files[i], i);
  values_.take(run_, isFileGone(), report_);
}

std::optional<RunSummary> Undoing::laterRun() {
  std::unordered_set<std::uint64_t> playlists, tracks;
  for (std::size_t i = 0; i < report_.check.playlists.size(); ++i) {
    const UndoItem& item = report_.check.playlists[i];
    if (item.state != UndoState::different) continue;
    for (const LineageStep& step : run_.playlists[i].lineage) playlists.insert(step.playlist);
    const auto& entries = run_.playlists[i].oldEntries;
    tracks.insert(entries.begin(), entries.end());
  }
  const auto isInEffect = [](const auto& change) {
    return change.state == ChangeState::done && !change.undoneBy;
  };
  const auto now = application_.library().identity();
  for (const RunSummary& later : history_.runs(&now)) {
    if (later.id <= run_.summary.id) break;
    if (later.kind == RunKind::undo || later.isUndone()) continue;
    const auto record = history_.run(later.id);
    if (!record) continue;
    const auto any = [&](const auto& changes, const auto& among, const auto& idOf) {
      return std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
        return isInEffect(change) && among.contains(idOf(change));
      });
    };
    const auto trackOf = [](const auto& change) { return change.track; };
    if (any(record->playlists, playlists,
            [](const PlaylistChange& change) { return change.oldPlaylist; }) ||
        (later.kind != RunKind::addToLibrary &&
         (any(record->files, tracks, trackOf) || any(record->tracks, tracks, trackOf))))
      return later;
  }
  return std::nullopt;
}

bool Undoing::takesAllBack() const {
  const auto counted = [](const auto& changes) {
    return static_cast<std::size_t>(std::count_if(
        changes.begin(), changes.end(),
        [](const auto& change) { return change.state == ChangeState::done && !change.undoneBy; }));
  };
  return !deletesTracks() && !options_.playlist && !run_.reversal.empty() &&
         changes_.size() == counted(run_.playlists) && tracks_.size() == counted(run_.tracks) &&
         values_.changes().size() == counted(run_.values);
}

std::optional<std::int64_t> Undoing::undoneBy() const {
  for (const PlaylistChange& change : run_.playlists)
    if (change.undoneBy) return change.undoneBy;
  for (const TrackChange& change : run_.tracks)
    if (change.undoneBy) return change.undoneBy;
  for (const FileChange& change : run_.files)
    if (change.undoneBy) return change.undoneBy;
  for (const ValueChange& change : run_.values)
    if (change.undoneBy) return change.undoneBy;
  return std::nullopt;
}

Outcome& Undoing::addOutcome(const UndoItem& item, Outcome::What what) {
  Outcome& outcome = report_.outcomes.emplace_back();
  outcome.what = what;
  outcome.id = item.playlist;
  outcome.newID = item.current.value_or(0);
  outcome.name = item.name;
  outcome.kind = Outcome::Kind::skipped;
  return outcome;
}

void Undoing::take(const UndoItem& item, std::size_t number) {
  const PlaylistChange& change = run_.playlists[number];
  if (item.state == UndoState::notDone || item.state == UndoState::undone) return;
  Outcome& outcome = addOutcome(item);
  if (item.state == UndoState::different) {
    outcome.reason = item.difference;
    return;
  }
  if (item.state == UndoState::asBefore) return asBefore(outcome, change.id, undoneChanges_);
  outcome.changes = change.oldEntries.size();
  PlaylistChange& undo = changes_.emplace_back();
  // What is made anew takes the place of what stood there last, so that earlier runs find it.
  undo.oldPlaylist = item.current.value_or(change.lineage.back().playlist);
  undo.newPlaylist = item.current;
  undo.name = change.name;
  undo.folder = change.folder;
  undo.folderName = change.folderName;
  if (item.state == UndoState::ready) undo.oldEntries = change.newEntries;
  undo.newEntries = change.oldEntries;
  unknownAt_.push_back(change.unknownAt);
  outcomeOfChange_.push_back(report_.outcomes.size() - 1);
  originals_.push_back(change.id);
}

void Undoing::asBefore(Outcome& outcome, std::int64_t change, std::vector<std::int64_t>& undone) {
  outcome.kind = Outcome::Kind::asBefore;
  outcome.reason = Message::tr("it was as before the run already");
  undone.push_back(change);
}

void Undoing::takeTrack(const UndoItem& item, std::size_t number) {
  if (item.state == UndoState::notDone || item.state == UndoState::undone) return;
  const TrackChange& change = run_.tracks[number];
  Outcome& outcome = addOutcome(item, Outcome::What::track);
  outcome.id = change.track;
  if (item.state == UndoState::asBefore) return asBefore(outcome, change.id, undoneTracks_);
  outcome.kind = Outcome::Kind::done;
  tracks_.push_back({0, ChangeState::planned, change.track, change.name, {}});
  undoneTracks_.push_back(change.id);
}

void Undoing::takeFile(const UndoItem& item, std::size_t number) {
  if (item.state == UndoState::notDone || item.state == UndoState::undone) return;
  Outcome& outcome = addOutcome(item, Outcome::What::file);
  outcome.id = run_.files[number].track;
  if (item.state == UndoState::asBefore) {
    asBefore(outcome, item.change, undoneFiles_);
  } else if (item.state == UndoState::different) {
    outcome.reason = item.difference;
  } else {
    if (!trash_ && !deletesTracks())
      throw std::invalid_argument("there is no trash to take files from");
    FileChange file = run_.files[number];
    originalFiles_.push_back(file.id);
    file.state = ChangeState::planned;
    files_.push_back(std::move(file));
    outcomeOfFile_.push_back(report_.outcomes.size() - 1);
  }
}

}  // namespace kestrel
