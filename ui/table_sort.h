/// How the review tables sort: by one column and what a click on its header adds to it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "library/result_track.h"
#include "ui/models/array_controller.h"

namespace kestrel {

enum class ReviewTable : std::uint8_t { upper, lower };

/// How the values under a key are compared.
enum class SortMethod : std::uint8_t {
  plain,   ///< by the values' own order
  text,    ///< as a user expects names, numbers within them by value; empty texts count as larger
  number,  ///< by value; 0 counts as larger
};

/// One key of a table's sort order.
struct ColumnSort {
  std::string_view key;  ///< of a track record; borrowed from the table of columns
  bool ascending = true;
  SortMethod method = SortMethod::plain;
  friend bool operator==(const ColumnSort&, const ColumnSort&) = default;
};

/// The first key decides first.
using TableSort = std::vector<ColumnSort>;

/// The whole order behind a header's own key: albums within an artist, tracks within an album.
/// Empty for keys that stand alone.
TableSort expandedSort(ReviewTable table, std::string_view key, bool ascending);

/// The same order for an array controller, one key each. A million rows by a text column take about
/// a second: each different text is prepared for comparison once, and the first key already knows
/// the whole order, so that arranging compares only places in it.
std::vector<SortKey<ResultTrack>> sortKeys(const TableSort& sort);

}  // namespace kestrel
