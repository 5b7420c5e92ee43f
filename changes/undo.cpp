#include "changes/undo.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_set>
#include <utility>

#include "changes/library_checks.h"
#include "changes/undo_values.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// One undoing, from the checks to the history's last word.
class Undoing {
 public:
  Undoing(MusicApplication& application, FileService& files, History& history, Trash* trash,
          const UndoOptions& options)
      : application_(application),
        fileService_(files),
        history_(history),
        trash_(trash),
        options_(options) {}

  UndoReport carryOut(std::int64_t number) {
    path_ = addressText(application_.library().identity().uri);
    load(number, application_.library().identity());
    // Files come back whether or not the library can be changed now.
    const bool isOfFiles = run_.summary.kind == RunKind::trash && run_.playlists.empty() &&
                           run_.tracks.empty() && run_.values.empty();
    std::unique_ptr<Batch> batch = isOfFiles ? nullptr : application_.beginBatch();
    const LibraryIdentity now = application_.library().identity();
    report_.check = inspectRun(run_, application_.library(), fileService_, &application_);
    choose();

    const bool isExact = batch && takesAllBack() && batch->revert(run_.reversal);
    report_.run =
        history_.begin(RunKind::undo, now, {changes_, files_, tracks_, values_.changes()}, number);
    report_.number = history_.numberOf(*report_.run, now);
    // Only then the playlists can list their tracks again, and have the kept tracks nothing more to
    // stand in for.
    const bool filesFirst = hasFilesFirst();
    if (filesFirst) restoreFiles();
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
      report_.changedLibrary = !changes_.empty() || !tracks_.empty() ||
                               !values_.changes().empty() || (deletesTracks() && !files_.empty());
    } catch (const std::exception& error) {
      batch.reset();
      const Message problem = messageOf(error);
      // An application with batches has forgotten all of it.
      const bool isPart = !undoneFiles_.empty() ||
                          before != LibraryImage(*application_.library().allPlaylists(), watched);
      tellHistory(
          [&] { history_.finish(*report_.run, isPart ? RunState::incomplete : RunState::failed); });
      refuse(isPart ? Message::tr("only a part was taken back: %1").arg(problem)
                    : Message::tr("nothing was taken back: %1").arg(problem),
             Message::tr("Try again."));
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

 private:
  /// Whether tracks, or what they have, come back with their files.
  [[nodiscard]] bool hasFilesFirst() const {
    return application_.capabilities().tracksFollowFiles ||
           (run_.summary.kind == RunKind::trash && !run_.values.empty());
  }

  /// Whether the run added files to the library, which then are what is taken out again.
  [[nodiscard]] bool deletesTracks() const { return run_.summary.kind == RunKind::addToLibrary; }

  [[noreturn]] void refuse(Message problem, Message remedy) const {
    throw LibraryError(path_, {}, std::move(problem), std::move(remedy));
  }

  /// What has been done stays done, whatever becomes of the record. Its first problem is told.
  template <typename Tell>
  void tellHistory(Tell&& tell) {
    try {
      tell();
    } catch (const HistoryError& error) {
      if (report_.problem.empty()) report_.problem = error.message;
    }
  }

  /// How people call a run of this library.
  [[nodiscard]] std::string textOf(std::int64_t run) {
    return std::to_string(history_.numberOf(run, application_.library().identity()));
  }

  void load(std::int64_t id, const LibraryIdentity& now) {
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
      refuse(Message::tr("run %1 is itself an undo and cannot be taken back").arg(name),
             Message::tr("Make the changes of run %1 anew instead.")
                 .arg(textOf(run->summary.undoes.value_or(0))));
    if (run->summary.state == RunState::running)
      refuse(Message::tr("run %1 is still running").arg(name),
             Message::tr("Wait until it has ended."));
    run_ = std::move(*run);
    if (!options_.playlist) return;
    std::erase_if(run_.playlists, [&](const PlaylistChange& change) {
      return std::none_of(
          change.lineage.begin(), change.lineage.end(),
          [&](const LineageStep& step) { return step.playlist == options_.playlist; });
    });
    run_.files.clear();
    run_.values.clear();
    if (!run_.tracks.empty())
      refuse(Message::tr("run %1 removed tracks too, and can only be taken back whole").arg(name),
             Message::tr("Take it back without naming a playlist."));
    if (run_.playlists.empty())
      refuse(Message::tr("run %1 did not change a playlist %2")
                 .arg(name)
                 .arg(TextSorter::decToHex(*options_.playlist)),
             Message::tr("Look up in the history which playlists it changed."));
  }

  /// Settles what is to be done; refuses when something stands in the way.
  void choose() {
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
      refuse(Message::tr("run %1 changed nothing that could be taken back").arg(name),
             Message::tr("There is nothing to do."));
    if (all(isUndone)) {
      const auto by = undoneBy();
      refuse(by ? Message::tr("run %1 has been taken back already by run %2")
                      .arg(name)
                      .arg(textOf(*by))
                : Message::tr("run %1 has been taken back already").arg(name),
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
        list = joined(std::move(list), Message::tr("and %Ln more;", "and %Ln more;",
                                                   static_cast<std::int64_t>(more)));
      Message problem =
          Message::tr("what run %1 wrote was changed since: %2 and nothing was taken back")
              .arg(name)
              .arg(std::move(list));
      if (const auto later = laterRun()) throw LaterRunError(path_, std::move(problem), *later);
      refuse(std::move(problem),
             run_.tracks.empty() && run_.files.empty()
                 ? Message::tr(
                       "Take back the other playlists one by one, or leave out those that differ.")
                 : Message::tr("Leave out what differs, to take back the rest."));
    }
    for (std::size_t i = 0; i < check.playlists.size(); ++i) take(check.playlists[i], i);
    for (std::size_t i = 0; i < check.tracks.size(); ++i) takeTrack(check.tracks[i], i);
    for (std::size_t i = 0; i < check.files.size(); ++i) takeFile(check.files[i], i);
    values_.take(run_, isFileGone(), report_);
  }

  /// The last run since whose changes, still in effect, are to playlists that differ or took tracks
  /// away that these listed.
  std::optional<RunSummary> laterRun() {
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

  /// Whether nothing of what the run did to the library is left out.
  [[nodiscard]] bool takesAllBack() const {
    const auto counted = [](const auto& changes) {
      return static_cast<std::size_t>(
          std::count_if(changes.begin(), changes.end(), [](const auto& change) {
            return change.state == ChangeState::done && !change.undoneBy;
          }));
    };
    return !deletesTracks() && !options_.playlist && !run_.reversal.empty() &&
           changes_.size() == counted(run_.playlists) && tracks_.size() == counted(run_.tracks) &&
           values_.changes().size() == counted(run_.values);
  }

  void restoreLibrary(const LibraryImage& before, LibraryImage::Of watched) {
    LibraryImage expected = before;
    if (!tracks_.empty()) kestrel::carryOut(command::RestoreTracks{run_.reversal}, application_);
    for (std::size_t i = 0; i < changes_.size(); ++i) restore(i, before, expected);
    if (deletesTracks()) deleteTracks();
    values_.restore(areFilesBack(), report_);
    const LibraryImage found(*application_.library().allPlaylists(), watched);
    if (const Message difference = expected.differenceTo(found); !difference.empty())
      throw MessageError(Message::tr("the library did not become what it was: %1").arg(difference));
  }

  [[nodiscard]] std::optional<std::int64_t> undoneBy() const {
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

  Outcome& addOutcome(const UndoItem& item, Outcome::What what = Outcome::What::playlist) {
    Outcome& outcome = report_.outcomes.emplace_back();
    outcome.what = what;
    outcome.id = item.playlist;
    outcome.newID = item.current.value_or(0);
    outcome.name = item.name;
    outcome.kind = Outcome::Kind::skipped;
    return outcome;
  }

  void take(const UndoItem& item, std::size_t number) {
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
    outcomeOfChange_.push_back(report_.outcomes.size() - 1);
    undoneChanges_.push_back(change.id);
  }

  /// There is nothing to take back, which the history does not know yet.
  static void asBefore(Outcome& outcome, std::int64_t change, std::vector<std::int64_t>& undone) {
    outcome.kind = Outcome::Kind::asBefore;
    outcome.reason = Message::tr("it was as before the run already");
    undone.push_back(change);
  }

  void takeTrack(const UndoItem& item, std::size_t number) {
    if (item.state == UndoState::notDone || item.state == UndoState::undone) return;
    const TrackChange& change = run_.tracks[number];
    Outcome& outcome = addOutcome(item, Outcome::What::track);
    outcome.id = change.track;
    if (item.state == UndoState::asBefore) return asBefore(outcome, change.id, undoneTracks_);
    outcome.kind = Outcome::Kind::done;
    tracks_.push_back({0, ChangeState::planned, change.track, change.name, {}});
    undoneTracks_.push_back(change.id);
  }

  void takeFile(const UndoItem& item, std::size_t number) {
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

  /// Whether a file that was to come back first cannot.
  [[nodiscard]] bool isFileGone() const {
    const auto& files = report_.check.files;
    return hasFilesFirst() && std::any_of(files.begin(), files.end(), [](const UndoItem& file) {
             return file.state == UndoState::different;
           });
  }
  [[nodiscard]] bool areFilesBack() const {
    return !filesCame_ || std::all_of(files_.begin(), files_.end(), [](const FileChange& file) {
      return file.state == ChangeState::done;
    });
  }

  /// Gives a playlist its old entries back, or makes it anew.
  void restore(std::size_t number, const LibraryImage& before, LibraryImage& expected) {
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
    const CommandResult set = carry(command::SetEntries{undo.newPlaylist.value(), undo.newEntries});
    if (set.playlist) undo.newPlaylist = set.playlist;
    expected.expect(*undo.newPlaylist, std::move(image));
    done(number);
  }

  void done(std::size_t number) {
    PlaylistChange& undo = changes_[number];
    Outcome& outcome = report_.outcomes[outcomeOfChange_[number]];
    undo.state = ChangeState::done;
    outcome.kind = Outcome::Kind::done;
    outcome.newID = undo.newPlaylist.value_or(undo.oldPlaylist);
  }

  /// Takes the tracks of added files out of the library again; the files stay.
  void deleteTracks() {
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

  /// Moves files back from the trash.
  void restoreFiles() {
    if (deletesTracks()) return;
    filesCame_ = true;
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < files_.size(); ++i) {
      restoreFile(i);
      paths.push_back(files_[i].item.originalPath);
    }
    application_.filesMoved(paths);
  }

  void restoreFile(std::size_t number) {
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

  MusicApplication& application_;
  FileService& fileService_;
  History& history_;
  Trash* trash_;
  const UndoOptions& options_;
  std::string path_;
  RunRecord run_;
  UndoReport report_;
  std::vector<PlaylistChange> changes_;  ///< of the undo, as are the files
  std::vector<FileChange> files_;
  std::vector<TrackChange> tracks_;
  UndoneValues values_{application_};
  bool filesCame_ = false;  ///< it was tried to bring them back
  std::vector<std::size_t> outcomeOfChange_, outcomeOfFile_;
  std::vector<std::int64_t> originalFiles_;  ///< the changes of the run that `files_` take back
  std::vector<std::int64_t> undoneChanges_, undoneFiles_, undoneTracks_;
};

}  // namespace

LaterRunError::LaterRunError(std::string file, Message problem, const RunSummary& later)
    : LibraryError(std::move(file), {}, std::move(problem),
                   Message::tr("Take run %1 back first.").arg(std::to_string(later.number))),
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
  summary.state = isComplete ? RunState::finished : RunState::incomplete;
  summary.outcomes = outcomes;
  summary.problem = problem;
  return summary.messages();
}

}  // namespace kestrel
