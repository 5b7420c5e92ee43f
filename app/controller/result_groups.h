/// The groups of a search result: who is in them, what is to be done, and why.
///
/// Works on positions in the upper table's content, which stay as they are however the table is
/// sorted. A million rows cost a few bytes each; nothing about a group is stored that can be
/// worked out again when it is looked at.
///
/// A value over rows that copies of it share: what changes many groups is done by a worker to a
/// copy, which then takes the place of the one that windows ask. They see flags change meanwhile,
/// and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/controller/group_picks.h"
#include "decisions/keeper_picks.h"
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
  std::size_t open = 0;           ///< of both, those that the user has not made so, or not clearly

  friend bool operator==(const ResultSummary&, const ResultSummary&) = default;
};

/// What is told of a group, as its flags stand.
struct GroupFacts {
  std::size_t copies = 0;   ///< tracks, each once
  std::size_t keepers = 0;  ///< of them
  std::size_t missing = 0;  ///< of them, without their files
  std::uint64_t freed = 0;  ///< bytes, of the files of those that are not kept
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

  /// Other content with the same groups, as far as they have members left: the user's choices
  /// about those stay.
  void replaceRows(std::span<ResultTrack> rows);
  /// The same rows at another place.
  void moveTo(std::span<ResultTrack> rows) noexcept { rows_ = rows; }

  [[nodiscard]] std::size_t rowCount() const noexcept { return rows_.size(); }
  /// The group numbers as texts, in the order of the content.
  [[nodiscard]] std::vector<std::string> numbers() const;
  /// Positions of a group's members, ascending; none for a number that no group has.
  [[nodiscard]] std::span<const std::uint32_t> members(std::int32_t group) const noexcept {
    return groups_.members(group);
  }

  /// The rows themselves, group by group: of these groups, or of all.
  using Members = std::vector<std::vector<ResultTrack*>>;
  [[nodiscard]] Members membersOf(std::span<const std::int32_t> groups) const;
  [[nodiscard]] Members membersOfAll() const { return membersOf(groups_.numbers()); }

  /// Counts everything anew; `keeperValue` is the keeper flag's value in a keeper.
  void count(bool keeperValue);
  [[nodiscard]] const ResultSummary& summary() const noexcept { return summary_; }

  [[nodiscard]] GroupFacts facts(std::int32_t group) const;

  /// These keep the summary right. A group of which a flag changes counts as picked by the user.
  void setFlags(std::span<const std::uint32_t> positions, bool flag);
  /// The others of their groups are no keepers then; of several of one group the last counts.
  void makeOnlyKeepers(std::span<const std::uint32_t> positions);
  void makeOnlyKeeper(std::uint32_t position) { makeOnlyKeepers({&position, 1}); }
  /// Another meaning of the flags, the same keepers.
  void invertFlags();

  // Picks.

  /// The groups of these rows, each once.
  [[nodiscard]] std::vector<std::int32_t> groupsOf(std::span<const std::uint32_t> rows) const;
  [[nodiscard]] GroupState state(std::int32_t group) const;
  /// Its tracks, as often as it lists them.
  [[nodiscard]] std::vector<std::uint64_t> tracksOf(std::int32_t group) const;
  /// Gives a group's tracks the flags of a state, and whether they count as picked. No effect on a
  /// group that has no members.
  void putBack(const GroupState& state);
  /// Sets the flags of all groups for which there is a pick, on top of a keeper pass; those are
  /// picked then, and no others. `count` follows.
  void applyPicks(const KeeperPicks& picks, bool keeperValue);
  /// Whether the user has picked the group's keepers.
  [[nodiscard]] bool isPicked(std::int32_t group) const { return pickOf(group) != PickState::none; }
  /// Whether picks of it contradict each other.
  [[nodiscard]] bool isUndecided(std::int32_t group) const {
    return pickOf(group) == PickState::undecided;
  }
  /// The groups that are picked, ascending.
  [[nodiscard]] std::vector<std::int32_t> picked() const;
  [[nodiscard]] std::size_t pickedCount() const noexcept { return pickedCount_; }

  /// How many of them the user has left without a keeper, and how many contradict each other.
  [[nodiscard]] std::size_t pickedWithoutKeeper() const;
  [[nodiscard]] std::size_t undecidedPicks() const;

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
  /// The members that count: of a track that the group lists more than once, one.
  void forEachTrack(std::int32_t group, FunctionRef<void(std::uint32_t)> visit) const;
  [[nodiscard]] PickState pickOf(std::int32_t group) const {
    const auto place = static_cast<std::size_t>(group);
    return group >= 0 && place < picks_.size() ? picks_[place] : PickState::none;
  }
  void setPick(std::int32_t group, PickState state);

  std::span<ResultTrack> rows_;
  GroupIndex groups_;
  std::vector<PickState> picks_;  ///< by group number
  std::size_t pickedCount_ = 0;
  ResultSummary summary_;
  bool keeperValue_ = true;
};

}  // namespace kestrel
