#include "changes/apply.h"

#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/carrying.h"
#include "changes/heard_files.h"
#include "changes/library_checks.h"
#include "changes/library_run.h"
#include "changes/trash_plan.h"
#include "foundation/identifiers.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;

/// Where files go.
struct TrashAccess {
  Trash& trash;
  const FileService& files;
};

/// A run over playlists and the tracks in them, or their files.
class PlaylistRun final : public LibraryRun {
 public:
  /// `trash` may be nullptr for plans without files. Tracks that leave, by themselves or with
  /// their files, change the lists that the application fills itself.
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
    if (trash_) carrying_.holdBackChanged();
    if (trash_) holdBackOtherSounds(plan_, trash_->files);
    if (takesTracks()) holdBackUnsafe(plan_, library(), trash_->files, options_.guard);
    choosePlaylists();
    if (takesTracks()) chooseTracks();
    if (trash_) {
      if (!takesTracks()) holdBackWhatStaysListed();
      check_.emplace(plan_, library(), trash_->files, options_.guard);
      moves_ = chooseFiles(plan_, *check_, report_);
      if (followsFiles_) tracks_.clear();
      carrying_.choose(leaving(), followsFiles_, report_);
    }
    return !work_.empty() || !tracks_.empty() || !moves_.changes.empty();
  }

  RunChanges changes() override { return {changes_, moves_.changes, tracks_, carrying_.changes()}; }

  /// Else the files go alone.
  [[nodiscard]] bool takesTracks() const { return plan_.kind == RunKind::remove; }

  /// The tracks that playlists go on listing which were to get others, with those playlists.
  [[nodiscard]] std::unordered_map<std::uint64_t, std::string> stillListed() const {
    std::unordered_set<std::size_t> changing;
    for (const Work& work : work_)
      if (report_.outcomes[work.planned].kind != Outcome::Kind::failed)
        changing.insert(work.planned);
    std::unordered_map<std::uint64_t, std::string> listed;
    for (std::size_t i = 0; i < plan_.playlists.size(); ++i)
      if (!changing.contains(i))
        for (const Replacement& change : plan_.playlists[i].replacements)
          listed.try_emplace(change.oldTrack, plan_.playlists[i].name);
    return listed;
  }
  /// Why a file stays whose track is one of them; empty when it may go.
  static Message reasonOfListed(const PlannedFile& file,
                                const std::unordered_map<std::uint64_t, std::string>& listed) {
    std::unordered_set<std::uint64_t> tracks;
    addTracks(file, tracks);
    for (const std::uint64_t track : tracks)
      if (const auto found = listed.find(track); found != listed.end())
        return Message::tr("the playlist %1 still lists it").arg(inQuotes(found->second));
    return {};
  }
  void holdBackWhatStaysListed() {
    const auto listed = stillListed();
    for (PlannedFile& file : plan_.files)
      if (file.heldBack.empty()) file.heldBack = reasonOfListed(file, listed);
  }
  /// The same once the application has refused to change some.
  void leaveWhatStaysListed() {
    const auto listed = stillListed();
    FileMoves going;
    std::vector<FileChange> staying;
    for (std::size_t i = 0; i < moves_.planned.size(); ++i) {
      Message reason = reasonOfListed(*moves_.planned[i], listed);
      if (reason.empty()) {
        going.planned.push_back(moves_.planned[i]);
        going.changes.push_back(std::move(moves_.changes[i]));
        going.outcomes.push_back(moves_.outcomes[i]);
        continue;
      }
      FileChange& change = staying.emplace_back(std::move(moves_.changes[i]));
      change.state = ChangeState::skipped;
      change.note = reason.english();
      skip(report_.outcomes[moves_.outcomes[i]], std::move(reason));
    }
    moves_ = std::move(going);
    if (!staying.empty()) history_.record(staying);
  }

  /// The tracks that are to leave, with their files or by themselves.
  [[nodiscard]] std::unordered_set<std::uint64_t> leaving() const {
    std::unordered_set<std::uint64_t> leaving;
    for (const TrackChange& track : tracks_) leaving.insert(track.track);
    if (followsFiles_)
      for (const PlannedFile* file : moves_.planned) addTracks(*file, leaving);
    return leaving;
  }
  static void addTracks(const PlannedFile& file, std::unordered_set<std::uint64_t>& tracks) {
    tracks.insert(file.track);
    tracks.insert(file.otherTracks.begin(), file.otherTracks.end());
  }

  void act(const LibraryImage& before) override {
    const auto nameOf = [&](std::size_t i) { return report_.outcomes[work_[i].planned].name; };
    stepThrough(work_.size(), options_, report_, nameOf, [&](std::size_t i) {
      Outcome& outcome = report_.outcomes[work_[i].planned];
      outcome.reason = edit(changes_[work_[i].change], plan_.playlists[work_[i].planned]);
      outcome.kind = outcome.reason.empty() ? Outcome::Kind::done : Outcome::Kind::failed;
    });
    if (!followsFiles_)
      carrying_.carryOut(
          report_.state == RunState::finished ? leaving() : std::unordered_set<std::uint64_t>(),
          history_, report_);
    if (report_.state == RunState::finished) removeTracks();
    verify(before);
    // What stands in the library is known now: whatever ends the run, nothing is left open.
    close(changes_);
    close(tracks_);
    if (trash_ && (!takesTracks() || followsFiles_)) leaveWhatStaysListed();
  }

  /// The other way round, a run that fails would have to bring files back.
  void finishWhatFollows() override {
    if (report_.state == RunState::finished && !moves_.changes.empty())
      moveFiles(moves_, *check_, trash_->trash, trash_->files, history_, options_, report_);
    if (!followsFiles_) return;
    tellOfTracks();
    std::unordered_set<std::uint64_t> left;
    for (std::size_t i = 0; i < moves_.planned.size(); ++i)
      if (report_.outcomes[moves_.outcomes[i]].kind == Outcome::Kind::done)
        addTracks(*moves_.planned[i], left);
    carryOverAfterFiles(carrying_, left, history_, report_);
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
      outcome.deleted = planned.deleteIndexes.size();
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
      change.unknownAt = playlist.unknownAt;
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
          kestrel::carryOut(
              command::SetEntries{change.oldPlaylist, change.oldEntries, change.unknownAt},
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
  Carrying carrying_{plan_, application_};
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

ApplyReport applyTrashAndRepair(const Plan& plan, MusicApplication& application, Trash& trash,
                                const FileService& files, History& history,
                                const ApplyOptions& options) {
  if (plan.kind != RunKind::trash) throw std::invalid_argument("this plan moves no files");
  const TrashAccess access{trash, files};
  return PlaylistRun(plan, application, &access, history, options).carryOut();
}

}  // namespace kestrel
