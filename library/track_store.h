/// The groomed tracks of a snapshot: records by persistent ID.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/number_table.h"
#include "library/track_record.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Holds one record per persistent ID, and alive what the records point into. A store is built by
/// a snapshot, then only read; result tracks share it, so that a later snapshot never changes or
/// frees what a table still shows.
class TrackStore {
 public:
  explicit TrackStore(std::shared_ptr<const DateFormatter> dates);
  TrackStore(const TrackStore&) = delete;
  TrackStore& operator=(const TrackStore&) = delete;

  /// Keeps the items alive to which records will point.
  void hold(std::shared_ptr<const MediaItems> items);
  void reserve(std::size_t records);
  /// Adds a record or replaces the one with the same persistent ID, which keeps its place.
  void put(const MediaItem& item, FileAvailability availability, bool checkbox);
  /// Takes over, as copies, the records of an earlier store whose tracks this one lacks.
  void carryOver(const TrackStore& earlier);

  /// By persistent ID; nullptr when there is no such record.
  [[nodiscard]] const TrackRecord* find(std::uint64_t persistentID) const noexcept;
  /// By `hexpid`.
  [[nodiscard]] const TrackRecord* find(std::string_view hexpid) const noexcept;
  [[nodiscard]] std::size_t size() const noexcept { return records_.size(); }
  [[nodiscard]] bool empty() const noexcept { return records_.empty(); }
  /// How many of the records were taken over.
  [[nodiscard]] std::size_t carriedOver() const noexcept { return carriedOver_; }
  /// In the order in which the tracks were first met.
  [[nodiscard]] const std::vector<TrackRecord>& records() const noexcept { return records_; }
  [[nodiscard]] const DateFormatter& dates() const noexcept { return *dates_; }
  /// Bytes taken for records, index, items and texts.
  [[nodiscard]] std::size_t memory() const noexcept;

 private:
  [[nodiscard]] std::optional<std::uint32_t> numberOf(std::uint64_t persistentID) const noexcept;

  std::shared_ptr<const DateFormatter> dates_;
  std::vector<std::shared_ptr<const MediaItems>> held_;
  std::array<std::array<TrackState, 2>, 3> states_;  ///< by availability and checkbox
  std::vector<TrackRecord> records_;
  std::size_t carriedOver_ = 0;
  NumberTable numbers_;  ///< of the records, by persistent ID
};

}  // namespace kestrel
