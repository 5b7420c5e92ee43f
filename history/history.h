/// The history of runs: what was changed, when, and what it takes to take it back.
///
/// A SQLite database in the application-support folder. A run is written down before it acts, so
/// that no change is ever without its record, and completed afterwards; one that was broken off is
/// recognised by its lock being gone. The library that the runs changed is the user's; only
/// this file is ours, and it is never dropped or repaired silently.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/message.h"
#include "history/fingerprint.h"
#include "musicapp/library_identity.h"
#include "musicapp/track_values.h"
#include "platform/clock.h"
#include "platform/trash.h"

namespace kestrel {

class HistoryDatabase;
class RunLocks;

enum class RunKind : std::uint8_t {
  replaylist,
  cleanUp,
  trash,
  undo,
  addToPlaylist,
  addToLibrary,
  remove,
};
/// The word for it in files and for other programs.
std::string_view nameOf(RunKind kind) noexcept;
std::optional<RunKind> runKindNamed(std::string_view name) noexcept;

/// Whether a run of that kind is about files, each on its own, and not about playlists.
constexpr bool isAboutFiles(RunKind kind) noexcept {
  return kind == RunKind::trash || kind == RunKind::addToLibrary;
}

/// The history cannot be read or written. Says the file and what to do; nothing has been changed.
class HistoryError : public MessageError {
 public:
  HistoryError(std::string file, Message problem, bool unreadable);
  std::string file;
  bool unreadable;  ///< moving the file aside helps
};

enum class RunState : std::uint8_t {
  running,
  finished,
  cancelled,   ///< by the user, between two steps; what was done before stands
  failed,      ///< and nothing of it was kept
  incomplete,  ///< an undo that could not take everything back
  brokenOff,   ///< its program ended meanwhile; `inspectRun` (undo.h) finds out what was done
};
std::string_view nameOf(RunState state) noexcept;

/// The part that something had in a run.
enum class ChangeState : std::uint8_t { planned, done, skipped, failed };
std::string_view nameOf(ChangeState state) noexcept;

/// What a changed playlist was or became, by the records; see playlist_lineage.h.
struct LineageStep {
  std::int64_t run = 0;  ///< the run that left it there; 0 for what comes before the change
  std::uint64_t playlist = 0;
  bool byUndo = false;      ///< that run was an undo
  bool isOfChange = false;  ///< the change made it, or it came of what the change made
  friend bool operator==(const LineageStep&, const LineageStep&) = default;
};

struct PlaylistChange {
  std::int64_t id = 0;  ///< in the history
  ChangeState state = ChangeState::planned;
  /// Deleted because it shared its name with a changed one, and to be brought back by undoing.
  bool lost = false;
  std::uint64_t oldPlaylist = 0;
  std::optional<std::uint64_t> newPlaylist;  ///< nothing while not known, and for a lost one
  /// What the old playlist was before and what became of it, earliest first. Filled in by
  /// `History::run`.
  std::vector<LineageStep> lineage;
  std::string name;
  std::optional<std::uint64_t> folder;
  std::string folderName;
  std::vector<std::uint64_t> oldEntries, newEntries;
  /// Where entries of unknown tracks stood among the old ones (Playlist::unknownAt); none in
  /// records of earlier versions.
  std::vector<std::uint64_t> unknownAt = {};
  std::string note;                      ///< why it was skipped or failed
  std::optional<std::int64_t> undoneBy;  ///< the run that took it back
  friend bool operator==(const PlaylistChange&, const PlaylistChange&) = default;
};

struct FileChange {
  std::int64_t id = 0;
  ChangeState state = ChangeState::planned;
  std::uint64_t track = 0;
  std::uint64_t size = 0;
  /// Only the original path while it is planned, or of an added file. A place in the trash is
  /// written down before the file is moved: of a run that broke off, what lies there was moved.
  TrashedItem item;
  std::optional<FileMark> mark;   ///< of what goes to that place; nothing in old records
  std::uint64_t fingerprint = 0;  ///< of an added file's track (library_checks.h)
  std::string note;
  std::optional<std::int64_t> undoneBy;
  friend bool operator==(const FileChange&, const FileChange&) = default;
};

/// A track that left the library.
struct TrackChange {
  std::int64_t id = 0;
  ChangeState state = ChangeState::planned;
  std::uint64_t track = 0;
  std::string name;
  std::optional<std::int64_t> undoneBy;
  friend bool operator==(const TrackChange&, const TrackChange&) = default;
};

/// What a track that stays was given of copies that left; or, of a track that left with its file,
/// what it had, where the application forgets that with it.
struct ValueChange {
  std::int64_t id = 0;
  ChangeState state = ChangeState::planned;
  std::uint64_t track = 0;
  std::string name;
  bool leaves = false;  ///< the second: `after` says nothing
  TrackValueSet which;
  TrackValues before, after;
  std::optional<std::int64_t> undoneBy;
  friend bool operator==(const ValueChange&, const ValueChange&) = default;
};

struct RunSummary {
  std::int64_t id = 0;  ///< in the history, which counts the runs over all libraries
  /// By which people know it: its place among the runs over its library, from 1 for the earliest. 0
  /// where it was not asked for with a library.
  std::int64_t number = 0;
  RunKind kind = RunKind::replaylist;
  RunState state = RunState::running;
  Moment started;
  std::optional<Moment> ended;
  std::string libraryUri, libraryID;
  std::optional<std::int64_t> undoes;                  ///< of an undo: the run that it took back
  std::uint64_t playlists = 0, files = 0, tracks = 0;  ///< done, as far as it is recorded
  std::uint64_t values = 0;                            ///< tracks whose values were recorded
  std::uint64_t undone = 0;                            ///< of these
  [[nodiscard]] bool isUndone() const noexcept {
    return undone > 0 && undone == playlists + files + tracks + values;
  }
};

struct RunRecord {
  RunSummary summary;
  std::vector<PlaylistChange> playlists;
  std::vector<FileChange> files;
  std::vector<TrackChange> tracks;
  std::vector<ValueChange> values;
  std::string reversal;  ///< what takes it back to the byte (Batch::revert); may be empty
};

/// What a run is about to do.
struct RunChanges {
  std::span<PlaylistChange> playlists;
  std::span<FileChange> files;
  std::span<TrackChange> tracks;
  std::span<ValueChange> values = {};
};
/// Numbers of changes.
struct RunChangeIDs {
  std::span<const std::int64_t> playlists, files, tracks, values = {};
};

/// One connection; not thread-safe. Several programs may have the file open: each waits up to five
/// seconds for another's transaction. Everything throws HistoryError.
class History {
 public:
  /// "history.sqlite" in the application-support folder `folder`, which ends with a slash.
  static std::string pathIn(const std::string& folder);
  /// Makes the file when there is none; its folder must exist.
  explicit History(std::string path, const Clock& clock);
  ~History();
  History(History&&) noexcept;
  History& operator=(History&&) noexcept;
  /// Moves a history into a new folder beside it, so that a new one can begin; its new path. One
  /// that can be read stays, with a HistoryError, unless it is asked for. Throws FileError.
  static std::string moveAside(const std::string& path, const Clock& clock,
                               bool evenIfReadable = false);

  /// Writes a run with all that it is about to do, and waits until that is on the disk. Fills in
  /// the records' `id`s and returns the run's.
  std::int64_t begin(RunKind kind, const LibraryIdentity& library, const RunChanges& changes,
                     std::optional<std::int64_t> undoes = {});
  /// Records what became of these: state, new playlist, note, trashed item and its mark. On the
  /// disk upon return.
  void record(std::span<const PlaylistChange> playlists);
  void record(std::span<const FileChange> files);
  void record(std::span<const TrackChange> tracks);
  void record(std::span<const ValueChange> values);
  void recordReversal(std::int64_t run, std::string_view reversal);
  /// Adds changes that a run turned out to make; fills in their `id`s.
  void add(std::int64_t run, std::span<PlaylistChange> playlists);
  /// Ends a run. Of an undo, marks what it took back of the run that it undoes.
  void finish(std::int64_t run, RunState state, const RunChangeIDs& undone = {});

  /// The runs over a library, newest first: those at its uri, and those of the same library ID that
  /// is a server's, or whose file is no longer where it was. All runs without a library.
  std::vector<RunSummary> runs(const LibraryIdentity* library = nullptr);
  /// Of a run over this library its number, which `runs` gives it; 0 for others.
  std::int64_t numberOf(std::int64_t run, const LibraryIdentity& library);
  /// Nothing when there is no such run.
  std::optional<RunRecord> run(std::int64_t id);

  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  const Clock* clock_;
  std::unique_ptr<HistoryDatabase> database_;
  std::unique_ptr<RunLocks> locks_;
};

}  // namespace kestrel
