/// Carrying over: what copies have that leave a library - plays, rating, date added, comments -
/// goes to the tracks that are kept in their place.
///
/// Only in the run in which a copy leaves, and only if it does: so nothing is ever added twice. The
/// history has what the kept tracks had before.
#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "changes/plan.h"
#include "changes/report.h"
#include "history/history.h"
#include "musicapp/music_application.h"

namespace kestrel {

/// Why a run of that kind cannot carry these values over, as a sentence without full stop; empty
/// when it can. Tracks leave a library that deletes them by no trash plan.
Message whyNotCarried(TrackValueSet which, RunKind kind, const Capabilities& can);

/// Adds to a plan of a removal, or of files that go to the trash, what the kept tracks are to be
/// given by those that leave. Asks the application for what they have. Throws LibraryError where
/// that is not possible (`whyNotCarried`).
void planCarrying(Plan& plan, TrackValueSet which, MusicApplication& application);

/// What a kept track would have.
struct CarriedValues {
  const PlannedCarry* planned = nullptr;
  TrackValues after;
};
/// Of the kept tracks that gain anything, in the plan's order, as the plan stands. The plan must
/// outlive it.
std::vector<CarriedValues> carriedBy(const Plan& plan);
/// "would give 3 kept tracks 41 plays, 2 ratings": what all of them gain; empty for nothing.
Message gainOf(const Plan& plan, const std::vector<CarriedValues>& carried);

/// The part of a run that carries over. The plan is the run's own, and outlives it.
class Carrying {
 public:
  Carrying(Plan& plan, MusicApplication& application) : plan_(plan), application_(application) {}

  /// Holds those copies back of which, or of whose keepers, something is not as it was planned:
  /// what would be given in their place is not what the user was told. To be called before all
  /// else.
  void holdBackChanged();
  /// Settles what is given by the tracks that are to leave, with an outcome for each kept track.
  /// `withFiles`: an application forgets what it has of a track with the track's file, so that the
  /// history has to know it, whether or not anything is carried over.
  void choose(const std::unordered_set<std::uint64_t>& leaving, bool withFiles,
              ApplyReport& report);
  /// For the history.
  [[nodiscard]] std::vector<ValueChange>& changes() noexcept { return changes_; }
  /// Gives what tracks have that did leave, of those chosen, checks that it has come to be, and
  /// writes that down. Throws MessageError when it has not.
  void carryOut(const std::unordered_set<std::uint64_t>& left, History& history,
                ApplyReport& report);

 private:
  void recordLeaving(const std::unordered_set<std::uint64_t>& leaving);

  Plan& plan_;
  MusicApplication& application_;
  std::vector<ValueChange> changes_;
  std::vector<std::size_t> outcomes_;  ///< of the kept tracks among them, which come first
  std::vector<std::optional<TrackValues>> now_;  ///< of the kept tracks and copies, by `tracks_`
  std::vector<std::uint64_t> tracks_;
};

/// The same for tracks that have left with their files, which nothing takes back: what goes wrong
/// is the report's problem. Undoing the run brings the copies back. Commits `batch`, if there is
/// one.
void carryOverAfterFiles(Carrying& carrying, const std::unordered_set<std::uint64_t>& left,
                         History& history, ApplyReport& report, Batch* batch = nullptr);

}  // namespace kestrel
