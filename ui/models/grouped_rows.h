/// Rows that stand in groups, each group under a header row of its own, some of them folded.
///
/// Made for hundreds of thousands of groups: a group costs a few bytes, finding a row is a binary
/// search over running sums, folding one adds up those behind it, and nothing is kept for a row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kestrel {

/// What groups can be ordered by; all but the first with the highest first, and those whose keeper
/// the fewest rules agree with.
enum class GroupOrder : std::uint8_t { found, freed, copies, playlists, doubt, disagreement };

class GroupedRows {
 public:
  struct Group {
    std::int32_t number = 0;
    std::uint32_t first = 0;  ///< of its rows, which follow each other
    std::uint32_t count = 0;  ///< of its rows
    bool folded = false;
    friend bool operator==(const Group&, const Group&) = default;
  };
  /// What stands in a row.
  struct Place {
    std::size_t group = 0;             ///< position among the groups as they are shown
    std::optional<std::uint32_t> row;  ///< nothing: the group's header
    friend bool operator==(const Place&, const Place&) = default;
  };

  GroupedRows() = default;
  /// In the order in which they are shown. Together they have each row once.
  explicit GroupedRows(std::vector<Group> groups);

  [[nodiscard]] const std::vector<Group>& groups() const noexcept { return groups_; }
  /// With the headers, without what is folded away.
  [[nodiscard]] std::size_t size() const noexcept { return starts_.back(); }
  /// `position` must be below `size()`.
  [[nodiscard]] Place at(std::size_t position) const;
  /// Where a group's header stands.
  [[nodiscard]] std::size_t headerOf(std::size_t group) const { return starts_[group]; }
  /// The group that holds a row; nothing for a row that none holds.
  [[nodiscard]] std::optional<std::size_t> groupOf(std::uint32_t row) const;
  /// Where a row stands; nothing when it is folded away, or there is none.
  [[nodiscard]] std::optional<std::size_t> positionOf(std::uint32_t row) const;

  void setFolded(std::size_t group, bool folded);
  void setAllFolded(bool folded);

 private:
  void sum(std::size_t from);

  std::vector<Group> groups_;
  std::vector<std::uint32_t> starts_{0};   ///< of the groups, and one more
  std::vector<std::uint32_t> byFirstRow_;  ///< groups by their rows; empty: as they are shown
};

}  // namespace kestrel
