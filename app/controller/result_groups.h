/// The groups of a search result: who is in them, what is to be done, and why.
///
/// Works on positions in the upper table's content, which stay as they are however the table is
/// sorted. A million rows cost a few bytes each; nothing about a group is stored that can be
/// worked out again when it is looked at.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "dupes/group_index.h"
#include "dupes/keeper_pass.h"
#include "library/result_track.h"
#include "ui/models/array_controller.h"

namespace kestrel {

class Preferences;

/// What the status line says.
struct ResultSummary {
  std::size_t tracks = 0;
  std::size_t groups = 0;
  std::size_t toActOn = 0;        ///< tracks that are no keepers, each once in its group
  std::uint64_t bytes = 0;        ///< of those tracks' files, as far as they are there
  std::size_t withoutKeeper = 0;  ///< groups
  std::size_t manyKeepers = 0;    ///< groups with more than one

  friend bool operator==(const ResultSummary&, const ResultSummary&) = default;
};

/// The keeper flag's value in keepers, as the user has chosen what a tick means.
bool keeperValueBy(const Preferences& preferences);
/// The rows of a table's content themselves, in its order, to be changed in place.
std::span<ResultTrack> rowsOf(ArrayController<ResultTrack>& controller);

class ResultGroups {
 public:
  ResultGroups() = default;
  /// `rows` is the table's content, which must outlive this object and stay in its place.
  explicit ResultGroups(std::span<ResultTrack> rows);

  /// Other content with the same groups, as far as they have members left: the user's choices stay.
  void replaceRows(std::span<ResultTrack> rows);

  [[nodiscard]] std::size_t rowCount() const noexcept { return rows_.size(); }
  /// The group numbers as texts, in the order of the content.
  [[nodiscard]] std::vector<std::string> numbers() const;
  /// Positions of a group's members, ascending; none for a number that no group has.
  [[nodiscard]] std::span<const std::uint32_t> members(std::int32_t group) const noexcept {
    return groups_.members(group);
  }

  /// Counts everything anew; `keeperValue` is the keeper flag's value in a keeper.
  void count(bool keeperValue);
  [[nodiscard]] const ResultSummary& summary() const noexcept { return summary_; }

  /// These keep the summary right. A group of which a flag changes counts as decided by the user.
  void setFlags(std::span<const std::uint32_t> positions, bool flag);
  /// The others of its group are no keepers then.
  void makeOnlyKeeper(std::uint32_t position);
  /// Another meaning of the flags, the same keepers.
  void invertFlags();
  /// A keeper pass decides all groups; the rules' decisions count again.
  void forgetUserChoices() { changedByUser_.clear(); }

  /// Whether the user has changed a flag of the group since the last keeper pass.
  [[nodiscard]] bool isChangedByUser(std::int32_t group) const {
    return changedByUser_.contains(group);
  }
  [[nodiscard]] bool isKeeper(std::uint32_t position) const {
    return rows_[position].tCheckbox == keeperValue_;
  }
  /// The decision of a keeper pass with these settings, worked out again. Who is kept by chance or
  /// among equals may be another member; everything that can be said about it is the same.
  [[nodiscard]] GroupDecision decision(std::int32_t group, const FilterSettings& settings) const;

 private:
  /// Gives each of the positions its flag; groups are counted once, however many rows they have.
  void change(std::span<const std::uint32_t> positions, FunctionRef<bool(std::uint32_t)> flagOf);
  void addToSummary(std::int32_t group, std::size_t sign);

  std::span<ResultTrack> rows_;
  GroupIndex groups_;
  std::unordered_set<std::int32_t> changedByUser_;
  ResultSummary summary_;
  bool keeperValue_ = true;
};

}  // namespace kestrel
