#include "changes/apply.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/apply_checks.h"
#include "foundation/identifiers.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;

/// One run over playlists, from the checks to the history's last word.
class PlaylistRun {
 public:
  PlaylistRun(const Plan& plan, MusicApplication& application, History& history,
              const ApplyOptions& options)
      : plan_(plan), application_(application), history_(history), options_(options) {
    report_.kind = plan.kind;
  }

  ApplyReport carryOut() {
    std::unique_ptr<Batch> batch = application_.beginBatch();
    const LibraryIdentity now = application_.library().identity();
    requireSame(plan_.library, now);
    choose();
    if (work_.empty()) return std::move(report_);

    const LibraryImage before(*application_.library().allPlaylists());
    report_.run = history_.begin(plan_.kind, now, {changes_, {}, {}});
    try {
      act();
      verify(before);
      // What stands in the library is known now: whatever ends the run, nothing is left open.
      for (PlaylistChange& change : changes_)
        if (change.state == ChangeState::planned) change.state = ChangeState::skipped;
      history_.record(changes_);
      batch->commit([this](std::string_view reversal) {
        history_.recordReversal(*report_.run, reversal);
      });
      report_.changedLibrary = report_.count(Outcome::Kind::done) > 0;
    } catch (const std::exception& error) {
      batch.reset();
      rollBack(before, messageOf(error));
      return std::move(report_);
    }
    finish(report_.state);
    return std::move(report_);
  }

 private:
  /// A playlist of the plan that is to be changed, by its places in the lists.
  struct Work {
    std::size_t planned;
    std::size_t change;
  };

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

    for (const PlannedPlaylist& planned : plan_.playlists) {
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
      work_.push_back({report_.outcomes.size() - 1, changes_.size()});
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

  /// Empty when the playlist takes part.
  static Message reasonToSkip(const PlannedPlaylist& planned, const Playlist& playlist,
                              const SharedIDs& shared, const MissingTracks& missing) {
    if (playlist.items.size() != planned.entryCount || playlist.name != planned.name ||
        fingerprintOf(playlist.items) != planned.entries)
      return Message::tr("it was changed since the plan was made");
    if (!isUserPlaylist(playlist)) return Message::tr("it is no ordinary playlist");
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

  void edit(PlaylistChange& change, const PlannedPlaylist& planned) {
    change.newPlaylist = change.oldPlaylist;
    const auto run = [&](const Command& command) {
      const CommandResult result = application_.run(command);
      if (result.failed())
        throw MessageError(
            Message::tr("%1: %2").arg(inQuotes(change.name)).arg(result.failure->whole()));
      if (result.playlist) change.newPlaylist = result.playlist;
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
    const LibraryImage found(*application_.library().allPlaylists());
    if (const Message difference = expected.differenceTo(found); !difference.empty())
      throw MessageError(
          Message::tr("the library did not become what was planned: %1").arg(difference));
    for (const Work& work : work_)
      if (const PlaylistChange& change = changes_[work.change]; change.newPlaylist)
        report_.outcomes[work.planned].newID = *change.newPlaylist;
  }

  /// The batch has been dropped: an application with batches has forgotten all of it.
  void rollBack(const LibraryImage& before, Message problem) {
    report_.problem = std::move(problem);
    const bool restored = before == LibraryImage(*application_.library().allPlaylists());
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

  const Plan& plan_;
  MusicApplication& application_;
  History& history_;
  const ApplyOptions& options_;
  ApplyReport report_;
  std::vector<PlaylistChange> changes_;
  std::vector<Work> work_;
};

}  // namespace

ApplyReport applyPlan(const Plan& plan, MusicApplication& application, History& history,
                      const ApplyOptions& options) {
  if (plan.kind == RunKind::undo || isAboutFiles(plan.kind))
    throw std::invalid_argument("this plan changes no playlists");
  return PlaylistRun(plan, application, history, options).carryOut();
}

}  // namespace kestrel
