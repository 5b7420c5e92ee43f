/// Taking a run back, as a whole or one playlist of it.
///
/// What a run wrote is taken back only while it still is what the run wrote: otherwise it has been
/// worked on since, and undoing would throw that work away.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "changes/apply.h"
#include "changes/report.h"
#include "foundation/library_error.h"
#include "history/history.h"
#include "musicapp/music_application.h"
#include "platform/files.h"

namespace kestrel {

/// How a playlist, or file, of a run stands today.
enum class UndoState : std::uint8_t {
  ready,      ///< as the run left it: can be taken back
  gone,       ///< deleted since: can be made anew
  notDone,    ///< the run did not change it
  undone,     ///< taken back before
  asBefore,   ///< as it was before the run, though no record says that it was taken back
  different,  ///< changed since
};

struct UndoItem {
  UndoState state = UndoState::notDone;
  std::int64_t change = 0;               ///< number in the history
  std::optional<std::uint64_t> current;  ///< the playlist as it is in the library today
  std::uint64_t playlist = 0;            ///< by its ID before the run; 0 for tracks and files
  std::string name;                      ///< or path
  /// Of what is different: what was found instead, as a sentence without full stop.
  Message difference;
};

struct UndoCheck {
  RunSummary run;
  std::vector<UndoItem> playlists, tracks, files;
  std::vector<UndoItem> values;  ///< of tracks, by their names
  [[nodiscard]] std::array<const std::vector<UndoItem>*, 4> lists() const noexcept {
    return {&playlists, &tracks, &files, &values};
  }
  [[nodiscard]] bool differs() const noexcept;
  /// What was done by a run that broke off, or what stands in the way, one line each.
  [[nodiscard]] std::vector<Message> messages() const;
  [[nodiscard]] std::vector<std::string> lines() const { return english(messages()); }
};

/// Compares a run with the library as it is, whatever the history says of how far it came. Changes
/// nothing. `application`, if there is one, is asked for what tracks have.
UndoCheck inspectRun(const RunRecord& run, MediaLibrary& library, FileService& files,
                     MusicApplication* application = nullptr);

/// What a track has when the change is taken back: what it had before, with the plays since, which
/// stay. Nothing when its values are others than the run left.
std::optional<TrackValues> valuesBefore(const ValueChange& change, const TrackValues& now);

/// Writes down of runs over this library which broke off what has come of them, by the library as
/// it is: a run is recorded before it takes effect, and what ended it may have come in between. To
/// be called before `clearBrokenRuns` (apply.h), for those of which that has not been looked at.
/// Throws nothing: what cannot be found out or written now shows in `inspectRun` all the same.
void settleBrokenRuns(History& history, MusicApplication& application, FileService& files);

/// What a run wrote was changed since, and nothing was asked for about that.
class DifferentError : public LibraryError {
 public:
  using LibraryError::LibraryError;
};

/// A later run stands in the way of an undo.
class LaterRunError : public LibraryError {
 public:
  LaterRunError(std::string file, Message problem, const RunSummary& later);
  std::int64_t run;     ///< the last of those that stand in the way, to be taken back first
  std::int64_t number;  ///< of that run among those of the library
};

struct UndoOptions {
  /// Only this one, by the ID that it had before the run or at any time since.
  std::optional<std::uint64_t> playlist;
  /// Takes back what still is as the run left it and leaves the rest. Otherwise one difference is
  /// enough for nothing to be changed.
  bool leaveDifferent = false;
  std::function<void(const ApplyProgress&)> progress = {};  ///< before each file or playlist
  /// Asked between two, and while a player looks at the files that came back. What has come back by
  /// then stays so; the rest can be taken back by another undo.
  std::function<bool()> cancelled = {};
};

struct UndoReport {
  UndoCheck check;
  std::optional<std::int64_t> run;  ///< the undo itself; nothing when nothing was changed
  std::int64_t number = 0;          ///< of that run among those of the library
  std::vector<Outcome> outcomes;
  bool changedLibrary = false;  ///< not so when only files were moved
  /// Whether all that the run did, or that was asked for, is as it was before it. What is not stays
  /// listed as done by the run.
  bool isComplete = true;
  bool isCancelled = false;  ///< by the user: what was not reached is left to another undo
  Message problem;  ///< of the history, which does not know all that was taken back; else empty
  [[nodiscard]] std::vector<Message> messages() const;
  [[nodiscard]] std::vector<std::string> lines() const { return english(messages()); }
};

/// Takes the library back to the byte where it is what the run left and all of the run is taken
/// back. Otherwise restores the entries of the run's playlists, makes anew those that are gone, and
/// brings back tracks that it deleted, each at its place. Moves its files back from the trash, and
/// takes tracks that it added out of the library again; their files stay.
///
/// Once the library is written, a history that cannot be is the report's `problem` and no error:
/// the next look at the run finds out that it was taken back.
///
/// Throws LibraryError with the reason, and changes nothing, when there is no such run or playlist,
/// it was undone before or is itself an undo, it is of another library, something differs, a track
/// is no longer in the library, or the library is in use; LaterRunError where a later run has made
/// the difference. `trash` may be nullptr for runs without
/// files.
UndoReport undoRun(std::int64_t run, MusicApplication& application, FileService& files,
                   History& history, Trash* trash, const UndoOptions& = {});

}  // namespace kestrel
