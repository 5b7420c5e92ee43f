/// Match keys: the values of a record, one after the other, by which tracks are told to be
/// duplicates.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dupes/grouping.h"
#include "library/track_store.h"

namespace kestrel {

/// Makes match keys of one store's records. Holds buffers, so each thread needs one of its own; the
/// store must outlive it.
class MatchKeyMaker {
 public:
  /// `criteria` are key texts in the order of joining. One that no record holds adds nothing.
  MatchKeyMaker(const TrackStore& store, std::span<const std::string> criteria,
                const GroupingOptions& options);

  /// Writes the match key of `record` to `key`, whose former content is lost. An empty one means
  /// that the record matches nothing.
  void make(const TrackRecord& record, std::string& key);
  /// Whether two records have the same match key.
  bool same(const TrackRecord& a, const TrackRecord& b);

  /// How many values a key is made of.
  [[nodiscard]] std::size_t parts() const noexcept { return parts_.size(); }
  /// Writes one of the values as it stands, before letter case is taken off.
  void value(const TrackRecord& record, std::size_t part, std::string& out);

  /// Ask for the memory that making a record's key will read, the texts when the item is there.
  void prefetchItem(const TrackRecord& record) const noexcept {
    for (const Part& part : parts_)
      if (part.text) __builtin_prefetch(&(record.item().*part.text));
  }
  void prefetchTexts(const TrackRecord& record) const noexcept {
    for (const Part& part : parts_)
      if (part.text) __builtin_prefetch((record.item().*part.text).view().data());
  }

 private:
  struct Part {
    Text MediaItem::*text;  ///< where the item holds the value as it stands, else null
    TrackKey key;
  };
  void append(const TrackRecord& record, const Part& part, std::string& out);
  /// False, and `out` is empty, when a value is empty that must not be.
  bool join(const TrackRecord& record, std::string& out);

  const TrackStore& store_;
  bool caseSensitive_;
  bool needsValues_;  ///< an empty value makes the key empty
  std::optional<Loosener> loosener_;
  std::vector<Part> parts_;
  std::string joined_;
  std::array<std::string, 2> compared_;
};

}  // namespace kestrel
