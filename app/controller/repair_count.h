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
  friend bool operator==(const RepairCount&, const RepairCount&) = default;
};

/// Rows of a table as they stand, for a worker. Made in a few milliseconds of a million: what lies
/// about in memory is looked up by `surveyed`.
class RowsToCount {
 public:
  explicit RowsToCount(std::span<const ResultTrack> rows);
  /// From any thread, also when the table has others by then.
  [[nodiscard]] std::vector<SurveyRow> surveyed() const;

 private:
  struct Row {
    const TrackRecord* record;
    std::int32_t group;
    bool ticked;
  };
  std::vector<Row> rows_;
  std::vector<std::shared_ptr<const TrackStore>> stores_;  ///< which keep the records
};

/// Of whole groups, as the survey sees them. From any thread; takes the time of reading all
/// playlists once. Nothing when cancelled, which is asked between two playlists.
std::optional<RepairCount> countRepairs(std::span<const SurveyRow> rows, bool keeperValue,
                                        const std::vector<Playlist>& playlists,
                                        FunctionRef<bool()> cancelled);

}  // namespace kestrel
