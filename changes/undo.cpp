#include "changes/undo.h"

#include <algorithm>
#include <exception>
#include <span>
#include <utility>

#include "changes/undoing.h"
#include "foundation/library_error.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {

UndoReport Undoing::carryOut(std::int64_t number) {
  path_ = addressText(application_.library().identity().uri);
  load(number, application_.library().identity());
  // Files come back whether or not the library can be changed now.
  const bool isOfFiles = run_.summary.kind == RunKind::trash && run_.playlists.empty() &&
                         run_.tracks.empty() && run_.values.empty();
  std::unique_ptr<Batch> batch = isOfFiles ? nullptr : begunBatch();
  const LibraryIdentity now = application_.library().identity();
  report_.check = inspectRun(run_, application_.library(), fileService_, &application_);
  choose();

  // A server that does not know where its music lies cannot be told that files are back.
  if (!files_.empty() && now.isServer() && now.uri != run_.summary.libraryUri &&
      !application_.capabilities().tracksFollowFiles)
    refuse(Message::tr("this address does not say where the music lies whose files come back"),
           Message::tr("Use the address %1.").arg(run_.summary.libraryUri));

  bool isExact = batch && takesAllBack() && batch->revert(run_.reversal);
  if (batch && !isExact) batch->recall(run_.reversal);
  report_.run =
      history_.begin(RunKind::undo, now, {changes_, files_, tracks_, values_.changes()}, number);
  report_.number = history_.numberOf(*report_.run, now);
  // Only then the playlists can list their tracks again, and have the kept tracks nothing more to
  // stand in for.
  const bool filesFirst = hasFilesFirst();
  if (filesFirst) restoreFiles();
  if (isExact && report_.isCancelled) {
    batch.reset();  // lists do not come back without their files
    isExact = false;
  }
  // Tracks that come and go change the lists that the application fills itself.
  const auto watched =
      deletesTracks() || !tracks_.empty() ? LibraryImage::Of::user : LibraryImage::Of::all;
  const LibraryImage before(*application_.library().allPlaylists(), watched);
  try {
    if (isExact) {
      for (std::size_t i = 0; i < changes_.size(); ++i) done(i);
    } else {
      restoreLibrary(before, watched);
    }
    for (TrackChange& track : tracks_) track.state = ChangeState::done;
    if (isExact) values_.areBack(report_);
    history_.record(changes_);
    history_.record(tracks_);
    history_.record(values_.changes());
    if (deletesTracks()) history_.record(files_);
    if (batch) batch->commit();
    report_.changedLibrary = std::any_of(
        report_.outcomes.begin(), report_.outcomes.end(), [this](const Outcome& outcome) {
          return outcome.kind == Outcome::Kind::done &&
                 (outcome.what != Outcome::What::file || deletesTracks());
        });
  } catch (const std::exception& error) {
    batch.reset();
    const auto* known = dynamic_cast<const LibraryError*>(&error);
    const Message problem =
        known ? Message::tr("%1: %2").arg(known->file).arg(known->problem) : messageOf(error);
    // An application with batches has forgotten all of it.
    const bool isPart = !undoneFiles_.empty() ||
                        before != LibraryImage(*application_.library().allPlaylists(), watched);
    tellHistory(
        [&] { history_.finish(*report_.run, isPart ? RunState::incomplete : RunState::failed); });
    refuse(isPart ? Message::tr("only a part was undone: %1").arg(problem)
                  : Message::tr("nothing was undone: %1").arg(problem),
           known && !known->remedy.empty() ? known->remedy : Message::tr("Try again."));
  }
  if (!filesFirst) restoreFiles();
  report_.isComplete =
      std::all_of(report_.outcomes.begin(), report_.outcomes.end(), [](const Outcome& outcome) {
        return outcome.kind == Outcome::Kind::done || outcome.kind == Outcome::Kind::asBefore;
      });
  tellHistory([&] {
    history_.finish(*report_.run, report_.isComplete ? RunState::finished : RunState::incomplete,
                    {undoneChanges_, undoneFiles_, undoneTracks_, values_.undone()});
  });
  return std::move(report_);
}

std::unique_ptr<Batch> Undoing::begunBatch() {
  const bool isNoted = run_.summary.kind == RunKind::trash && run_.playlists.empty() &&
                       run_.tracks.empty() &&
                       std::all_of(run_.values.begin(), run_.values.end(),
                                   [](const ValueChange& change) { return change.leaves; });
  try {
    return application_.beginBatch();
  } catch (const LibraryError&) {
    if (!isNoted) throw;
    return nullptr;
  }
}

bool Undoing::hasFilesFirst() const {
  return application_.capabilities().tracksFollowFiles ||
         (run_.summary.kind == RunKind::trash && !run_.values.empty());
}

void Undoing::restoreLibrary(const LibraryImage& before, LibraryImage::Of watched) {
  LibraryImage expected = before;
  if (!tracks_.empty()) kestrel::carryOut(command::RestoreTracks{run_.reversal}, application_);
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    if (!isStopped(i, changes_.size(), changes_[i].name)) {
      restore(i, before, expected);
      continue;
    }
    changes_[i].state = ChangeState::skipped;
    report_.outcomes[outcomeOfChange_[i]].kind = Outcome::Kind::notReached;
  }
  if (deletesTracks()) deleteTracks();
  values_.restore(areFilesBack(), report_);
  const LibraryImage found(*application_.library().allPlaylists(), watched);
  if (const Message difference = expected.differenceTo(found); !difference.empty())
    throw MessageError(Message::tr("the library did not become what it was: %1").arg(difference));
}

bool Undoing::isFileGone() const {
  const auto& files = report_.check.files;
  return hasFilesFirst() && std::any_of(files.begin(), files.end(), [](const UndoItem& file) {
           return file.state == UndoState::different;
         });
}

bool Undoing::areFilesBack() const {
  return !filesCame_ || std::all_of(files_.begin(), files_.end(), [](const FileChange& file) {
    return file.state == ChangeState::done;
  });
}

void Undoing::restore(std::size_t number, const LibraryImage& before, LibraryImage& expected) {
  PlaylistChange& undo = changes_[number];
  Outcome& outcome = report_.outcomes[outcomeOfChange_[number]];
  const auto carry = [&](const Command& command) {
    return kestrel::carryOut(command, application_, undo.name);
  };
  PlaylistImage image{undo.name, {}, fingerprintOf(undo.newEntries), PlaylistKind::regular};
  if (undo.newPlaylist) {
    image = *before.find(*undo.newPlaylist);
    image.entries = fingerprintOf(undo.newEntries);
    expected.expectGone(*undo.newPlaylist);
  } else {
    undo.newPlaylist = carry(command::CreatePlaylist{undo.name}).playlist;
    if (undo.folder && before.find(*undo.folder)) {
      const command::MovePlaylist move{undo.newPlaylist.value(), *undo.folder};
      undo.newPlaylist = carry(move).playlist.value_or(move.playlist);
      image.folder = undo.folder;
    } else if (undo.folder) {
      outcome.reason = Message::tr("its folder is no longer there: it is at top level now");
    }
    if (outcome.reason.empty())
      outcome.reason = Message::tr(
          "it was gone: a new playlist has those of its old entries that the library knows");
  }
  const CommandResult set =
      carry(command::SetEntries{undo.newPlaylist.value(), undo.newEntries, unknownAt_[number]});
  if (set.playlist) undo.newPlaylist = set.playlist;
  expected.expect(*undo.newPlaylist, std::move(image));
  done(number);
}

void Undoing::done(std::size_t number) {
  PlaylistChange& undo = changes_[number];
  Outcome& outcome = report_.outcomes[outcomeOfChange_[number]];
  undo.state = ChangeState::done;
  outcome.kind = Outcome::Kind::done;
  outcome.newID = undo.newPlaylist.value_or(undo.oldPlaylist);
  undoneChanges_.push_back(originals_[number]);
}

bool Undoing::isStopped(std::size_t done, std::size_t total, const std::string& name) {
  if (report_.isCancelled) return true;
  if (options_.progress) options_.progress({done, total, name});
  return report_.isCancelled = options_.cancelled && options_.cancelled();
}

void Undoing::deleteTracks() {
  if (files_.empty()) return;
  command::DeleteTracks command;
  for (const FileChange& file : files_) command.tracks.push_back(file.track);
  kestrel::carryOut(command, application_);
  const AddedTracks left(files_, application_.library());
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (left.isThere(files_[i]))
      throw MessageError(
          Message::tr("%1 is still in the library").arg(files_[i].item.originalPath));
    files_[i].state = ChangeState::done;
    report_.outcomes[outcomeOfFile_[i]].kind = Outcome::Kind::done;
    undoneFiles_.push_back(originalFiles_[i]);
  }
}

void Undoing::restoreFiles() {
  if (deletesTracks()) return;
  filesCame_ = true;
  std::vector<std::string> paths;
  std::size_t reached = 0;
  for (; reached < files_.size(); ++reached) {
    const std::string& path = files_[reached].item.originalPath;
    if (isStopped(reached, files_.size(), path)) break;
    restoreFile(reached);
    paths.push_back(path);
  }
  for (std::size_t i = reached; i < files_.size(); ++i) {
    files_[i].state = ChangeState::skipped;
    report_.outcomes[outcomeOfFile_[i]].kind = Outcome::Kind::notReached;
  }
  if (reached < files_.size())
    tellHistory([&] { history_.record(std::span(files_).subspan(reached)); });
  application_.filesMoved(paths, options_.cancelled);
  // Lists cannot come back without the tracks that a player has not found yet.
  if (!paths.empty()) static_cast<void>(isStopped(files_.size(), files_.size(), {}));
}

void Undoing::restoreFile(std::size_t number) {
  FileChange& file = files_[number];
  Outcome& outcome = report_.outcomes[outcomeOfFile_[number]];
  try {
    if (file.mark && !isMarked(file.item.trashedPath, *file.mark))
      throw FileError(
          file.item.originalPath,
          Message::tr("cannot be put back: another file lies in its place in the trash"),
          Message::tr("Look for it in the trash."));
    trash_->restore(file.item);
    file.state = ChangeState::done;
    outcome.kind = Outcome::Kind::done;
    outcome.changes = file.size;
    undoneFiles_.push_back(originalFiles_[number]);
  } catch (const FileError& error) {
    file.state = ChangeState::failed;
    file.note = error.what();
    outcome.kind = Outcome::Kind::failed;
    outcome.reason = error.message;
  }
  tellHistory([&] { history_.record({&file, 1}); });
}

LaterRunError::LaterRunError(std::string file, Message problem, const RunSummary& later)
    : LibraryError(std::move(file), {}, std::move(problem),
                   Message::tr("Undo run %1 first.").arg(std::to_string(later.number))),
      run(later.id),
      number(later.number) {}

UndoReport undoRun(std::int64_t run, MusicApplication& application, FileService& files,
                   History& history, Trash* trash, const UndoOptions& options) {
  return Undoing(application, files, history, trash, options).carryOut(run);
}

std::vector<Message> UndoReport::messages() const {
  ApplyReport summary;
  summary.kind = RunKind::undo;
  summary.number = number;
  summary.state = isComplete    ? RunState::finished
                  : isCancelled ? RunState::cancelled
                                : RunState::incomplete;
  summary.outcomes = outcomes;
  summary.problem = problem;
  return summary.messages();
}

}  // namespace kestrel
