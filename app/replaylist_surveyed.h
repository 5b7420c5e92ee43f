/// What a survey comes to for the replaylist window: the plan for all that the outline shows, and
/// what is to be said about it.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "changes/plan.h"
#include "ui/replaylist_control.h"

namespace kestrel {

class MusicApplication;

/// What a user should know before choosing the playlist; empty when there is nothing.
QString warningOf(const PlannedPlaylist& planned);

class ReplaylistSurveyed {
 public:
  ReplaylistSurveyed() = default;
  /// On the worker, after the survey. Throws LibraryError.
  explicit ReplaylistSurveyed(MusicApplication& application);

  [[nodiscard]] SurveyOutcome outcome() const { return outcome_; }
  [[nodiscard]] const Plan& plan() const { return plan_; }
  [[nodiscard]] const std::shared_ptr<const TrackStore>& tracks() const { return tracks_; }
  /// nullptr for playlists in which nothing is replaced.
  [[nodiscard]] const PlannedPlaylist* planned(std::uint64_t playlist) const;
  /// The row of the upper table's content of a track that is replaced.
  [[nodiscard]] std::optional<std::uint32_t> rowOf(std::uint64_t track) const;
  /// Warnings, what is left out, and why.
  [[nodiscard]] QStringList notes() const;

 private:
  /// By which the groups are known that are left out for this reason.
  [[nodiscard]] QString songsOf(const Message& reason) const;

  SurveyOutcome outcome_ = SurveyOutcome::none;
  Plan plan_;
  std::shared_ptr<const TrackStore> tracks_;
  std::unordered_map<std::uint64_t, std::size_t> planned_;  ///< positions in the plan
  std::unordered_map<std::uint64_t, std::uint32_t> rows_;
};

}  // namespace kestrel
