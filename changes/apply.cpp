#include "changes/apply.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/apply_checks.h"
#include "changes/removal_guard.h"
#include "foundation/identifiers.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;

/// Where the files of tracks go that leave the library.
struct TrashAccess {
  Trash& trash;
  const FileService& files;
};

/// One run over playlists and the tracks in them, from the checks to the history's last word.
class PlaylistRun {
 public:
  /// `trash` may be nullptr for plans that take no tracks out of the library.
  PlaylistRun(Plan plan, MusicApplication& application, const TrashAccess* trash, History& history,
              const ApplyOptions& options)
      : plan_(std::move(plan)),
        application_(application),
        trash_(trash),
        history_(history),
        options_(options) {
    report_.kind = plan_.kind;
  }

  ApplyReport carryOut() {
    std::unique_ptr<Batch> batch = application_.beginBatch();
    const LibraryIdentity now = application_.library().identity();
    requireSame(plan_.library, now);
    if (trash_) holdBackUnsafe(plan_, application_.library(), trash_->files, options_.guard);
    choose();
    std::optional<TrashCheck> check;
    if (trash_) {
      chooseTracks();
      check.emplace(plan_, application_.library(), trash_->files, options_.guard);
      moves_ = chooseFiles(plan_, *check, report_);
    }
    if (work_.empty() && tracks_.empty()) return std::move(report_);

    // Tracks that leave change the lists that the application fills itself.
    const auto watched = trash_ ? LibraryImage::Of::user : LibraryImage::Of::all;
    const LibraryImage before(*application_.library().allPlaylists(), watched);
    report_.run = history_.begin(plan_.kind, now, {changes_, moves_.changes, tracks_});
    try {
      act();
      if (report_.state == RunState::finished) removeTracks();
      verify(before, watched);
      // What stands in the library is known now: whatever ends the run, nothing is left open.
      close(changes_);
      close(tracks_);
      batch->commit(
          [this](std::string_view reversal) { history_.recordReversal(*report_.run, reversal); });
      report_.changedLibrary = report_.count(Outcome::Kind::done) > 0;
    } catch (const std::exception& error) {
      batch.reset();
      rollBack(before, watched, messageOf(error));
      return std::move(report_);
    }
    // The other way round, a run that fails would have to bring files back.
    if (report_.state == RunState::finished && !moves_.changes.empty())
      moveFiles(moves_, *check, trash_->trash, trash_->files, history_, options_, report_);
    finish(report_.state);
    return std::move(report_);
  }

 private:
  /// A playlist of the plan that is to be changed, by its places in the lists.
  struct Work {
    std::size_t planned;
    std::size_t change;
  };

  template <typename Change>
  void close(std::vector<Change>& changes) {
    for (Change& change : changes)
      if (change.state == ChangeState::planned) change.state = ChangeState::skipped;
    history_.record(changes);
  }

  static void skip(Outcome& outcome, Message reason) {
    outcome.kind = Outcome::Kind::skipped;
    outcome.reason = std::move(reason);
  }

  /// Decides which playlists take part, and writes down what they are.
  void choose() {
    const auto playlists = application_.library().allPlaylists();
    const SharedIDs shared(application_.library());
    const MissingTracks missing(plan_, application_.library());
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
    std::unordered_set<std::uint64_t> leaving;
    for (const PlannedTrack& track : plan_.tracks)
      if (track.heldBack.empty()) leaving.insert(track.track);
    std::vector<const PlannedPlaylist*> changed;
    for (const Work& work : work_) changed.push_back(&plan_.playlists[work.planned]);
    const auto playlists = application_.library().allPlaylists();
    const auto listed = stillListed(*playlists, changed, leaving);
    for (PlannedTrack& track : plan_.tracks) {
      if (const auto found = listed.find(track.track); found != listed.end())
        track.heldBack = listedBy(*found->second);
      Outcome& outcome = report_.outcomes.emplace_back();
      outcome.what = Outcome::What::track;
      outcome.id = track.track;
      outcome.name = track.name;
      if (!track.heldBack.empty())
        skip(outcome, track.heldBack);
      else if (leaving.erase(track.track) > 0)
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

  void act() {
    for (std::size_t i = 0; i < work_.size(); ++i) {
      const Work& work = work_[i];
      Outcome& outcome = report_.outcomes[work.planned];
      if (options_.progress) options_.progress({i, work_.size(), outcome.name});
      if (options_.cancelled && options_.cancelled()) {
        report_.state = RunState::cancelled;
        return;
      }
      edit(changes_[work.change], plan_.playlists[work.planned]);
      outcome.kind = Outcome::Kind::done;
    }
    if (options_.progress) options_.progress({work_.size(), work_.size(), {}});
  }

  CommandResult run(const Command& command, const std::string& about = {}) {
    CommandResult result = application_.run(command);
    if (!result.failed()) return result;
    Message problem = result.failure->whole();
    throw MessageError(about.empty()
                           ? std::move(problem)
                           : Message::tr("%1: %2").arg(inQuotes(about)).arg(std::move(problem)));
  }

  void edit(PlaylistChange& change, const PlannedPlaylist& planned) {
    change.newPlaylist = change.oldPlaylist;
    const auto run = [&](const Command& command) {
      if (const auto made = this->run(command, change.name).playlist) change.newPlaylist = made;
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
    change.state = ChangeState::done;
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
    const std::size_t count = application_.library().allMediaItems()->size();
    run(command);
    const auto items = application_.library().allMediaItems();
    bool isRight = items->size() + leaving.size() == count;
    items->forEach([&](const MediaItem& item) { isRight &= !leaving.contains(item.persistentID); });
    if (!isRight)
      throw MessageError(Message::tr("other tracks left the library than were to leave it"));
    for (Outcome& outcome : report_.outcomes)
      if (outcome.what == Outcome::What::track && outcome.kind == Outcome::Kind::notReached)
        outcome.kind = Outcome::Kind::done;
  }

  void verify(const LibraryImage& before, LibraryImage::Of watched) {
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
    const LibraryImage found(*application_.library().allPlaylists(), watched);
    if (const Message difference = expected.differenceTo(found); !difference.empty())
      throw MessageError(
          Message::tr("the library did not become what was planned: %1").arg(difference));
    for (const Work& work : work_)
      if (const PlaylistChange& change = changes_[work.change]; change.newPlaylist)
        report_.outcomes[work.planned].newID = *change.newPlaylist;
  }

  /// The batch has been dropped: an application with batches has forgotten all of it.
  void rollBack(const LibraryImage& before, LibraryImage::Of watched, Message problem) {
    report_.problem = std::move(problem);
    const bool restored = before == LibraryImage(*application_.library().allPlaylists(), watched);
    report_.changedLibrary = !restored;
    for (Outcome& outcome : report_.outcomes) {
      if (outcome.kind == Outcome::Kind::skipped) continue;
      outcome.kind = restored ? Outcome::Kind::failed : outcome.kind;
      outcome.newID = 0;
      if (restored) outcome.reason = Message::tr("the run failed and nothing of it was kept");
    }
    if (!restored)
      report_.problem = Message::tr(
                            "%1. The music application has kept a part of it; the history "
                            "has the old entries")
                            .arg(std::move(report_.problem));
    finish(restored ? RunState::failed : RunState::brokenOff);
  }

  /// The last word to the history. That this fails does not change what was done.
  void finish(RunState state) {
    report_.state = state;
    try {
      history_.finish(*report_.run, state);
    } catch (const HistoryError& error) {
      if (!report_.problem.empty()) report_.problem = ended(std::move(report_.problem));
      report_.problem = joined(std::move(report_.problem), error.message);
    }
  }

  Plan plan_;
  MusicApplication& application_;
  const TrashAccess* trash_;
  History& history_;
  const ApplyOptions& options_;
  ApplyReport report_;
  std::vector<PlaylistChange> changes_;
  std::vector<TrackChange> tracks_;
  FileMoves moves_;
  std::vector<Work> work_;
};

}  // namespace

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

}  // namespace kestrel
