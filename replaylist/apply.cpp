#include "replaylist/apply.h"

#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "library/launch.h"
#include "library/process.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "replaylist/apply_checks.h"
#include "replaylist/playlist_document.h"
#include "scripting/own_commands.h"
#include "scripting/send.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;

/// While it lives, playlist documents are imported without waiting.
class WithoutWaits {
 public:
  explicit WithoutWaits(bool answersWhenDone)
      : flag_(process().state<PlaylistDocumentState>().applicationAnswersWhenDone),
        before_(std::exchange(flag_, answersWhenDone)) {}
  ~WithoutWaits() { flag_ = before_; }
  WithoutWaits(const WithoutWaits&) = delete;
  WithoutWaits& operator=(const WithoutWaits&) = delete;

 private:
  bool& flag_;
  bool before_;
};

/// One run over playlists, from the checks to the history's last word.
class PlaylistRun {
 public:
  PlaylistRun(const Plan& plan, MusicApplication& application, History& history,
              const ApplyOptions& options)
      : plan_(plan), application_(application), history_(history), options_(options) {
    report_.kind = plan.kind;
  }

  ApplyReport carryOut(const std::string& libraryID) {
    std::unique_ptr<ScriptBatch> batch = application_.beginBatch();
    const LibraryIdentity now = identityOf(application_.library(), libraryID, files());
    requireSame(plan_.library, now);
    if (plan_.kind == RunKind::replaylist) {
      ReplaylistControl::refreshStoredXML(application_.library().libraryFile());
      makeSupportFolder();
    }
    choose();
    if (work_.empty()) return std::move(report_);

    const LibraryImage before(*application_.library().allPlaylists());
    report_.run = history_.begin(plan_.kind, now, changes_, {});
    try {
      act();
      settle(before);
      verify(before);
      // What stands in the library is known now: whatever ends the run, nothing is left open.
      for (PlaylistChange& change : changes_)
        if (change.state == ChangeState::planned) change.state = ChangeState::skipped;
      history_.record(changes_);
      batch->commit();
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
    std::vector<std::size_t> lost;  ///< changes of the playlists that go with it
  };

  [[nodiscard]] static FileService& files() { return process().with.files; }

  /// Without it every import would fail, and the old playlists would be deleted all the same.
  static void makeSupportFolder() {
    const auto folder = TextSorter::applicationDataDirectory();
    if (!folder)
      throw LibraryError("the folder for application data", {},
                         Message::tr("the system names none"),
                         Message::tr("Set HOME, or XDG_DATA_HOME."));
    try {
      files().createDirectories(*folder);
    } catch (const FileError& error) {
      throw LibraryError(error.path, {}, error.problem, error.remedy);
    }
  }

  void skip(Outcome& outcome, Message reason) {
    outcome.kind = Outcome::Kind::skipped;
    outcome.reason = std::move(reason);
  }

  /// Decides which playlists take part, and writes down what they are.
  void choose() {
    const auto playlists = application_.library().allPlaylists();
    const NamesakeIndex namesakes(*playlists);
    const SharedIDs shared(application_.library());
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
      if (playlist.items.size() != planned.entryCount || playlist.name != planned.name ||
          fingerprintOf(playlist.items) != planned.entries) {
        skip(outcome, Message::tr("it was changed since the plan was made"));
        continue;
      }
      if (!takesPart(planned, playlist, shared, outcome)) continue;
      Work work{report_.outcomes.size() - 1, addChange(playlist), {}};
      changes_[work.change].newEntries = newEntries(planned, playlist.items);
      bool canComeBack = true;
      if (plan_.kind == RunKind::replaylist)
        for (const Playlist* namesake : namesakes.of(playlist)) {
          canComeBack &= !shared.has(*namesake) && !shared.firstAmong(namesake->items);
          work.lost.push_back(addChange(*namesake));
        }
      if (!work.lost.empty() && !(options_.includeCollisions && canComeBack)) {
        skip(outcome, Message::tr("another playlist has its name, and would be deleted"));
        changes_.resize(work.change);
        continue;
      }
      for (const std::size_t lost : work.lost) changes_[lost].lost = true;
      work_.push_back(std::move(work));
    }
    for (PlaylistChange& change : changes_)
      if (change.folder)
        if (const auto folder = byID.find(*change.folder); folder != byID.end())
          change.folderName = folder->second->name;
  }

  /// Of the tracks that are put in, now or when the run is taken back, one that has another's ID.
  [[nodiscard]] std::optional<std::uint64_t> sharedTrack(const PlannedPlaylist& planned,
                                                         const Playlist& playlist,
                                                         const SharedIDs& shared) const {
    if (plan_.kind == RunKind::addToPlaylist) return shared.firstAmong(planned.additions);
    for (const Replacement& change : planned.replacements)
      if (shared.firstAmong({&change.newTrack, 1})) return change.newTrack;
    return shared.firstAmong(playlist.items);
  }

  bool takesPart(const PlannedPlaylist& planned, const Playlist& playlist, const SharedIDs& shared,
                 Outcome& outcome) {
    if (!isUserPlaylist(playlist)) {
      skip(outcome, Message::tr("it is no ordinary playlist"));
      return false;
    }
    if (shared.has(playlist)) {
      skip(outcome, Message::tr("another playlist has the same persistent ID"));
      return false;
    }
    if (const auto track = sharedTrack(planned, playlist, shared)) {
      skip(outcome,
           Message::tr("the persistent ID %1 is that of several tracks").arg(decToHex(*track)));
      return false;
    }
    for (const Replacement& change : planned.replacements)
      if (playlist.items[change.position - 1] != change.oldTrack) {
        skip(outcome, Message::tr("entry %1 is another track").arg(change.position));
        return false;
      } else if (!ReplaylistControl::storedXML().keyOf(change.newTrack)) {
        skip(outcome,
             Message::tr("the keeper %1 is not in the library").arg(decToHex(change.newTrack)));
        return false;
      }
    return true;
  }

  std::size_t addChange(const Playlist& playlist) {
    PlaylistChange& change = changes_.emplace_back();
    change.oldPlaylist = playlist.persistentID;
    change.name = playlist.name;
    change.folder = playlist.parentID;
    change.oldEntries = playlist.items;
    return changes_.size() - 1;
  }

  void act() {
    const WithoutWaits waits(options_.answersWhenDone);
    for (std::size_t i = 0; i < work_.size(); ++i) {
      const Work& work = work_[i];
      Outcome& outcome = report_.outcomes[work.planned];
      if (options_.progress) options_.progress({i, work_.size(), outcome.name});
      if (options_.cancelled && options_.cancelled()) {
        report_.state = RunState::cancelled;
        return;
      }
      PlaylistChange& change = changes_[work.change];
      if (gone_.contains(change.oldPlaylist)) {
        // It stands in the history as lost by the playlist that it went with.
        skip(outcome, Message::tr("it was deleted with another playlist of its name"));
        change.state = ChangeState::skipped;
        change.note = outcome.reason.english();
        for (const std::size_t lost : work.lost) changes_[lost].state = ChangeState::skipped;
        continue;
      }
      if (plan_.kind == RunKind::replaylist) {
        replace(change);
        for (const std::size_t lost : work.lost) lose(changes_[lost]);
      } else {
        edit(change, plan_.playlists[work.planned]);
      }
      change.state = ChangeState::done;
      outcome.kind = Outcome::Kind::done;
    }
    if (options_.progress) options_.progress({work_.size(), work_.size(), {}});
  }

  void replace(const PlaylistChange& change) {
    std::vector<std::string> trackIDs;
    trackIDs.reserve(change.newEntries.size());
    for (const std::uint64_t track : change.newEntries) {
      auto key = ReplaylistControl::storedXML().keyOf(track);
      if (!key)
        throw MessageError(Message::tr("%1 lists an unknown track").arg(inQuotes(change.name)));
      trackIDs.push_back(std::move(*key));
    }
    ReplaylistControl::buildXMLWith(trackIDs, change.name, decToHex(change.oldPlaylist));
  }

  void lose(PlaylistChange& change) {
    if (!gone_.insert(change.oldPlaylist).second) {
      change.state = ChangeState::skipped;  // it went before
      return;
    }
    change.state = ChangeState::done;
    report_.lost.push_back({change.oldPlaylist, change.name, change.folderName});
  }

  [[noreturn]] static void throwFailed(const PlaylistChange& change, const ScriptResult& result) {
    throw MessageError(Message::tr("%1: %2").arg(inQuotes(change.name)).arg(result.error->whole()));
  }

  /// Changes the playlist itself, which keeps its ID.
  void edit(PlaylistChange& change, const PlannedPlaylist& planned) {
    const ScriptResult result = application_.run(
        plan_.kind == RunKind::cleanUp
            ? scriptText(script::DeleteEntries{change.oldPlaylist, planned.deleteIndexes})
            : scriptText(script::DuplicateTracks{planned.additions, change.oldPlaylist}));
    if (result.failed()) throwFailed(change, result);
    change.newPlaylist = change.oldPlaylist;
  }

  /// Finds what the imports made, and puts it where the old playlists were.
  void settle(const LibraryImage& before) {
    if (plan_.kind != RunKind::replaylist) return;
    std::vector<std::uint64_t> surplus;
    {
      const auto playlists = application_.library().allPlaylists();
      std::unordered_map<std::string_view, std::vector<const Playlist*>> made;
      for (const Playlist& playlist : *playlists)
        if (!before.find(playlist.persistentID)) made[playlist.name].push_back(&playlist);
      for (PlaylistChange& change : changes_)
        if (change.state == ChangeState::done && !change.lost)
          change.newPlaylist = takeMade(made[change.name], change);
      // What is left of each name are the first imports of names that hold a quotation mark: the
      // deletion between the imports is then no valid script.
      for (const auto& [name, left] : made)
        for (const Playlist* playlist : left) surplus.push_back(playlist->persistentID);
    }
    const script::Sender sender(&application_, process().with.log);
    for (const std::uint64_t playlist : surplus) sender.deletePlaylistByPid(decToHex(playlist));
    for (const Work& work : work_) {
      const PlaylistChange& change = changes_[work.change];
      Outcome& outcome = report_.outcomes[work.planned];
      if (change.state != ChangeState::done || !change.folder) continue;
      if (!before.find(*change.folder)) {
        outcome.reason =
            Message::tr("the library does not have its folder: it is at top level now");
        continue;
      }
      const ScriptResult moved =
          application_.run(scriptText(script::MovePlaylist{*change.newPlaylist, *change.folder}));
      if (moved.failed()) throwFailed(change, moved);
    }
  }

  /// Takes the last of a name's new playlists that has the right entries.
  static std::uint64_t takeMade(std::vector<const Playlist*>& made, const PlaylistChange& change) {
    for (auto playlist = made.rbegin(); playlist != made.rend(); ++playlist) {
      if ((*playlist)->items != change.newEntries) continue;
      const std::uint64_t id = (*playlist)->persistentID;
      made.erase(std::next(playlist).base());
      return id;
    }
    throw MessageError(
        (made.empty() ? Message::tr("%1 was not imported. Perhaps there is no room in %2")
                      : Message::tr("%1 was not imported as a whole. Look at the log, and at %2"))
            .arg(inQuotes(change.name))
            .arg(ReplaylistControl::appSupportFolder()));
  }

  void verify(const LibraryImage& before) {
    LibraryImage expected = before;
    for (const PlaylistChange& change : changes_) {
      if (change.state != ChangeState::done) continue;
      expected.expectGone(change.oldPlaylist);
      if (change.lost) continue;
      const bool hasFolder = change.folder && (before.find(*change.folder) ||
                                               change.newPlaylist == change.oldPlaylist);
      expected.expect(*change.newPlaylist,
                      {change.name, hasFolder ? change.folder : std::nullopt,
                       fingerprintOf(change.newEntries), PlaylistKind::regular});
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
    report_.lost.clear();
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
  std::unordered_set<std::uint64_t> gone_;
};

}  // namespace

ApplyReport applyPlan(const Plan& plan, MusicApplication& application, const std::string& libraryID,
                      History& history, const ApplyOptions& options) {
  if (plan.kind == RunKind::undo || isAboutFiles(plan.kind))
    throw std::invalid_argument("this plan changes no playlists");
  if (process().with.scripts != &application)
    throw std::logic_error("scripts would go to another application");
  return PlaylistRun(plan, application, history, options).carryOut(libraryID);
}

}  // namespace kestrel
