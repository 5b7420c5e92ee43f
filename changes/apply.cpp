#include "changes/apply.h"

#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/library_checks.h"
#include "changes/trash_plan.h"
#include "foundation/identifiers.h"
#include "musicapp/applications.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;

void skip(Outcome& outcome, Message reason) {
  outcome.kind = Outcome::Kind::skipped;
  outcome.reason = std::move(reason);
}

/// One run that changes what an application keeps of a library, from the checks to the history's
/// last word: all of it is kept, or none.
class LibraryRun {
 public:
  /// `watched`: the lists whose entries change by what the run does to them alone.
  LibraryRun(const Plan& plan, MusicApplication& application, History& history,
             const ApplyOptions& options, LibraryImage::Of watched)
      : plan_(plan),
        application_(application),
        history_(history),
        options_(options),
        watched_(watched) {
    report_.kind = plan.kind;
  }
  LibraryRun(const LibraryRun&) = delete;
  LibraryRun& operator=(const LibraryRun&) = delete;
  virtual ~LibraryRun() = default;

  ApplyReport carryOut() {
    std::unique_ptr<Batch> batch = application_.beginBatch();
    const LibraryIdentity now = library().identity();
    requireSame(plan_.library, now);
    if (!choose()) return std::move(report_);
    const LibraryImage before = image();
    const std::size_t itemsBefore = itemCount();
    report_.run = history_.begin(plan_.kind, now, changes());
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

 protected:
  /// Settles what takes part, with an outcome for each thing of the plan; false when nothing does.
  virtual bool choose() = 0;
  virtual RunChanges changes() = 0;
  /// Carries it out, checks what came of it and writes that down. What it throws ends the run.
  virtual void act(const LibraryImage& before) = 0;
  /// What is done once the library is on the disk.
  virtual void finishWhatFollows() {}

  MediaLibrary& library() { return application_.library(); }
  LibraryImage image() { return LibraryImage(*library().allPlaylists(), watched_); }
  std::size_t itemCount() { return library().allMediaItems()->size(); }

  Plan plan_;
  MusicApplication& application_;
  History& history_;
  const ApplyOptions& options_;
  ApplyReport report_;

 private:
  void giveUp(Message problem, bool isRestored) {
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

  const LibraryImage::Of watched_;
};

/// Where the files of tracks go that leave the library.
struct TrashAccess {
  Trash& trash;
  const FileService& files;
};

/// A run over playlists and the tracks in them.
class PlaylistRun final : public LibraryRun {
 public:
  /// `trash` may be nullptr for plans that take no tracks out of the library. Tracks that leave
  /// change the lists that the application fills itself.
  PlaylistRun(const Plan& plan, MusicApplication& application, const TrashAccess* trash,
              History& history, const ApplyOptions& options)
      : LibraryRun(plan, application, history, options,
                   trash ? LibraryImage::Of::user : LibraryImage::Of::all),
        trash_(trash) {}

 private:
  /// A playlist of the plan that is to be changed, by its places in the lists.
  struct Work {
    std::size_t planned;
    std::size_t change;
  };

  bool choose() override {
    if (trash_) holdBackUnsafe(plan_, library(), trash_->files, options_.guard);
    choosePlaylists();
    if (trash_) {
      chooseTracks();
      check_.emplace(plan_, library(), trash_->files, options_.guard);
      moves_ = chooseFiles(plan_, *check_, report_);
      if (followsFiles_) tracks_.clear();
    }
    return !work_.empty() || !tracks_.empty() || !moves_.changes.empty();
  }

  RunChanges changes() override { return {changes_, moves_.changes, tracks_}; }

  void act(const LibraryImage& before) override {
    const auto nameOf = [&](std::size_t i) { return report_.outcomes[work_[i].planned].name; };
    stepThrough(work_.size(), options_, report_, nameOf, [&](std::size_t i) {
      Outcome& outcome = report_.outcomes[work_[i].planned];
      outcome.reason = edit(changes_[work_[i].change], plan_.playlists[work_[i].planned]);
      outcome.kind = outcome.reason.empty() ? Outcome::Kind::done : Outcome::Kind::failed;
    });
    if (report_.state == RunState::finished) removeTracks();
    verify(before);
    // What stands in the library is known now: whatever ends the run, nothing is left open.
    close(changes_);
    close(tracks_);
  }

  /// The other way round, a run that fails would have to bring files back.
  void finishWhatFollows() override {
    if (report_.state == RunState::finished && !moves_.changes.empty())
      moveFiles(moves_, *check_, trash_->trash, trash_->files, history_, options_, report_);
    if (followsFiles_) tellOfTracks();
  }

  /// Of an application whose tracks leave with their files.
  void tellOfTracks() {
    std::unordered_map<std::uint64_t, const Outcome*> files;
    for (std::size_t i = 0; i < moves_.planned.size(); ++i) {
      const Outcome& outcome = report_.outcomes[moves_.outcomes[i]];
      files.emplace(moves_.planned[i]->track, &outcome);
      for (const std::uint64_t track : moves_.planned[i]->otherTracks)
        files.emplace(track, &outcome);
    }
    for (Outcome& outcome : report_.outcomes) {
      if (outcome.what != Outcome::What::track || outcome.kind != Outcome::Kind::notReached)
        continue;
      const auto file = files.find(outcome.id);
      if (file == files.end())
        skip(outcome, Message::tr("its file stays"));
      else
        outcome.kind = file->second->kind;
    }
  }

  template <typename Change>
  void close(std::vector<Change>& changes) {
    for (Change& change : changes)
      if (change.state == ChangeState::planned) change.state = ChangeState::skipped;
    history_.record(changes);
  }

  /// Decides which playlists take part, and writes down what they are.
  void choosePlaylists() {
    const auto playlists = library().allPlaylists();
    const SharedIDs shared(library());
    const MissingTracks missing(plan_, library());
    std::unordered_map<std::uint64_t, const Playlist*> byID;
    for (const Playlist& playlist : *playlists) byID.try_emplace(playlist.persistentID, &playlist);

    for (std::size_t i = 0; i < plan_.playlists.size(); ++i) {
      const PlannedPlaylist& planned = plan_.playlists[i];
      Outcome& outcome = report_.outcomes.emplace_back();
      outcome.id = planned.playlist;
      outcome.name = planned.name;
      outcome.changes =
          planned.replacements.size() + planned.deleteIndexes.size() + planned.additions.size();
      const auto found = byID.find(planned.playlist);
      if (found == byID.end()) {
        skip(outcome, Message::tr("it is no longer in the library"));
        continue;
      }
      const Playlist& playlist = *found->second;
      Message reason = reasonToSkip(planned, playlist, shared, missing);
      if (!reason.empty()) {
        skip(outcome, std::move(reason));
        continue;
      }
      work_.push_back({i, changes_.size()});
      PlaylistChange& change = changes_.emplace_back();
      change.oldPlaylist = playlist.persistentID;
      change.name = playlist.name;
      change.folder = playlist.parentID;
      change.oldEntries = playlist.items;
      change.newEntries = newEntries(planned, playlist.items);
      if (change.folder)
        if (const auto folder = byID.find(*change.folder); folder != byID.end())
          change.folderName = folder->second->name;
    }
  }

  /// Decides which tracks leave, now that it is known what the playlists will list.
  void chooseTracks() {
    std::vector<const PlannedPlaylist*> changed;
    for (const Work& work : work_) changed.push_back(&plan_.playlists[work.planned]);
    holdBackListed(plan_, *library().allPlaylists(), changed);
    std::unordered_set<std::uint64_t> leaving;
    for (const PlannedTrack& track : plan_.tracks) {
      Outcome& outcome = report_.outcomes.emplace_back();
      outcome.what = Outcome::What::track;
      outcome.id = track.track;
      outcome.name = track.name;
      if (!track.heldBack.empty())
        skip(outcome, track.heldBack);
      else if (leaving.insert(track.track).second)
        tracks_.push_back({0, ChangeState::planned, track.track, track.name, {}});
      else
        skip(outcome, Message::tr("the plan names it twice"));
    }
    holdBackFilesInUse(plan_, trash_->files);
  }

  /// Empty when the playlist takes part.
  static Message reasonToSkip(const PlannedPlaylist& planned, const Playlist& playlist,
                              const SharedIDs& shared, const MissingTracks& missing) {
    if (playlist.items.size() != planned.entryCount || playlist.name != planned.name ||
        fingerprintOf(playlist.items) != planned.entries)
      return Message::tr("it was changed since the plan was made");
    if (!isUserPlaylist(playlist)) return Message::tr("it is no ordinary playlist");
    if (planned.replacements.empty() && planned.deleteIndexes.empty() && planned.additions.empty())
      return Message::tr("what was to be replaced in it stays in the library");
    if (shared.has(playlist)) return Message::tr("another playlist has the same persistent ID");
    for (const Replacement& change : planned.replacements)
      if (playlist.items[change.position - 1] != change.oldTrack)
        return Message::tr("entry %1 is another track").arg(change.position);
    // What is put in, now or when the run is taken back, goes by its ID.
    for (const std::uint64_t track : touchedTracks(planned, playlist))
      if (shared.firstAmong({&track, 1}))
        return Message::tr("the persistent ID %1 is that of several tracks").arg(decToHex(track));
    for (const Replacement& change : planned.replacements)
      if (missing.has(change.newTrack))
        return Message::tr("the keeper %1 is not in the library").arg(decToHex(change.newTrack));
    return {};
  }

  static std::vector<std::uint64_t> touchedTracks(const PlannedPlaylist& planned,
                                                  const Playlist& playlist) {
    std::vector<std::uint64_t> tracks = planned.additions;
    for (const Replacement& change : planned.replacements) {
      tracks.push_back(change.oldTrack);
      tracks.push_back(change.newTrack);
    }
    for (const std::uint64_t position : planned.deleteIndexes)
      tracks.push_back(playlist.items[position - 1]);
    return tracks;
  }

  /// Returns why the application refuses to change this list, which then is as it was and does not
  /// keep the others from being changed; empty when it is changed.
  Message edit(PlaylistChange& change, const PlannedPlaylist& planned) {
    change.newPlaylist = change.oldPlaylist;
    bool isBegun = false;
    Message refusal;
    const auto run = [&](const Command& command) {
      if (!refusal.empty()) return;
      CommandResult result = application_.run(command);
      if (result.failed() && result.failure->number == CommandFailure::notAllowed &&
          change.newPlaylist == change.oldPlaylist) {
        refusal = result.failure->message;
        // What an earlier command has made of it.
        if (isBegun)
          kestrel::carryOut(command::SetEntries{change.oldPlaylist, change.oldEntries},
                            application_, change.name);
        return;
      }
      requireDone(result, change.name);
      if (result.playlist) change.newPlaylist = result.playlist;
      isBegun = true;
    };
    if (!planned.replacements.empty()) {
      command::ReplaceEntries command{change.oldPlaylist, {}};
      for (const Replacement& entry : planned.replacements)
        command.entries.push_back({entry.position, entry.newTrack});
      run(command);
    }
    if (!planned.deleteIndexes.empty())
      run(command::DeleteEntries{*change.newPlaylist,
                                 {planned.deleteIndexes.rbegin(), planned.deleteIndexes.rend()}});
    if (!planned.additions.empty())
      run(command::DuplicateTracks{planned.additions, *change.newPlaylist});
    change.state = refusal.empty() ? ChangeState::done : ChangeState::failed;
    if (!refusal.empty()) {
      change.newPlaylist.reset();
      change.note = refusal.english();
    }
    return refusal;
  }

  void removeTracks() {
    if (tracks_.empty()) return;
    std::unordered_set<std::uint64_t> leaving;
    command::DeleteTracks command;
    for (TrackChange& track : tracks_) {
      command.tracks.push_back(track.track);
      leaving.insert(track.track);
      track.state = ChangeState::done;
    }
    const std::size_t count = library().allMediaItems()->size();
    kestrel::carryOut(command, application_);
    const auto items = library().allMediaItems();
    bool isRight = items->size() + leaving.size() == count;
    items->forEach([&](const MediaItem& item) { isRight &= !leaving.contains(item.persistentID); });
    if (!isRight)
      throw MessageError(Message::tr("other tracks left the library than were to leave it"));
    for (Outcome& outcome : report_.outcomes)
      if (outcome.what == Outcome::What::track && outcome.kind == Outcome::Kind::notReached)
        outcome.kind = Outcome::Kind::done;
  }

  void verify(const LibraryImage& before) {
    LibraryImage expected = before;
    for (const PlaylistChange& change : changes_) {
      if (change.state != ChangeState::done) continue;
      PlaylistImage image = *before.find(change.oldPlaylist);
      image.entries = fingerprintOf(change.newEntries);
      // A new playlist cannot stand in a folder that the library does not have.
      if (change.newPlaylist != change.oldPlaylist && image.folder && !before.find(*image.folder))
        image.folder.reset();
      expected.expectGone(change.oldPlaylist);
      expected.expect(*change.newPlaylist, std::move(image));
    }
    if (const Message difference = expected.differenceTo(image()); !difference.empty())
      throw MessageError(
          Message::tr("the library did not become what was planned: %1").arg(difference));
    for (const Work& work : work_)
      if (const PlaylistChange& change = changes_[work.change]; change.newPlaylist)
        report_.outcomes[work.planned].newID = *change.newPlaylist;
  }

  const TrashAccess* trash_;
  const bool followsFiles_ = application_.capabilities().tracksFollowFiles;
  std::vector<PlaylistChange> changes_;
  std::vector<TrackChange> tracks_;
  std::optional<TrashCheck> check_;
  FileMoves moves_;
  std::vector<Work> work_;
};

/// Why a file cannot be added; empty when it may be. What is no audio file is for the application
/// to find out.
Message reasonNotToAdd(const std::string& path, const FileService& files) {
  const auto status = files.status(path);
  if (!status) return Message::tr("there is no such file");
  if (status->kind == FileStatus::Kind::folder) return Message::tr("it is a folder");
  if (applicationOf(path, files)) return Message::tr("it is a library");
  return {};
}

/// The tracks of some paths.
std::unordered_map<std::string, const MediaItem*> tracksAt(const std::vector<FileChange>& changes,
                                                           const MediaItems& items) {
  std::unordered_map<std::string, const MediaItem*> tracks;
  for (const FileChange& change : changes) tracks.emplace(change.item.originalPath, nullptr);
  items.forEach([&](const MediaItem& item) {
    if (const auto found = tracks.find(filePath(item)); found != tracks.end() && !found->second)
      found->second = &item;
  });
  return tracks;
}

/// A run that adds files.
class AdditionRun final : public LibraryRun {
 public:
  AdditionRun(const Plan& plan, MusicApplication& application, const FileService& files,
              History& history, const ApplyOptions& options)
      : LibraryRun(plan, application, history, options, LibraryImage::Of::user), files_(files) {}

 private:
  bool choose() override {
    for (const PlannedFile& file : plan_.files)
      changes_.emplace_back().item.originalPath = file.path;
    const auto items = library().allMediaItems();
    const auto known = tracksAt(changes_, *items);
    changes_.clear();
    for (const PlannedFile& file : plan_.files) {
      Outcome& outcome = report_.outcomes.emplace_back();
      outcome.what = Outcome::What::file;
      outcome.name = file.path;
      const MediaItem* track = known.at(file.path);
      if (track) outcome.id = track->persistentID;
      Message reason =
          track ? Message::tr("the library has it already") : reasonNotToAdd(file.path, files_);
      if (!reason.empty()) {
        skip(outcome, std::move(reason));
        continue;
      }
      changes_.emplace_back().item.originalPath = file.path;
      places_.push_back(report_.outcomes.size() - 1);
    }
    itemsBefore_ = items->size();
    return !changes_.empty();
  }

  RunChanges changes() override { return {{}, changes_, {}}; }

  void act(const LibraryImage& before) override {
    const auto path = [&](std::size_t i) { return changes_[i].item.originalPath; };
    stepThrough(changes_.size(), options_, report_, path, [&](std::size_t i) {
      const CommandResult result = application_.run(command::AddFile{path(i)});
      if (result.failed()) report_.outcomes[places_[i]].reason = result.failure->message;
      ++tried_;
    });
    settle(before);
    history_.record(changes_);
  }

  /// Adding says nothing of how it went: what came of it is seen by looking.
  void settle(const LibraryImage& before) {
    const auto items = library().allMediaItems();
    const auto tracks = tracksAt(changes_, *items);
    std::size_t added = 0;
    for (std::size_t i = 0; i < tried_; ++i) {
      FileChange& change = changes_[i];
      Outcome& outcome = report_.outcomes[places_[i]];
      if (const MediaItem* track = tracks.at(change.item.originalPath)) {
        ++added;
        change.state = ChangeState::done;
        change.track = outcome.id = track->persistentID;
        change.size = outcome.changes = static_cast<std::uint64_t>(track->fileSize);
        change.fingerprint = fingerprintOf(*track);
        outcome.kind = Outcome::Kind::done;
      } else {
        change.state = ChangeState::failed;
        if (outcome.reason.empty())
          outcome.reason = Message::tr(
              "the music application does not take it: it is no audio file, or cannot be read");
        change.note = outcome.reason.english();
        outcome.kind = Outcome::Kind::failed;
      }
    }
    if (const Message difference = before.differenceTo(image()); !difference.empty())
      throw MessageError(Message::tr("adding files changed playlists: %1").arg(difference));
    if (items->size() != itemsBefore_ + added)
      throw MessageError(Message::tr("the library did not grow by the tracks that were added"));
  }

  const FileService& files_;
  std::vector<FileChange> changes_;
  std::vector<std::size_t> places_;  ///< of the changes' outcomes
  std::size_t tried_ = 0;
  std::size_t itemsBefore_ = 0;
};

}  // namespace

void finishRun(ApplyReport& report, History& history) {
  try {
    history.finish(*report.run, report.state);
  } catch (const HistoryError& error) {
    if (report.problem == error.message) return;
    if (!report.problem.empty()) report.problem = ended(std::move(report.problem));
    report.problem = joined(std::move(report.problem), error.message);
  }
}

ApplyReport applyPlan(const Plan& plan, MusicApplication& application, History& history,
                      const ApplyOptions& options) {
  if (plan.kind == RunKind::undo || plan.kind == RunKind::remove || isAboutFiles(plan.kind))
    throw std::invalid_argument("this plan changes no playlists");
  return PlaylistRun(plan, application, nullptr, history, options).carryOut();
}

ApplyReport applyRemoval(const Plan& plan, MusicApplication& application, Trash& trash,
                         const FileService& files, History& history, const ApplyOptions& options) {
  if (plan.kind != RunKind::remove) throw std::invalid_argument("this plan removes no tracks");
  const TrashAccess access{trash, files};
  return PlaylistRun(plan, application, &access, history, options).carryOut();
}

ApplyReport applyAdditions(const Plan& plan, MusicApplication& application,
                           const FileService& files, History& history,
                           const ApplyOptions& options) {
  if (plan.kind != RunKind::addToLibrary)
    throw std::invalid_argument("this plan adds no files to the library");
  return AdditionRun(plan, application, files, history, options).carryOut();
}

}  // namespace kestrel
