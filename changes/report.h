/// What a user is told of a plan: what to know before it is carried out, and what came of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "changes/plan.h"
#include "history/history.h"

namespace kestrel {

/// What a user should know before a plan is applied.
struct Warning {
  enum class Kind : std::uint8_t {
    createsRepeats,  ///< one track several times in one playlist
    notShown,        ///< affected, but the outline cannot show it
    folderStandsIn,  ///< a chosen folder stands for what it holds
    groupLeftOut,
    playlistLeftOut,
    automaticLeftOut,  ///< playlists that fill themselves
    filesHeldBack,
    tracksHeldBack,
    nothingToDo,
  };
  Kind kind = Kind::nothingToDo;
  std::vector<std::string> names;  ///< playlists, groups or files, by kind
  std::uint64_t count = 0;
  Message reason = {};  ///< of what is left out or held back

  friend bool operator==(const Warning&, const Warning&) = default;
};

/// In the order in which they matter.
std::vector<Warning> warningsOf(const Plan& plan);
/// One sentence, or two.
Message sentence(const Warning& warning);

/// How far a run, or its undoing, has come.
struct ApplyProgress {
  std::size_t done = 0;
  std::size_t total = 0;
  std::string name;  ///< of the playlist or file that comes next; empty at the end
};

/// What became of one playlist, one track, or one file, of a plan.
struct Outcome {
  enum class Kind : std::uint8_t {
    done,
    asBefore,  ///< of an undo: there was nothing to take back
    skipped,
    failed,
    notReached
  };
  enum class What : std::uint8_t {
    playlist,
    track,
    file,
    values  ///< of a track that stays
  };
  What what = What::playlist;
  Kind kind = Kind::notReached;
  std::uint64_t id = 0;       ///< of the playlist as planned, or of the track
  std::uint64_t newID = 0;    ///< of the playlist afterwards; 0 when it is gone or for a file
  std::string name;           ///< or path
  std::uint64_t changes = 0;  ///< entries, bytes, or plays
  Message reason;             ///< of what was not done, a sentence without full stop
  std::uint64_t deleted = 0;  ///< of the entries, those that are deleted
};

struct ApplyReport {
  RunKind kind = RunKind::replaylist;
  std::optional<std::int64_t> run;  ///< in the history; nothing when nothing was begun
  std::int64_t number = 0;          ///< of that run among those of the library
  RunState state = RunState::finished;
  std::vector<Outcome> outcomes;  ///< in the plan's order: playlists, tracks, files, values
  Message problem;  ///< of a run that failed: why nothing of it was kept; or what else went wrong
  bool changedLibrary = false;  ///< it is, or will be, another than before

  [[nodiscard]] std::size_t count(Outcome::Kind kind) const noexcept;
  [[nodiscard]] std::size_t count(Outcome::What what, Outcome::Kind kind) const noexcept;
  /// For people: a line that sums up, then one for each playlist, track or file that was left out.
  [[nodiscard]] std::vector<Message> messages() const;
  [[nodiscard]] std::vector<std::string> lines() const { return english(messages()); }
};

/// The first of those lines without the run's number.
Message summaryOf(const ApplyReport& report);

}  // namespace kestrel
