/// How much there is to repair in playlists, for what windows show while the user decides.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "foundation/function_ref.h"
#include "replaylist/survey.h"

namespace kestrel {

struct RepairCount {
  std::size_t entries = 0;    ///< that list a track which is not kept and has a keeper
  std::size_t playlists = 0;  ///< that have such entries
  std::size_t waiting = 0;  ///< further entries, which are replaced only when the user asks for it
  friend bool operator==(const RepairCount&, const RepairCount&) = default;
};

/// Whether an entry is better left as it is: its file is here, and what would take its place is
/// only in the cloud. A list that plays without a network goes on doing so.
bool isUnsafeReplacement(const TrackRecord* before, const TrackRecord* after);

/// Copies with a file here of which what is kept is only in the cloud: they go only when the user
/// asks for it.
struct WaitingCopies {
  std::size_t copies = 0;
  std::uint64_t bytes = 0;
  friend bool operator==(const WaitingCopies&, const WaitingCopies&) = default;
};

/// Rows of a table as they stand, for a worker. Made in a few milliseconds of a million: what lies
/// about in memory is looked up by `surveyed`.
class RowsToCount {
 public:
  explicit RowsToCount(std::span<const ResultTrack> rows);
  /// From any thread, also when the table has others by then.
  [[nodiscard]] std::vector<SurveyRow> surveyed() const;
  /// Of groups with one keeper. From any thread.
  [[nodiscard]] WaitingCopies waiting(bool keeperValue) const;
  /// nullptr for others. From any thread.
  [[nodiscard]] const TrackRecord* track(std::uint64_t id) const;

 private:
  struct Row {
    const TrackRecord* record;
    std::int32_t group;
    bool ticked;
  };
  std::vector<Row> rows_;
  std::vector<std::shared_ptr<const TrackStore>> stores_;  ///< which keep the records
};

/// What a count goes by besides the groups.
struct RepairTests {
  /// Whether an entry of the first track is better not given to the second.
  FunctionRef<bool(std::uint64_t, std::uint64_t)> isUnsafe;
  FunctionRef<bool(std::uint64_t)> canChange;  ///< of a playlist that lists something to repair
  FunctionRef<bool()> cancelled;               ///< asked between two playlists
};

/// Of whole groups, as the survey sees them. From any thread; takes the time of reading all
/// playlists once. Nothing when cancelled.
std::optional<RepairCount> countRepairs(std::span<const SurveyRow> rows, bool keeperValue,
                                        const std::vector<Playlist>& playlists,
                                        const RepairTests& tests);

}  // namespace kestrel
