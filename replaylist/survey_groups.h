/// Which tracks take the place of which: the dupe groups of a table, checked and turned into a map
/// from keepers to non-keepers.
///
/// Nothing here reads settings, playlists or windows. Callable from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "foundation/number_table.h"
#include "library/result_track.h"

namespace kestrel {

/// What counts of a row of a results table.
struct SurveyRow {
  std::uint64_t track = 0;  ///< persistent ID
  std::int32_t tGroupID = 0;
  bool tCheckbox = false;
  bool fileMissing = false;  ///< "fileAvail" is "0"

  SurveyRow() = default;
  SurveyRow(std::uint64_t id, std::int32_t group, bool ticked, bool missing)
      : track(id), tGroupID(group), tCheckbox(ticked), fileMissing(missing) {}
  explicit SurveyRow(const ResultTrack& row)
      : SurveyRow(row.record->item().persistentID, row.tGroupID, row.tCheckbox,
                  row.record->availability() == FileAvailability::missing) {}
};

/// A track that the searched playlist lists more than once is one track: of its rows in a group the
/// first that is a keeper counts, else the first. Positions of those that count, ascending.
std::vector<std::uint32_t> rowsThatCount(std::span<const SurveyRow> rows, bool keeperValue);

/// Keepers with their non-keepers, in the order of adding; and whose place each keeper takes.
///
/// A track can be in the set of non-keepers without having a keeper. Where a track stands in the
/// lists of several keepers, which results of one search never make, the first of them counts.
class KeeperTable {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return keepers_.size(); }
  [[nodiscard]] bool empty() const noexcept { return keepers_.empty(); }
  [[nodiscard]] std::uint64_t keeper(std::size_t entry) const { return keepers_[entry]; }
  /// In table order; may hold a track twice, or the keeper itself, when the table does.
  [[nodiscard]] std::span<const std::uint64_t> nonKeepers(std::size_t entry) const {
    return nonKeepers_[entry];
  }

  [[nodiscard]] bool isNonKeeper(std::uint64_t track) const noexcept {
    return numbers_.find(track) != nullptr;
  }
  /// Asks for the memory of a track that will be looked for a few steps later.
  void prefetch(std::uint64_t track) const noexcept { numbers_.prefetch(track); }
  /// Nothing for a track that is no non-keeper, or one without a keeper.
  [[nodiscard]] std::optional<std::uint64_t> keeperOf(std::uint64_t track) const noexcept {
    const std::uint32_t* entry = numbers_.find(track);
    if (!entry || *entry == noKeeper) return std::nullopt;
    return keepers_[*entry];
  }
  /// Every track that stands in the list of a keeper, once, in the order of the lists.
  [[nodiscard]] std::vector<std::uint64_t> allNonKeepers() const;

 private:
  friend class KeeperTableBuilder;
  static constexpr auto noKeeper = static_cast<std::uint32_t>(-1);
  // Apart from each other: look-ups for millions of entries want the keepers close together.
  std::vector<std::uint64_t> keepers_;
  std::vector<std::vector<std::uint64_t>> nonKeepers_;
  IdMap numbers_;  ///< non-keepers to entries
};

struct SkippedGroup {
  enum class Reason : std::uint8_t {
    missingFile,  ///< of one of its rows; the group is skipped whole
    noKeeper,     ///< its non-keepers are found, but nothing can take their place
    severalKeepers,
  };
  std::int32_t tGroupID = 0;
  Reason reason = Reason::missingFile;

  friend bool operator==(const SkippedGroup&, const SkippedGroup&) = default;
};

struct GroupSurvey {
  /// The first group with more than one keeper. There is no map then: nothing may be replaced while
  /// it is not clear what stays.
  std::optional<std::int32_t> severalKeepers;
  std::vector<SkippedGroup> skipped;  ///< in the order in which the table meets them
  KeeperTable keepers;
};

/// What a survey is to see of whole groups, so that no group keeps it from the others.
struct PreparedRows {
  std::vector<SurveyRow> rows;        ///< group by group
  std::vector<SkippedGroup> leftOut;  ///< with several keepers
};
/// Leaves one row of each track of a group. Where the keeper's file is there, or in the cloud, the
/// files of the other rows pass for there too: that they are gone is all the more reason to replace
/// their entries.
PreparedRows preparedRows(std::span<const SurveyRow> rows, bool keeperValue);

/// Takes the groups in the order in which the rows first name them. Rows whose `tCheckbox` is
/// `keeperValue` are keepers. A group with several is reported even where it would be skipped.
GroupSurvey surveyGroups(std::span<const SurveyRow> rows, bool keeperValue);

}  // namespace kestrel
